#include "suite/exchange/xml_text.h"

#include "text/base64.h"
#include "text/utf8.h"

#include <array>
#include <charconv>
#include <cmath>

namespace qndr::suite {

namespace {

enum : std::uint8_t { Plain = 0, Reference = 1, Multibyte = 2, Forbidden = 4 };

constexpr std::array<std::uint8_t, 256> Classes = [] {
    std::array<std::uint8_t, 256> classes{};
    for (std::size_t i = 0; i < 0x20; ++i) {
        classes[i] = Forbidden;
    }
    classes['\t'] = classes['\n'] = Plain;
    classes['\r'] = classes['&'] = classes['<'] = classes['>'] = classes['"'] = Reference;
    for (std::size_t i = 0x80; i < 0x100; ++i) {
        classes[i] = Multibyte;
    }
    return classes;
}();

std::uint8_t ClassesOf(std::string_view text) {
    std::uint8_t found = Plain;
    for (const char c : text) {
        found |= Classes[static_cast<unsigned char>(c)];
    }
    return found;
}

std::string_view ReferenceFor(char c) {
    switch (c) {
    case '&':
        return "&amp;";
    case '<':
        return "&lt;";
    case '>':
        return "&gt;";
    case '"':
        return "&quot;";
    default:
        return "&#13;";
    }
}

/// Bytes; a multiple of three, so that the base64 of a piece ends without padding.
constexpr std::size_t PieceLength = 768U * 1024;

template <typename Append>
void InPieces(std::string_view value, const XmlColumn::Spill& spill, const Append& append) {
    while (spill && value.size() > PieceLength) {
        append(value.substr(0, PieceLength));
        value.remove_prefix(PieceLength);
        spill();
    }
    append(value);
}

} // namespace

bool IsXmlUtf8(std::string_view text) {
    for (std::size_t i = 0; i < text.size();) {
        const bool single = static_cast<unsigned char>(text[i]) < 0x80;
        const std::size_t length = single ? 1 : text::CharacterLength(text.substr(i));
        const std::string_view character = text.substr(i, length);
        if (length == 0 || character == "\xEF\xBF\xBE" || character == "\xEF\xBF\xBF") { // U+FFFE, U+FFFF
            return false;
        }
        i += length;
    }
    return true;
}

void AppendXmlText(std::string& out, std::string_view text) {
    std::size_t done = 0;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (Classes[static_cast<unsigned char>(text[i])] == Reference) {
            out.append(text, done, i - done);
            out += ReferenceFor(text[i]);
            done = i + 1;
        }
    }
    out.append(text, done);
}

XmlColumn::XmlColumn(std::string_view name) {
    const std::string text(name);
    open_ = "<" + text + ">";
    openEncoded_ = "<" + text + " Encoding=\"base64\">";
    null_ = "<" + text + " Null=\"1\"/>";
    close_ = "</" + text + ">";
}

void XmlColumn::AppendInteger(std::string& out, std::int64_t number) const {
    std::array<char, 24> digits{};
    const auto end = std::to_chars(digits.data(), digits.data() + digits.size(), number).ptr;
    out += open_;
    out.append(digits.data(), end);
    out += close_;
}

void XmlColumn::AppendReal(std::string& out, double number) const {
    out += open_;
    if (std::isinf(number)) {
        out += number < 0 ? "-9e999" : "9e999"; // how the database writes and reads what lies beyond a double
    } else {
        std::array<char, 32> digits{};
        out.append(digits.data(), std::to_chars(digits.data(), digits.data() + digits.size(), number).ptr);
    }
    out += close_;
}

void XmlColumn::AppendText(std::string& out, std::string_view text, const Spill& spill) const {
    const std::uint8_t classes = ClassesOf(text);
    if ((classes & Forbidden) != 0 || ((classes & Multibyte) != 0 && !IsXmlUtf8(text))) {
        AppendBytes(out, text, spill);
        return;
    }
    out += open_;
    InPieces(text, spill, [&](std::string_view piece) {
        if ((classes & Reference) != 0) {
            AppendXmlText(out, piece);
        } else {
            out += piece;
        }
    });
    out += close_;
}

void XmlColumn::AppendBytes(std::string& out, std::string_view bytes, const Spill& spill) const {
    out += openEncoded_;
    InPieces(bytes, spill, [&](std::string_view piece) { text::AppendBase64(out, piece); });
    out += close_;
}

} // namespace qndr::suite
