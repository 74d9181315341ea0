#pragma once

#include "diagnosis/diagnosis.h"
#include "diagnosis/state_words.h"
#include "text/shell_text.h"

#include <utility>

namespace qndr::diagnosis {

/// The findings as they are made.
class Findings {
  public:
    /// The places are filled in as words of a shell.
    template <typename... Places>
    void Add(const TroubleKind& kind, const std::string& subject, std::string text, const Places&... places) {
        const std::vector<std::string> words{text::ShellQuoted(places)...};
        Finding finding{std::string(kind.code),
                        kind.severity,
                        subject,
                        std::move(text),
                        text::FillPlaces(kind.remedy, words),
                        {}};
        for (const std::string_view command : kind.commands) {
            if (!command.empty()) {
                finding.commands.push_back(text::FillPlaces(command, words));
            }
        }
        all_.push_back(std::move(finding));
    }
    std::vector<Finding> Take() { return std::move(all_); }

  private:
    std::vector<Finding> all_;
};

/// UniqueIDs of workstations whose exchange with main has to begin anew: their files in the Sync folder go with
/// it.
using BeginAnew = std::vector<std::string>;

// The sections of the diagnosis.
void DiagnoseComputer(const Observations& observations, Findings& findings);
void DiagnoseFolder(const Observations& observations, Findings& findings);
void DiagnoseCompanies(const Observations& observations, Findings& findings);
BeginAnew DiagnosePairs(const Observations& observations, Findings& findings);
void DiagnoseFiles(const Observations& observations, const BeginAnew& anew, Findings& findings);
void DiagnoseRefusals(const Observations& observations, Findings& findings);

} // namespace qndr::diagnosis
