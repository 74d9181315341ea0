#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <system_error>

/// Calls on single files whose guarantees the standard library does not give. One implementation for each
/// platform. An error code that is set tells what the system said.
namespace qndr::suite {

/// What a path names, links followed.
struct FileFacts {
    bool file = false; ///< an ordinary file; folders, pipes and devices are none
    std::int64_t size = 0;
    std::int64_t modified = 0; ///< seconds since 1 January 1970 UTC
    std::int64_t changed = 0;  ///< nanoseconds since then; no program can set it back
    std::uint64_t device = 0;  ///< with `number` the same for one and the same file only
    std::uint64_t number = 0;

    bool operator==(const FileFacts&) const = default;
};

/// Nothing when the path names nothing, or when the system cannot tell.
std::optional<FileFacts> ReadFileFacts(const std::string& path);
std::error_code ReadFileFacts(const std::string& path, FileFacts& facts);

/// True when anything at all has this name, a link that leads nowhere included.
bool NameIsTaken(const std::string& path);

/// Who may touch a new file, whatever mask the process was started with.
enum class FileAccess {
    Private,    ///< this user alone
    LikeFolder, ///< besides, those who may write into the folder that it lies in
};

/// An open file; closed with its destruction.
class OpenFile {
  public:
    OpenFile() = default;
    ~OpenFile() { Close(); }
    OpenFile(const OpenFile&) = delete;
    OpenFile& operator=(const OpenFile&) = delete;

    /// An ordinary file only; never waits.
    std::error_code OpenForReading(const std::string& path);
    /// Fails when anything has the name already, a link included. At no moment may anybody touch the file who may
    /// not in the end.
    std::error_code CreateNew(const std::string& path, FileAccess access);
    /// The new file becomes as accessible as the file of that path, which it is to replace.
    void AllowAs(const std::string& path);
    /// Makes the file, for this user alone, when it is missing; what is written goes behind all that other
    /// programs have written.
    std::error_code OpenForAppending(const std::string& path);

    /// The number of bytes read in `count`, 0 at the end.
    std::error_code Read(std::span<char> buffer, std::size_t& count);
    /// The same from `offset` on, wherever the last call ended.
    std::error_code ReadAt(std::uint64_t offset, std::span<char> buffer, std::size_t& count);
    /// All of the text, in one call of the system where it takes it.
    std::error_code Write(std::string_view text);
    /// Returns when the content is on the disk.
    std::error_code MakeDurable();
    /// May tell of a write that failed later. Closed is closed, whatever it says.
    std::error_code Close();

    /// Of the open file, whoever has its name by now.
    std::error_code Facts(FileFacts& facts) const;

  private:
    std::error_code Open(const std::string& path, int flags, unsigned mode);
    int handle_ = -1;
};

/// The bytes that this user may still write into the folder.
std::error_code ReadFreeSpace(const std::string& folder, std::uint64_t& bytes);

enum class Existing { Keep, Replace };

/// Renames within one file system; std::errc::cross_device_link otherwise. An existing target is kept or replaced
/// in one step, so that its name always leads to the one or the other.
std::error_code RenameFile(const std::string& source, const std::string& target, Existing existing);

/// Takes a file of this user's out of all others' reach; a link, and another user's file, stays as it is.
void MakePrivate(const std::string& path);

/// Makes this moment the file's last modification.
std::error_code RenewFileDate(const std::string& path);

std::error_code DeleteName(const std::string& path);

/// Returns when the names in the folder are on the disk. No error where a file system cannot do this.
std::error_code MakeFolderDurable(const std::string& folder);

/// Makes the folder with its parents, the folder itself for this user alone. Fails for a link and for a folder of
/// another user: whoever owns it could exchange what lies in it.
std::error_code EnsurePrivateFolder(const std::string& folder);

/// Attribute 2 is hidden, 4 is system; of files and folders. False for what is not there.
bool HasAttribute(const std::string& path, int attribute);

} // namespace qndr::suite
