#pragma once

#include "heartbeat/heartbeat.h"
#include "shared/activity.h"

#include <cstdint>
#include <string>

namespace qndr {

/// What the scheduler asks of the window, or of whatever stands in its place. What raises is passed over.
class AgentView {
  public:
    virtual ~AgentView() = default;

    /// Fills the labels that never change while the agent runs.
    virtual void FillLabels() = 0;
    /// Sets the slider and its label.
    virtual void ShowFrequency(std::int32_t minutes) = 0;
    virtual void ShowActivity(const std::string& text) = 0;
    /// Shows the settings and the status as they are in the registry now.
    virtual void RefreshStatus() = 0;
    /// Stops tmr_Sync and tmr_Exit.
    virtual void StopTimers() = 0;
    /// Ends the agent.
    virtual void Unload() = 0;
};

/// Starts the passes and carries out the exit. Its owner calls TickSync every SyncInterval and TickExit every
/// ExitInterval, both from Load on, also inside a pass when messages are let through there. No call raises.
class AgentScheduler {
  public:
    static constexpr int SyncInterval = 60000; ///< milliseconds
    static constexpr int ExitInterval = 5000;  ///< milliseconds

    /// All of them must outlive the scheduler. The tray is the activity target of the passes.
    AgentScheduler(AgentContext& context, AgentView& view, ActivityTarget& tray);

    /// Takes up the stored schedule. A stop request that was written before is lost.
    void Load();

    /// Runs a pass when one is due and none is running, and refreshes the status in every case. The next pass is
    /// counted from the end of this one.
    void TickSync();

    /// Shows the activity and, outside a pass, ends the agent when it was asked to stop.
    void TickExit();

    /// Makes the next TickSync run a pass. Inside a pass this has no lasting effect.
    void SyncNow();

    /// Shows what the pass waits for in the place of its activity, and with an empty text that activity again.
    void ShowWait(const std::string& text);

    /// Minutes between passes.
    std::int32_t SyncFrequency() const { return syncFrequency_; }
    /// Takes and stores a new one. The present schedule stands: it counts from the end of the next pass on.
    void SetSyncFrequency(std::int32_t minutes);

    /// Whether the window may be closed now. A close during a pass is refused.
    bool MayClose() const { return !isSyncing_; }

  private:
    void RunDuePass();
    void SetNextSyncTime(std::int64_t minutesFromNow);

    AgentContext& context_;
    AgentView& view_;
    ActivityTarget& tray_;
    Heartbeat heartbeat_;
    std::int32_t syncFrequency_ = 0; ///< minutes between passes
    Date nextSyncTime_;              ///< when the next pass is due, local time
    std::string agentTitle_;         ///< the tray's text between passes
    std::string awaitingActivity_;   ///< what the pass was doing before it had to wait
    bool isSyncing_ = false;         ///< the one guard against a second pass
    bool isUnloaded_ = false;
};

} // namespace qndr
