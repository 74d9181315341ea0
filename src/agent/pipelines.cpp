#include "agent/pipelines.h"

#include "agent/exchange_standing.h"
#include "agent/open_company.h"
#include "changes/apply_changes_from_main.h"
#include "changes/apply_changes_from_roaming_workstations.h"
#include "changes/order_number_sync.h"
#include "changes/send_changes_to_main.h"
#include "changes/send_changes_to_roaming_workstations.h"
#include "housekeeping/cleanup.h"
#include "initial/initial_sync_main.h"
#include "initial/initial_sync_roaming.h"
#include "reset/sync_reset_main.h"
#include "reset/sync_reset_roaming.h"
#include "shared/failure_rule.h"
#include "shared/settings.h"

namespace qndr {
namespace {

// The one place that fixes the order. On main everything that comes in is taken before changes go out.
constexpr PipelineStep kMainSteps[] = {
    {"ReceiveInitialSyncRequests", ReceiveInitialSyncRequests},
    {"SendInitialSyncs", SendInitialSyncs},
    {"ReceiveInitialSyncAcknowledges", ReceiveInitialSyncAcknowledges},
    {"CheckForSyncResets", CheckForSyncResets},
    {"ProcessPendingSyncResets", ProcessPendingSyncResets},
    {"ApplyChangesFromRoamingWorkstations", ApplyChangesFromRoamingWorkstations},
    {"SendChangesToRoamingWorkstations", SendChangesToRoamingWorkstations},
};

constexpr PipelineStep kRoamingSteps[] = {
    {"SendInitialSyncRequest", SendInitialSyncRequest}, {"ReceiveInitialSync", ReceiveInitialSync},
    {"SendSyncResetToMain", SendSyncResetToMain},       {"SendOrderNumberSyncs", SendOrderNumberSyncs},
    {"ApplyChangesFromMain", ApplyChangesFromMain},     {"SendChangesToMain", SendChangesToMain},
};

bool IsStopRequested(AgentContext& context) {
    return context.services.registryTools.GetLong(services::CurrentUserHive, settings::RootKey, settings::StopSync,
                                                  0) != 0;
}

/// Reads an id once in the life of the process: with several companies of one role all work with the ids of the
/// first one that came here.
void ReadIdOnce(AgentContext& context, std::string& id, const char* statement) {
    if (id.empty()) {
        Attempt([&] { id = context.Database().ExecuteScaler(statement).ToText(); });
    }
}

/// Without a test for a stop request between them.
void RunCleanups(AgentContext& context, ActivityTarget* activity) {
    CleanupTempFiles(context, activity);
    CleanupSyncBackups(context, activity);
    CleanupOrderBackups(context, activity);
    CleanupDeletedSyncFiles(context, activity);
}

} // namespace

std::span<const PipelineStep> MainSteps() {
    return kMainSteps;
}

std::span<const PipelineStep> RoamingSteps() {
    return kRoamingSteps;
}

bool RunSteps(AgentContext& context, std::span<const PipelineStep> steps, ActivityTarget* activity) {
    for (const PipelineStep& step : steps) {
        Attempt([&] { step.routine(context, activity); });
        if (Holds([&] { return IsStopRequested(context); })) {
            return false;
        }
    }
    return true;
}

void SyncAsMain(AgentContext& context, ActivityTarget* activity) {
    // A type that cannot be read lets the steps run.
    if (!Holds([&] { return ReadCompanyType(context) == 1; })) {
        return;
    }
    ReadIdOnce(context, context.MainUniqueID, "SELECT UniqueID FROM Company");
    if (RunSteps(context, MainSteps(), activity)) {
        RunCleanups(context, activity);
        ExchangeStanding(context);
    }
}

void SyncAsRoaming(AgentContext& context, ActivityTarget* activity) {
    if (!Holds([&] { return ReadCompanyType(context) == 2; })) {
        return;
    }
    ReadIdOnce(context, context.RoamingUniqueID, "SELECT UniqueID FROM Company");
    ReadIdOnce(context, context.MainUniqueID, "SELECT MainUniqueID FROM Company");
    if (RunSteps(context, RoamingSteps(), activity)) {
        RunCleanups(context, activity);
        ExchangeStanding(context);
    }
}

} // namespace qndr
