#pragma once

#include "services/file_tools.h"
#include "suite/computer/computer_trouble.h"

#include <string>

namespace qndr::suite {

/// Single files on this computer's disks and shares.
class DiskFileTools : public services::FileTools {
  public:
    /// The temporary folder is made, for this user alone, whenever it is needed and missing. What `trouble` holds
    /// is neither deleted nor moved; it must outlive the object.
    explicit DiskFileTools(std::string temporaryFolder, ComputerTrouble* trouble = nullptr);

    bool FileIsPresent(const std::string& path) override;
    bool FileExists(const std::string& path) override;
    std::int64_t GetFileSize(const std::string& path) override;
    std::string GetFileName(const std::string& path) override;
    std::string GetFileBaseName(const std::string& path) override;
    bool FileHasAttribute(const std::string& path, int attribute) override;
    Date GetFileDate(const std::string& path) override;
    /// Empty also when the temporary folder is a link or belongs to another user.
    std::string CreateTemporaryFile(const std::string& folder, const std::string& prefix,
                                    const std::string& extension) override;
    bool DeleteFile(const std::string& path) override;
    bool CopyFile(const std::string& source, const std::string& target, bool overwrite) override;
    bool MoveFile(const std::string& source, const std::string& target, bool overwrite) override;
    std::string ToFileToken(const std::string& text) override;

  private:
    bool IsHeld(const std::string& path) const { return trouble_ != nullptr && trouble_->Holds(path); }

    std::string temporaryFolder_;
    ComputerTrouble* trouble_;
};

} // namespace qndr::suite
