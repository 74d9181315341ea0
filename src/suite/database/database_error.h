#pragma once

#include "services/failure.h"

#include <sqlite3.h>

namespace qndr::suite {

/// What kept a database from doing what it was asked.
enum class DatabaseErrorKind {
    Busy, ///< another program holds it
    Full, ///< the disk is, or the database has grown as far as it may
    Io,
    NoMemory,
    CannotOpen,
    ReadOnly,
    Corrupt, ///< damaged, or no database at all
    Interrupted,
    Constraint, ///< the values were refused
    Other       ///< the statement above all: one that means nothing here
};

/// A failure of the database, in its own words.
class DatabaseError : public services::Failure {
  public:
    DatabaseError(DatabaseErrorKind kind, const std::string& words) : Failure(words), kind_(kind) {}

    DatabaseErrorKind Kind() const { return kind_; }

    /// True when nothing is wrong with what was asked: on another day the same would be done.
    bool IsOfThisComputer() const;

  private:
    DatabaseErrorKind kind_;
};

/// The kind of a result code of SQLite, extended or not.
DatabaseErrorKind KindOf(int result);

/// The last error of the connection.
DatabaseError LastErrorOf(sqlite3* connection);

} // namespace qndr::suite
