#pragma once

#include "services/date.h"
#include "services/platform.h"

#include <cstdint>
#include <string>
#include <string_view>

namespace qndr::sql {

/// The present moment in UTC: local time with the bias that is in force now.
Date UtcNow(const services::Clock& clock);

/// What DATEADD(part, number, date) gives. Raises services::Failure for an unknown part, for a text that is no
/// date, and when the result lies outside the years 100 to 9999.
Date DateAdd(std::string_view partName, std::int64_t number, std::string_view dateText);

} // namespace qndr::sql
