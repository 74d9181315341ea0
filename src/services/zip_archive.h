#pragma once

#include <cstdint>
#include <memory>
#include <string>

namespace qndr::services {

/// One entry of an open archive; must not outlive the archive.
class ZipEntry {
  public:
    virtual ~ZipEntry() = default;

    /// 1 on success. Writes the entry into the folder as a file of the name that it was asked for by, whatever
    /// path the archive gives it, and nothing else. On failure the archive's LastErrorText tells why, and no file
    /// is left.
    virtual std::int32_t Extract(const std::string& folder) = 0;
};

/// One ZIP archive, written or read; an object serves one archive. Results other than success leave a text in
/// LastErrorText.
class ZipArchive {
  public:
    virtual ~ZipArchive() = default;
    virtual std::string LastErrorText() const = 0;

    /// 1 on success. Replaces the file when the archive is written.
    virtual std::int32_t NewZip(const std::string& path) = 0;

    /// 1 on success. The pattern is a folder with a file wildcard at its end; "*.*" is everything. A folder
    /// without files adds nothing and succeeds.
    virtual std::int32_t AppendFiles(const std::string& pattern, std::int32_t recurse) = 0;

    /// 1 on success.
    virtual std::int32_t WriteZipAndClose() = 0;

    /// Not 0 on success. 0 says that the file was read and is no archive, which it will not be the next time
    /// either: who asked may be done with it. A file that cannot be read now opens well, whatever it is: any entry
    /// is there for all that is known, and its Extract fails, so that the file stays to be tried again.
    virtual std::int32_t OpenZip(const std::string& path) = 0;

    /// Nothing when the archive was read and has no such entry at its top. An archive whose "id.dat" was asked for
    /// and could not be extracted, other than for damage, extracts nothing else until it could: by an empty
    /// descriptor a file would be taken for one that it is not.
    virtual std::unique_ptr<ZipEntry> GetEntryByName(const std::string& name) = 0;
    virtual void CloseZip() = 0;
};

} // namespace qndr::services
