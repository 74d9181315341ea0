#pragma once

#include <string>

namespace qndr::sql {

/// The database file that "Provider=SQLite;Data Source=<path>" names, with its keys in any letter case and order
/// and other keys passed over. A value may stand between single or double quotes, in which a quote is doubled; a
/// value that holds a semicolon must. Raises services::Failure for every other connection string.
std::string SqliteFileOf(const std::string& connectionString);

/// The connection string that names this file, quoted where it must be.
std::string SqliteConnectionString(const std::string& file);

/// The same database named by an absolute path: a relative one is taken from `folder`. A connection string of
/// another kind comes back as it is.
std::string ResolveConnectionString(const std::string& connectionString, const std::string& folder);

} // namespace qndr::sql
