#include "text/editing.h"

#include <cstddef>

namespace qndr::text {

std::string Trimmed(std::string_view text, std::string_view characters) {
    const std::size_t first = text.find_first_not_of(characters);
    if (first == std::string_view::npos) {
        return {};
    }
    return std::string(text.substr(first, text.find_last_not_of(characters) - first + 1));
}

std::string ReplaceAll(std::string_view text, std::string_view what, std::string_view replacement) {
    if (what.empty()) {
        return std::string(text);
    }
    std::string result;
    std::size_t from = 0;
    for (auto at = text.find(what); at != std::string_view::npos; at = text.find(what, from)) {
        result.append(text.substr(from, at - from)).append(replacement);
        from = at + what.size();
    }
    return result.append(text.substr(from));
}

std::string Digits(int value, int width) {
    std::string text = std::to_string(value);
    const auto wanted = static_cast<std::size_t>(width);
    return text.size() < wanted ? std::string(wanted - text.size(), '0') + text : text;
}

} // namespace qndr::text
