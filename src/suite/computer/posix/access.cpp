#include "suite/computer/posix/access.h"

#include <sys/stat.h>
#include <unistd.h>

namespace qndr::suite {
namespace {

constexpr mode_t kGroupBits = 0070;

/// True when the open file has the group, or has it now.
bool TakesGroup(int handle, const struct stat& own, gid_t group) {
    return own.st_gid == group || fchown(handle, static_cast<uid_t>(-1), group) == 0;
}

void SetMode(int handle, const struct stat& own, mode_t mode) {
    if ((own.st_mode & 0777U) != mode) {
        // A file system without modes refuses; there the mount decides.
        static_cast<void>(fchmod(handle, mode) == 0);
    }
}

} // namespace

void ShareLike(int handle, const std::string& neighbour) {
    struct stat near {};
    struct stat own {};
    if (stat(neighbour.c_str(), &near) != 0 || fstat(handle, &own) != 0) {
        return;
    }
    mode_t mode = S_IRUSR | S_IWUSR;
    if ((near.st_mode & S_IWGRP) != 0) {
        // Without the set-group-ID bit the new file has this user's own group, which has no business here.
        mode |= TakesGroup(handle, own, near.st_gid) ? S_IRGRP | S_IWGRP : 0;
    }
    if ((near.st_mode & S_IWOTH) != 0) {
        mode |= S_IROTH | S_IWOTH;
    }
    SetMode(handle, own, mode);
}

void CopyAccess(int handle, const std::string& path) {
    struct stat old {};
    struct stat own {};
    if (stat(path.c_str(), &old) != 0 || fstat(handle, &own) != 0) {
        return;
    }
    mode_t mode = old.st_mode & 0777U;
    if (!TakesGroup(handle, own, old.st_gid)) {
        mode &= ~kGroupBits;
    }
    SetMode(handle, own, mode);
}

} // namespace qndr::suite
