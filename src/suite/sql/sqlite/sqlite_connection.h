#pragma once

#include "suite/sql/connection.h"

#include <sqlite3.h>

namespace qndr::sql {

class SqliteLock;

/// One connection to an SQLite database file: full synchronous, foreign keys not enforced, dates after the clock
/// that the connection was opened with. A company, and whatever is opened with Missing::Create, is switched to
/// write-ahead logging; a database of another program keeps its ways.
class SqliteConnection : public Connection {
  public:
    /// As Open.
    SqliteConnection(const std::string& path, const services::Clock& clock, Missing missing,
                     LockWait* wait = nullptr);
    ~SqliteConnection() override;

    sqlite3* Handle() const { return handle_; }
    const std::string& Path() const override { return path_; }
    void SetBusyTimeout(std::int32_t milliseconds) override;

    Statement Prepare(std::string_view sql) const override;
    void ExecuteScript(const std::string& sql) const override;
    std::vector<std::string> SplitScript(const std::string& sql) const override;

    std::unique_ptr<Fence> MakeFence() const override;
    std::unique_ptr<StatementTime> LimitTime(const StatementLimits& limits) const override;

    std::vector<std::string> ColumnsOf(std::string_view table) const override;
    std::string UpsertText(std::string_view table, std::string_view key,
                           const std::vector<std::pair<std::string_view, int>>& columns) const override;
    std::vector<std::string> TriggersOf(std::string_view table) const override;
    void TurnTriggers(bool on) const override;
    bool IsInTransaction() const override;

    std::unique_ptr<Measure> PrepareForManyRows(std::int64_t cacheKibibytes) const override;
    std::unique_ptr<Measure> LimitCache(std::int64_t kibibytes) const override;
    void WriteCacheOut() const override;

    void Begin(bool writes, LockWait::Patience patience) const override;
    void Commit() const override;
    void Rollback() const noexcept override;

  private:
    bool IsCompanyWithoutWriteAheadLog() const;
    void UseWriteAheadLog() const;

    std::string path_;
    std::unique_ptr<SqliteLock> lock_;
    sqlite3* handle_ = nullptr;
};

} // namespace qndr::sql
