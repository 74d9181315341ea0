#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace qndr::text {

/// The text as one word of a POSIX shell, whatever is in it.
inline std::string ShellQuoted(std::string_view text) {
    std::string quoted = "'";
    for (const char c : text) {
        if (c == '\'') {
            quoted += "'\\''";
        } else {
            quoted += c;
        }
    }
    return quoted + "'";
}

/// The text with "{0}" to "{9}" replaced by the words, in one pass: a "{1}" within a word stays as it is, for it
/// would open the quotes around it. A place without a word stays.
inline std::string FillPlaces(std::string_view text, const std::vector<std::string>& words) {
    std::string filled;
    while (!text.empty()) {
        const bool isPlace =
            text.size() >= 3 && text[0] == '{' && text[1] >= '0' && text[1] <= '9' && text[2] == '}';
        const std::size_t number = isPlace ? static_cast<std::size_t>(text[1] - '0') : words.size();
        filled += number < words.size() ? std::string_view(words[number]) : text.substr(0, 1);
        text.remove_prefix(number < words.size() ? 3 : 1);
    }
    return filled;
}

} // namespace qndr::text
