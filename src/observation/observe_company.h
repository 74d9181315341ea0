#pragma once

#include "diagnosis/observations.h"
#include "services/date.h"
#include "suite/sql/connection.h"

#include <cstdint>
#include <string>

namespace qndr::observation {

/// What the database's own check finds; empty when it is sound.
std::string DamageOf(const sql::Connection& database);

/// Fills in all that stands in the company's database; what lies `days` days back counts as lately. Raises
/// services::Failure when it cannot be read.
void ObserveCompany(diagnosis::ObservedCompany& company, const sql::Connection& database, const Date& nowUtc,
                    std::int64_t days);

} // namespace qndr::observation
