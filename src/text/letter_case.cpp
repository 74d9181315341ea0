#include "text/letter_case.h"

namespace qndr::text {
namespace {

/// Capital letters that UTF-8 writes in two bytes: a run of them, and how far off the small ones are. In the runs
/// that say 1 capital and small letters take turns, beginning with a capital.
struct CapitalRun {
    char32_t first;
    char32_t last;
    char32_t offset;
};
constexpr CapitalRun kCapitals[] = {
    {0x00C0, 0x00D6, 32}, {0x00D8, 0x00DE, 32}, {0x0100, 0x012E, 1},  {0x0132, 0x0136, 1},
    {0x0139, 0x0147, 1},  {0x014A, 0x0176, 1},  {0x0179, 0x017D, 1},  {0x0388, 0x038A, 37},
    {0x038E, 0x038F, 63}, {0x0391, 0x03A1, 32}, {0x03A3, 0x03AB, 32}, {0x0400, 0x040F, 80},
    {0x0410, 0x042F, 32}, {0x0460, 0x0480, 1},  {0x048A, 0x04BE, 1},  {0x04D0, 0x052E, 1},
};

char32_t ToLowerPair(char32_t code) {
    for (const CapitalRun& run : kCapitals) {
        if (code >= run.first && code <= run.last && (run.offset != 1 || (code - run.first) % 2 == 0)) {
            return code + run.offset;
        }
    }
    return code;
}

} // namespace

std::string ToLowerCase(std::string_view text) {
    std::string result(text);
    for (char& c : result) {
        c = ToLowerCase(c);
    }
    return result;
}

std::string ToUpperCase(std::string_view text) {
    std::string result(text);
    for (char& c : result) {
        c = c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
    }
    return result;
}

std::string ToLowerCaseName(std::string_view name) {
    std::string result;
    for (std::size_t at = 0; at < name.size();) {
        const auto first = static_cast<unsigned char>(name[at]);
        const bool isPair = (first & 0xE0U) == 0xC0U && at + 1 < name.size();
        if (!isPair) {
            result += ToLowerCase(name[at++]);
            continue;
        }
        const char32_t code =
            ToLowerPair((first & 0x1FU) << 6U | (static_cast<unsigned char>(name[at + 1]) & 0x3FU));
        result += static_cast<char>(0xC0U | code >> 6U);
        result += static_cast<char>(0x80U | (code & 0x3FU));
        at += 2;
    }
    return result;
}

} // namespace qndr::text
