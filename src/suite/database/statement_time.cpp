#include "suite/database/statement_time.h"

#include <exception>

namespace qndr::suite {
namespace {

/// Steps of the database's machine between two looks at the clock: a few milliseconds.
constexpr int kStepsBetweenLooks = 20'000;
constexpr std::chrono::milliseconds kBetweenQuestions{1000};

} // namespace

StatementTime::StatementTime(const SqliteConnection& connection, const StatementLimits& limits)
    : connection_(connection), limits_(limits) {
    sqlite3_progress_handler(connection_.Handle(), kStepsBetweenLooks, &StatementTime::Look, this);
}

StatementTime::~StatementTime() {
    sqlite3_progress_handler(connection_.Handle(), 0, nullptr, nullptr);
}

int StatementTime::Look(void* time) {
    return static_cast<StatementTime*>(time)->IsOver() ? 1 : 0;
}

bool StatementTime::IsOver() {
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
bool StatementTime::IsStopping() const {
    try {
        return limits_.isStopping && limits_.isStopping();
    } catch (const std::exception&) {
        return false;
    }
}

} // namespace qndr::suite
