#include "suite/sql/sqlite/sqlite_statement_time.h"

#include <exception>

namespace qndr::sql {
namespace {

/// Steps of the database's machine between two looks at the clock: a few milliseconds.
constexpr int kStepsBetweenLooks = 20'000;
constexpr std::chrono::milliseconds kBetweenQuestions{1000};

} // namespace

SqliteStatementTime::SqliteStatementTime(sqlite3* handle, const StatementLimits& limits)
    : handle_(handle), limits_(limits) {
    sqlite3_progress_handler(handle_, kStepsBetweenLooks, &SqliteStatementTime::Look, this);
}

SqliteStatementTime::~SqliteStatementTime() {
    sqlite3_progress_handler(handle_, 0, nullptr, nullptr);
}

int SqliteStatementTime::Look(void* time) {
    return static_cast<SqliteStatementTime*>(time)->IsOver() ? 1 : 0;
}

bool SqliteStatementTime::IsOver() {
    const Moment now = std::chrono::steady_clock::now();
    if (start_ == Moment()) {
        start_ = now;
        nextQuestion_ = now + limits_.longestWhenStopping;
    }
    if (now - start_ > limits_.longest) {
        verdict_ = "the statement worked for too long and was ended";
    } else if (now > nextQuestion_) {
        nextQuestion_ = now + kBetweenQuestions;
        if (IsStopping()) {
            verdict_ = "the statement was ended, for the agent is asked to stop";
        }
    }
    return !verdict_.empty();
}

/// Called from C code, through which nothing may be thrown.
bool SqliteStatementTime::IsStopping() const {
    try {
        return limits_.isStopping && limits_.isStopping();
    } catch (const std::exception&) {
        return false;
    }
}

} // namespace qndr::sql
