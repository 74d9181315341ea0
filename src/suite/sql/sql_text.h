#pragma once

#include <set>
#include <string>
#include <string_view>

namespace qndr::sql {

/// The statement as SQLite takes it: in DATEADD(day, ...) the bare name of the date part is made a text, because
/// SQLite would take it for a column. Everything else stays as it is, byte for byte; string literals, quoted
/// identifiers and comments are never looked into. Does not judge the statement: one that is no SQL passes
/// unchanged.
std::string ToSqliteDialect(std::string_view sql);

/// Whether the text holds nothing but blanks and comments, and so adds nothing to the statement before it.
bool IsBlankSql(std::string_view sql);

/// The words outside of literals, quoted identifiers and comments, in lower case. Numbers are none.
std::set<std::string> BareWords(std::string_view sql);

} // namespace qndr::sql
