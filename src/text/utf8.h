#pragma once

#include <cstddef>
#include <string_view>

namespace qndr::text {

/// The number of bytes of the UTF-8 character at the start of `text`; 0 when none stands there.
std::size_t CharacterLength(std::string_view text);

bool IsUtf8(std::string_view text);

/// The number of characters (code points), not of bytes.
std::size_t CountCharacters(std::string_view text);

} // namespace qndr::text
