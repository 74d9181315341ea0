#include "suite/files/wildcards.h"

#include "suite/files/ascii_case.h"

namespace qndr::suite {

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
        } else if (p < pattern.size() && (pattern[p] == '?' || ToLowerCase(pattern[p]) == ToLowerCase(name[n]))) {
            ++p;
            ++n;
        } else if (star != std::string_view::npos) {
            p = star + 1;
            n = ++taken;
        } else {
            return false;
        }
    }
    while (p < pattern.size() && pattern[p] == '*') {
        ++p;
    }
    return p == pattern.size();
}

} // namespace qndr::suite
