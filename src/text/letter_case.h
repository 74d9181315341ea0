#pragma once

#include <algorithm>
#include <string>
#include <string_view>

/// Letter case of ASCII letters; all other characters stand for themselves, whatever the locale and as in SQLite's
/// NOCASE.
namespace qndr::text {

inline char ToLowerCase(char c) {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

inline std::string ToLowerCase(std::string_view text) {
    std::string lower(text);
    for (char& c : lower) {
        c = ToLowerCase(c);
    }
    return lower;
}

inline bool EqualsWithoutCase(std::string_view a, std::string_view b) {
    return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                      [](char x, char y) { return ToLowerCase(x) == ToLowerCase(y); });
}

} // namespace qndr::text
