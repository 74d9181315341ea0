#include "programs/qndr5rwsyncd/options.h"

#include "services/failure.h"
#include "services/variant.h"
#include "shared/text.h"
#include "suite/files/command_line.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace qndr {
namespace {

struct Switch {
    const char* name;
    bool hasValue;
};

constexpr std::array kSwitches = {
    Switch{"AllowMany", false}, Switch{"Profile", true}, Switch{"Companies", true}, Switch{"DVLP", false},
    Switch{"once", false},      Switch{"passes", true},  Switch{"help", false},     Switch{"version", false},
};

constexpr double kMostPasses = 1'000'000;

/// The switch that the word is; null for any other word.
const Switch* FindSwitch(const std::string& word) {
    const std::size_t start = word.starts_with("--") ? 2 : 1;
    const std::size_t end = std::min(word.find_first_of(":=", start), word.size());
    if (word.empty() || (word.front() != '/' && word.front() != '-') || end < start) {
        return nullptr;
    }
    const std::string name = ToLower(word.substr(start, end - start));
    const auto found =
        std::ranges::find_if(kSwitches, [&](const Switch& known) { return ToLower(known.name) == name; });
    return found == kSwitches.end() ? nullptr : &*found;
}

void RefuseUnknownWords(const std::vector<std::string>& words) {
    bool valueMayFollow = false;
    for (const std::string& word : words) {
        if (const Switch* found = FindSwitch(word)) {
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

std::vector<std::string> SwitchNames() {
    std::vector<std::string> names;
    names.reserve(kSwitches.size());
    for (const Switch& known : kSwitches) {
        names.emplace_back(known.name);
    }
    return names;
}

Options ReadOptions(const std::vector<std::string>& words) {
    RefuseUnknownWords(words);
    Options options;
    options.commandLine = suite::JoinCommandLine(words);
    suite::SwitchReader reader(SwitchNames());
    reader.SetCommandLine(options.commandLine);
    options.help = reader.SwitchExists("help");
    options.version = reader.SwitchExists("version");
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

std::string HelpText() {
    return "Usage: qndr5rwsyncd [options]\n"
           "Keeps the companies of the Companies folder in step with those on other computers.\n"
           "Runs until it is asked to stop: by qndr5ctl stop, by SIGTERM or by SIGINT.\n"
           "\n"
           "  --Companies FOLDER  folder of the .psd files; otherwise the suite's own location is taken\n"
           "  --Profile NAME      profile of the settings\n"
           "  --AllowMany         runs beside another copy\n"
           "  --DVLP              one pass over the two companies of the developer settings\n"
           "  --once              one pass at once, then ends\n"
           "  --passes N          N passes, one behind the other, then ends\n"
           "  --help              shows this text\n"
           "  --version           shows the version\n"
           "\n"
           "Options have no letter case and may begin with / or -, with their value behind a blank, : or =.\n"
           "QNDR_HOME=FOLDER makes one folder a whole computer, QNDR_COMPUTER_NAME gives it a name.\n";
}

} // namespace qndr
