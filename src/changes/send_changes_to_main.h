#pragma once

#include "shared/activity.h"
#include "shared/agent_context.h"

namespace qndr {

/// Sends main what the audit log of this Roaming Workstation holds above `Company.LastAuditID`. `LastAuditID` and
/// the sequence move together and only after the file has reached the Sync folder; whatever failed before is done
/// again by the next pass, with the same sequence and the same lower bound.
void SendChangesToMain(AgentContext& context, ActivityTarget* activity);

} // namespace qndr
