#include "simulation/live.h"

#include <gtest/gtest.h>

#include <iostream>

namespace qndr::testing {
namespace {

TEST(Canary, IsCaughtWithinTwelveRunsThatAreWellWithoutIt) {
    const std::uint64_t group = std::getenv("QNDR_RARE") != nullptr ? RareCanaryGroup : CanaryGroup;
    for (std::uint64_t number = 0; number < RunsInAGroup; ++number) {
        const auto result = LiveRun(group, number);
        if (!result.violation.empty()) {
            std::cout << "caught by run " << number << ": " << result.violation << '\n';
            return;
        }
    }
    FAIL() << "the judge does not see it";
}

} // namespace
} // namespace qndr::testing
