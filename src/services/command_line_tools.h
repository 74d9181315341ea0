#pragma once

#include <string>

namespace qndr::services {

/// Reads the command line. A switch is "/Name", "-Name" or "--name" in any letter case, with its value behind a
/// blank, ":" or "=".
class CommandLineTools {
  public:
    virtual ~CommandLineTools() = default;

    /// The words behind the program, separated by blanks; a word with blanks stands in double quotes.
    virtual void SetCommandLine(const std::string& commandLine) = 0;
    virtual bool SwitchExists(const std::string& name) = 0;

    /// The default when the switch or its value is missing.
    virtual std::string GetSwitchValue(const std::string& name, const std::string& fallback) = 0;
};

} // namespace qndr::services
