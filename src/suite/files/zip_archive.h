#pragma once

#include "services/zip_archive.h"
#include "suite/computer/computer_trouble.h"
#include "suite/files/archive_shelf.h"
#include "suite/files/zip_reader.h"

#include <zip.h>

#include <functional>
#include <memory>
#include <optional>
#include <string>

namespace qndr::suite {

/// ZIP archives by way of libzip. Memory does not grow with the archive's files, nor with what an archive claims.
/// What comes in is not trusted: a stored size that does not match, a wrong checksum, a ratio over 1,000 to 1
/// beyond 64 MiB, a directory over 1 MiB, a packing other than stored and deflated and an "id.dat" over 16 KiB are
/// failures.
class LibZipArchive final : public services::ZipArchive {
  public:
    /// An archive by itself: it waits for nothing.
    LibZipArchive();
    /// The trouble, if there is one, is told which archive is read. Both outlive the archive.
    explicit LibZipArchive(ArchiveShelf& shelf, ComputerTrouble* trouble = nullptr)
        : shelf_(&shelf), trouble_(trouble), reader_(shelf.Reads()) {}
    /// Throws away what was not written.
    ~LibZipArchive() override;
    LibZipArchive(const LibZipArchive&) = delete;
    LibZipArchive& operator=(const LibZipArchive&) = delete;

    std::string LastErrorText() const override { return lastErrorText_; }
    std::int32_t NewZip(const std::string& path) override;
    /// Wildcards "*" and "?" without regard to letter case. Files of subfolders get the names "sub/file"; links
    /// are passed over. Fails for a folder with a file that could not be written as it should be.
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

    using Result = ZipReader::Result;
    Result OpenReader();
    Result Persist(const std::function<Result()>& step);
    bool MayHave(const std::string& name);
    bool Extract(const std::string& name, const std::string& folder);
    std::string ExtractDescriptor(const std::string& folder);
    std::string ExtractLarge(const std::string& name, const std::string& folder);
    void Learn(ArchiveShelf::Known known);

    std::unique_ptr<FileReads> ownReads_;
    std::unique_ptr<ArchiveShelf> ownShelf_;
    ArchiveShelf* shelf_;
    ComputerTrouble* trouble_ = nullptr;
    std::string path_;
    std::string lastErrorText_;

    zip_t* written_ = nullptr;

    bool reading_ = false;
    ZipReader reader_;
    std::optional<ArchiveShelf::Known> known_;
};

} // namespace qndr::suite
