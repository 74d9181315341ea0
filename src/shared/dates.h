#pragma once

#include "services/agent_services.h"
#include "services/date.h"

#include <string>

namespace qndr {

/// Adds the time zone bias of this moment, in minutes. It is not the bias of `value`'s own time of year: all
/// callers pass the present moment, and both ends of an exchange reckon this way. Without time zone information
/// the value comes back as it is.
Date LocalToUtc(const services::AgentServices& services, const Date& value);

/// "yyyymmddThhnnss", fifteen characters, as file names carry it.
std::string FormatFileStamp(const Date& value);

} // namespace qndr
