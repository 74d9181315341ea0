#pragma once

#include "services/date.h"
#include "services/platform.h"

#include <cstdint>

/// The time zone of the computer. One implementation for each platform. Moments are seconds since 1 January 1970
/// UTC.
namespace qndr::suite {

std::int64_t PresentMoment();

/// The local time at that moment, after the rules that were in force then.
Date LocalTime(std::int64_t moment);

/// The zone as it stands at that moment: state 2 while daylight time is in force, otherwise 1.
services::TimeZoneInformation TimeZoneAt(std::int64_t moment);

} // namespace qndr::suite
