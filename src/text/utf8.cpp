#include "text/utf8.h"

#include <algorithm>

namespace qndr::text {

std::size_t CharacterLength(std::string_view text) {
    const auto at = [&](std::size_t index) -> unsigned { return static_cast<unsigned char>(text[index]); };
    if (text.empty()) {
        return 0;
    }
    const unsigned first = at(0);
    if (first < 0x80) {
        return 1;
    }
    const std::size_t length = first >= 0xC2 && first < 0xE0   ? 2
                               : first >= 0xE0 && first < 0xF0 ? 3
                               : first >= 0xF0 && first < 0xF5 ? 4
                                                               : 0;
    if (length == 0 || text.size() < length) {
        return 0;
    }
    for (std::size_t index = 1; index < length; ++index) {
        if ((at(index) & 0xC0U) != 0x80) {
            return 0;
        }
    }
    const unsigned second = at(1);
    const bool overlong = (first == 0xE0 && second < 0xA0) || (first == 0xF0 && second < 0x90);
    const bool surrogate = first == 0xED && second >= 0xA0;
    const bool beyond = first == 0xF4 && second >= 0x90;
    return overlong || surrogate || beyond ? 0 : length;
}

bool IsUtf8(std::string_view text) {
    while (!text.empty()) {
        const std::size_t length = CharacterLength(text);
        if (length == 0) {
            return false;
        }
        text.remove_prefix(length);
    }
    return true;
}

std::size_t CountCharacters(std::string_view text) {
    const auto isContinuation = [](char byte) { return (static_cast<unsigned char>(byte) & 0xC0U) == 0x80U; };
    return text.size() - static_cast<std::size_t>(std::count_if(text.begin(), text.end(), isContinuation));
}

} // namespace qndr::text
