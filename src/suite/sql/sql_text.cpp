#include "suite/sql/sql_text.h"

#include "text/letter_case.h"

#include <algorithm>
#include <cstddef>

namespace qndr::sql {
namespace {

constexpr std::string_view kBlanks = " \t\r\n\f";

bool IsLetter(char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}

/// A character of a name, a number or a parameter. The signs that begin a parameter count, so that ":DATEADD" is
/// one word and no call.
bool IsWordCharacter(char c) {
    return IsLetter(c) || (c >= '0' && c <= '9') || c == '_' || c == '$' || c == ':' || c == '@' || c == '#' ||
           static_cast<unsigned char>(c) >= 0x80;
}

/// The position behind the first `end` at or behind `from`; the end of the text when there is none.
std::size_t Behind(std::string_view sql, std::string_view end, std::size_t from) {
    const std::size_t found = sql.find(end, from);
    return found == std::string_view::npos ? sql.size() : found + end.size();
}

/// The position behind the literal, quoted identifier or comment that begins at `at`; `at` itself when none does.
/// A doubled quote ends one literal and begins the next, which comes to the same here.
std::size_t SkipOpaque(std::string_view sql, std::size_t at) {
    const std::string_view rest = sql.substr(at);
    if (rest.starts_with("--")) {
        return Behind(sql, "\n", at);
    }
    if (rest.starts_with("/*")) {
        return Behind(sql, "*/", at + 2);
    }
    switch (rest.front()) {
    case '\'':
    case '"':
    case '`':
        return Behind(sql, rest.substr(0, 1), at + 1);
    case '[':
        return Behind(sql, "]", at + 1);
    default:
        return at;
    }
}

std::size_t SkipBlanksAndComments(std::string_view sql, std::size_t at) {
    while (at < sql.size()) {
        if (kBlanks.find(sql[at]) != std::string_view::npos) {
            ++at;
        } else if (sql.substr(at).starts_with("--") || sql.substr(at).starts_with("/*")) {
            at = SkipOpaque(sql, at);
        } else {
            break;
        }
    }
    return at;
}

std::size_t SkipWord(std::string_view sql, std::size_t at) {
    while (at < sql.size() && IsWordCharacter(sql[at])) {
        ++at;
    }
    return at;
}

struct Range {
    std::size_t begin = 0;
    std::size_t end = 0;
};

/// The bare word that is the first of several arguments of a call, `at` standing behind the function's name. An
/// empty range when there is none.
Range BareFirstArgument(std::string_view sql, std::size_t at) {
    at = SkipBlanksAndComments(sql, at);
    if (at == sql.size() || sql[at] != '(') {
        return {};
    }
    const std::size_t begin = SkipBlanksAndComments(sql, at + 1);
    const std::size_t end = SkipWord(sql, begin);
    if (end == begin || !IsLetter(sql[begin])) {
        return {};
    }
    const std::size_t next = SkipBlanksAndComments(sql, end);
    if (next == sql.size() || sql[next] != ',') {
        return {};
    }
    return {begin, end};
}

} // namespace

std::string ToSqliteDialect(std::string_view sql) {
    std::string result;
    result.reserve(sql.size() + 2);
    std::size_t copied = 0;
    std::size_t at = 0;
    while (at < sql.size()) {
        if (const std::size_t opaque = SkipOpaque(sql, at); opaque != at) {
            at = opaque;
            continue;
        }
        const std::size_t end = SkipWord(sql, at);
        if (end == at) {
            ++at;
            continue;
        }
        const bool call = text::EqualsWithoutCase(sql.substr(at, end - at), "DATEADD");
        at = end;
        if (!call) {
            continue;
        }
        const Range part = BareFirstArgument(sql, end);
        if (part.end != 0) {
            result.append(sql.substr(copied, part.begin - copied));
            result.append("'").append(sql.substr(part.begin, part.end - part.begin)).append("'");
            copied = at = part.end;
        }
    }
    result.append(sql.substr(copied));
    return result;
}

bool IsBlankSql(std::string_view sql) {
    return SkipBlanksAndComments(sql, 0) == sql.size();
}

std::set<std::string> BareWords(std::string_view sql) {
    std::set<std::string> words;
    for (std::size_t at = 0; at < sql.size();) {
        const std::size_t opaque = SkipOpaque(sql, at);
        const std::size_t end = opaque == at ? SkipWord(sql, at) : at;
        if (end != at && (sql[at] < '0' || sql[at] > '9')) {
            words.insert(text::ToLowerCase(sql.substr(at, end - at)));
        }
        at = std::max({opaque, end, at + 1});
    }
    return words;
}

} // namespace qndr::sql
