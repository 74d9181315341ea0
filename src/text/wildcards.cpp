#include "text/wildcards.h"

#include "text/letter_case.h"

#include <algorithm>

namespace qndr::text {
namespace {

/// Where the character behind the one at `at` begins. A byte that is no UTF-8 counts as a character of its own.
std::size_t NextCharacter(std::string_view text, std::size_t at) {
    const auto isContinuation = [](char byte) { return (static_cast<unsigned char>(byte) & 0xC0U) == 0x80U; };
    const bool isLead = static_cast<unsigned char>(text[at]) >= 0xC0U;
    ++at;
    while (isLead && at < text.size() && isContinuation(text[at])) {
        ++at;
    }
    return at;
}

} // namespace

bool MatchesWildcard(std::string_view name, std::string_view pattern) {
    if (pattern == "*.*") {
        return true;
    }
    std::size_t n = 0;
    std::size_t p = 0;
    // Where to go on when the present reading of the last "*" fails: the "*" then takes one character more.
    std::size_t star = std::string_view::npos;
    std::size_t taken = 0;
    while (n < name.size()) {
        if (p < pattern.size() && pattern[p] == '*') {
            star = p++;
            taken = n;
        } else if (p < pattern.size() && pattern[p] == '?') {
            ++p;
            n = NextCharacter(name, n);
        } else if (p < pattern.size() && text::ToLowerCase(pattern[p]) == text::ToLowerCase(name[n])) {
            ++p;
            ++n;
        } else if (star != std::string_view::npos) {
            p = star + 1;
            taken = NextCharacter(name, taken);
            n = taken;
        } else {
            return false;
        }
    }
    while (p < pattern.size() && pattern[p] == '*') {
        ++p;
    }
    return p == pattern.size();
}

bool MatchesAnyWildcard(std::string_view name, std::string_view patterns) {
    while (true) {
        const auto end = patterns.find(';');
        std::string_view pattern = patterns.substr(0, end);
        pattern.remove_prefix(std::min(pattern.find_first_not_of(' '), pattern.size()));
        if (MatchesWildcard(name, pattern)) {
            return true;
        }
        if (end == std::string_view::npos) {
            return false;
        }
        patterns.remove_prefix(end + 1);
    }
}

} // namespace qndr::text
