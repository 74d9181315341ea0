#pragma once

#include "suite/sql/connection.h"

#include <cstdint>

namespace qndr::suite {

/// Fills a company database with plausible data: every exported table, orders and purchase orders with their
/// lines, `rows` rows in all (at least one a table). A few tables are large, most are small. The same rows, seed
/// and time of the connection's clock give the same data, UniqueIDs included. One transaction, and the audit
/// triggers run. Raises services::Failure, with nothing written, when the database refuses a row; a second run
/// with the same seed is one.
void FillWithSampleData(const sql::Connection& connection, std::int64_t rows, std::uint32_t seed);

} // namespace qndr::suite
