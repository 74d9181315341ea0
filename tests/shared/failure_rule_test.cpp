#include "shared/failure_rule.h"

#include <gtest/gtest.h>

#include <vector>

namespace qndr::testing {
namespace {

struct Notes : FailureObserver {
    void StatementAbandoned(const std::string& reason) override { reasons.push_back(reason); }
    std::vector<std::string> reasons;
};

bool Fails(const char* reason) {
    throw services::Failure(reason);
}

TEST(FailureRule, FailedStatementIsAbandonedAndAFailedTestCountsAsPassed) {
    int number = 7;
    Attempt([&] { number = Fails("statement") ? 1 : 2; });
    EXPECT_EQ(number, 7);
    EXPECT_TRUE(Holds([] { return !Fails("turned test"); }));
    EXPECT_FALSE(Holds([] { return false; }));
}

TEST(FailureRule, ProgrammingErrorsPassThrough) {
    EXPECT_THROW(Attempt([] { throw std::logic_error("bug"); }), std::logic_error);
    EXPECT_THROW(Holds([]() -> bool { throw std::logic_error("bug"); }), std::logic_error);
}

TEST(FailureRule, ObserverSeesWhatIsAbandonedWhileItLives) {
    Notes outer;
    const ObserveFailures observing(outer);
    {
        Notes inner;
        const ObserveFailures nested(inner);
        Attempt([] { Fails("a"); });
        Holds([] { return Fails("b"); });
        Attempt([] {});
        EXPECT_EQ(inner.reasons, (std::vector<std::string>{"a", "b"}));
    }
    Attempt([] { Fails("c"); });
    EXPECT_EQ(outer.reasons, (std::vector<std::string>{"c"}));
}

} // namespace
} // namespace qndr::testing
