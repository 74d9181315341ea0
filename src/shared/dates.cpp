#include "shared/dates.h"

#include "shared/failure_rule.h"
#include "text/editing.h"

namespace qndr {

Date LocalToUtc(const services::AgentServices& services, const Date& value) {
    services::TimeZoneInformation zone;
    Attempt([&] { zone = services.clock.GetTimeZoneInformation(); });
    return value.AddMinutes(zone.MinutesToUtc());
}

std::string FormatFileStamp(const Date& value) {
    const CivilTime civil = value.Civil();
    return text::Digits(civil.year, 4) + text::Digits(civil.month, 2) + text::Digits(civil.day, 2) + "T" +
           text::Digits(civil.hour, 2) + text::Digits(civil.minute, 2) + text::Digits(civil.second, 2);
}

} // namespace qndr
