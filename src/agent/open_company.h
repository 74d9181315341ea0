#pragma once

#include "shared/agent_context.h"

#include <string>

namespace qndr {

/// Points `library` at the company of a .psd file. False, with a log line that tells why, when the Company Manager
/// is missing, the file cannot be loaded or its database cannot be opened. Never raises.
bool OpenCompany(AgentContext& context, services::SharedCodeLibrary& library, const std::string& path);

/// True when the open company is a main company. Does not guard itself: raises when its type cannot be read.
bool IsMainCompany(AgentContext& context);

/// `CompanyType` of the open company: 1 main, 2 Roaming Workstation, 0 without a row. Raises when it cannot be
/// read.
std::int16_t ReadCompanyType(AgentContext& context);

/// Ends the work on the open company: the engine, where there is one, goes before the library that it works with.
/// Never raises; both are gone afterwards.
void ReleaseCompany(AgentContext& context);

} // namespace qndr
