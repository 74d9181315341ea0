#pragma once

#include "suite/database/sqlite_connection.h"

#include <chrono>
#include <functional>
#include <string>

namespace qndr::suite {

/// How long one statement may work, by the computer's clock; waiting for another program's lock does not count. A
/// million audit rows take seconds. An agent that is asked to stop has to end, but not in the middle of an honest
/// statement: what was sent must be noted as sent.
struct StatementLimits {
    std::chrono::milliseconds longest = std::chrono::minutes(10);
    std::chrono::milliseconds longestWhenStopping = std::chrono::seconds(10);
    /// Whether the agent is asked to stop; asked about once a second when the second limit is passed. What it
    /// raises counts as no.
    std::function<bool()> isStopping;
};

/// Ends the statements that a connection runs, by letting them fail, when they pass their limit.
class StatementTime {
  public:
    /// The limits must outlive the object.
    StatementTime(const SqliteConnection& connection, const StatementLimits& limits);
    ~StatementTime();
    StatementTime(const StatementTime&) = delete;
    StatementTime& operator=(const StatementTime&) = delete;

    /// Why a statement was ended; empty when none was.
    const std::string& Verdict() const { return verdict_; }

  private:
    using Moment = std::chrono::steady_clock::time_point;

    static int Look(void* time);
    bool IsOver();
    bool IsStopping() const;

    const SqliteConnection& connection_;
    const StatementLimits& limits_;
    Moment start_; ///< of the work; the epoch until the first look
    Moment nextQuestion_;
    std::string verdict_;
};

} // namespace qndr::suite
