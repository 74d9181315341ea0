#pragma once

#include "diagnosis/state_words.h"
#include "services/registry_tools.h"

#include <cstdint>
#include <string>

namespace qndr::control {

using diagnosis::Counted;
using diagnosis::NumberInWords;
using diagnosis::WordsForCompanyState;
using diagnosis::WordsForDescriptorState;
using diagnosis::WordsForWorkstation;

/// `Company.CompanyType`; a number without a meaning is "unknown".
std::string WordsForCompanyType(std::int64_t type);

/// What the agent of this computer knows of main's; "N/A" while the heartbeat is off.
std::string HeartbeatInWords(services::RegistryTools& registry);

} // namespace qndr::control
