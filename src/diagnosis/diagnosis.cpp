#include "diagnosis/diagnosis.h"

#include "diagnosis/sections.h"

#include <algorithm>
#include <utility>

namespace qndr::diagnosis {

std::vector<Finding> Diagnose(const Observations& observations) {
    Findings findings;
    DiagnoseComputer(observations, findings);
    DiagnoseFolder(observations, findings);
    DiagnoseCompanies(observations, findings);
    DiagnoseRefusals(observations, findings);
    Findings pairs;
    const BeginAnew anew = DiagnosePairs(observations, pairs);
    // A late file is imported before a reset throws it away.
    DiagnoseFiles(observations, anew, findings);
    std::vector<Finding> all = findings.Take();
    for (Finding& finding : pairs.Take()) {
        all.push_back(std::move(finding));
    }
    std::stable_sort(all.begin(), all.end(),
                     [](const Finding& left, const Finding& right) { return left.severity < right.severity; });
    return all;
}

} // namespace qndr::diagnosis
