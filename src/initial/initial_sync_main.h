#pragma once

#include "services/record_document.h"
#include "shared/activity.h"
#include "shared/agent_context.h"
#include "syncfiles/descriptor.h"

namespace qndr {

// A main company's half of the first sync of a Roaming Workstation. A workstation is known by its row in
// `RoamingWorkstations`; no row is ever made here.

/// Puts the row of every known workstation that asks to SyncStateInitialSyncRequired, whatever its state was.
/// Takes files addressed to this company's identity and to "main".
void ReceiveInitialSyncRequests(AgentContext& context, ActivityTarget* activity);

/// Sends the full data to every row at SyncStateInitialSyncRequired.
void SendInitialSyncs(AgentContext& context, ActivityTarget* activity);

/// Sends the full data to the workstation of this row and puts the row to SyncStateInitialSyncSent. After a
/// failure the row stays as it is, for the next pass.
void SendInitialSync(AgentContext& context, const services::Node* record);

/// Puts the row of every workstation that acknowledges to SyncStateReady. The file goes even if there is no such
/// row.
void ReceiveInitialSyncAcknowledges(AgentContext& context, ActivityTarget* activity);

/// Whether the entry's `From` is the `UniqueID` of a row, letter case aside.
bool IsKnownRoamingWorkstation(AgentContext& context, const FoundSyncFile& entry);

} // namespace qndr
