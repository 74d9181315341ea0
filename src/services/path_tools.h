#pragma once

#include <string>
#include <vector>

namespace qndr::services {

/// Operations on paths and folders. The rules of each are told in shared/paths2.h, the one implementation.
class PathTools {
  public:
    virtual ~PathTools() = default;
    virtual bool FolderExists(const std::string& path) = 0;
    virtual bool FolderContainsFiles(const std::string& path, bool recurse) = 0;

    /// Full paths of the matching files; one empty element when there are none.
    virtual std::vector<std::string> FindFiles(const std::string& folder, const std::string& pattern,
                                               bool recurse) = 0;

    /// Full paths of all folders of the tree, a parent before its children; one empty element when there are none.
    virtual std::vector<std::string> FindFolders(const std::string& folder) = 0;

    /// The folder ends in a separator, the extension begins with its dot.
    virtual bool SplitPath(const std::string& path, std::string& folder, std::string& name,
                           std::string& extension) = 0;
    virtual bool SplitPath2(const std::string& path, std::string& folder, std::string& fileName) = 0;

    /// The trimmed path, ending in a separator or not. Empty stays empty.
    virtual std::string FixPath(const std::string& path, bool addSeparator) = 0;

    /// True when the folder exists afterwards, made with all its parents where needed.
    virtual bool CreateNestedFolder(const std::string& path) = 0;

    /// True when the folder is gone, or was not there.
    virtual bool DeleteFolder(const std::string& path, bool recursive) = 0;

    /// Ends in a separator.
    virtual std::string GetTemporaryFolder() = 0;

    /// The path of the folder, empty on failure. An empty parent stands for the temporary folder.
    virtual std::string CreateTemporaryFolder(const std::string& parentFolder, const std::string& prefix,
                                              bool makeUnique) = 0;
};

} // namespace qndr::services
