#pragma once

#include "services/zip_archive.h"
#include "suite/computer/computer_trouble.h"

#include <zip.h>

#include <memory>
#include <string>

namespace qndr::suite {

/// ZIP archives by way of libzip. Memory does not grow with the archive's files. What comes in is not trusted: a
/// stored size that does not match, a wrong checksum and a ratio over 1,000 to 1 beyond 64 MiB are failures.
class LibZipArchive final : public services::ZipArchive {
  public:
    /// The trouble, if there is one, is told which archive is read. It must outlive the object.
    explicit LibZipArchive(ComputerTrouble* trouble = nullptr) : trouble_(trouble) {}
    /// Throws away what was not written.
    ~LibZipArchive() override;
    LibZipArchive(const LibZipArchive&) = delete;
    LibZipArchive& operator=(const LibZipArchive&) = delete;

    std::string LastErrorText() const override { return lastErrorText_; }
    std::int32_t NewZip(const std::string& path) override;
    /// Wildcards "*" and "?" without regard to letter case. Files of subfolders get the names "sub/file"; links
    /// are passed over.
    std::int32_t AppendFiles(const std::string& pattern, std::int32_t recurse) override;
    /// The archive takes its place in one step; a failure leaves at the path what was there before.
    std::int32_t WriteZipAndClose() override;
    std::int32_t OpenZip(const std::string& path) override;
    std::unique_ptr<services::ZipEntry> GetEntryByName(const std::string& name) override;
    void CloseZip() override;

  private:
    class Entry;

    bool Fail(const std::string& text);
    bool AppendFolder(const std::string& folder, const std::string& wildcard, bool recurse,
                      const std::string& namesStart);
    bool AppendFile(const std::string& path, const std::string& name);
    bool ExtractTo(const std::string& name, zip_uint64_t index, const std::string& folder);

    ComputerTrouble* trouble_;
    zip_t* archive_ = nullptr;
    bool writing_ = false;
    std::string path_;
    zip_uint64_t archiveSize_ = 0;
    std::string lastErrorText_;
};

} // namespace qndr::suite
