#pragma once

#include "services/platform.h"

#include <sqlite3.h>

namespace qndr::sql {

/// Gives a connection the functions GETUTCDATE() and DATEADD(part, number, date), which statements and triggers of
/// company databases use. Both give UTC text in the form of FormatDatabaseDate; DATEADD is NULL when its number or
/// date is, and an error where DateAdd raises. The clock must outlive the connection. Raises services::Failure.
void AddDateFunctions(sqlite3* connection, const services::Clock& clock);

} // namespace qndr::sql
