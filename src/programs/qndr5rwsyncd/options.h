#pragma once

#include <optional>
#include <string>
#include <vector>

namespace qndr {

/// What the headless agent's command line asks for beside the switches that the start-up reads.
struct Options {
    bool help = false;
    bool version = false;
    std::optional<int> passes; ///< ends behind so many passes; runs until it is asked to stop when not set
    std::string commandLine;   ///< the words behind the program, for the start-up
};

/// The names that are switches for this program.
std::vector<std::string> SwitchNames();

/// Reads the words behind the program. Raises services::Failure, with one line for the user, for a word that means
/// nothing and for a value that cannot be used.
Options ReadOptions(const std::vector<std::string>& words);

/// What --help shows.
std::string HelpText();

} // namespace qndr
