#pragma once

#include "services/command_line_tools.h"

#include <optional>
#include <string>
#include <vector>

namespace qndr::suite {

/// Reads "/Name value", "/Name:value", "/Name=value", and the same with "-" or "--" in the place of "/". Only the
/// names that the program knows are switches, so that the value of one may begin with "/".
class SwitchReader : public services::CommandLineTools {
  public:
    /// The known names, without "/", in any letter case.
    explicit SwitchReader(std::vector<std::string> names);

    /// Inside double quotes a doubled one stands for one of the text.
    void SetCommandLine(const std::string& commandLine) override;
    bool SwitchExists(const std::string& name) override;
    /// The first of several switches of one name counts.
    std::string GetSwitchValue(const std::string& name, const std::string& fallback) override;

  private:
    struct Switch {
        std::string name; ///< in lower case
        std::string value;
    };
    std::optional<Switch> ReadSwitch(const std::string& word) const;
    const Switch* Find(const std::string& name) const;

    std::vector<std::string> names_;
    std::vector<Switch> switches_;
};

/// The words of a command line: separated by blanks and tabs, quotes taken off.
std::vector<std::string> SplitCommandLine(const std::string& commandLine);

/// The command line that splits again into these words.
std::string JoinCommandLine(const std::vector<std::string>& words);

/// The command line behind the program, from what `main` is given.
std::string JoinCommandLine(int count, const char* const* arguments);

} // namespace qndr::suite
