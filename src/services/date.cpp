#include "services/date.h"

#include <array>
#include <chrono>
#include <cmath>
#include <cstdio>

namespace qndr {
namespace {

const std::chrono::sys_days kEpoch = std::chrono::year{1899} / 12 / 30;

std::int64_t SecondsOfDay(const CivilTime& civil) {
    return civil.hour * 3600LL + civil.minute * 60LL + civil.second;
}

/// Takes `least` to `most` digits from the front of `text`.
std::optional<int> TakeNumber(std::string_view& text, std::size_t least, std::size_t most) {
    std::size_t length = 0;
    int value = 0;
    while (length < most && length < text.size() && text[length] >= '0' && text[length] <= '9') {
        value = value * 10 + (text[length] - '0');
        ++length;
    }
    if (length < least) {
        return std::nullopt;
    }
    text.remove_prefix(length);
    return value;
}

bool TakeCharacter(std::string_view& text, char wanted) {
    if (text.empty() || text.front() != wanted) {
        return false;
    }
    text.remove_prefix(1);
    return true;
}

/// Takes three numbers in their order; `separator` 0 stands for none between them.
bool TakeThree(std::string_view& text, char separator, const std::array<int*, 3>& parts,
               const std::array<std::size_t, 3>& least, const std::array<std::size_t, 3>& most) {
    for (std::size_t i = 0; i < parts.size(); ++i) {
        if (i > 0 && separator != 0 && !TakeCharacter(text, separator)) {
            return false;
        }
        const auto number = TakeNumber(text, least[i], most[i]);
        if (!number) {
            return false;
        }
        *parts[i] = *number;
    }
    return true;
}

bool TakeDay(std::string_view& text, CivilTime& civil) {
    const std::string_view whole = text;
    if (TakeThree(text, '-', {&civil.year, &civil.month, &civil.day}, {4, 2, 2}, {4, 2, 2})) {
        return true;
    }
    text = whole;
    if (TakeThree(text, 0, {&civil.year, &civil.month, &civil.day}, {4, 2, 2}, {4, 2, 2})) {
        return true;
    }
    text = whole;
    return TakeThree(text, '/', {&civil.month, &civil.day, &civil.year}, {1, 1, 4}, {2, 2, 4});
}

std::string Format(const Date& date, const char* form) {
    const CivilTime civil = date.Civil();
    std::array<char, 64> text{};
    std::snprintf(text.data(), text.size(), form, civil.year, civil.month, civil.day, civil.hour, civil.minute,
                  civil.second);
    return text.data();
}

} // namespace

Date::Date(double days) : seconds_(std::llround(days * 86400.0)) {
}

Date Date::FromCivil(const CivilTime& civil) {
    const std::chrono::sys_days day = std::chrono::year{civil.year} / civil.month / civil.day;
    Date date;
    date.seconds_ = (day - kEpoch).count() * 86400LL + SecondsOfDay(civil);
    return date;
}

CivilTime Date::Civil() const {
    std::int64_t days = seconds_ / 86400;
    std::int64_t rest = seconds_ % 86400;
    if (rest < 0) {
        rest += 86400;
        --days;
    }
    const std::chrono::year_month_day day{kEpoch + std::chrono::days{days}};
    CivilTime civil;
    civil.year = static_cast<int>(day.year());
    civil.month = static_cast<int>(static_cast<unsigned>(day.month()));
    civil.day = static_cast<int>(static_cast<unsigned>(day.day()));
    civil.hour = static_cast<int>(rest / 3600);
    civil.minute = static_cast<int>(rest / 60 % 60);
    civil.second = static_cast<int>(rest % 60);
    return civil;
}

Date Date::AddSeconds(std::int64_t seconds) const {
    Date result;
    result.seconds_ = seconds_ + seconds;
    return result;
}

std::string FormatGeneralDate(const Date& date) {
    return Format(date, "%04d-%02d-%02d %02d:%02d:%02d");
}

std::string FormatDatabaseDate(const Date& date) {
    return Format(date, "%04d%02d%02d %02d:%02d:%02d");
}

std::optional<Date> ParseDate(std::string_view text) {
    CivilTime civil;
    if (!TakeDay(text, civil)) {
        return std::nullopt;
    }
    if (!text.empty()) {
        if (!TakeCharacter(text, ' ') ||
            !TakeThree(text, ':', {&civil.hour, &civil.minute, &civil.second}, {1, 1, 1}, {2, 2, 2}) ||
            !text.empty()) {
            return std::nullopt;
        }
    }
    const std::chrono::year_month_day day = std::chrono::year{civil.year} / civil.month / civil.day;
    if (!day.ok() || civil.year < 100 || civil.hour > 23 || civil.minute > 59 || civil.second > 59) {
        return std::nullopt;
    }
    return Date::FromCivil(civil);
}

} // namespace qndr
