#pragma once

#include "services/platform.h"
#include "suite/database/database_error.h"
#include "suite/database/lock_wait.h"

#include <sqlite3.h>

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace qndr::suite {

class SqliteLock;

/// A prepared statement; finalised with its destruction. Its connection must outlive it. Columns and parameters
/// count from 0 and 1, as SQLite counts.
class SqliteStatement {
  public:
    SqliteStatement(sqlite3_stmt* statement, SqliteLock& lock)
        : statement_(statement, &sqlite3_finalize), lock_(&lock) {}

    sqlite3_stmt* Handle() const { return statement_.get(); }
    /// True for a row, false at the end. Raises DatabaseError.
    bool Step();
    void Reset();

    void Bind(int parameter, std::string_view text);
    void Bind(int parameter, std::int64_t number);
    void BindBytes(int parameter, std::string_view bytes);
    void BindNull(int parameter);

    int ColumnCount() const;
    std::string ColumnName(int column) const;
    bool IsNull(int column) const;
    std::int64_t Integer(int column) const;
    /// Valid until the next Step, Reset or conversion of the column.
    std::string_view Text(int column) const;
    std::string_view Bytes(int column) const;

  private:
    void Check(int result) const;

    std::unique_ptr<sqlite3_stmt, int (*)(sqlite3_stmt*)> statement_;
    SqliteLock* lock_;
};

/// One connection to an SQLite database file: full synchronous, foreign keys not enforced, DATEADD and
/// GETUTCDATE given to it (both in "yyyymmdd hh:nn:ss" UTC, after the clock that the connection was opened with,
/// which must outlive it).
class SqliteConnection {
  public:
    enum class Missing { Refuse, Create };

    /// `path` is UTF-8. Raises DatabaseError when the file cannot be opened, is no database, or is absent and
    /// not to be made; Missing::Refuse leaves an empty file as it is, too. A company, and whatever is opened with
    /// Missing::Create, is switched to write-ahead logging; a database of another program keeps its ways. `wait`,
    /// which must outlive the connection, is done while another program holds the database; without it the thread
    /// sleeps.
    SqliteConnection(const std::string& path, const services::Clock& clock, Missing missing,
                     LockWait* wait = nullptr);
    ~SqliteConnection();
    SqliteConnection(const SqliteConnection&) = delete;
    SqliteConnection& operator=(const SqliteConnection&) = delete;

    sqlite3* Handle() const { return handle_; }
    const std::string& Path() const { return path_; }

    /// How long a statement that sleeps waits for another program's lock; 60 s by default.
    void SetBusyTimeout(std::int32_t milliseconds);

    /// Prepares the one statement of `sql` in this database's dialect. Raises DatabaseError, also when there is no
    /// statement or anything but one semicolon, blanks and comments behind it.
    SqliteStatement Prepare(std::string_view sql) const;
    /// Runs one statement to its end. Raises DatabaseError.
    void Execute(std::string_view sql) const;
    /// Runs a script of several statements as it stands, without the dialect step.
    void ExecuteScript(const std::string& sql) const;
    /// The first column of the first row, nothing for no row or NULL.
    std::optional<std::string> Value(std::string_view sql) const;
    std::int64_t Number(std::string_view sql, std::int64_t fallback = 0) const;

  private:
    friend class SqliteTransaction;

    bool IsCompanyWithoutWriteAheadLog() const;
    void UseWriteAheadLog() const;

    std::string path_;
    std::unique_ptr<SqliteLock> lock_;
    sqlite3* handle_ = nullptr;
};

/// Another page cache for one piece of work; the connection has its usual one back, and its memory is given up,
/// when the object goes. For many rows with random keys, whose index pages a small cache reads and writes again
/// and again.
class SqliteCacheSize {
  public:
    SqliteCacheSize(const SqliteConnection& connection, std::int64_t kibibytes);
    ~SqliteCacheSize();
    SqliteCacheSize(const SqliteCacheSize&) = delete;
    SqliteCacheSize& operator=(const SqliteCacheSize&) = delete;

  private:
    const SqliteConnection& connection_;
    std::int64_t usual_;
};

/// Keeps in memory, for one piece of work, what SQLite notes for taking back a single statement. In a file it
/// costs two calls of the system for every page that a statement changes, and a trigger makes each statement one
/// that may have to be taken back. To be made outside a transaction.
class SqliteTemporaryMemory {
  public:
    explicit SqliteTemporaryMemory(const SqliteConnection& connection);
    ~SqliteTemporaryMemory();
    SqliteTemporaryMemory(const SqliteTemporaryMemory&) = delete;
    SqliteTemporaryMemory& operator=(const SqliteTemporaryMemory&) = delete;

  private:
    const SqliteConnection& connection_;
};

/// A transaction that is rolled back unless it was committed.
class SqliteTransaction {
  public:
    enum class Kind { Read, Write };

    /// A write transaction takes its lock at once, and waits for it as long as `patience` says.
    SqliteTransaction(const SqliteConnection& connection, Kind kind,
                      LockWait::Patience patience = LockWait::Patience::Statement);
    ~SqliteTransaction();
    SqliteTransaction(const SqliteTransaction&) = delete;
    SqliteTransaction& operator=(const SqliteTransaction&) = delete;

    void Commit();

  private:
    const SqliteConnection& connection_;
    bool open_ = true;
};

} // namespace qndr::suite
