#include "diagnosis/sections.h"
#include "shared/records.h"
#include "text/editing.h"
#include "text/letter_case.h"

#include <algorithm>
#include <utility>

namespace qndr::diagnosis {

namespace {

bool HasMainBeside(const ObservedCompany& company, const Observations& seen) {
    return std::any_of(seen.companies.begin(), seen.companies.end(), [&](const ObservedCompany& other) {
        return other.isHere && other.facts.isMain && &other != &company;
    });
}

/// What the agent of this computer makes of a company in its folder, by the role that the computer has.
void DiagnosePlace(const ObservedCompany& company, const Observations& seen, Findings& findings) {
    const std::string& name = company.facts.name;
    if (company.facts.isMain && seen.isRoaming) {
        findings.Add(
            troubles::MainAsRoaming, name,
            "This computer has the role of a Roaming Workstation: its agent runs the main company without "
            "asking which computer is to, and answers no heartbeat.");
    } else if (!company.facts.isMain && !seen.isRoaming) {
        if (HasMainBeside(company, seen)) {
            findings.Add(troubles::MisplacedWorkstation, name,
                         "A workstation's company lies beside the main company, whose agent does not run it.",
                         company.file);
        } else {
            findings.Add(
                troubles::WrongRole, name,
                "This computer has the role of a main computer, and its agent passes this workstation by.");
        }
    }
}

/// Only a main computer's agent asks the two options, and another computer's can be judged by them alone.
void DiagnoseRunning(const ObservedCompany& company, const Observations& seen, Findings& findings) {
    if (!company.facts.isMain || (company.isHere && seen.isRoaming)) {
        return;
    }
    const std::string& name = company.facts.name;
    const std::string designated = text::Trimmed(company.syncComputerName);
    if (!company.facts.syncEnabled) {
        findings.Add(troubles::SyncNotEnabled, name, "Syncing is not enabled for this company.", company.file);
    } else if (designated.empty()) {
        findings.Add(troubles::NoComputerNamed, name,
                     "SyncComputerName names no computer, so that no agent processes this company.", company.file,
                     seen.computerName);
    } else if (company.isHere &&
               text::ToLowerCase(designated) != text::ToLowerCase(text::Trimmed(seen.computerName))) {
        findings.Add(troubles::WrongComputer, name,
                     "This company is to be synced by the computer '" + designated + "', and this is '" +
                         seen.computerName +
                         "': the agent here asks itself to exit. Either the company has moved, "
                         "or this is a copy of it.",
                     company.file, seen.computerName);
    }
}

void DiagnoseCompany(const ObservedCompany& company, const Observations& seen, Findings& findings) {
    const std::string& name = company.facts.name;
    if (!company.damage.empty()) {
        findings.Add(troubles::DatabaseDamaged, name, "The database is damaged: " + company.damage, company.file);
    }
    if (company.isHere) {
        DiagnosePlace(company, seen, findings);
    }
    DiagnoseRunning(company, seen, findings);
    if (!company.cannotStore.empty()) {
        findings.Add(troubles::CannotStore, name,
                     "Its agent had trouble of its computer, and nothing was stored since: " + company.cannotStore,
                     company.file);
    }
    if (!company.anotherAgent.empty()) {
        findings.Add(troubles::TwoAgents, name, company.anotherAgent, company.file);
    }
    if (company.openConflicts > 0) {
        findings.Add(troubles::ConflictsOpen, name,
                     Counted(company.openConflicts, "losing version") + " of rows not settled yet.", company.file);
    }
    if (company.putAside > 0) {
        findings.Add(troubles::RecordsPutAside, name,
                     Counted(company.putAside, "record") + " that the database refused, put aside in the last " +
                         Counted(seen.days, "day") + ".",
                     company.file);
    }
}

std::string Described(const ObservedCompany& company) {
    const std::string changed =
        company.changedOn.empty() ? "" : " of " + FormatGeneralDate(*ParseDate(company.changedOn));
    return "'" + company.file + "' (newest change " + std::to_string(company.newestChange) + changed + " UTC)";
}

/// Two companies of one identity: two files that lead to one database, or two databases of which one is a copy.
void DiagnoseTwins(const ObservedCompany& first, const ObservedCompany& second, Findings& findings) {
    if (first.database == second.database) {
        // A copied file is as a rule the younger one, and has the longer name.
        const bool secondIsCopy = std::pair(first.fileDate.Days(), first.file.size()) <
                                  std::pair(second.fileDate.Days(), second.file.size());
        const ObservedCompany& copy = secondIsCopy ? second : first;
        findings.Add(troubles::SameDatabase, copy.facts.name,
                     "'" + first.file + "' and '" + second.file + "' lead to the same database '" +
                         first.database + "', which is processed twice in each pass.",
                     copy.file);
    } else {
        findings.Add(troubles::SameIdentity, second.facts.name,
                     Described(first) + " and " + Described(second) +
                         " are the same company: one is a copy of the other, and they take each other's files.",
                     second.file);
    }
}

} // namespace

void DiagnoseCompanies(const Observations& seen, Findings& findings) {
    for (const UnopenedCompany& company : seen.unopened) {
        switch (company.because) {
        case UnopenedCompany::Because::NotOpened:
            findings.Add(troubles::CompanyNotOpened, company.file,
                         "The company cannot be opened: " + company.reason, company.file);
            break;
        case UnopenedCompany::Because::Damaged:
            findings.Add(troubles::DatabaseDamaged, company.file, "The database is damaged: " + company.reason,
                         company.file);
            break;
        case UnopenedCompany::Because::Older:
            findings.Add(troubles::CompanyOlder, company.file,
                         "Nothing more can be said: " + company.reason +
                             ", which the next pass of its agent brings up to date.",
                         company.file);
            break;
        }
    }
    for (auto company = seen.companies.begin(); company != seen.companies.end(); ++company) {
        DiagnoseCompany(*company, seen, findings);
        const auto same = std::find_if(seen.companies.begin(), company, [&](const ObservedCompany& other) {
            return EqualIdentities(other.facts.uniqueID, company->facts.uniqueID);
        });
        if (same != company) {
            DiagnoseTwins(*same, *company, findings);
        }
    }
}

} // namespace qndr::diagnosis
