#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <utility>

namespace qndr::services {

/// Attribute bits of a directory entry.
inline constexpr std::uint32_t HiddenAttribute = 2;
inline constexpr std::uint32_t DirectoryAttribute = 16;
inline constexpr std::uint32_t LinkAttribute = 1024;

/// One entry of a folder.
struct DirectoryEntry {
    std::string name;
    std::uint32_t attributes = 0;
    std::uint32_t sizeLow = 0; ///< low 32 bits of the size in bytes

    bool IsDirectory() const { return (attributes & DirectoryAttribute) != 0; }
    bool IsLink() const { return (attributes & LinkAttribute) != 0; }
};

/// An open listing of one folder; closed with its destruction.
class DirectoryListing {
  public:
    virtual ~DirectoryListing() = default;

    /// The next entry in the order of the operating system; nothing behind the last one. An entry that vanished
    /// since the listing was opened is passed over. Raises Failure when the listing breaks off, for its end must
    /// not come early: what was not seen would count as not there.
    virtual std::optional<DirectoryEntry> Next() = 0;
};

/// What a shortened path is measured with.
class DeviceContext {
  public:
    virtual ~DeviceContext() = default;
    /// The width of the text in the units of the label that shows it.
    virtual int TextWidth(const std::string& text) const = 0;
};

/// The answer of the operating system about the network connection of a drive.
struct NetworkConnection {
    std::int32_t result = 0; ///< 0 connected, 1201 and 2250 remembered but not available, anything else an error
    std::string buffer;      ///< the remote name, ahead of the first NUL
};

/// The operating system's calls on directories, which the folder library stands on. Where a result can say "no" it
/// does, and nothing is raised.
class DirectoryCalls {
  public:
    virtual ~DirectoryCalls() = default;

    /// "\" where drive letters and shares exist, "/" elsewhere.
    virtual char Separator() const = 0;
    /// In characters; a longer path is refused by the operating system.
    virtual std::size_t MaximumPathLength() const = 0;

    /// The entries of a folder whose names match the pattern, "." and ".." among them; "*" and "*.*" stand for
    /// all. `folder` ends in a separator where it needs one: the two texts are put together as they are. Nothing
    /// when the folder cannot be listed. A symbolic link has the link attribute and never that of a directory,
    /// whatever it leads to: no walk follows it.
    virtual std::unique_ptr<DirectoryListing> List(const std::string& folder, const std::string& pattern) = 0;

    /// The entry that a path names, nothing when there is none. A link is followed here, so that a folder may be
    /// given by a link; the link attribute is set beside those of what it leads to.
    virtual std::optional<DirectoryEntry> Find(const std::string& path) = 0;

    /// True only when this very call made the folder, private to the user; its parent must exist.
    virtual bool MakeDirectory(const std::string& path) = 0;
    /// Removes an empty folder, or a link to a folder; never what a link leads to.
    virtual bool RemoveEmptyDirectory(const std::string& path) = 0;

    /// The folder for temporary files, which exists when this returns. Raises when it cannot be had.
    virtual std::string TemporaryPath() = 0;

    /// `drive` is a letter and ":".
    virtual NetworkConnection FindNetworkConnection(const std::string& drive) = 0;

    /// The shell's wildcards: without letter case, several patterns separated by ";", "*.*" is everything. Never
    /// raises: a test that fails counts as passed, and a file that matches nothing would be deleted as one that
    /// does.
    virtual bool MatchesPattern(const std::string& name, const std::string& pattern) = 0;

    /// The path with "..." in the place of its middle when it is wider than `width`.
    virtual std::string CompactPath(const DeviceContext& device, const std::string& path, int width) = 0;
};

} // namespace qndr::services
