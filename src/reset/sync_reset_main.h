#pragma once

#include "services/record_document.h"
#include "shared/activity.h"
#include "shared/agent_context.h"

namespace qndr {

// A main company's half of a sync reset: it forgets the sequences of a workstation that asks, throws away what
// that workstation had sent, and lets the full data go out only when nothing has come from it for five minutes.

/// Looks for reset requests of every workstation whose row stands at SyncStateReady or SyncStateResetRequested.
void CheckForSyncResets(AgentContext& context, ActivityTarget* activity);

/// One workstation: when it asks, puts its row to SyncStateResetPending, its counters to 0, and sweeps all its
/// files that were read here out of the Sync folder.
void ProcessSyncResetsFrom(AgentContext& context, const services::Node* record);

/// Drains every workstation whose row stands at SyncStateResetPending.
void ProcessPendingSyncResets(AgentContext& context, ActivityTarget* activity);

/// One workstation: throws away what it has sent; each file begins the five minutes anew. When they are over, the
/// row goes to SyncStateResetRequested and is owed the full data.
void ProcessPendingSyncResetsFrom(AgentContext& context, const services::Node* record);

} // namespace qndr
