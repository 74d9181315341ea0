#include "text/json.h"

#include "text/utf8.h"

#include <algorithm>

namespace qndr::text {

void AppendJsonText(std::string& out, std::string_view text) {
    constexpr std::string_view HexDigits = "0123456789abcdef";
    constexpr std::string_view ReplacementCharacter = "\xEF\xBF\xBD";
    out += '"';
    while (!text.empty()) {
        const std::size_t length = CharacterLength(text);
        const auto byte = static_cast<unsigned char>(text.front());
        if (length == 0) {
            out += ReplacementCharacter;
        } else if (byte == '"' || byte == '\\') {
            out += '\\';
            out += text.front();
        } else if (byte < 0x20) {
            out += "\\u00";
            out += HexDigits[byte >> 4];
            out += HexDigits[byte & 15U];
        } else {
            out += text.substr(0, length);
        }
        text.remove_prefix(length == 0 ? 1 : length);
    }
    out += '"';
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
        AppendJsonText(target, *text);
    } else if (const auto* moment = std::get_if<UtcMoment>(&value_)) {
        std::string zoned = moment->text + "Z";
        std::replace(zoned.begin(), zoned.end(), ' ', 'T');
        AppendJsonText(target, zoned);
    } else if (const auto* members = std::get_if<Members>(&value_)) {
        const char* separator = "{";
        for (const auto& [name, value] : *members) {
            target += separator;
            AppendJsonText(target, name);
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

} // namespace qndr::text
