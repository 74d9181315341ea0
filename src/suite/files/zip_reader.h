#pragma once

#include "suite/files/file_reads.h"

#include <zip.h>

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <system_error>

namespace qndr::suite {

/// Reads an archive by way of libzip, which is given the bytes by the suite's own calls, so that a file that is no
/// archive is told from one that cannot be read. Nothing in the archive is trusted; memory and time are bounded
/// whatever its numbers claim.
class ZipReader {
  public:
    enum class Result {
        Done,
        Damaged, ///< what was read is not what is taken here, and will not be the next time either
        Trouble, ///< this computer could not read now
        NotTaken ///< the sink refused
    };
    /// Takes a piece of an entry; an error ends the reading.
    using Sink = std::function<std::error_code(std::string_view piece)>;

    explicit ZipReader(FileReads& reads) : reads_(reads) {}
    ~ZipReader() { Close(); }
    ZipReader(const ZipReader&) = delete;
    ZipReader& operator=(const ZipReader&) = delete;

    /// Reads the directory.
    Result Open(const std::string& path);
    void Close();
    bool IsOpen() const { return archive_ != nullptr; }
    /// Of the file that is open.
    const FileFacts& Facts() const { return facts_; }

    /// Whether there is an entry of exactly this name.
    bool Has(const std::string& name) const { return Find(name) >= 0; }
    /// The size that an entry claims; 0 without one.
    std::uint64_t SizeOf(const std::string& name) const;
    /// Gives all of the entry to the sink. Damaged also where there is none, and where it is larger than `largest`
    /// bytes or than it claims; some of it may have been given by then.
    Result Read(const std::string& name, std::uint64_t largest, const Sink& sink);

    /// What was wrong, in words that go on from "…: ", and what the system said behind a Trouble.
    const std::string& Words() const { return words_; }
    std::error_code Error() const { return error_; }

  private:
    static zip_int64_t Serve(void* reader, void* data, zip_uint64_t length, zip_source_cmd_t command);
    zip_int64_t ServeBytes(void* data, zip_uint64_t length);
    Result OpenArchive();
    Result CheckClaims();
    Result ReadBytes(std::uint64_t offset, std::string& bytes, std::size_t length);
    zip_int64_t Find(const std::string& name) const { return zip_name_locate(archive_, name.c_str(), 0); }
    Result CheckEntry(zip_int64_t index, std::uint64_t largest, std::uint64_t& size);
    Result Fail(Result result, std::string words);
    Result FailAs(zip_error_t* error);

    FileReads& reads_;
    OpenFile file_;
    FileFacts facts_;
    zip_t* archive_ = nullptr;
    zip_error_t sourceError_{};
    std::uint64_t position_ = 0;
    std::uint64_t budget_ = 0; ///< bytes that may still be read
    bool budgetSpent_ = false;
    std::string words_;
    std::error_code error_;
};

} // namespace qndr::suite
