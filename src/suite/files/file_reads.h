#pragma once

#include "suite/computer/file_calls.h"

#include <cstdint>
#include <span>
#include <string>
#include <system_error>

namespace qndr::suite {

/// How files of the Sync folder are read, with what the system says to it. These are the system's own calls; an
/// heir may stand for a share that fails.
class FileReads {
  public:
    virtual ~FileReads() = default;

    virtual std::error_code Facts(const std::string& path, FileFacts& facts) { return ReadFileFacts(path, facts); }
    virtual std::error_code Open(const std::string& path, OpenFile& file) { return file.OpenForReading(path); }
    virtual std::error_code ReadAt(OpenFile& file, std::uint64_t offset, std::span<char> buffer,
                                   std::size_t& count) {
        return file.ReadAt(offset, buffer, count);
    }
};

} // namespace qndr::suite
