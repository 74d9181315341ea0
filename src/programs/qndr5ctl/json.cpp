#include "programs/qndr5ctl/json.h"

#include <algorithm>
#include <array>
#include <cstdio>

namespace qndr::control {

namespace {

constexpr std::string_view ReplacementCharacter = "\xEF\xBF\xBD";

void WriteString(std::string_view text, std::string& target) {
    target += '"';
    while (!text.empty()) {
        const std::size_t length = Utf8CharacterLength(text);
        const auto byte = static_cast<unsigned char>(text.front());
        if (length == 0) {
            target += ReplacementCharacter;
        } else if (byte == '"' || byte == '\\') {
            target += '\\';
            target += text.front();
        } else if (byte < 0x20 || byte == 0x7F) {
            std::array<char, 8> escape{};
            std::snprintf(escape.data(), escape.size(), "\\u%04x", static_cast<unsigned>(byte));
            target += escape.data();
        } else {
            target += text.substr(0, length);
        }
        text.remove_prefix(length == 0 ? 1 : length);
    }
    target += '"';
}

} // namespace

std::size_t Utf8CharacterLength(std::string_view text) {
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

Json Json::Object() {
    Json json;
    json.value_ = Members{};
    return json;
}

Json Json::Array() {
    Json json;
    json.value_ = Elements{};
    return json;
}

Json& Json::Set(std::string name, Json value) {
    std::get<Members>(value_).emplace_back(std::move(name), std::move(value));
    return *this;
}

Json& Json::Append(Json value) {
    std::get<Elements>(value_).push_back(std::move(value));
    return *this;
}

std::string Json::ToText() const {
    std::string text;
    WriteTo(text);
    return text;
}

std::string Json::ToPlainText() const {
    if (const auto* text = std::get_if<std::string>(&value_)) {
        return *text;
    }
    if (const auto* moment = std::get_if<UtcMoment>(&value_)) {
        return moment->text;
    }
    if (const auto* decimal = std::get_if<DecimalNumber>(&value_)) {
        return decimal->text;
    }
    if (const auto* number = std::get_if<std::int64_t>(&value_)) {
        return std::to_string(*number);
    }
    if (const auto* truth = std::get_if<bool>(&value_)) {
        return *truth ? "yes" : "no";
    }
    return "-";
}

void Json::WriteTo(std::string& target) const {
    if (const auto* text = std::get_if<std::string>(&value_)) {
        WriteString(*text, target);
    } else if (const auto* moment = std::get_if<UtcMoment>(&value_)) {
        std::string zoned = moment->text + "Z";
        std::replace(zoned.begin(), zoned.end(), ' ', 'T');
        WriteString(zoned, target);
    } else if (const auto* members = std::get_if<Members>(&value_)) {
        const char* separator = "{";
        for (const auto& [name, value] : *members) {
            target += separator;
            WriteString(name, target);
            target += ": ";
            value.WriteTo(target);
            separator = ", ";
        }
        target += members->empty() ? "{}" : "}";
    } else if (const auto* elements = std::get_if<Elements>(&value_)) {
        const char* separator = "[";
        for (const Json& element : *elements) {
            target += separator;
            element.WriteTo(target);
            separator = ", ";
        }
        target += elements->empty() ? "[]" : "]";
    } else if (const auto* truth = std::get_if<bool>(&value_)) {
        target += *truth ? "true" : "false";
    } else {
        target += IsNull() ? "null" : ToPlainText();
    }
}

} // namespace qndr::control
