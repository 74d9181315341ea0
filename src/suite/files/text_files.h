#pragma once

#include "services/platform.h"
#include "services/text_file_tools.h"

namespace qndr::suite {

/// Writes text files whole. "utf-8" is the only charset, 0 the only flag; anything else is no success.
class DiskTextFileTools : public services::TextFileTools {
  public:
    /// A failure leaves what was there before.
    std::int32_t WriteTextFile(const std::string& path, const std::string& text, const std::string& charset,
                               std::int32_t flag) override;
};

/// Appends each text with one write, so that the lines of two agents do not mix.
class DiskTextAppender : public services::TextAppender {
  public:
    void Append(const std::string& path, const std::string& text) override;
};

} // namespace qndr::suite
