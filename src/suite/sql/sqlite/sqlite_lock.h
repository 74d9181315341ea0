#pragma once

#include "suite/sql/lock_wait.h"
#include "suite/sql/sqlite/sqlite_error.h"

#include <exception>
#include <string>
#include <utility>

namespace qndr::sql {

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

} // namespace qndr::sql
