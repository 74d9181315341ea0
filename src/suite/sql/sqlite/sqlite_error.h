#pragma once

#include "suite/sql/error.h"

#include <sqlite3.h>

namespace qndr::sql {

/// The kind of a result code of SQLite, extended or not.
ErrorKind KindOf(int result);

/// The last error of the connection.
Error LastErrorOf(sqlite3* connection);

} // namespace qndr::sql
