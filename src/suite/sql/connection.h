#pragma once

#include "services/platform.h"
#include "suite/sql/error.h"
#include "suite/sql/lock_wait.h"
#include "suite/sql/statement.h"
#include "suite/sql/statement_limits.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace qndr::sql {

/// A measure that lasts as long as the object.
class Measure {
  public:
    virtual ~Measure() = default;
};

/// Prepares statements that are held to the tables, views and functions that are named for them. One connection
/// has one fence at a time; what is prepared beside it is not held to anything.
class Fence {
  public:
    virtual ~Fence() = default;

    /// As Connection::Prepare. The statement reads, writes and calls nothing but these names, given in lower
    /// case, and what views and triggers of the database do at its behest; it changes no schema, attaches nothing,
    /// changes no setting and has no WITH, and leaves Company's CompanyType and UniqueID, which say what the
    /// company is, as they are. Anything else is refused.
    virtual Statement Prepare(std::string_view sql, std::set<std::string> names) = 0;
};

/// One connection to a database. What is in it is durable when a statement outside of a transaction, or the
/// transaction's commit, has returned. DATEADD and GETUTCDATE are known to it (both in "yyyymmdd hh:nn:ss" UTC),
/// and so are the collation NOCASE and the functions and tables of JSON. Every call that speaks to the database
/// raises Error.
class Connection {
  public:
    Connection() = default;
    virtual ~Connection() = default;
    Connection(const Connection&) = delete;
    Connection& operator=(const Connection&) = delete;

    /// What a person calls the database: the path of its file.
    virtual const std::string& Path() const = 0;
    /// How long a statement that sleeps waits for another program's lock; 60 s by default.
    virtual void SetBusyTimeout(std::int32_t milliseconds) = 0;

    /// Prepares the one statement of `sql`. Raises Error, also when there is no statement or anything but one
    /// semicolon, blanks and comments behind it.
    virtual Statement Prepare(std::string_view sql) const = 0;
    /// Runs a script of several statements as it stands, in the database's own dialect.
    virtual void ExecuteScript(const std::string& sql) const = 0;
    /// The statements of such a script, each with its semicolon.
    virtual std::vector<std::string> SplitScript(const std::string& sql) const = 0;

    /// Runs one statement to its end.
    void Execute(std::string_view sql) const;
    /// The first column of the first row, nothing for no row or NULL.
    std::optional<std::string> Value(std::string_view sql) const;
    std::int64_t Number(std::string_view sql, std::int64_t fallback = 0) const;

    virtual std::unique_ptr<Fence> MakeFence() const = 0;
    /// The limits must outlive the result.
    virtual std::unique_ptr<StatementTime> LimitTime(const StatementLimits& limits) const = 0;

    // What databases say each in their own way.

    /// The names of a table's columns in their order; none when there is no such table.
    virtual std::vector<std::string> ColumnsOf(std::string_view table) const = 0;
    /// Inserts a row, or writes its columns over those of the row with the same value in `key`, unless they are
    /// the same to the byte. Parameter 1 is the key; each column has the parameter that goes with it.
    virtual std::string UpsertText(std::string_view table, std::string_view key,
                                   const std::vector<std::pair<std::string_view, int>>& columns) const = 0;
    /// The names of the triggers on a table.
    virtual std::vector<std::string> TriggersOf(std::string_view table) const = 0;
    /// Lets the triggers of all tables run, for this connection, or not.
    virtual void TurnTriggers(bool on) const = 0;
    /// False also when the database has ended a transaction by itself, on a full disk for instance.
    virtual bool IsInTransaction() const = 0;

    /// More memory and fewer calls of the system for one piece of work with many rows whose keys are random. To be
    /// asked for outside a transaction.
    virtual std::unique_ptr<Measure> PrepareForManyRows(std::int64_t cacheKibibytes) const = 0;
    /// Another page cache for one piece of work. The usual one is back, and the memory given up, when the measure
    /// goes.
    virtual std::unique_ptr<Measure> LimitCache(std::int64_t kibibytes) const = 0;
    /// Writes out what the cache holds. Only the memory is meant: what cannot be written fails later.
    virtual void WriteCacheOut() const = 0;

    // What a Transaction does; nobody else calls it.

    virtual void Begin(bool writes, LockWait::Patience patience) const = 0;
    virtual void Commit() const = 0;
    virtual void Rollback() const noexcept = 0;
};

/// A transaction that is rolled back unless it was committed.
class Transaction {
  public:
    enum class Kind {
        Read, ///< all reads are of the moment at which it began
        Write ///< takes its lock at once, and waits for it as long as `patience` says
    };

    Transaction(const Connection& connection, Kind kind,
                LockWait::Patience patience = LockWait::Patience::Statement)
        : connection_(connection) {
        connection_.Begin(kind == Kind::Write, patience);
    }
    ~Transaction() {
        if (open_) {
            connection_.Rollback();
        }
    }
    Transaction(const Transaction&) = delete;
    Transaction& operator=(const Transaction&) = delete;

    void Commit() {
        connection_.Commit();
        open_ = false;
    }

  private:
    const Connection& connection_;
    bool open_ = true;
};

/// A point within a transaction to which one can go back. Left alone, it goes the transaction's way.
class Savepoint {
  public:
    explicit Savepoint(const Connection& connection) : connection_(connection) {
        connection_.Execute("SAVEPOINT here");
    }
    void GoBack() {
        connection_.Execute("ROLLBACK TO here");
        connection_.Execute("RELEASE here");
    }

  private:
    const Connection& connection_;
};

enum class Missing { Refuse, Create };

/// Opens the database of a file, with `path` in UTF-8. Raises Error when it cannot be opened, is no database, or
/// is absent and not to be made; Missing::Refuse leaves an empty file as it is, too. The clock must outlive the
/// connection. `wait`, which must too, is done while another program holds the database; without it the thread
/// sleeps.
std::unique_ptr<Connection> Open(const std::string& path, const services::Clock& clock, Missing missing,
                                 LockWait* wait = nullptr);

} // namespace qndr::sql
