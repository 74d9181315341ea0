#pragma once

#include <string>
#include <string_view>

namespace qndr::text {

/// The text without those characters at both ends; a tab or a line break stays unless it is named.
std::string Trimmed(std::string_view text, std::string_view characters = " ");

/// The text with every occurrence of `what`, found from left to right, replaced. An empty `what` occurs nowhere.
std::string ReplaceAll(std::string_view text, std::string_view what, std::string_view replacement);

/// A number that is not negative in decimal, with zeros on the left up to `width` digits; a longer one is not cut.
std::string Digits(int value, int width);

} // namespace qndr::text
