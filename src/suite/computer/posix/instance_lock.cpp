#include "suite/computer/instance_lock.h"

#include "suite/computer/file_calls.h"
#include "suite/computer/posix/access.h"

#include <cerrno>
#include <fcntl.h>
#include <filesystem>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

namespace qndr::suite {
namespace {

/// A person may delete the file at any time; that often in a row nobody does.
constexpr int kTries = 8;

/// The open file still has its name: otherwise a later process would lock another file of that name.
bool HasItsName(int handle, const std::string& path) {
    struct stat opened {};
    struct stat named {};
    return fstat(handle, &opened) == 0 && lstat(path.c_str(), &named) == 0 && opened.st_dev == named.st_dev &&
           opened.st_ino == named.st_ino;
}

} // namespace

InstanceLock::InstanceLock(std::string path, std::string sharedLike)
    : path_(std::move(path)), sharedLike_(std::move(sharedLike)) {
}

InstanceLock::~InstanceLock() {
    // The file stays: deleting it would let two later processes lock two different files of this name.
    if (handle_ >= 0) {
        close(handle_);
    }
}

int InstanceLock::Open() const {
    // Not with O_CREAT at once: in a folder for all, the system refuses that for a file of another user.
    const int handle = open(path_.c_str(), O_RDWR | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY);
    if (handle >= 0 || errno != ENOENT) {
        return handle;
    }
    return open(path_.c_str(), O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC | O_NOFOLLOW, 0600);
}

InstanceLock::Answer InstanceLock::Lock(Way way) {
    if (handle_ >= 0) {
        return answer_;
    }
    const std::string folder = std::filesystem::path(path_).parent_path().string();
    if (!NameIsTaken(folder)) {
        EnsurePrivateFolder(folder);
    }
    answer_ = Answer::Unavailable;
    for (int i = 0; i < kTries && handle_ < 0; ++i) {
        const int handle = Open();
        if (handle < 0) {
            if (errno == EEXIST) {
                continue;
            }
            return NameIsTaken(path_) ? Answer::Denied : Answer::Unavailable;
        }
        answer_ = flock(handle, LOCK_EX | LOCK_NB) == 0 ? Answer::Held
                  : errno == EWOULDBLOCK                ? Answer::HeldByAnother
                                                        : Answer::Unavailable;
        // The system gives a lock back for a moment while its kind changes. Whoever comes first then has it alone,
        // and this one asks again as a later one.
        const bool isJoined = way == Way::Together && flock(handle, LOCK_SH | LOCK_NB) == 0;
        const bool isKept = way == Way::Together ? isJoined : answer_ == Answer::Held;
        if (isKept && HasItsName(handle, path_)) {
            if (!sharedLike_.empty()) {
                ShareLike(handle, sharedLike_);
            }
            handle_ = handle;
            return answer_;
        }
        close(handle);
        if (way == Way::Alone && answer_ != Answer::Held) {
            return answer_;
        }
    }
    return answer_ == Answer::HeldByAnother ? answer_ : Answer::Unavailable;
}

} // namespace qndr::suite
