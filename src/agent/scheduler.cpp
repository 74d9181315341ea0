#include "agent/scheduler.h"

#include "agent/run_sync.h"
#include "shared/failure_rule.h"
#include "shared/settings.h"
#include "shared/sync_log.h"

namespace qndr {

using services::CurrentUserHive;

AgentScheduler::AgentScheduler(AgentContext& context, AgentView& view, ActivityTarget& tray)
    : context_(context), view_(view), tray_(tray), heartbeat_(context, tray) {
}

void AgentScheduler::Load() {
    services::RegistryTools& registry = context_.services.registryTools;
    Attempt([&] { registry.SetLong(CurrentUserHive, settings::RootKey, settings::SyncHeartbeat, 0); });
    Attempt([&] { view_.FillLabels(); });
    Attempt([&] {
        syncFrequency_ = registry.GetLong(CurrentUserHive, settings::RootKey, settings::SyncFrequency, 5);
    });
    Attempt([&] { view_.ShowFrequency(syncFrequency_); });

    std::string stored;
    Attempt([&] { stored = registry.GetString(CurrentUserHive, settings::RootKey, settings::NextSync, ""); });
    if (const auto date = ParseDate(stored)) {
        nextSyncTime_ = *date;
    } else {
        SetNextSyncTime(1);
    }

    agentTitle_ = "QNDR 5.0 Roaming Workstation Sync";
    if (!context_.Profile.empty()) {
        agentTitle_ += " - " + context_.Profile;
    }
    Attempt([&] { view_.RefreshStatus(); });
    Attempt([&] { tray_.SetText(agentTitle_); });
    Attempt([&] { registry.SetLong(CurrentUserHive, settings::RootKey, settings::StopSync, 0); });
}

void AgentScheduler::TickSync() {
    if (!isSyncing_ && Holds([&] { return context_.services.clock.Now() >= nextSyncTime_; })) {
        isSyncing_ = true;
        RunDuePass();
        isSyncing_ = false;
    }
    Attempt([&] { view_.RefreshStatus(); });
}

void AgentScheduler::RunDuePass() {
    std::string remembered;
    Attempt([&] { remembered = tray_.Text(); });
    RunSync(context_, &tray_);
    Attempt([&] { tray_.SetText(remembered); });

    Attempt([&] { remembered = tray_.Text(); });
    heartbeat_.CheckHeartbeat(syncFrequency_);
    Attempt([&] { tray_.SetText(remembered); });

    Attempt([&] {
        context_.services.registryTools.SetString(CurrentUserHive, settings::RootKey, settings::LastSync,
                                                  FormatGeneralDate(context_.services.clock.Now()));
    });
    SetNextSyncTime(syncFrequency_);
}

void AgentScheduler::TickExit() {
    if (Holds([&] { return tray_.Text() == agentTitle_; })) {
        Attempt([&] { view_.ShowActivity("Idle"); });
    } else {
        Attempt([&] { view_.ShowActivity(tray_.Text()); });
    }
    Attempt([&] { context_.services.messages.ProcessMessages(); });
    // A tick inside this one may have ended the agent already.
    if (isSyncing_ || isUnloaded_) {
        return;
    }

    std::int32_t stopSync = 0;
    Attempt([&] {
        stopSync =
            context_.services.registryTools.GetLong(CurrentUserHive, settings::RootKey, settings::StopSync, 0);
    });
    if (stopSync != 0) {
        isUnloaded_ = true;
        Attempt([&] { view_.StopTimers(); });
        WriteLogEntry(context_, "StopSync found. Application will exit.", 0, "");
        Attempt([&] { view_.Unload(); });
    }
}

void AgentScheduler::SyncNow() {
    SetNextSyncTime(0);
    Attempt([&] { view_.RefreshStatus(); });
}

void AgentScheduler::ShowWait(const std::string& text) {
    if (text.empty()) {
        tray_.SetText(awaitingActivity_);
    } else {
        awaitingActivity_ = tray_.Text();
        tray_.SetText(text);
    }
}

void AgentScheduler::SetSyncFrequency(std::int32_t minutes) {
    syncFrequency_ = minutes;
    Attempt([&] {
        context_.services.registryTools.SetLong(CurrentUserHive, settings::RootKey, settings::SyncFrequency,
                                                syncFrequency_);
    });
}

void AgentScheduler::SetNextSyncTime(std::int64_t minutesFromNow) {
    Attempt([&] { nextSyncTime_ = context_.services.clock.Now().AddMinutes(minutesFromNow); });
    Attempt([&] {
        context_.services.registryTools.SetString(CurrentUserHive, settings::RootKey, settings::NextSync,
                                                  FormatGeneralDate(nextSyncTime_));
    });
}

} // namespace qndr
