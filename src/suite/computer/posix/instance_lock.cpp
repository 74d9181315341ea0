#include "suite/computer/instance_lock.h"

#include "suite/computer/file_calls.h"

#include <cerrno>
#include <fcntl.h>
#include <filesystem>
#include <sys/file.h>
#include <unistd.h>

namespace qndr::suite {

InstanceLock::InstanceLock(std::string path) : path_(std::move(path)) {
}

InstanceLock::~InstanceLock() {
    // The file stays: deleting it would let two later processes lock two different files of this name.
    if (handle_ >= 0) {
        close(handle_);
    }
}

InstanceLock::Answer InstanceLock::Take() {
    if (handle_ >= 0) {
        return Answer::Held;
    }
    const std::string folder = std::filesystem::path(path_).parent_path().string();
    if (!NameIsTaken(folder)) {
        EnsurePrivateFolder(folder);
    }
    const int handle = open(path_.c_str(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW, 0600);
    if (handle < 0) {
        return Answer::Unavailable;
    }
    if (flock(handle, LOCK_EX | LOCK_NB) != 0) {
        const bool taken = errno == EWOULDBLOCK;
        close(handle);
        return taken ? Answer::HeldByAnother : Answer::Unavailable;
    }
    handle_ = handle;
    return Answer::Held;
}

} // namespace qndr::suite
