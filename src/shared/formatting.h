#pragma once

#include "services/date.h"
#include "services/statement.h"
#include "services/variant.h"

#include <array>
#include <span>
#include <string>
#include <string_view>

namespace qndr {

/// The date as the text of an SQL statement, "yyyymmdd hh:nn:ss", without quotes: the statement supplies those.
/// With the flag a date up to the no-date value is "NULL".
std::string FormatSQLDate(const Date& date, bool nullFlag);

/// The template with "{0}" to "{16}" replaced by the values, one number after the other over the text as it has
/// become: a value that holds a placeholder of a higher number is filled in by it. Nothing is quoted or escaped,
/// SQL included. A placeholder without a value, or with one that has no text (Null), stays as it stands.
std::string FillTemplate(std::string_view text, std::span<const Variant> values);

/// FillTemplate with the values as arguments.
template <typename... Values> std::string FormatString(std::string_view text, const Values&... values) {
    const std::array<Variant, sizeof...(Values)> list{Variant(values)...};
    return FillTemplate(text, list);
}

/// The statement of a template filled in the same way. It carries its values, so that the database can refuse what
/// would be more than a value there.
services::Statement FillStatement(std::string_view text, std::span<const Variant> values);

/// FillStatement with the values as arguments.
template <typename... Values> services::Statement FormatStatement(std::string_view text, const Values&... values) {
    const std::array<Variant, sizeof...(Values)> list{Variant(values)...};
    return FillStatement(text, list);
}

} // namespace qndr
