#pragma once

#include "standing/digests.h"
#include "suite/schema/company_schema.h"
#include "suite/sql/connection.h"

#include <cstdint>
#include <functional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

namespace qndr::suite {

// Digests of rows over the columns that travel: alike at both ends of a pairing exactly where the rows are. Rows
// of one moment have one digest only within one read transaction, which is the caller's. All raise
// services::Failure when the database does not work.

/// Which of a table's buckets a row lies in; the identity has no letter case.
std::size_t BucketOf(std::string_view uniqueID, std::size_t buckets);

/// Of each table whose rows full data carries all.
std::vector<standing::TableDigests> DigestTables(const sql::Connection& connection);

/// The same with as many buckets as `like` has of the table.
standing::TableDigests DigestTable(const sql::Connection& connection, const Table& table, std::size_t buckets);

/// Tells of each row of the table, with its digest.
void ForEachRow(const sql::Connection& connection, const Table& table,
                const std::function<void(std::string_view uniqueID, const standing::Digest&)>& tell);

} // namespace qndr::suite
