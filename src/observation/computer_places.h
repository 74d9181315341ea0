#pragma once

#include "services/agent_services.h"

#include <cstdint>
#include <string>
#include <vector>

namespace qndr::observation {

/// The setting of a profile that is 1 on a Roaming Workstation. Stored: never change.
inline constexpr const char* RoleName = "RoamingWorkstation";

/// The setting `SyncHeartbeat` when main's agent has not answered in time. Stored: never change.
inline constexpr std::int32_t HeartbeatNoResponse = 2;

/// The key of a profile in the settings store.
std::string ProfileKey(const std::string& profile);

/// The folder that the default profile of this computer names ("Sync", "Companies"); empty when it names none, and
/// when the Sync folder is not the one that was set up.
std::string UserFileLocation(const services::AgentServices& services, const std::string& name);

/// Where a profile of this computer looks for the Sync folder, whether or not that is the folder that was set up.
struct SyncLocation {
    std::string folder;              ///< empty when the profile and the default profile name none
    std::string identity;            ///< of the folder's mark at set-up; empty when none is remembered
    std::vector<std::string> former; ///< folders that were named before, the newest first
};
SyncLocation ReadSyncLocation(const services::AgentServices& services, const std::string& profile);
/// Remembers a folder and what its mark is, and the one that was named before.
void WriteSyncLocation(const services::AgentServices& services, const std::string& profile,
                       const std::string& folder, const std::string& identity);

/// Whether the default profile of this computer says what role it has.
bool IsRoleSet(const services::AgentServices& services);

/// The .psd files of the Companies location, by name; none when it is not set or cannot be listed.
std::vector<std::string> CompanyFilesHere(const services::AgentServices& services);

} // namespace qndr::observation
