#include "programs/agent_program/options.h"

#include "services/failure.h"
#include "services/variant.h"
#include "suite/files/command_line.h"
#include "text/letter_case.h"

#include <algorithm>
#include <cmath>

namespace qndr {
namespace {

std::vector<Switch> AllSwitches(const std::vector<Switch>& own) {
    std::vector<Switch> all{{"AllowMany", false}, {"Profile", true}, {"Companies", true},
                            {"DVLP", false},      {"help", false},   {"version", false}};
    all.insert(all.end(), own.begin(), own.end());
    return all;
}

constexpr double kMostPasses = 1'000'000;

/// The switch that the word is; null for any other word.
const Switch* FindSwitch(const std::vector<Switch>& switches, const std::string& word) {
    const std::size_t start = word.starts_with("--") ? 2 : 1;
    const std::size_t end = std::min(word.find_first_of(":=", start), word.size());
    if (word.empty() || (word.front() != '/' && word.front() != '-') || end < start) {
        return nullptr;
    }
    const std::string name = text::ToLowerCase(word.substr(start, end - start));
    const auto found =
        std::ranges::find_if(switches, [&](const Switch& known) { return text::ToLowerCase(known.name) == name; });
    return found == switches.end() ? nullptr : &*found;
}

void RefuseUnknownWords(const std::vector<Switch>& switches, const std::vector<std::string>& words) {
    bool valueMayFollow = false;
    for (const std::string& word : words) {
        if (const Switch* found = FindSwitch(switches, word)) {
            const bool bringsValue = word.find_first_of(":=") != std::string::npos;
            if (bringsValue && !found->hasValue) {
                throw services::Failure("option '" + word + "' takes no value");
            }
            valueMayFollow = found->hasValue && !bringsValue;
        } else if (valueMayFollow && !word.starts_with('-')) {
            valueMayFollow = false;
        } else {
            throw services::Failure("unknown option '" + word + "'");
        }
    }
}

int ReadPasses(const std::string& text) {
    const auto number = ParseNumber(text);
    if (!number || *number < 1 || *number > kMostPasses || *number != std::floor(*number)) {
        throw services::Failure("--passes needs a whole number from 1 to 1000000");
    }
    return static_cast<int>(*number);
}

} // namespace

std::vector<std::string> SwitchNames(const std::vector<Switch>& own) {
    std::vector<std::string> names;
    for (const Switch& known : AllSwitches(own)) {
        names.emplace_back(known.name);
    }
    return names;
}

Options ReadOptions(const std::vector<Switch>& own, const std::vector<std::string>& words) {
    RefuseUnknownWords(AllSwitches(own), words);
    Options options;
    options.commandLine = suite::JoinCommandLine(words);
    suite::SwitchReader reader(SwitchNames(own));
    reader.SetCommandLine(options.commandLine);
    options.help = reader.SwitchExists("help");
    options.version = reader.SwitchExists("version");
    options.show = reader.SwitchExists("show");
    if (reader.SwitchExists("once")) {
        options.passes = 1;
    }
    if (reader.SwitchExists("passes")) {
        if (options.passes) {
            throw services::Failure("--once and --passes exclude each other");
        }
        options.passes = ReadPasses(reader.GetSwitchValue("passes", ""));
    }
    return options;
}

} // namespace qndr
