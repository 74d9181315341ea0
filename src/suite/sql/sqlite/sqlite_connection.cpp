#include "suite/sql/sqlite/sqlite_connection.h"

#include "suite/sql/sql_text.h"
#include "suite/sql/sqlite/date_functions.h"
#include "suite/sql/sqlite/sqlite_fence.h"
#include "suite/sql/sqlite/sqlite_lock.h"
#include "suite/sql/sqlite/sqlite_statement.h"
#include "suite/sql/sqlite/sqlite_statement_time.h"
#include "text/sql_name.h"

#include <utility>

namespace qndr::sql {

namespace {

/// The cache is small on purpose (8 MiB): the agent stays within 64 MiB whatever the size of the company. The log
/// of a large import is cut back to 16 MiB when it has gone into the database.
constexpr const char* kSettings = "PRAGMA synchronous = FULL;"
                                  "PRAGMA foreign_keys = OFF;"
                                  "PRAGMA cache_size = -8192;"
                                  "PRAGMA mmap_size = 0;"
                                  "PRAGMA temp_store = FILE;"
                                  "PRAGMA journal_size_limit = 16777216;";

struct Closer {
    void operator()(sqlite3* handle) const { sqlite3_close_v2(handle); }
};

/// Sets the page cache and gives the usual one back.
class CacheSize : public Measure {
  public:
    CacheSize(const Connection& connection, sqlite3* handle, std::int64_t kibibytes)
        : handle_(handle), usual_(connection.Number("PRAGMA cache_size")) {
        connection.Execute("PRAGMA cache_size = -" + std::to_string(kibibytes));
    }
    ~CacheSize() override {
        const std::string back = "PRAGMA cache_size = " + std::to_string(usual_);
        sqlite3_exec(handle_, back.c_str(), nullptr, nullptr, nullptr);
        sqlite3_db_release_memory(handle_);
    }

  private:
    sqlite3* handle_;
    std::int64_t usual_;
};

/// Beside the cache: what SQLite notes for taking back a single statement stays in memory. In a file it costs two
/// calls of the system for every page that a statement changes, and a trigger makes each statement one that may
/// have to be taken back.
class ManyRows : public Measure {
  public:
    ManyRows(const Connection& connection, sqlite3* handle, std::int64_t cacheKibibytes)
        : cache_(connection, handle, cacheKibibytes), handle_(handle) {
        connection.Execute("PRAGMA temp_store = MEMORY");
    }
    ~ManyRows() override { sqlite3_exec(handle_, "PRAGMA temp_store = FILE", nullptr, nullptr, nullptr); }

  private:
    CacheSize cache_;
    sqlite3* handle_;
};

} // namespace

SqliteConnection::SqliteConnection(const std::string& path, const services::Clock& clock, Missing missing,
                                   LockWait* wait)
    : path_(path), lock_(std::make_unique<SqliteLock>(path, wait)) {
    const auto fail = [&](const std::string& words, ErrorKind kind = ErrorKind::CannotOpen) {
        throw Error(kind, "the database '" + path + "' cannot be opened: " + words);
    };
    // Of these SQLite makes a temporary database, one in memory, or a URI.
    if (path.empty() || path.starts_with(':') || path.starts_with("file:") ||
        path.find('\0') != std::string::npos) {
        fail("this is no path of a file");
    }
    const int flags = SQLITE_OPEN_READWRITE | (missing == Missing::Create ? SQLITE_OPEN_CREATE : 0);
    sqlite3* opened = nullptr;
    const int result = sqlite3_open_v2(path.c_str(), &opened, flags, nullptr);
    std::unique_ptr<sqlite3, Closer> owner(opened);
    if (result != SQLITE_OK) {
        fail(opened == nullptr ? sqlite3_errstr(result) : sqlite3_errmsg(opened), KindOf(result));
    }
    handle_ = opened;
    try {
        lock_->Attach(handle_);
        AddDateFunctions(handle_, clock);
        ExecuteScript(kSettings);
        // Reads the file for the first time. An empty one would become a database with the next statement.
        if (Number("PRAGMA page_count") == 0 && missing == Missing::Refuse) {
            throw Error(ErrorKind::CannotOpen, "the file is empty");
        }
        if (missing == Missing::Create || IsCompanyWithoutWriteAheadLog()) {
            UseWriteAheadLog();
        }
    } catch (const Error& error) {
        fail(error.what(), error.Kind());
    } catch (const services::Failure& failure) {
        fail(failure.what());
    }
    static_cast<void>(owner.release());
}

SqliteConnection::~SqliteConnection() {
    sqlite3_close_v2(handle_);
}

void SqliteConnection::SetBusyTimeout(std::int32_t milliseconds) {
    lock_->SetTimeout(milliseconds);
}

bool SqliteConnection::IsCompanyWithoutWriteAheadLog() const {
    return Value("PRAGMA journal_mode") != "wal" &&
           Number("SELECT COUNT(*) FROM pragma_table_info('Company')"
                  " WHERE name COLLATE NOCASE IN ('CompanyType', 'UniqueID')") == 2;
}

void SqliteConnection::UseWriteAheadLog() const {
    if (Value("PRAGMA journal_mode = WAL") != "wal") {
        throw Error(ErrorKind::CannotOpen, "it cannot be set to write-ahead logging");
    }
}

Statement SqliteConnection::Prepare(std::string_view sql) const {
    if (sql.find('\0') != std::string_view::npos) {
        throw Error(ErrorKind::Other, "the statement holds a character that no statement may hold");
    }
    const std::string text = ToSqliteDialect(sql);
    sqlite3_stmt* prepared = nullptr;
    const char* tail = nullptr;
    const int result =
        sqlite3_prepare_v2(handle_, text.c_str(), static_cast<int>(text.size() + 1), &prepared, &tail);
    auto statement = std::make_unique<SqliteStatement>(handle_, prepared, *lock_);
    if (result != SQLITE_OK) {
        lock_->Raise();
    }
    if (prepared == nullptr) {
        throw Error(ErrorKind::Other, "there is no statement in the text");
    }
    if (!IsBlankSql(tail)) {
        throw Error(ErrorKind::Other, "one statement a call: the text behind the first statement is refused");
    }
    return Statement(std::move(statement));
}

void SqliteConnection::ExecuteScript(const std::string& sql) const {
    if (sqlite3_exec(handle_, sql.c_str(), nullptr, nullptr, nullptr) != SQLITE_OK) {
        lock_->Raise();
    }
}

std::vector<std::string> SqliteConnection::SplitScript(const std::string& sql) const {
    std::vector<std::string> statements;
    std::size_t begin = 0;
    for (std::size_t at = sql.find(';'); at != std::string::npos; at = sql.find(';', at + 1)) {
        std::string statement = sql.substr(begin, at + 1 - begin);
        if (sqlite3_complete(statement.c_str()) != 0) {
            statements.push_back(std::move(statement));
            begin = at + 1;
        }
    }
    return statements;
}

std::unique_ptr<Fence> SqliteConnection::MakeFence() const {
    return std::make_unique<SqliteFence>(*this, handle_);
}

std::unique_ptr<StatementTime> SqliteConnection::LimitTime(const StatementLimits& limits) const {
    return std::make_unique<SqliteStatementTime>(handle_, limits);
}

std::vector<std::string> SqliteConnection::ColumnsOf(std::string_view table) const {
    Statement column = Prepare("SELECT name FROM pragma_table_info(?1)");
    column.Bind(1, table);
    std::vector<std::string> names;
    while (column.Step()) {
        names.emplace_back(column.Text(0));
    }
    return names;
}

std::string SqliteConnection::UpsertText(std::string_view table, std::string_view key,
                                         const std::vector<std::pair<std::string_view, int>>& columns) const {
    const std::string row = text::QuotedName(table);
    std::string names(key);
    std::string values = "?1";
    std::string changes;
    std::string differs;
    for (const auto& [column, parameter] : columns) {
        const std::string name = text::QuotedName(column);
        names += ", " + name;
        values += ", ?" + std::to_string(parameter);
        changes.append(changes.empty() ? "" : ", ").append(name).append(" = excluded.").append(name);
        // A column may be compared without case by default; a version that differs in case alone is a change.
        differs.append(differs.empty() ? "" : " OR ").append(row).append(".").append(name);
        differs.append(" COLLATE BINARY IS NOT excluded.").append(name);
    }
    return "INSERT INTO " + row + " (" + names + ") VALUES (" + values + ") ON CONFLICT (" + std::string(key) +
           ") DO " + (changes.empty() ? "NOTHING" : "UPDATE SET " + changes + " WHERE " + differs);
}

std::vector<std::string> SqliteConnection::TriggersOf(std::string_view table) const {
    Statement trigger =
        Prepare("SELECT name FROM sqlite_schema WHERE type = 'trigger' AND tbl_name = ?1 COLLATE NOCASE");
    trigger.Bind(1, table);
    std::vector<std::string> names;
    while (trigger.Step()) {
        names.emplace_back(trigger.Text(0));
    }
    return names;
}

void SqliteConnection::TurnTriggers(bool on) const {
    sqlite3_db_config(handle_, SQLITE_DBCONFIG_ENABLE_TRIGGER, on ? 1 : 0, nullptr);
}

bool SqliteConnection::IsInTransaction() const {
    return sqlite3_get_autocommit(handle_) == 0;
}

std::unique_ptr<Measure> SqliteConnection::PrepareForManyRows(std::int64_t cacheKibibytes) const {
    return std::make_unique<ManyRows>(*this, handle_, cacheKibibytes);
}

std::unique_ptr<Measure> SqliteConnection::LimitCache(std::int64_t kibibytes) const {
    return std::make_unique<CacheSize>(*this, handle_, kibibytes);
}

void SqliteConnection::WriteCacheOut() const {
    sqlite3_db_cacheflush(handle_);
}

void SqliteConnection::Begin(bool writes, LockWait::Patience patience) const {
    std::optional<SqliteLock::OfImport> longer;
    if (patience == LockWait::Patience::Import) {
        longer.emplace(*lock_);
    }
    Execute(writes ? "BEGIN IMMEDIATE" : "BEGIN");
    if (!writes) {
        // A plain BEGIN takes its view of the database with the first read only.
        try {
            Number("SELECT COUNT(*) FROM sqlite_schema");
        } catch (...) {
            Rollback();
            throw;
        }
    }
}

void SqliteConnection::Commit() const {
    Execute("COMMIT");
}

void SqliteConnection::Rollback() const noexcept {
    if (IsInTransaction()) {
        sqlite3_exec(handle_, "ROLLBACK", nullptr, nullptr, nullptr);
    }
}

std::unique_ptr<Connection> Open(const std::string& path, const services::Clock& clock, Missing missing,
                                 LockWait* wait) {
    return std::make_unique<SqliteConnection>(path, clock, missing, wait);
}

} // namespace qndr::sql
