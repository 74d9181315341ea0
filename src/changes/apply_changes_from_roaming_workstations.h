#pragma once

#include "services/record_document.h"
#include "shared/activity.h"
#include "shared/agent_context.h"

namespace qndr {

/// Takes in, workstation by workstation, what those in normal running sent to this main company. The files of a
/// workstation in a reset belong to the reset.
void ApplyChangesFromRoamingWorkstations(AgentContext& context, ActivityTarget* activity);

/// One workstation, strictly in sequence. A file whose turn has not come stays in the Sync folder, and so does a
/// late one, for good. The state comes from `record`, the sequence is read afresh for each file.
void ApplyChangesFromRoamingWorkstation(AgentContext& context, const services::Node* record);

} // namespace qndr
