#pragma once

#include "shared/activity.h"
#include "shared/agent_context.h"

namespace qndr {

/// Asks main for a sync reset when `Company.SyncState` is SyncStateResetRequested: gives up the sequences, the
/// changes that were not sent yet and the files of main that were not taken yet, and waits at
/// SyncStateResetPending for the full data. Until the request has reached the Sync folder nothing is given up, and
/// the next pass tries again.
void SendSyncResetToMain(AgentContext& context, ActivityTarget* activity);

} // namespace qndr
