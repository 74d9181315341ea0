#pragma once

#include "diagnosis/observations.h"

#include <string>
#include <vector>

namespace qndr::diagnosis {

/// A workstation and its main company, of which one side may not be at hand.
struct Pair {
    const ObservedCompany* main = nullptr;
    const WorkstationFacts* row = nullptr; ///< main's, when main is at hand and knows the workstation
    const ObservedCompany* laptop = nullptr;
    std::string name; ///< the workstation's
};

/// The rows of every main company at hand, and the workstations at hand that none of them knows.
std::vector<Pair> PairsOf(const Observations& seen);

} // namespace qndr::diagnosis
