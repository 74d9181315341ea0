#pragma once

#include "shared/activity.h"
#include "shared/agent_context.h"

namespace qndr {

/// Queues the numbers of the orders and purchase orders that were entered on this Roaming Workstation for main,
/// once each: a row is flagged as queued even if it could not be. Reports nothing.
void SendOrderNumberSyncs(AgentContext& context, ActivityTarget* activity);

} // namespace qndr
