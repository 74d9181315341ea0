#pragma once

#include <algorithm>
#include <string>
#include <string_view>

namespace qndr::text {

/// Letter case of ASCII letters; all other characters stand for themselves, whatever the locale and as in the
/// NOCASE of the databases. Identities and names that the system compares this way come from generators and
/// settings in plain ASCII, and a mapping that depended on the locale would make two computers disagree about the
/// same text.
inline char ToLowerCase(char c) {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

std::string ToLowerCase(std::string_view text);
std::string ToUpperCase(std::string_view text);

inline bool EqualsWithoutCase(std::string_view a, std::string_view b) {
    return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                      [](char x, char y) { return ToLowerCase(x) == ToLowerCase(y); });
}

/// Names that people give, in lower case: beside ASCII the letters of Latin, Greek and Cyrillic scripts, on every
/// computer alike. All other characters stay as they are.
std::string ToLowerCaseName(std::string_view name);

} // namespace qndr::text
