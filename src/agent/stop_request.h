#pragma once

#include "shared/agent_context.h"

namespace qndr {

/// Asks every agent of this user to exit after the pass in work. Does not guard itself: raises when the registry
/// cannot be written.
void RequestStopSync(AgentContext& context);

} // namespace qndr
