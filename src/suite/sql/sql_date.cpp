#include "suite/sql/sql_date.h"

#include "services/failure.h"
#include "text/letter_case.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdint>
#include <string_view>

namespace qndr::sql {
namespace {

using services::Failure;

constexpr int kFirstYear = 100;
constexpr int kLastYear = 9999;
/// More seconds than lie between the first and the last year; keeps the arithmetic of every unit inside 64 bits.
constexpr std::int64_t kMostUnits = 400'000'000'000;

/// A date part with its names, and its length: in months, or else in seconds.
struct DatePart {
    std::array<std::string_view, 3> names;
    int months;
    int seconds;
};

constexpr std::array<DatePart, 10> kDateParts{{
    {{"year", "yy", "yyyy"}, 12, 0},
    {{"quarter", "qq", "q"}, 3, 0},
    {{"month", "mm", "m"}, 1, 0},
    {{"week", "wk", "ww"}, 0, 7 * 86400},
    {{"day", "dd", "d"}, 0, 86400},
    {{"dayofyear", "dy", "y"}, 0, 86400},
    {{"weekday", "dw", "w"}, 0, 86400},
    {{"hour", "hh", "hh"}, 0, 3600},
    {{"minute", "mi", "n"}, 0, 60},
    {{"second", "ss", "s"}, 0, 1},
}};

const DatePart& FindDatePart(std::string_view name) {
    const std::string lower = text::ToLowerCase(name);
    for (const DatePart& part : kDateParts) {
        if (std::find(part.names.begin(), part.names.end(), lower) != part.names.end()) {
            return part;
        }
    }
    throw Failure("DATEADD does not know the date part '" + std::string(name) + "'");
}

/// A day that the month does not have becomes its last one.
Date AddMonths(const Date& date, std::int64_t months) {
    CivilTime civil = date.Civil();
    const std::int64_t total = civil.year * 12LL + (civil.month - 1) + months;
    if (total < kFirstYear * 12LL || total >= (kLastYear + 1) * 12LL) {
        throw Failure("the result of DATEADD is no date");
    }
    civil.year = static_cast<int>(total / 12);
    civil.month = static_cast<int>(total % 12) + 1;
    const std::chrono::year_month_day_last last = std::chrono::year{civil.year} / civil.month / std::chrono::last;
    civil.day = std::min(civil.day, static_cast<int>(static_cast<unsigned>(last.day())));
    return Date::FromCivil(civil);
}

} // namespace

Date DateAdd(std::string_view partName, std::int64_t number, std::string_view dateText) {
    const DatePart& part = FindDatePart(partName);
    const auto date = ParseDate(dateText);
    if (!date) {
        throw Failure("DATEADD: '" + std::string(dateText) + "' is not a date");
    }
    if (number > kMostUnits || number < -kMostUnits) {
        throw Failure("the result of DATEADD is no date");
    }
    if (part.months != 0) {
        return AddMonths(*date, number * part.months);
    }
    const Date result = date->AddSeconds(number * part.seconds);
    static const Date first = Date::FromCivil({.year = kFirstYear, .month = 1, .day = 1});
    static const Date last =
        Date::FromCivil({.year = kLastYear, .month = 12, .day = 31, .hour = 23, .minute = 59, .second = 59});
    if (result < first || result > last) {
        throw Failure("the result of DATEADD is no date");
    }
    return result;
}

Date UtcNow(const services::Clock& clock) {
    return clock.Now().AddMinutes(clock.GetTimeZoneInformation().MinutesToUtc());
}

} // namespace qndr::sql
