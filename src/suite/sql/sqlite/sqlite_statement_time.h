#pragma once

#include "suite/sql/statement_limits.h"

#include <sqlite3.h>

namespace qndr::sql {

/// Limits by SQLite's progress handler.
class SqliteStatementTime : public StatementTime {
  public:
    SqliteStatementTime(sqlite3* handle, const StatementLimits& limits);
    ~SqliteStatementTime() override;
    SqliteStatementTime(const SqliteStatementTime&) = delete;
    SqliteStatementTime& operator=(const SqliteStatementTime&) = delete;

    const std::string& Verdict() const override { return verdict_; }

  private:
    using Moment = std::chrono::steady_clock::time_point;

    static int Look(void* time);
    bool IsOver();
    bool IsStopping() const;

    sqlite3* handle_;
    const StatementLimits& limits_;
    Moment start_; ///< of the work; the epoch until the first look
    Moment nextQuestion_;
    std::string verdict_;
};

} // namespace qndr::sql
