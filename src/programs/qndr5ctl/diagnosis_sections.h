#pragma once

#include "programs/qndr5ctl/diagnosis.h"
#include "shared/formatting.h"

#include <utility>

namespace qndr::control {

/// The findings as they are made.
class Findings {
  public:
    template <typename... Places>
    void Add(const TroubleKind& kind, const std::string& subject, std::string text, const Places&... places) {
        all_.push_back({std::string(kind.code), kind.severity, subject, std::move(text),
                        FormatString(kind.remedy, std::string(places)...)});
    }
    std::vector<Finding> Take() { return std::move(all_); }

  private:
    std::vector<Finding> all_;
};

// The sections of the diagnosis.
void DiagnoseComputer(const Observations& observations, Findings& findings);
void DiagnoseCompanies(const Observations& observations, Findings& findings);
void DiagnosePairs(const Observations& observations, Findings& findings);
void DiagnoseRefusals(const Observations& observations, Findings& findings);
void DiagnoseFiles(const Observations& observations, Findings& findings);

/// "1 record", "2 records"
std::string Counted(std::int64_t number, const std::string& noun);

} // namespace qndr::control
