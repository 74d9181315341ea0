#include "suite/computer/temporary_places.h"

#include "services/failure.h"
#include "suite/computer/file_calls.h"

namespace qndr::suite {

TemporaryPlaces::TemporaryPlaces(const Computer& computer) : folders_{computer.temporaryFolder} {
    folders_.insert(folders_.end(), computer.otherTemporaryFolders.begin(), computer.otherTemporaryFolders.end());
}

std::string TemporaryPlaces::Usable() const {
    for (const std::string& folder : folders_) {
        if (!EnsurePrivateFolder(folder)) {
            return folder;
        }
    }
    throw services::Failure("the temporary folder '" + First() + "' cannot be used: " + Obstacle());
}

std::string TemporaryPlaces::Obstacle() const {
    const std::error_code error = EnsurePrivateFolder(First());
    if (error == std::errc::operation_not_permitted) {
        return "it belongs to another user, or is no folder";
    }
    return error ? error.message() : "";
}

} // namespace qndr::suite
