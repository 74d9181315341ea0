#pragma once

#include <chrono>
#include <functional>
#include <string>

namespace qndr::sql {

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

/// Ends the statements that a connection runs, by letting them fail, when they pass their limit; for as long as
/// the object lives.
class StatementTime {
  public:
    virtual ~StatementTime() = default;

    /// Why a statement was ended; empty when none was.
    virtual const std::string& Verdict() const = 0;
};

} // namespace qndr::sql
