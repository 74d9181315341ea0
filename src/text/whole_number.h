#pragma once

#include <charconv>
#include <cstdint>
#include <optional>
#include <string_view>

namespace qndr::text {

/// A decimal 32-bit number; nothing for any other text, also with blanks around it.
inline std::optional<std::int32_t> ParseWholeNumber(std::string_view text) {
    std::int32_t number = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    if (error != std::errc{} || end != text.data() + text.size()) {
        return std::nullopt;
    }
    return number;
}

} // namespace qndr::text
