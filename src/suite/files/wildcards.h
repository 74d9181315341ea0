#pragma once

#include <string_view>

namespace qndr::suite {

/// Whether a file name fits a pattern with "*" and "?" as the shell sees it: without letter case, and "*.*" is
/// everything, with or without a dot.
bool MatchesWildcard(std::string_view name, std::string_view pattern);

} // namespace qndr::suite
