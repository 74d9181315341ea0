#include "shared/dates.h"

#include "shared/failure_rule.h"
#include "shared/text.h"

namespace qndr {
namespace {

constexpr int kDaylightTimeInForce = 2;

} // namespace

Date LocalToUtc(const services::AgentServices& services, const Date& value) {
    services::TimeZoneInformation zone;
    Attempt([&] { zone = services.clock.GetTimeZoneInformation(); });
    const int bias = zone.bias + (zone.state == kDaylightTimeInForce ? zone.daylightBias : zone.standardBias);
    return value.AddMinutes(bias);
}

std::string FormatFileStamp(const Date& value) {
    const CivilTime civil = value.Civil();
    return Digits(civil.year, 4) + Digits(civil.month, 2) + Digits(civil.day, 2) + "T" + Digits(civil.hour, 2) +
           Digits(civil.minute, 2) + Digits(civil.second, 2);
}

} // namespace qndr
