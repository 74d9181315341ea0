#pragma once

#include "services/record_document.h"
#include "shared/activity.h"
#include "shared/agent_context.h"

namespace qndr {

/// Sends every workstation in normal running what main's audit log holds above the row's `LastAuditID`, and the
/// full data to every workstation whose row stands at SyncStateResetRequested.
void SendChangesToRoamingWorkstations(AgentContext& context, ActivityTarget* activity);

/// One workstation. `LastAuditID`, the sequence, `LastSentTo` and the state move together and only after the file
/// has reached the Sync folder; whatever failed before is done again by the next pass, with the same sequence and
/// the same lower bound. The state is read afresh, all else comes from `record`.
void SendChangesToRoamingWorkstation(AgentContext& context, const services::Node* record);

} // namespace qndr
