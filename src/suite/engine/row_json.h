#pragma once

#include "suite/database/sqlite_connection.h"

#include <string>

namespace qndr::suite {

/// The row that the statement stands on, as a JSON object from column to text or null. Bytes, and text that is no
/// UTF-8, are in base64.
std::string RowAsJson(const SqliteStatement& row);

} // namespace qndr::suite
