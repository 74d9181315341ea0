#include "suite/computer/system_clock.h"

#include "suite/computer/local_time.h"

namespace qndr::suite {

Date SystemClock::Now() const {
    return LocalTime(PresentMoment());
}

services::TimeZoneInformation SystemClock::GetTimeZoneInformation() const {
    return TimeZoneAt(PresentMoment());
}

} // namespace qndr::suite
