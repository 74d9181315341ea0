#pragma once

#include "programs/qndr5ctl/control_context.h"

#include <string>
#include <vector>

namespace qndr::control {

/// The setting of a profile that is 1 on a Roaming Workstation. Stored: never change.
inline constexpr const char* RoleName = "RoamingWorkstation";

/// The key of a profile in the settings store.
std::string ProfileKey(const std::string& profile);

/// The folder that the default profile of this computer names ("Sync", "Companies"); empty when it names none, and
/// when the Sync folder is not the one that was set up.
std::string UserFileLocation(const ControlContext& context, const std::string& name);

/// Where a profile of this computer looks for the Sync folder, whether or not that is the folder that was set up.
struct SyncLocation {
    std::string folder;              ///< empty when the profile and the default profile name none
    std::string identity;            ///< of the folder's mark at set-up; empty when none is remembered
    std::vector<std::string> former; ///< folders that were named before, the newest first
};
SyncLocation ReadSyncLocation(const ControlContext& context, const std::string& profile);
/// Remembers a folder and what its mark is, and the one that was named before.
void WriteSyncLocation(const ControlContext& context, const std::string& profile, const std::string& folder,
                       const std::string& identity);

/// Whether the default profile of this computer says what role it has.
bool IsRoleSet(const ControlContext& context);

/// The .psd files of the Companies location, by name; none when it is not set or cannot be listed.
std::vector<std::string> CompanyFilesHere(const ControlContext& context);

/// A folder for temporary files that goes with the object, with all that is in it.
class WorkingFolder {
  public:
    /// Raises services::Failure when it cannot be made.
    explicit WorkingFolder(const services::AgentServices& services);
    ~WorkingFolder();
    WorkingFolder(const WorkingFolder&) = delete;
    WorkingFolder& operator=(const WorkingFolder&) = delete;

    const std::string& Path() const { return path_; }
    std::string FileOf(const std::string& name) const;

  private:
    services::PathTools& pathTools_;
    std::string path_;
};

} // namespace qndr::control
