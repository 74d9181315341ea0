#pragma once

#include "programs/qndr5ctl/control_context.h"

#include <string>
#include <vector>

namespace qndr::control {

/// The folder that the default profile of this computer names ("Sync", "Companies"); empty when it names none.
std::string UserFileLocation(const ControlContext& context, const std::string& name);

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
