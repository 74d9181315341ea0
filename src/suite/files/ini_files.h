#pragma once

#include "services/ini_tools.h"
#include "suite/files/unwritten_files.h"

namespace qndr::suite {

/// INI files in UTF-8, with or without a byte-order mark and with any line ends. A file over 1 MiB, or with a NUL
/// in it, is no INI file: its values are the defaults, and SetValue raises and leaves it as it is.
class DiskIniTools : public services::IniTools {
  public:
    /// Notes the files that a SetValue failed for, where somebody wants to know.
    explicit DiskIniTools(UnwrittenFiles* unwritten = nullptr) : unwritten_(unwritten) {}

    std::string GetValue(const std::string& section, const std::string& key, const std::string& fallback,
                         const std::string& file) override;
    /// Keeps comments and the order of the keys, and puts the new file in the place of the old one in one step.
    /// Raises also for a value with a line break, which would read as another key.
    void SetValue(const std::string& section, const std::string& key, const std::string& value,
                  const std::string& file) override;

  private:
    UnwrittenFiles* unwritten_;
};

} // namespace qndr::suite
