#pragma once

#include <string_view>

/// Patterns with "*" and "?" as the shell sees them: ASCII letters without case, "?" is one character (not one
/// byte) of UTF-8, and "*.*" is everything, with or without a dot.
namespace qndr::text {

bool MatchesWildcard(std::string_view name, std::string_view pattern);

/// Whether the name fits one of several patterns, separated by ";"; blanks in front of a pattern do not count.
bool MatchesAnyWildcard(std::string_view name, std::string_view patterns);

} // namespace qndr::text
