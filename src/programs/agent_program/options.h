#pragma once

#include <optional>
#include <string>
#include <vector>

namespace qndr {

/// A word of the command line that is no value.
struct Switch {
    const char* name;
    bool hasValue;
};

/// What an agent's command line asks for beside the switches that the start-up reads.
struct Options {
    bool help = false;
    bool version = false;
    bool show = false;         ///< shows the window at once
    std::optional<int> passes; ///< ends behind so many passes; runs until it is asked to stop when not set
    std::string commandLine;   ///< the words behind the program, for the start-up
};

/// The names of all switches of a program that knows those of every agent and these `own` ones.
std::vector<std::string> SwitchNames(const std::vector<Switch>& own);

/// Reads the words behind the program. Raises services::Failure, with one line for the user, for a word that means
/// nothing and for a value that cannot be used.
Options ReadOptions(const std::vector<Switch>& own, const std::vector<std::string>& words);

} // namespace qndr
