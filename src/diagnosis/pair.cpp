#include "diagnosis/pair.h"

#include "shared/records.h"

#include <algorithm>

namespace qndr::diagnosis {

namespace {

const ObservedCompany* FindCompany(const Observations& seen, bool isMain, const std::string& uniqueID) {
    const auto found =
        std::find_if(seen.companies.begin(), seen.companies.end(), [&](const ObservedCompany& company) {
            return company.facts.isMain == isMain && EqualIdentities(company.facts.uniqueID, uniqueID);
        });
    return found == seen.companies.end() ? nullptr : &*found;
}

} // namespace

std::vector<Pair> PairsOf(const Observations& seen) {
    std::vector<Pair> pairs;
    for (const ObservedCompany& main : seen.companies) {
        for (const WorkstationFacts& row : main.facts.workstations) {
            const ObservedCompany* laptop = FindCompany(seen, false, row.uniqueID);
            pairs.push_back({&main, &row, laptop, row.name.empty() ? row.uniqueID : row.name});
        }
    }
    for (const ObservedCompany& laptop : seen.companies) {
        const bool isPaired =
            std::any_of(pairs.begin(), pairs.end(), [&](const Pair& pair) { return pair.laptop == &laptop; });
        if (!laptop.facts.isMain && !isPaired) {
            pairs.push_back(
                {FindCompany(seen, true, laptop.facts.mainUniqueID), nullptr, &laptop, laptop.facts.name});
        }
    }
    return pairs;
}

} // namespace qndr::diagnosis
