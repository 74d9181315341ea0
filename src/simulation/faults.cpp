#include "simulation/faults.h"

#include "services/failure.h"

#include <algorithm>

namespace qndr::simulation {
namespace {

struct Kind {
    const char* name;
    double usualRate; ///< of each occasion: a call, a pass, a file or a deletion
};

constexpr std::array<Kind, FaultCount> Kinds{{
    {"refuse-call", 0.0008},  {"die", 0.0004},           {"power-cut", 0.05},       {"disk-full", 0.02},
    {"lock-database", 0.05},  {"share-fails", 0.02},     {"stop-agent", 0.03},      {"edit-in-pass", 0.004},
    {"lose-file", 0.03},      {"delay-file", 0.3},       {"double-file", 0.05},     {"truncate-file", 0.03},
    {"empty-file", 0.1},      {"bring-back-file", 0.05}, {"refuse-deletion", 0.05}, {"shuffle-listing", 0.5},
    {"jump-clock", 0.04},     {"drift-clock", 0.3},      {"sleep", 0.05},           {"reset", 0.05},
    {"restore-backup", 0.01},
}};

constexpr double MostOften = 4; ///< times the usual rate

} // namespace

std::string_view FaultName(Fault fault) {
    return Kinds[static_cast<std::size_t>(fault)].name;
}

FaultPlan::FaultPlan(const std::vector<std::string>& names, SeededRandom& random) {
    if (names == std::vector<std::string>{"none"}) {
        return;
    }
    for (const std::string& name : names) {
        const auto found =
            std::find_if(Kinds.begin(), Kinds.end(), [&](const Kind& kind) { return kind.name == name; });
        if (found == Kinds.end()) {
            throw services::Failure("there is no fault '" + name + "'");
        }
        rates_[static_cast<std::size_t>(found - Kinds.begin())] = found->usualRate;
    }
    if (names.empty()) {
        // Few kinds at a time find more than all at once: each hides others.
        const std::int64_t share = 1 + random.Below(10);
        for (std::size_t kind = 0; kind < FaultCount; ++kind) {
            const double often = random.Chance(0.3) ? MostOften : 1;
            rates_[kind] = random.Below(12) < share ? Kinds[kind].usualRate * often : 0;
        }
    }
}

std::string FaultPlan::Names() const {
    std::string names;
    for (std::size_t kind = 0; kind < FaultCount; ++kind) {
        if (rates_[kind] > 0) {
            names.append(names.empty() ? "" : ",").append(Kinds[kind].name);
        }
    }
    return names;
}

} // namespace qndr::simulation
