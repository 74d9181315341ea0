#pragma once

#include <cstddef>
#include <string>
#include <string_view>

/// Small operations on UTF-8 text.
namespace qndr {

/// The text without the blanks at both ends. Only blanks: a tab or a line break stays.
std::string Trim(std::string_view text);

/// Case mapping of the ASCII letters. All other bytes stay as they are: identities and names that the system
/// compares this way come from generators and settings in plain ASCII, and a mapping that depended on the locale
/// would make two computers disagree about the same text.
std::string ToLower(std::string_view text);
std::string ToUpper(std::string_view text);

/// Names that people give, in lower case: beside ASCII the letters of Latin, Greek and Cyrillic scripts, on every
/// computer alike. All other characters stay as they are.
std::string ToLowerName(std::string_view name);

/// The text with every occurrence of `what`, found from left to right, replaced. An empty `what` occurs nowhere.
std::string ReplaceAll(std::string_view text, std::string_view what, std::string_view replacement);

/// The number of characters (code points), not of bytes.
std::size_t CountCharacters(std::string_view text);

/// A number that is not negative in decimal, with zeros on the left up to `width` digits; a longer one is not cut.
std::string Digits(int value, int width);

} // namespace qndr
