#pragma once

#include <cstdint>
#include <string>

namespace qndr::control {

// The numbers of the exchange in words. A number without a meaning is "unknown".

/// `Company.SyncState` of a Roaming Workstation company.
std::string WordsForCompanyState(std::int64_t state);
/// `RoamingWorkstations.SyncState` of a main company.
std::string WordsForWorkstationState(std::int64_t state);
/// The key `SyncState` of a sync descriptor.
std::string WordsForDescriptorState(std::int64_t state);
/// `Company.CompanyType`.
std::string WordsForCompanyType(std::int64_t type);

/// "4 (ready)"
std::string NumberInWords(std::int64_t number, const std::string& words);

} // namespace qndr::control
