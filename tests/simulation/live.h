#pragma once

#include "simulation/simulation.h"
#include "support/temporary_folder.h"

#include <cstdlib>
#include <filesystem>
#include <string>
#include <vector>

namespace qndr::testing {

using Faults = std::vector<std::string>;

/// QNDR_SEED shifts all seeds, so that the same tests look at other days.
inline std::uint64_t Seed(std::uint64_t number) {
    const char* const shift = std::getenv("QNDR_SEED");
    return number + (shift != nullptr ? std::stoull(shift) : 0);
}

/// An agent that is not told its root folder files what it retires below the present one.
class PresentFolder {
  public:
    explicit PresentFolder(const std::string& path) { std::filesystem::current_path(path); }
    ~PresentFolder() { std::filesystem::current_path(before_); }
    PresentFolder(const PresentFolder&) = delete;
    PresentFolder& operator=(const PresentFolder&) = delete;

  private:
    std::filesystem::path before_ = std::filesystem::current_path();
};

/// Days of main and that many workstations, and the time until all is quiet.
inline simulation::SimulationResult Live(std::uint64_t seed, const Faults& faults, int workstations,
                                         int days = 1) {
    const test::TemporaryFolder folder(test::QuickPlace());
    const PresentFolder present(folder.Path());
    return simulation::Simulation({.seed = seed,
                                   .workstations = workstations,
                                   .days = days,
                                   .faults = faults,
                                   .folder = folder.Path()})
        .Run();
}

/// How to see it again, what it was and what led to it; empty when nothing was.
inline std::string Describe(std::uint64_t seed, int workstations, int days,
                            const simulation::SimulationResult& result) {
    if (result.violation.empty()) {
        return "";
    }
    constexpr std::size_t shown = 40;
    std::string text = "qndr5sim --days " + std::to_string(days) + " --seed " + std::to_string(seed) +
                       " --workstations " + std::to_string(workstations) + " --faults " + result.faultsInPlan +
                       '\n' + result.violation + '\n';
    const std::size_t count = result.lastEvents.size();
    for (std::size_t event = count > shown ? count - shown : 0; event < count; ++event) {
        text += result.lastEvents[event] + '\n';
    }
    return text;
}

/// Runs with some of all faults, in groups.
inline constexpr std::uint64_t RunsInAGroup = 12;
/// The runs in which the canaries must be caught, and which are well without them. What shows rarely has a group
/// of its own.
inline constexpr std::uint64_t CanaryGroup = 10;
inline constexpr std::uint64_t RareCanaryGroup = 40;
inline std::uint64_t SeedOfRun(std::uint64_t group, std::uint64_t number) {
    return Seed(100'000 + 100 * group + number);
}
inline int DaysOf(std::uint64_t group) {
    return group >= CanaryGroup ? 4 : 1;
}
inline int WorkstationsOf(std::uint64_t seed) {
    return 1 + static_cast<int>(seed % 2);
}
inline simulation::SimulationResult LiveRun(std::uint64_t group, std::uint64_t number) {
    const std::uint64_t seed = SeedOfRun(group, number);
    return Live(seed, {}, WorkstationsOf(seed), DaysOf(group));
}

} // namespace qndr::testing
