#pragma once

#include "shared/agent_context.h"

namespace qndr {

/// Tells the partners of the company in work how it stands, and hears how they stand. Does nothing where the suite
/// has no such thing. Logs what was repaired or mended.
void ExchangeStanding(AgentContext& context);

} // namespace qndr
