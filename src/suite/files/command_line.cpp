#include "suite/files/command_line.h"

#include "text/letter_case.h"

#include <algorithm>

namespace qndr::suite {

std::vector<std::string> SplitCommandLine(const std::string& commandLine) {
    std::vector<std::string> words;
    std::string word;
    bool inWord = false;
    bool quoted = false;
    for (std::size_t i = 0; i < commandLine.size(); ++i) {
        const char c = commandLine[i];
        if (c == '"') {
            const bool doubled = quoted && i + 1 < commandLine.size() && commandLine[i + 1] == '"';
            if (doubled) {
                word += '"';
                ++i;
            } else {
                quoted = !quoted;
            }
            inWord = true;
        } else if (!quoted && (c == ' ' || c == '\t')) {
            if (inWord) {
                words.push_back(word);
            }
            word.clear();
            inWord = false;
        } else {
            word += c;
            inWord = true;
        }
    }
    if (inWord) {
        words.push_back(word);
    }
    return words;
}

std::string JoinCommandLine(const std::vector<std::string>& words) {
    std::string line;
    for (const std::string& word : words) {
        if (!line.empty()) {
            line += ' ';
        }
        if (!word.empty() && word.find_first_of(" \t\"") == std::string::npos) {
            line += word;
            continue;
        }
        line += '"';
        for (const char c : word) {
            line.append(c == '"' ? 2 : 1, c);
        }
        line += '"';
    }
    return line;
}

std::string JoinCommandLine(int count, const char* const* arguments) {
    return count < 2 ? "" : JoinCommandLine(std::vector<std::string>(arguments + 1, arguments + count));
}

SwitchReader::SwitchReader(std::vector<std::string> names) : names_(std::move(names)) {
    for (std::string& name : names_) {
        name = text::ToLowerCase(name);
    }
}

std::optional<SwitchReader::Switch> SwitchReader::ReadSwitch(const std::string& word) const {
    std::size_t start = 0;
    if (word.starts_with("--")) {
        start = 2;
    } else if (word.starts_with('/') || word.starts_with('-')) {
        start = 1;
    } else {
        return std::nullopt;
    }
    const std::size_t end = std::min(word.find_first_of(":=", start), word.size());
    const std::string name = text::ToLowerCase(std::string_view(word).substr(start, end - start));
    if (std::find(names_.begin(), names_.end(), name) == names_.end()) {
        return std::nullopt;
    }
    return Switch{name, end < word.size() ? word.substr(end + 1) : ""};
}

void SwitchReader::SetCommandLine(const std::string& commandLine) {
    switches_.clear();
    // Takes a value in the next word: set behind a switch that has none of its own.
    bool open = false;
    for (const std::string& word : SplitCommandLine(commandLine)) {
        if (std::optional<Switch> found = ReadSwitch(word)) {
            open = found->value.empty() && word.find_first_of(":=") == std::string::npos;
            switches_.push_back(std::move(*found));
        } else if (open) {
            switches_.back().value = word;
            open = false;
        }
    }
}

const SwitchReader::Switch* SwitchReader::Find(const std::string& name) const {
    const std::string wanted = text::ToLowerCase(name);
    const auto found = std::find_if(switches_.begin(), switches_.end(),
                                    [&](const Switch& known) { return known.name == wanted; });
    return found == switches_.end() ? nullptr : &*found;
}

bool SwitchReader::SwitchExists(const std::string& name) {
    return Find(name) != nullptr;
}

std::string SwitchReader::GetSwitchValue(const std::string& name, const std::string& fallback) {
    const Switch* found = Find(name);
    return found == nullptr || found->value.empty() ? fallback : found->value;
}

} // namespace qndr::suite
