#include "suite/computer/file_calls.h"

#include "suite/computer/posix/access.h"

#include <array>
#include <cerrno>
#include <cstdio>
#include <fcntl.h>
#include <filesystem>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

namespace qndr::suite {
namespace {

constexpr unsigned kPrivateMode = 0600;

std::error_code LastError() {
    return {errno, std::generic_category()};
}

bool HoldsNul(const std::string& path) {
    return path.find('\0') != std::string::npos;
}

std::error_code InvalidPath() {
    return std::make_error_code(std::errc::invalid_argument);
}

FileFacts FactsOf(const struct stat& found) {
    constexpr std::int64_t nanoseconds = 1'000'000'000;
    return {.file = S_ISREG(found.st_mode),
            .size = found.st_size,
            .modified = found.st_mtim.tv_sec,
            .changed = found.st_ctim.tv_sec * nanoseconds + found.st_ctim.tv_nsec,
            .device = found.st_dev,
            .number = found.st_ino};
}

/// For file systems that cannot rename without replacing.
std::error_code RenameByLink(const std::string& source, const std::string& target) {
    if (link(source.c_str(), target.c_str()) == 0) {
        return unlink(source.c_str()) == 0 ? std::error_code() : LastError();
    }
    if (errno != EPERM && errno != ENOTSUP && errno != EMLINK && errno != ENOSYS) {
        return LastError();
    }
    // No links either, as on FAT and on many mounted cloud folders. What is left has a gap between the test and
    // the renaming; names in the Sync folder are unique, so nobody stands in it.
    if (NameIsTaken(target)) {
        return std::make_error_code(std::errc::file_exists);
    }
    return rename(source.c_str(), target.c_str()) == 0 ? std::error_code() : LastError();
}

} // namespace

std::optional<FileFacts> ReadFileFacts(const std::string& path) {
    FileFacts facts;
    return ReadFileFacts(path, facts) ? std::nullopt : std::optional(facts);
}

std::error_code ReadFileFacts(const std::string& path, FileFacts& facts) {
    struct stat found {};
    if (HoldsNul(path)) {
        return InvalidPath();
    }
    if (stat(path.c_str(), &found) != 0) {
        return LastError();
    }
    facts = FactsOf(found);
    return {};
}

bool NameIsTaken(const std::string& path) {
    struct stat facts {};
    return lstat(path.c_str(), &facts) == 0;
}

std::error_code OpenFile::Open(const std::string& path, int flags, unsigned mode) {
    Close();
    if (HoldsNul(path)) {
        return InvalidPath();
    }
    do {
        handle_ = open(path.c_str(), flags | O_CLOEXEC, mode);
    } while (handle_ < 0 && errno == EINTR);
    return handle_ < 0 ? LastError() : std::error_code();
}

std::error_code OpenFile::OpenForReading(const std::string& path) {
    // Without O_NONBLOCK a pipe would hold the agent until somebody writes into it.
    if (const std::error_code error = Open(path, O_RDONLY | O_NONBLOCK, 0)) {
        return error;
    }
    FileFacts facts;
    std::error_code error = Facts(facts);
    if (!error && !facts.file) {
        error = InvalidPath();
    }
    if (error) {
        Close();
    }
    return error;
}

std::error_code OpenFile::CreateNew(const std::string& path, FileAccess access) {
    if (const std::error_code error = Open(path, O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW, kPrivateMode)) {
        return error;
    }
    if (access == FileAccess::LikeFolder) {
        const std::string folder = std::filesystem::path(path).parent_path().string();
        ShareLike(handle_, folder.empty() ? "." : folder);
    }
    return {};
}

void OpenFile::AllowAs(const std::string& path) {
    CopyAccess(handle_, path);
}

std::error_code OpenFile::OpenForAppending(const std::string& path) {
    return Open(path, O_WRONLY | O_CREAT | O_APPEND, kPrivateMode);
}

std::error_code OpenFile::Read(std::span<char> buffer, std::size_t& count) {
    ssize_t got = 0;
    do {
        got = read(handle_, buffer.data(), buffer.size());
    } while (got < 0 && errno == EINTR);
    count = got < 0 ? 0 : static_cast<std::size_t>(got);
    return got < 0 ? LastError() : std::error_code();
}

std::error_code OpenFile::ReadAt(std::uint64_t offset, std::span<char> buffer, std::size_t& count) {
    ssize_t got = 0;
    do {
        got = pread(handle_, buffer.data(), buffer.size(), static_cast<off_t>(offset));
    } while (got < 0 && errno == EINTR);
    count = got < 0 ? 0 : static_cast<std::size_t>(got);
    return got < 0 ? LastError() : std::error_code();
}

std::error_code OpenFile::Write(std::string_view text) {
    while (!text.empty()) {
        const ssize_t written = write(handle_, text.data(), text.size());
        if (written < 0 && errno != EINTR) {
            return LastError();
        }
        if (written > 0) {
            text.remove_prefix(static_cast<std::size_t>(written));
        }
    }
    return {};
}

std::error_code OpenFile::MakeDurable() {
    return fsync(handle_) == 0 ? std::error_code() : LastError();
}

std::error_code OpenFile::Close() {
    if (handle_ < 0) {
        return {};
    }
    return close(std::exchange(handle_, -1)) == 0 || errno == EINTR ? std::error_code() : LastError();
}

std::error_code OpenFile::Facts(FileFacts& facts) const {
    struct stat found {};
    if (fstat(handle_, &found) != 0) {
        return LastError();
    }
    facts = FactsOf(found);
    return {};
}

std::error_code ReadFreeSpace(const std::string& folder, std::uint64_t& bytes) {
    std::error_code error;
    bytes = std::filesystem::space(folder, error).available;
    return error;
}

std::error_code RenameFile(const std::string& source, const std::string& target, Existing existing) {
    if (HoldsNul(source) || HoldsNul(target)) {
        return InvalidPath();
    }
    if (existing == Existing::Replace) {
        return rename(source.c_str(), target.c_str()) == 0 ? std::error_code() : LastError();
    }
    if (renameat2(AT_FDCWD, source.c_str(), AT_FDCWD, target.c_str(), RENAME_NOREPLACE) == 0) {
        return {};
    }
    if (errno != EINVAL && errno != ENOSYS && errno != ENOTSUP) {
        return LastError();
    }
    return RenameByLink(source, target);
}

void MakePrivate(const std::string& path) {
    const int handle = open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY);
    if (handle >= 0) {
        static_cast<void>(fchmod(handle, kPrivateMode) == 0);
        close(handle);
    }
}

std::error_code RenewFileDate(const std::string& path) {
    return utimensat(AT_FDCWD, path.c_str(), nullptr, AT_SYMLINK_NOFOLLOW) == 0 ? std::error_code() : LastError();
}

std::error_code DeleteName(const std::string& path) {
    if (HoldsNul(path)) {
        return InvalidPath();
    }
    return unlink(path.c_str()) == 0 ? std::error_code() : LastError();
}

std::error_code MakeFolderDurable(const std::string& folder) {
    const int handle = open(folder.empty() ? "." : folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (handle < 0) {
        return LastError();
    }
    std::error_code error;
    if (fsync(handle) != 0 && errno != EINVAL && errno != ENOTSUP && errno != ENOSYS && errno != EBADF) {
        error = LastError();
    }
    close(handle);
    return error;
}

std::error_code EnsurePrivateFolder(const std::string& folder) {
    if (HoldsNul(folder)) {
        return InvalidPath();
    }
    std::error_code error;
    std::filesystem::create_directories(std::filesystem::path(folder).parent_path(), error);
    if (mkdir(folder.c_str(), 0700) == 0) {
        return {};
    }
    if (errno != EEXIST) {
        return LastError();
    }
    struct stat facts {};
    if (lstat(folder.c_str(), &facts) != 0) {
        return LastError();
    }
    if (!S_ISDIR(facts.st_mode) || facts.st_uid != geteuid()) {
        return std::make_error_code(std::errc::operation_not_permitted);
    }
    return {};
}

bool HasAttribute(const std::string& path, int attribute) {
    std::string name = path;
    while (name.size() > 1 && name.back() == '/') {
        name.pop_back();
    }
    name.erase(0, name.rfind('/') + 1);
    return attribute == 2 && name.starts_with('.') && NameIsTaken(path);
}

} // namespace qndr::suite
