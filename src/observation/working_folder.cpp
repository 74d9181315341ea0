#include "observation/working_folder.h"

#include "services/failure.h"

namespace qndr::observation {

using services::Failure;

WorkingFolder::WorkingFolder(const services::AgentServices& services)
    : pathTools_(services.pathTools), path_(pathTools_.CreateTemporaryFolder("", "~suz", true)) {
    if (path_.empty()) {
        throw Failure("a temporary folder cannot be made");
    }
}

WorkingFolder::~WorkingFolder() {
    pathTools_.DeleteFolder(path_, true);
}

std::string WorkingFolder::FileOf(const std::string& name) const {
    return pathTools_.FixPath(path_, true) + name;
}

} // namespace qndr::observation
