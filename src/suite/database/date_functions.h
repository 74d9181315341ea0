#pragma once

#include "services/date.h"
#include "services/platform.h"

#include <sqlite3.h>

#include <string>

namespace qndr::suite {

/// The form in which the SQLite databases store dates: "yyyymmdd hh:nn:ss". Texts of this form sort as their
/// dates.
std::string FormatDatabaseDate(const Date& date);

/// The present moment in UTC: local time with the bias that is in force now.
Date UtcNow(const services::Clock& clock);

/// Gives a connection the functions GETUTCDATE() and DATEADD(part, number, date), which statements and triggers of
/// company databases use. Both give UTC text in the form above; DATEADD is NULL when its number or date is, and an
/// error for an unknown part, for a text that is no date, and when the result lies outside the years 100 to 9999.
/// The clock must outlive the connection. Raises services::Failure.
void AddDateFunctions(sqlite3* connection, const services::Clock& clock);

} // namespace qndr::suite
