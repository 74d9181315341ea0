#include "programs/qndr5ctl/computer_places.h"

#include "services/failure.h"

#include <algorithm>

namespace qndr::control {

using services::Failure;

std::string UserFileLocation(const ControlContext& context, const std::string& name) {
    const auto library = context.services.objects.CreateSharedCodeLibrary();
    if (!library) {
        throw Failure("the company services are not available");
    }
    std::string folder = library->Options().UserFileLocation(name);
    library->PreTerminate();
    return folder;
}

std::vector<std::string> CompanyFilesHere(const ControlContext& context) {
    const std::string folder = UserFileLocation(context, "Companies");
    std::vector<std::string> files;
    if (!folder.empty()) {
        files = context.services.pathTools.FindFiles(folder, "*.psd", false);
        std::erase(files, "");
        std::sort(files.begin(), files.end());
    }
    return files;
}

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

} // namespace qndr::control
