#pragma once

#include "services/date.h"
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

} // namespace qndr
