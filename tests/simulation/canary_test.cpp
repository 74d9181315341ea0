#include "simulation/live.h"

#include <gtest/gtest.h>

#include <iostream>

namespace qndr::testing {
namespace {

TEST(Canary, IsCaughtWithinTwelveDaysThatAreWellWithoutIt) {
    for (std::uint64_t number = 0; number < DaysInAGroup; ++number) {
        const auto result = LiveADay(0, number);
        if (!result.violation.empty()) {
            std::cout << "caught by day " << number << ": " << result.violation << '\n';
            return;
        }
    }
    FAIL() << "the judge does not see it";
}

} // namespace
} // namespace qndr::testing
