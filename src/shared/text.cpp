#include "shared/text.h"

#include <algorithm>

namespace qndr {

std::string Trim(std::string_view text) {
    const auto first = text.find_first_not_of(' ');
    if (first == std::string_view::npos) {
        return "";
    }
    return std::string(text.substr(first, text.find_last_not_of(' ') - first + 1));
}

std::string ToLower(std::string_view text) {
    std::string result(text);
    std::transform(result.begin(), result.end(), result.begin(), [](char character) {
        return character >= 'A' && character <= 'Z' ? static_cast<char>(character - 'A' + 'a') : character;
    });
    return result;
}

std::string ToUpper(std::string_view text) {
    std::string result(text);
    std::transform(result.begin(), result.end(), result.begin(), [](char character) {
        return character >= 'a' && character <= 'z' ? static_cast<char>(character - 'a' + 'A') : character;
    });
    return result;
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

std::size_t CountCharacters(std::string_view text) {
    const auto isContinuation = [](char byte) { return (static_cast<unsigned char>(byte) & 0xC0U) == 0x80U; };
    return text.size() - static_cast<std::size_t>(std::count_if(text.begin(), text.end(), isContinuation));
}

std::string Digits(int value, int width) {
    std::string text = std::to_string(value);
    const auto wanted = static_cast<std::size_t>(width);
    return text.size() < wanted ? std::string(wanted - text.size(), '0') + text : text;
}

} // namespace qndr
