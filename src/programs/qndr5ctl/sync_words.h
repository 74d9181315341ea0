#pragma once

#include "services/date.h"
#include "services/registry_tools.h"

#include <cstdint>
#include <string>

namespace qndr::control {

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
/// `Company.CompanyType`.
std::string WordsForCompanyType(std::int64_t type);

/// The setting `SyncHeartbeat` when main's agent has not answered in time. Stored: never change.
inline constexpr std::int32_t HeartbeatNoResponse = 2;
/// What the agent of this computer knows of main's; "N/A" while the heartbeat is off.
std::string HeartbeatInWords(services::RegistryTools& registry);

/// "1 record", "2 records"
std::string Counted(std::int64_t number, const std::string& noun);

/// "4 (ready)"
std::string NumberInWords(std::int64_t number, const std::string& words);

} // namespace qndr::control
