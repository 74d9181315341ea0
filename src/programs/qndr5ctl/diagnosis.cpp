#include "programs/qndr5ctl/diagnosis.h"

#include "programs/qndr5ctl/diagnosis_sections.h"
#include "shared/records.h"
#include "shared/text.h"

#include <algorithm>
#include <cstdlib>

namespace qndr::control {

namespace {

/// A share and the computer that it lies on are seldom closer.
constexpr std::int64_t ToleratedClockSeconds = 120;

void DiagnoseSyncFolder(const Observations& seen, Findings& findings) {
    if (seen.syncFolder.empty()) {
        findings.Add(troubles::NoSyncLocation, seen.computerName, "This computer has no Sync location.");
        return;
    }
    if (!seen.syncFolderExists) {
        findings.Add(troubles::NoSyncFolder, seen.syncFolder, "The Sync folder does not exist or is not reached.");
        return;
    }
    if (!seen.syncFolderFailure.empty()) {
        findings.Add(troubles::SyncFolderUnreadable, seen.syncFolder,
                     "The Sync folder cannot be read: " + seen.syncFolderFailure);
    }
}

void DiagnoseProbe(const Observations& seen, Findings& findings) {
    if (!seen.probe) {
        return;
    }
    const Probe& probe = *seen.probe;
    if (!probe.isWritten) {
        findings.Add(troubles::SyncFolderNotWritable, seen.syncFolder,
                     "No file can be written into the Sync folder.");
    }
    if (!probe.file.empty() && !probe.isRemoved) {
        findings.Add(troubles::SyncFolderNotCleanable, seen.syncFolder,
                     "Files can be written into the Sync folder, but not deleted there.", probe.file);
    }
    if (probe.isWritten && std::abs(probe.clockAhead) > ToleratedClockSeconds) {
        findings.Add(troubles::ClockOff, seen.computerName,
                     "The clock of this computer is " + Counted(std::abs(probe.clockAhead), "second") +
                         (probe.clockAhead > 0 ? " ahead of" : " behind") + " the Sync folder's.");
    }
}

void DiagnoseRunning(const ObservedCompany& company, const Observations& seen, Findings& findings) {
    const bool isMain = company.facts.isMain;
    // A computer in the role of a workstation asks neither option; where another computer runs the company, only
    // main's own can be judged.
    if (company.isHere ? seen.isRoaming : !isMain) {
        return;
    }
    if (!company.enableSync) {
        if (isMain) {
            findings.Add(troubles::SyncNotEnabled, company.facts.name, "Syncing is not enabled for this company.",
                         company.file);
        } else {
            findings.Add(
                troubles::WrongRole, company.facts.name,
                "This computer has the role of a main computer, and its agent passes this workstation by.");
        }
        return;
    }
    const std::string designated = Trim(company.syncComputerName);
    if (designated.empty() || (company.isHere && ToLower(designated) != ToLower(Trim(seen.computerName)))) {
        findings.Add(troubles::WrongComputer, company.facts.name,
                     designated.empty()
                         ? "SyncComputerName names no computer, so that no agent processes this company."
                         : "This company is to be synced by the computer '" + designated + "', and this is '" +
                               seen.computerName + "': the agent here asks itself to exit.",
                     company.file, seen.computerName);
    }
}

void DiagnoseCompany(const ObservedCompany& company, const Observations& seen, Findings& findings) {
    const std::string& name = company.facts.name;
    if (!company.damage.empty()) {
        findings.Add(troubles::DatabaseDamaged, name, "The database is damaged: " + company.damage, company.file);
    }
    DiagnoseRunning(company, seen, findings);
    if (!company.cannotStore.empty()) {
        findings.Add(troubles::CannotStore, name,
                     "Its agent had trouble of its computer, and nothing was stored since: " + company.cannotStore,
                     company.file);
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

} // namespace

std::string Counted(std::int64_t number, const std::string& noun) {
    return std::to_string(number) + " " + noun + (number == 1 ? "" : "s");
}

void DiagnoseComputer(const Observations& seen, Findings& findings) {
    if (seen.companiesFolders.empty()) {
        findings.Add(troubles::NoCompaniesLocation, seen.computerName, "This computer has no Companies location.");
    }
    for (const std::string& folder : seen.missingFolders) {
        findings.Add(troubles::NoCompaniesFolder, folder,
                     "The folder of the company files does not exist or is not reached.");
    }
    if (!seen.companiesFolders.empty() && seen.missingFolders.empty() && seen.companies.empty() &&
        seen.unopened.empty()) {
        findings.Add(troubles::NoCompany, seen.companiesFolders.front(), "There is no company file.");
    }
    DiagnoseSyncFolder(seen, findings);
    DiagnoseProbe(seen, findings);
    if (seen.stopSync) {
        findings.Add(troubles::StopRequested, "StopSync",
                     "The agent of this computer was asked to exit and has not been started since.");
    }
    if (seen.debugLog) {
        findings.Add(troubles::DebugLogOn, "DebugSyncAgent", "The sync log is on and grows with every pass.");
    }
    if (seen.heartbeatNoResponse) {
        findings.Add(troubles::MainNoResponse, "SyncHeartbeat",
                     "Main's agent has not answered the heartbeat of this computer.");
    }
    for (const std::string& name : seen.badSettings) {
        findings.Add(troubles::BadSetting, name, "The setting holds no number, or cannot be read.", name);
    }
}

void DiagnoseCompanies(const Observations& seen, Findings& findings) {
    for (const UnopenedCompany& company : seen.unopened) {
        findings.Add(company.isDamaged ? troubles::DatabaseDamaged : troubles::CompanyNotOpened, company.file,
                     (company.isDamaged ? "The database is damaged: " : "The company cannot be opened: ") +
                         company.reason,
                     company.file);
    }
    for (auto company = seen.companies.begin(); company != seen.companies.end(); ++company) {
        DiagnoseCompany(*company, seen, findings);
        const auto same = std::find_if(seen.companies.begin(), company, [&](const ObservedCompany& other) {
            return EqualIdentities(other.facts.uniqueID, company->facts.uniqueID);
        });
        if (same != company) {
            findings.Add(troubles::SameIdentity, company->facts.name,
                         "It has the same unique id as the company of '" + same->file +
                             "': one is a copy of the other, and they take each other's files.",
                         company->file);
        }
    }
}

std::vector<Finding> Diagnose(const Observations& observations) {
    Findings findings;
    DiagnoseComputer(observations, findings);
    DiagnoseCompanies(observations, findings);
    DiagnosePairs(observations, findings);
    DiagnoseRefusals(observations, findings);
    DiagnoseFiles(observations, findings);
    std::vector<Finding> all = findings.Take();
    std::stable_sort(all.begin(), all.end(),
                     [](const Finding& left, const Finding& right) { return left.severity < right.severity; });
    return all;
}

} // namespace qndr::control
