#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace qndr::control {

/// "; did you mean 'Sync'?" for the known name that is nearest to the word, without regard to letter case; all
/// known names in one line when none is near.
std::string DidYouMean(std::string_view word, const std::vector<std::string_view>& known);

} // namespace qndr::control
