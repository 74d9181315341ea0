#pragma once

#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace qndr::suite {

/// An archive with these entries, name and content, made in memory. Raises services::Failure when there is not
/// enough of it.
std::string PackTexts(const std::vector<std::pair<std::string, std::string_view>>& entries);

} // namespace qndr::suite
