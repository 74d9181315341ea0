#include "suite/sql/connection_string.h"

#include "services/failure.h"
#include "text/editing.h"
#include "text/letter_case.h"
#include "text/utf8_path.h"

#include <algorithm>
#include <cstddef>
#include <optional>
#include <string_view>

namespace qndr::sql {
namespace {

using services::Failure;

constexpr std::string_view Blanks = " \t\r\n";

/// Takes one value and the semicolon behind it from the front of the text.
std::string TakeValue(std::string_view& text) {
    text.remove_prefix(std::min(text.find_first_not_of(" \t"), text.size()));
    std::string value;
    if (text.starts_with('"') || text.starts_with('\'')) {
        const char quote = text.front();
        std::size_t at = 1;
        while (at < text.size() && (text[at] != quote || text.substr(at + 1).starts_with(quote))) {
            value += text[at];
            at += text[at] == quote ? 2 : 1;
        }
        text.remove_prefix(std::min(at, text.size()));
        text.remove_prefix(std::min(text.find(';'), text.size()));
    } else {
        const std::size_t end = std::min(text.find(';'), text.size());
        value = text::Trimmed(text.substr(0, end), Blanks);
        text.remove_prefix(end);
    }
    if (!text.empty()) {
        text.remove_prefix(1);
    }
    return value;
}

/// The value of "Data Source" when the provider is SQLite.
std::optional<std::string> FindSqliteFile(std::string_view text) {
    std::string provider;
    std::string dataSource;
    while (!text.empty()) {
        const std::size_t end = text.find_first_of("=;");
        if (end == std::string_view::npos) {
            break;
        }
        if (text[end] == ';') {
            text.remove_prefix(end + 1);
            continue;
        }
        const std::string key = text::ToLowerCase(text::Trimmed(text.substr(0, end), Blanks));
        text.remove_prefix(end + 1);
        const std::string value = TakeValue(text);
        if (key == "provider") {
            provider = value;
        } else if (key == "data source") {
            dataSource = value;
        }
    }
    if (!text::EqualsWithoutCase(provider, "sqlite") || dataSource.empty()) {
        return std::nullopt;
    }
    return dataSource;
}

} // namespace

std::string SqliteFileOf(const std::string& connectionString) {
    // The text itself stays out of the message: it may hold a password.
    auto file = FindSqliteFile(connectionString);
    if (!file) {
        throw Failure("this build serves SQLite databases only, by connection strings of the form "
                      "'Provider=SQLite;Data Source=<path>'");
    }
    return *std::move(file);
}

std::string ResolveConnectionString(const std::string& connectionString, const std::string& folder) {
    const auto file = FindSqliteFile(connectionString);
    if (!file) {
        return connectionString;
    }
    return SqliteConnectionString(text::FromPath(text::ToPath(folder) / text::ToPath(*file)));
}

std::string SqliteConnectionString(const std::string& file) {
    std::string value = file;
    if (file.find_first_of(";\"'") != std::string::npos || text::Trimmed(file, Blanks) != file) {
        value = "\"";
        for (const char c : file) {
            value.append(c == '"' ? 2 : 1, c);
        }
        value += '"';
    }
    return "Provider=SQLite;Data Source=" + value;
}

} // namespace qndr::sql
