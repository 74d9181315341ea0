#pragma once

#include "shared/activity.h"

#include <span>

namespace qndr {

/// One step of the protocol. A step reports for itself and has no result: what the steps need of each other they
/// find in the database and in the Sync folder.
struct PipelineStep {
    const char* name;
    void (*routine)(AgentContext&, ActivityTarget*);
};

/// The steps of the main company, in the order in which they must run.
std::span<const PipelineStep> MainSteps();
/// The steps of a Roaming Workstation company, in the order in which they must run.
std::span<const PipelineStep> RoamingSteps();

/// Runs the steps in order, the first one always. After each step StopSync is read; when it is set, or cannot be
/// read, the rest is left for a later pass and the result is false.
bool RunSteps(AgentContext& context, std::span<const PipelineStep> steps, ActivityTarget* activity);

/// One turn of the main company. Does nothing for a company whose type is not 1. Never raises.
void SyncAsMain(AgentContext& context, ActivityTarget* activity);

/// One turn of a Roaming Workstation company. Does nothing for a company whose type is not 2. Never raises.
void SyncAsRoaming(AgentContext& context, ActivityTarget* activity);

} // namespace qndr
