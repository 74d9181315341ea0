#pragma once

#include "services/date.h"

#include <string>

namespace qndr::services {

/// Operations on single files. Where a result can say "no" it does, and nothing is raised.
class FileTools {
  public:
    virtual ~FileTools() = default;

    /// True when the path names an existing file, not a folder. The same test as FileExists.
    virtual bool FileIsPresent(const std::string& path) = 0;

    /// True when the path names an existing file, not a folder.
    virtual bool FileExists(const std::string& path) = 0;

    /// Size in bytes. Raises when there is no such file.
    virtual std::int64_t GetFileSize(const std::string& path) = 0;

    /// The part behind the last separator. Does not touch the disk.
    virtual std::string GetFileName(const std::string& path) = 0;

    /// The file name without its last "." and what follows. Does not touch the disk.
    virtual std::string GetFileBaseName(const std::string& path) = 0;

    /// Attribute 2 is hidden, 4 is system. False for an absent file, and for 4 where a platform has no such mark.
    /// Off Windows a name with a leading dot is hidden.
    virtual bool FileHasAttribute(const std::string& path, int attribute) = 0;

    /// Local time of the last modification of a file or a folder. Raises when there is neither.
    virtual Date GetFileDate(const std::string& path) = 0;

    /// Creates an empty private file with a new name of this prefix and extension (with its dot) and returns its
    /// path, empty on failure. An empty folder stands for the temporary folder, which is made when it is missing.
    virtual std::string CreateTemporaryFile(const std::string& folder, const std::string& prefix,
                                            const std::string& extension) = 0;

    /// True when the file existed and is gone.
    virtual bool DeleteFile(const std::string& path) = 0;

    /// Copies so that no reader ever meets a part of the file under its name, and so that a True survives a power
    /// cut. False for an existing target unless `overwrite`, and for a target name that no file can carry on some
    /// platform.
    virtual bool CopyFile(const std::string& source, const std::string& target, bool overwrite) = 0;

    /// Moves or renames, across file systems too; the moved file's date is that of the move. False for an existing
    /// target unless `overwrite`; the source then stays.
    virtual bool MoveFile(const std::string& source, const std::string& target, bool overwrite) = 0;

    /// The text with every character that a file name cannot carry, and "~", replaced by "-".
    virtual std::string ToFileToken(const std::string& text) = 0;
};

} // namespace qndr::services
