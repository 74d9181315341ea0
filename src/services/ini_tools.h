#pragma once

#include <string>

namespace qndr::services {

/// Reads and writes INI files. Sections and keys have no letter case. Values are trimmed.
class IniTools {
  public:
    virtual ~IniTools() = default;

    /// The default when the file, the section or the key is missing or the file is no INI file.
    virtual std::string GetValue(const std::string& section, const std::string& key, const std::string& fallback,
                                 const std::string& file) = 0;

    /// Adds or replaces one value, keeping the order of the keys; makes the file when it is missing. Raises when
    /// the file cannot be written.
    virtual void SetValue(const std::string& section, const std::string& key, const std::string& value,
                          const std::string& file) = 0;
};

} // namespace qndr::services
