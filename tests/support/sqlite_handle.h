#pragma once

#include "suite/sql/sqlite/sqlite_connection.h"

namespace qndr::sql {

/// For what a test asks of the database past its contract.
inline sqlite3* HandleOf(const sql::Connection& connection) {
    return dynamic_cast<const sql::SqliteConnection&>(connection).Handle();
}

} // namespace qndr::sql
