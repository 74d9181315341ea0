#pragma once

#include "services/date.h"

#include <cstdint>
#include <string>

namespace qndr::diagnosis {

// The numbers of the exchange in words. A number without a meaning is "unknown".

/// `Company.SyncState` of a Roaming Workstation company.
std::string WordsForCompanyState(std::int64_t state);
/// `RoamingWorkstations.SyncState` of a main company.
std::string WordsForWorkstationState(std::int64_t state);
/// The same, and since when a reset waits: `lastReceivedFrom` as it is stored, UTC. Of the day of `nowUtc` the
/// time alone is told.
std::string WordsForWorkstation(std::int64_t state, const std::string& lastReceivedFrom, const Date& nowUtc);
/// The key `SyncState` of a sync descriptor.
std::string WordsForDescriptorState(std::int64_t state);

/// "1 record", "2 records"
std::string Counted(std::int64_t number, const std::string& noun);

/// "4 (ready)"
std::string NumberInWords(std::int64_t number, const std::string& words);

} // namespace qndr::diagnosis
