#include "suite/database/sqlite_connection.h"

#include "services/failure.h"
#include "suite/database/date_functions.h"
#include "suite/database/dialect.h"

#include <exception>
#include <utility>

namespace qndr::suite {

/// How one connection waits for the locks of other programs.
class SqliteLock {
  public:
    explicit SqliteLock(std::string database, LockWait* wait) : database_(std::move(database)), wait_(wait) {}

    void Attach(sqlite3* connection) {
        connection_ = connection;
        SetTimeout(LockWait::Limit(LockWait::Patience::Statement));
    }
    void SetTimeout(std::int32_t milliseconds) {
        timeout_ = milliseconds;
        if (wait_ != nullptr) {
            sqlite3_busy_handler(connection_, &SqliteLock::Wait, this);
        } else {
            sqlite3_busy_timeout(connection_, milliseconds);
        }
    }

    /// The patience of an import for as long as the object lives.
    class OfImport {
      public:
        explicit OfImport(SqliteLock& lock) : lock_(lock), timeout_(lock.timeout_) {
            lock_.patience_ = LockWait::Patience::Import;
            lock_.SetTimeout(LockWait::Limit(lock_.patience_));
        }
        ~OfImport() {
            lock_.patience_ = LockWait::Patience::Statement;
            lock_.SetTimeout(timeout_);
            if (lock_.wait_ != nullptr) {
                lock_.wait_->Over();
            }
        }
        OfImport(const OfImport&) = delete;
        OfImport& operator=(const OfImport&) = delete;

      private:
        SqliteLock& lock_;
        std::int32_t timeout_;
    };

    /// Raises what a message handler raised while the lock was waited for, otherwise the connection's last error.
    [[noreturn]] void Raise() {
        if (raised_) {
            std::rethrow_exception(std::exchange(raised_, nullptr));
        }
        throw LastErrorOf(connection_);
    }

  private:
    /// Nothing may be raised through SQLite.
    static int Wait(void* self, int tries) {
        SqliteLock& lock = *static_cast<SqliteLock*>(self);
        if (tries == 0) {
            lock.waited_ = 0;
        }
        try {
            const std::int32_t paused = lock.wait_->Pause(lock.database_, lock.patience_, lock.waited_);
            lock.waited_ += paused;
            return paused > 0 ? 1 : 0;
        } catch (...) {
            lock.raised_ = std::current_exception();
            return 0;
        }
    }

    std::string database_;
    LockWait* wait_;
    sqlite3* connection_ = nullptr;
    LockWait::Patience patience_ = LockWait::Patience::Statement;
    std::int32_t timeout_ = 0;
    std::int32_t waited_ = 0;
    std::exception_ptr raised_;
};

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

} // namespace

bool SqliteStatement::Step() {
    const int result = sqlite3_step(Handle());
    if (result == SQLITE_ROW) {
        return true;
    }
    if (result == SQLITE_DONE) {
        return false;
    }
    try {
        lock_->Raise();
    } catch (...) {
        sqlite3_reset(Handle());
        throw;
    }
}

void SqliteStatement::Check(int result) const {
    if (result != SQLITE_OK) {
        lock_->Raise();
    }
}

void SqliteStatement::Reset() {
    // The result repeats the failure of the last Step, which that call has raised already.
    sqlite3_reset(Handle());
}

void SqliteStatement::Bind(int parameter, std::string_view text) {
    // A null pointer would bind NULL, so an empty text needs one of its own.
    Check(sqlite3_bind_text64(Handle(), parameter, text.empty() ? "" : text.data(), text.size(), SQLITE_TRANSIENT,
                              SQLITE_UTF8));
}

void SqliteStatement::Bind(int parameter, std::int64_t number) {
    Check(sqlite3_bind_int64(Handle(), parameter, number));
}

void SqliteStatement::BindBytes(int parameter, std::string_view bytes) {
    Check(sqlite3_bind_blob64(Handle(), parameter, bytes.empty() ? "" : bytes.data(), bytes.size(),
                              SQLITE_TRANSIENT));
}

void SqliteStatement::BindNull(int parameter) {
    Check(sqlite3_bind_null(Handle(), parameter));
}

int SqliteStatement::ColumnCount() const {
    return sqlite3_column_count(Handle());
}

std::string SqliteStatement::ColumnName(int column) const {
    const char* name = sqlite3_column_name(Handle(), column);
    return name == nullptr ? "" : name;
}

bool SqliteStatement::IsNull(int column) const {
    return sqlite3_column_type(Handle(), column) == SQLITE_NULL;
}

std::int64_t SqliteStatement::Integer(int column) const {
    return sqlite3_column_int64(Handle(), column);
}

std::string_view SqliteStatement::Text(int column) const {
    const unsigned char* text = sqlite3_column_text(Handle(), column);
    if (text == nullptr) {
        return {};
    }
    return {reinterpret_cast<const char*>(text), static_cast<std::size_t>(sqlite3_column_bytes(Handle(), column))};
}

std::string_view SqliteStatement::Bytes(int column) const {
    const void* bytes = sqlite3_column_blob(Handle(), column);
    if (bytes == nullptr) {
        return {};
    }
    return {static_cast<const char*>(bytes), static_cast<std::size_t>(sqlite3_column_bytes(Handle(), column))};
}

SqliteConnection::SqliteConnection(const std::string& path, const services::Clock& clock, Missing missing,
                                   LockWait* wait)
    : path_(path), lock_(std::make_unique<SqliteLock>(path, wait)) {
    const auto fail = [&](const std::string& words, DatabaseErrorKind kind = DatabaseErrorKind::CannotOpen) {
        throw DatabaseError(kind, "the database '" + path + "' cannot be opened: " + words);
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
            throw DatabaseError(DatabaseErrorKind::CannotOpen, "the file is empty");
        }
        if (missing == Missing::Create || IsCompanyWithoutWriteAheadLog()) {
            UseWriteAheadLog();
        }
    } catch (const DatabaseError& error) {
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
        throw DatabaseError(DatabaseErrorKind::CannotOpen, "it cannot be set to write-ahead logging");
    }
}

SqliteStatement SqliteConnection::Prepare(std::string_view sql) const {
    if (sql.find('\0') != std::string_view::npos) {
        throw DatabaseError(DatabaseErrorKind::Other,
                            "the statement holds a character that no statement may hold");
    }
    const std::string text = ToSqliteDialect(sql);
    sqlite3_stmt* prepared = nullptr;
    const char* tail = nullptr;
    const int result =
        sqlite3_prepare_v2(handle_, text.c_str(), static_cast<int>(text.size() + 1), &prepared, &tail);
    SqliteStatement statement(prepared, *lock_);
    if (result != SQLITE_OK) {
        lock_->Raise();
    }
    if (prepared == nullptr) {
        throw DatabaseError(DatabaseErrorKind::Other, "there is no statement in the text");
    }
    if (!IsBlankSql(tail)) {
        throw DatabaseError(DatabaseErrorKind::Other,
                            "one statement a call: the text behind the first statement is refused");
    }
    return statement;
}

void SqliteConnection::Execute(std::string_view sql) const {
    SqliteStatement statement = Prepare(sql);
    while (statement.Step()) {
    }
}

void SqliteConnection::ExecuteScript(const std::string& sql) const {
    if (sqlite3_exec(handle_, sql.c_str(), nullptr, nullptr, nullptr) != SQLITE_OK) {
        lock_->Raise();
    }
}

std::optional<std::string> SqliteConnection::Value(std::string_view sql) const {
    SqliteStatement statement = Prepare(sql);
    if (!statement.Step() || statement.IsNull(0)) {
        return std::nullopt;
    }
    return std::string(statement.Text(0));
}

std::int64_t SqliteConnection::Number(std::string_view sql, std::int64_t fallback) const {
    SqliteStatement statement = Prepare(sql);
    return statement.Step() && !statement.IsNull(0) ? statement.Integer(0) : fallback;
}

SqliteCacheSize::SqliteCacheSize(const SqliteConnection& connection, std::int64_t kibibytes)
    : connection_(connection), usual_(connection.Number("PRAGMA cache_size")) {
    connection_.Execute("PRAGMA cache_size = -" + std::to_string(kibibytes));
}

SqliteCacheSize::~SqliteCacheSize() {
    const std::string back = "PRAGMA cache_size = " + std::to_string(usual_);
    sqlite3_exec(connection_.Handle(), back.c_str(), nullptr, nullptr, nullptr);
    sqlite3_db_release_memory(connection_.Handle());
}

SqliteTemporaryMemory::SqliteTemporaryMemory(const SqliteConnection& connection) : connection_(connection) {
    connection_.Execute("PRAGMA temp_store = MEMORY");
}

SqliteTemporaryMemory::~SqliteTemporaryMemory() {
    sqlite3_exec(connection_.Handle(), "PRAGMA temp_store = FILE", nullptr, nullptr, nullptr);
}

SqliteTransaction::SqliteTransaction(const SqliteConnection& connection, Kind kind, LockWait::Patience patience)
    : connection_(connection) {
    std::optional<SqliteLock::OfImport> longer;
    if (patience == LockWait::Patience::Import) {
        longer.emplace(*connection.lock_);
    }
    connection_.Execute(kind == Kind::Write ? "BEGIN IMMEDIATE" : "BEGIN");
    if (kind == Kind::Read) {
        // A plain BEGIN takes its view of the database with the first read only.
        try {
            connection_.Number("SELECT COUNT(*) FROM sqlite_schema");
        } catch (...) {
            connection_.Execute("ROLLBACK");
            throw;
        }
    }
}

SqliteTransaction::~SqliteTransaction() {
    // The database may have rolled back by itself, on a full disk for instance.
    if (open_ && sqlite3_get_autocommit(connection_.Handle()) == 0) {
        sqlite3_exec(connection_.Handle(), "ROLLBACK", nullptr, nullptr, nullptr);
    }
}

void SqliteTransaction::Commit() {
    connection_.Execute("COMMIT");
    open_ = false;
}

} // namespace qndr::suite
