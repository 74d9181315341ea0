#pragma once

#include "shared/activity.h"
#include "shared/agent_context.h"

namespace qndr {

// A Roaming Workstation company's half of its first sync. Each step runs in every pass and finds in
// `Company.SyncState` whether it has anything to do.

/// Asks main for the initial sync when this workstation has to, and starts its counters anew once the request is
/// on its way.
void SendInitialSyncRequest(AgentContext& context, ActivityTarget* activity);

/// Takes in every initial sync file that is addressed here, when one is awaited, and acknowledges it.
void ReceiveInitialSync(AgentContext& context, ActivityTarget* activity);

/// Tells main that its data is in; the workstation is ready only once that is on its way.
void SendInitialSyncAcknowledge(AgentContext& context);

} // namespace qndr
