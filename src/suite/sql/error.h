#pragma once

#include "services/failure.h"

namespace qndr::sql {

/// What kept a database from doing what it was asked.
enum class ErrorKind {
    Busy, ///< another program holds it
    Full, ///< the disk is, or the database has grown as far as it may
    Io,
    NoMemory,
    CannotOpen,
    ReadOnly,
    Corrupt, ///< damaged, or no database at all
    Interrupted,
    Constraint, ///< the values were refused: by a rule, their type or their size
    Other       ///< the statement above all: one that means nothing here
};

/// A failure of the database, in its own words.
class Error : public services::Failure {
  public:
    Error(ErrorKind kind, const std::string& words) : Failure(words), kind_(kind) {}

    ErrorKind Kind() const { return kind_; }

    /// True when nothing is wrong with what was asked: on another day the same would be done.
    bool IsOfThisComputer() const;

  private:
    ErrorKind kind_;
};

} // namespace qndr::sql
