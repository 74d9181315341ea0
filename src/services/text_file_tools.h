#pragma once

#include <cstdint>
#include <string>

namespace qndr::services {

/// Writes text files.
class TextFileTools {
  public:
    virtual ~TextFileTools() = default;

    /// 1 on success. "utf-8" is the one charset that every implementation knows; no byte-order mark is written. A
    /// flag of 0 replaces an existing file.
    virtual std::int32_t WriteTextFile(const std::string& path, const std::string& text,
                                       const std::string& charset, std::int32_t flag) = 0;
};

} // namespace qndr::services
