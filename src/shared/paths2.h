#pragma once

#include "services/directory_calls.h"
#include "services/file_tools.h"
#include "services/path_tools.h"
#include "services/platform.h"

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace qndr {

/// A control of a window that shows the folder in work.
class ProgressLabel {
  public:
    virtual ~ProgressLabel() = default;
    virtual int Width() const = 0;
    virtual void SetCaption(const std::string& text) = 0;
};

/// Everything that concerns folders and the text of paths. Paths have the separator of the directory calls; below,
/// "\" stands for it.
///
/// Where the separator is "\", the rules of drives and shares hold. A drive letter with a network connection is
/// replaced by its share wherever an operation goes to the disk, also when the connection is only remembered. A
/// path of at most three characters or on a share is judged by the first entry of its listing, so an empty one, or
/// one whose first entry is a file, counts as not there; callers rely on it. Elsewhere a folder is what the file
/// system calls a directory, an empty path is no folder, and the root is the path that is its separator alone.
///
/// Only the first character of a name tells the entries "." and ".." from others, so every folder with a leading
/// dot is passed over by the walks, and files with a leading dot by counts and tests; searches and deletion take
/// such files like any other. A symbolic link inside a folder counts as a file and is never followed.
///
/// Lists are never empty: nothing found is one empty element. No operation raises: a statement that fails is
/// passed over, and the operation goes on behind it. CreateTemporaryFolder is the exception: it ends at its first
/// fault.
class Paths2 : public services::PathTools {
  public:
    /// All three must outlive the object.
    Paths2(services::DirectoryCalls& calls, services::FileTools& fileTools, services::MessagePump& messages);

    bool FolderExists(const std::string& path) override;
    /// Tries it out with a temporary file.
    bool IsFolderWriteable(const std::string& path);
    bool IsFolderEmpty(const std::string& path);
    bool FolderContainsFiles(const std::string& path, bool recurse) override;
    bool FolderContainsFolders(const std::string& path);
    /// Compares names without letter case.
    bool FolderContainsFile(const std::string& folder, const std::string& fileName, bool recurse);

    /// The pattern has the shell's wildcards.
    std::vector<std::string> FindFiles(const std::string& folder, const std::string& pattern,
                                       bool recurse) override;
    /// FindFiles that shows each folder on the label, if there is one, before going into it, and lets pending
    /// messages run then.
    std::vector<std::string> FindFilesWithProgress(const std::string& folder, const std::string& pattern,
                                                   bool recurse, ProgressLabel* label,
                                                   const services::DeviceContext& device);
    std::vector<std::string> FindFolders(const std::string& folder) override;

    /// Bytes. A file that would take the sum beyond 32 bits is left out, and of each size only the low 32 bits
    /// count.
    std::int32_t GetFolderSize(const std::string& folder, bool recurse);
    /// The listing itself is made with the pattern: a subfolder is entered only when its own name matches.
    std::int32_t GetFolderFileCount(const std::string& folder, bool recurse, const std::string& pattern);
    /// Counts only files with at least one of the attribute bits.
    std::int32_t GetFolderFileCountEx(const std::string& folder, bool recurse, const std::string& pattern,
                                      std::uint32_t attributes);
    std::int32_t GetFolderFolderCount(const std::string& folder, bool recurse);

    /// A path with a separator and no dot anywhere is a folder as a whole, and is given back as it stands. Always
    /// true.
    bool SplitPath(const std::string& path, std::string& folder, std::string& name,
                   std::string& extension) override;
    bool SplitPath2(const std::string& path, std::string& folder, std::string& fileName) override;
    std::string FixPath(const std::string& path, bool addSeparator) override;
    /// The text with `replacement` for every character that a file name cannot carry, and for blanks if need be.
    std::string FixForFileName(const std::string& text, const std::string& replacement, bool allowSpaces) const;
    /// Takes one character; a longer text is always allowed.
    static bool CharacterIsAllowedForFileName(std::string_view character);
    /// Cuts the text before its first NUL.
    static void TrimNull(std::string& text);
    /// Adds a separator where none is at the end. Empty stays empty.
    std::string QualifyPath(const std::string& path) const;
    /// Trims blanks and takes one separator off the end.
    std::string UnQualifyPath(const std::string& path) const;

    /// True when the folder was there or this call made it. The parent must exist.
    bool CreateFolder(const std::string& path);
    /// On a share the share's own root must count as a folder first.
    bool CreateNestedFolder(const std::string& path) override;
    /// Folders with a leading dot below it keep the whole tree from going. A link is removed, never what it leads
    /// to.
    bool DeleteFolder(const std::string& path, bool recursive) override;
    std::string GetTemporaryFolder() override;
    /// With `makeUnique` the result is a folder that this call made, so that no two agents share one: the prefix
    /// alone, or with a number from 1 to 999 behind it. Otherwise an existing folder with the prefix as its name
    /// is taken.
    std::string CreateTemporaryFolder(const std::string& parentFolder, const std::string& prefix,
                                      bool makeUnique) override;

  private:
    /// A search keeps its list to itself: handlers that run inside it may search as well.
    struct FileSearch;
    using Visitor = std::function<bool(const services::DirectoryEntry&)>;

    // paths2_text.cpp
    bool IsOnShare(const std::string& path) const;
    bool IsRefused(const std::string& path) const;
    bool IsJudgedByFirstEntry(const std::string& path) const;
    std::string ExpandNetworkDrive(const std::string& path);
    /// The expanded path in the form that a listing is made from and the names are put behind.
    std::string ToWalk(const std::string& path) const;

    // paths2_search.cpp
    /// Shows the entries of a folder in ToWalk form to the visitor until it returns false.
    bool VisitEntries(const std::string& folder, const std::string& pattern, const Visitor& visit);
    bool ContainsFiles(const std::string& path, bool recurse);
    /// False when the folder itself could not be listed to its end.
    bool CollectFiles(const std::string& path, FileSearch& search);
    void ShowProgress(const std::string& path, const FileSearch& search);
    void CollectFolders(const std::string& path, std::vector<std::string>& found);

    // paths2_counts.cpp
    void AddFileSizes(const std::string& path, bool recurse, std::int32_t& sum);
    /// No attributes: every file counts.
    void CountFiles(const std::string& path, bool recurse, const std::string& pattern,
                    std::optional<std::uint32_t> attributes, std::int32_t& count);
    void CountFolders(const std::string& path, bool recurse, std::int32_t& count);

    // paths2_folders.cpp
    bool MakeFolder(const std::string& path);
    void DeleteTree(const std::string& path);
    /// Raises when there is no temporary folder.
    std::string TemporaryFolder();
    std::string MakeTemporaryFolder(const std::string& folder, const std::string& prefix, bool makeUnique);

    services::DirectoryCalls& calls_;
    services::FileTools& fileTools_;
    services::MessagePump& messages_;
    char separator_;
    /// Whether the rules of drives and shares hold.
    bool hasDrives_;
};

} // namespace qndr
