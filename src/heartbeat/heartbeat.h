#pragma once

#include "shared/activity.h"
#include "shared/agent_context.h"

#include <cstdint>
#include <string>

namespace qndr {

/// Tells a Roaming Workstation whether the agent on the main side is alive: it leaves a file in the Sync folder,
/// and the main agent deletes every such file that it finds. The answer stands in the setting `SyncHeartbeat`: 0
/// pending, 1 OK, 2 no response. What is awaited lives in memory only: after a restart a new file goes out.
class Heartbeat {
  public:
    /// Both must outlive the heartbeat.
    Heartbeat(AgentContext& context, ActivityTarget& tray) : context_(context), tray_(tray) {}

    /// The step after each pass, with the role and the Sync folder of the pass's last company. `syncFrequency` is
    /// in minutes: an answer that takes twice as long counts as none, until it comes. Never raises. Leaves its
    /// text in the tray.
    void CheckHeartbeat(std::int32_t syncFrequency);

  private:
    void CheckHeartbeatAsMain(services::SharedCodeLibrary& library);
    void CheckHeartbeatAsRoaming(services::SharedCodeLibrary& library, std::int32_t syncFrequency);
    bool IsAwaitedFileThere();
    void SendHeartbeatFile();
    void SetStatus(std::int32_t status);

    AgentContext& context_;
    ActivityTarget& tray_;
    std::string heartbeatFile_;   ///< bare name of the file that waits for main; empty when none does
    Date heartbeatSent_ = NoDate; ///< when it was copied, local time
};

/// Writes a new temporary heartbeat file and returns its path, empty on failure. The caller deletes it.
std::string CreateHeartbeatFile(AgentContext& context);

} // namespace qndr
