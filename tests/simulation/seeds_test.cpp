#include "services/failure.h"
#include "simulation/live.h"

#include <gtest/gtest.h>

namespace qndr::testing {
namespace {

using simulation::Fault;

void ExpectAllWell(std::uint64_t seed, const Faults& faults, int workstations, int days = 1) {
    const auto result = Live(seed, faults, workstations, days);
    EXPECT_TRUE(result.violation.empty()) << Describe(seed, workstations, days, result);
    EXPECT_GT(result.edits, 0);
}

class OneFault : public ::testing::TestWithParam<std::size_t> {};

TEST_P(OneFault, LosesNothingThatNoKnownLossExplains) {
    const std::string fault(simulation::FaultName(static_cast<Fault>(GetParam())));
    for (std::uint64_t number = 0; number < 4; ++number) {
        ExpectAllWell(Seed(1000 * GetParam() + number), {fault}, 1);
    }
}

INSTANTIATE_TEST_SUITE_P(Simulation, OneFault, ::testing::Range(std::size_t{0}, simulation::FaultCount),
                         [](const auto& test) {
                             std::string name(simulation::FaultName(static_cast<Fault>(test.param)));
                             std::erase(name, '-');
                             return name;
                         });

class SomeFaults : public ::testing::TestWithParam<std::uint64_t> {};

TEST_P(SomeFaults, LoseNothingThatNoKnownLossExplains) {
    for (std::uint64_t number = 0; number < RunsInAGroup; ++number) {
        const std::uint64_t seed = SeedOfRun(GetParam(), number);
        ExpectAllWell(seed, {}, WorkstationsOf(seed), DaysOf(GetParam()));
    }
}

INSTANTIATE_TEST_SUITE_P(Simulation, SomeFaults, ::testing::Values(0, 1, CanaryGroup, RareCanaryGroup));

TEST(Simulation, ShowsTheDoctorNoTroubleWhereNothingGoesWrong) {
    ExpectAllWell(Seed(9), {"none"}, 2, 2);
}

TEST(Simulation, GoesTheSameWayAgain) {
    const auto first = Live(Seed(7), {}, 2);
    const auto second = Live(Seed(7), {}, 2);
    EXPECT_EQ(first.fingerprint, second.fingerprint);
    EXPECT_EQ(first.lastEvents, second.lastEvents);
    EXPECT_NE(first.fingerprint, Live(Seed(8), {}, 2).fingerprint);
}

TEST(Simulation, RefusesAFaultThatThereIsNot) {
    EXPECT_THROW(Live(1, {"die", "lightning"}, 1), services::Failure);
}

} // namespace
} // namespace qndr::testing
