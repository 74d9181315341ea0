#pragma once

#include "agent/scheduler.h"
#include "shared/agent_context.h"

namespace qndr {

/// Makes the next pass due now when the stored schedule lies further in the future than any setting of the window
/// could have put it: a clock that was wrong, or another time zone, has left it there. To be called in front of
/// each tick of tmr_Sync, by whoever owns it. The scheduler itself keeps a schedule as it is, whatever the clock
/// does: this is what a person would do with "Sync Now". Does nothing inside a pass, and never raises.
void RecoverSchedule(AgentContext& context, AgentScheduler& scheduler);

} // namespace qndr
