#include "text/base64.h"

#include <array>
#include <cstdint>

namespace qndr::text {

namespace {

constexpr std::string_view Digits = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
constexpr std::uint8_t NoDigit = 0xFF;

constexpr std::array<std::uint8_t, 256> DigitValues = [] {
    std::array<std::uint8_t, 256> values{};
    values.fill(NoDigit);
    for (std::size_t i = 0; i < Digits.size(); ++i) {
        values[static_cast<unsigned char>(Digits[i])] = static_cast<std::uint8_t>(i);
    }
    return values;
}();

} // namespace

void AppendBase64(std::string& out, std::string_view bytes) {
    const auto byte = [&](std::size_t i) -> std::uint32_t {
        return i < bytes.size() ? static_cast<unsigned char>(bytes[i]) : 0U;
    };
    for (std::size_t i = 0; i < bytes.size(); i += 3) {
        const std::uint32_t group = byte(i) << 16 | byte(i + 1) << 8 | byte(i + 2);
        const std::size_t left = bytes.size() - i;
        const char quad[4] = {Digits[group >> 18], Digits[group >> 12 & 63U],
                              left > 1 ? Digits[group >> 6 & 63U] : '=', left > 2 ? Digits[group & 63U] : '='};
        out.append(quad, sizeof quad);
    }
}

bool DecodeBase64(std::string& text, std::size_t from) {
    std::size_t end = from;
    std::uint32_t group = 0;
    int digits = 0;
    int padding = 0;
    for (std::size_t i = from; i < text.size(); ++i) {
        const char c = text[i];
        if (c == ' ' || c == '\n' || c == '\r' || c == '\t') {
            continue;
        }
        if (c == '=') {
            ++padding;
            continue;
        }
        const std::uint8_t value = DigitValues[static_cast<unsigned char>(c)];
        if (value == NoDigit || padding > 0) {
            return false;
        }
        group = group << 6 | value;
        if (++digits == 4) {
            text[end++] = static_cast<char>(group >> 16);
            text[end++] = static_cast<char>(group >> 8);
            text[end++] = static_cast<char>(group);
            group = 0;
            digits = 0;
        }
    }
    if (digits == 1 || (digits > 0 && digits + padding != 4) || (digits == 0 && padding > 0)) {
        return false;
    }
    if (digits > 1) {
        text[end++] = static_cast<char>(group >> (digits == 2 ? 4 : 10));
    }
    if (digits == 3) {
        text[end++] = static_cast<char>(group >> 2);
    }
    text.resize(end);
    return true;
}

} // namespace qndr::text
