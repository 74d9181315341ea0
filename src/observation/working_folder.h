#pragma once

#include "services/agent_services.h"

#include <string>

namespace qndr::observation {

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

} // namespace qndr::observation
