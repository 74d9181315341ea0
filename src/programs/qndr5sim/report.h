#pragma once

#include "simulation/simulation.h"

#include <cstdint>
#include <string>
#include <vector>

namespace qndr {

/// What came of one or many runs, added up.
class SimulationReport {
  public:
    void Add(const simulation::SimulationResult& result);

    /// The summary, for a person.
    std::string ToTable() const;
    /// The same as one line of JSON.
    std::string ToJson(std::uint64_t firstSeed) const;
    bool AllWell() const { return failedRuns_ == 0; }

  private:
    std::int64_t runs_ = 0;
    std::int64_t failedRuns_ = 0;
    simulation::SimulationResult sum_;
};

/// What is told of a run that went wrong: the seed, what it was, and the last events before it.
std::string DescribeFailure(const simulation::SimulationOptions& options,
                            const simulation::SimulationResult& result);

} // namespace qndr
