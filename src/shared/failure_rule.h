#pragma once

#include "services/failure.h"

#include <cstdlib>
#include <iostream>
#include <stdexcept>
#include <string>
#include <utility>

namespace qndr {

/// Sees every statement that the failure rule abandons. None by default.
class FailureObserver {
  public:
    virtual ~FailureObserver() = default;
    virtual void StatementAbandoned(const std::string& reason) = 0;
};

namespace detail {
/// Of the thread and not of the agent: a statement is abandoned in places that know no agent.
inline thread_local FailureObserver* failureObserver = nullptr;

inline void ReportAbandoned(const std::exception& failure) {
    if (failureObserver != nullptr) {
        failureObserver->StatementAbandoned(failure.what());
    }
    if (const char* trace = std::getenv("QNDR_TRACE_FAILURES"); trace != nullptr && std::string(trace) == "1") {
        std::cerr << "abandoned: " << failure.what() << '\n';
    }
}
} // namespace detail

/// Lets an observer see this thread's abandoned statements for as long as the object lives.
class ObserveFailures {
  public:
    explicit ObserveFailures(FailureObserver& observer)
        : previous_(std::exchange(detail::failureObserver, &observer)) {}
    ~ObserveFailures() { detail::failureObserver = previous_; }
    ObserveFailures(const ObserveFailures&) = delete;
    ObserveFailures& operator=(const ObserveFailures&) = delete;

  private:
    FailureObserver* previous_;
};

// The failure rule: no failure leaves a routine of the agent as an error. A statement that fails is abandoned at
// the point of failure, what it had not assigned stays as it was, and the routine goes on with the statement
// behind it. A test that fails counts as passed. The rule works per statement: never put one Attempt around a
// whole body, and keep the way round in which a test is phrased, for that decides where a failure leads. What is
// caught are failures of the outside (std::runtime_error, of which services::Failure is one); programming errors
// pass through.

/// Runs one statement under the failure rule.
template <typename Statement> void Attempt(Statement&& statement) {
    try {
        std::forward<Statement>(statement)();
    } catch (const std::runtime_error& failure) {
        detail::ReportAbandoned(failure);
    }
}

/// Runs one test under the failure rule: a failed test counts as passed.
template <typename Test> bool Holds(Test&& test) {
    try {
        return std::forward<Test>(test)();
    } catch (const std::runtime_error& failure) {
        detail::ReportAbandoned(failure);
        return true;
    }
}

} // namespace qndr
