#pragma once

#include "shared/activity.h"
#include "shared/agent_context.h"

namespace qndr {

/// Takes in what main sent to this Roaming Workstation, strictly in sequence, and ends a sync reset when the full
/// data arrives. A file whose turn has not come stays in the Sync folder, and so does a late one, for good.
void ApplyChangesFromMain(AgentContext& context, ActivityTarget* activity);

} // namespace qndr
