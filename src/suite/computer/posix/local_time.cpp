#include "suite/computer/local_time.h"

#include "services/failure.h"

#include <ctime>
#include <optional>

namespace qndr::suite {
namespace {

constexpr std::int64_t kDay = 86'400;

std::tm BrokenDown(std::int64_t moment) {
    const auto time = static_cast<std::time_t>(moment);
    std::tm parts{};
    // localtime_r need not look at TZ and the zone's file anew.
    tzset();
    if (localtime_r(&time, &parts) == nullptr) {
        throw services::Failure("the moment " + std::to_string(moment) + " has no local time");
    }
    return parts;
}

/// The bias of the nearest time within a year at which the other kind of time is in force.
std::optional<int> BiasOfOtherSeason(std::int64_t moment, bool daylightNow) {
    for (std::int64_t days = 7; days <= 371; days += 7) {
        for (const std::int64_t other : {moment + days * kDay, moment - days * kDay}) {
            const std::tm parts = BrokenDown(other);
            if ((parts.tm_isdst > 0) != daylightNow) {
                return static_cast<int>(-parts.tm_gmtoff / 60);
            }
        }
    }
    return std::nullopt;
}

} // namespace

std::int64_t PresentMoment() {
    return static_cast<std::int64_t>(std::time(nullptr));
}

Date LocalTime(std::int64_t moment) {
    const std::tm parts = BrokenDown(moment);
    // A leap second is no time of day that a Date could hold.
    const int second = parts.tm_sec > 59 ? 59 : parts.tm_sec;
    return Date::FromCivil(
        {parts.tm_year + 1900, parts.tm_mon + 1, parts.tm_mday, parts.tm_hour, parts.tm_min, second});
}

services::TimeZoneInformation TimeZoneAt(std::int64_t moment) {
    const std::tm parts = BrokenDown(moment);
    const bool daylight = parts.tm_isdst > 0;
    const int now = static_cast<int>(-parts.tm_gmtoff / 60);
    const int other = BiasOfOtherSeason(moment, daylight).value_or(now);
    services::TimeZoneInformation zone;
    zone.state = daylight ? 2 : 1;
    zone.bias = daylight ? other : now;
    zone.daylightBias = (daylight ? now : other) - zone.bias;
    return zone;
}

} // namespace qndr::suite
