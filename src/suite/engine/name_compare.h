#pragma once

#include <algorithm>
#include <string_view>

namespace qndr::suite {

inline char LowerAscii(char c) {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

/// Compares names of tables and columns and UniqueIDs: ASCII letters without case, as the database does.
inline bool SameName(std::string_view a, std::string_view b) {
    return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                      [](char x, char y) { return LowerAscii(x) == LowerAscii(y); });
}

} // namespace qndr::suite
