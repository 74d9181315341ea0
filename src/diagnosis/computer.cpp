#include "diagnosis/sections.h"

#include <algorithm>
#include <cstdlib>

namespace qndr::diagnosis {

namespace {

/// A share and the computer that it lies on are seldom closer.
constexpr std::int64_t ToleratedClockSeconds = 120;
/// A pass may take its time, and so may a computer that sleeps over night.
constexpr std::int64_t IdleSeconds = 24 * 60 * 60;

bool HasMain(const Observations& seen) {
    return std::any_of(seen.companies.begin(), seen.companies.end(),
                       [](const ObservedCompany& company) { return company.isHere && company.facts.isMain; });
}

void DiagnoseAgent(const Observations& seen, Findings& findings) {
    const ObservedSettings& settings = seen.settings;
    if (settings.stopSync) {
        findings.Add(troubles::StopRequested, "StopSync",
                     "The agent of this computer was asked to exit and has not been started since.");
    } else if (settings.lastSync && seen.now.SecondsSince(*settings.lastSync) > IdleSeconds) {
        const std::int64_t hours = seen.now.SecondsSince(*settings.lastSync) / (60 * 60);
        findings.Add(troubles::AgentIdle, seen.computerName,
                     "The last pass of this computer's agent ended " + Counted(hours, "hour") +
                         " ago: it does not run, or does not come to an end.");
    }
    const auto isAhead = [&](const std::optional<Date>& date, std::int64_t tolerated) {
        return date && date->SecondsSince(seen.now) > tolerated;
    };
    if (isAhead(settings.lastSync, ToleratedClockSeconds) ||
        isAhead(settings.nextSync, settings.frequency * 60 + ToleratedClockSeconds)) {
        findings.Add(troubles::ClockWentBack, seen.computerName,
                     "The last pass (" + (settings.lastSync ? FormatGeneralDate(*settings.lastSync) : "none") +
                         ") or the next (" + (settings.nextSync ? FormatGeneralDate(*settings.nextSync) : "none") +
                         ") lies further ahead than it can: the clock was put back, and is at " +
                         FormatGeneralDate(seen.now) + " now.");
    }
    if (!settings.roleIsSet && HasMain(seen)) {
        findings.Add(troubles::RoleUnset, seen.computerName,
                     "This computer was never told whether it is a main computer or a Roaming Workstation.");
    }
    if (settings.debugLog) {
        findings.Add(troubles::DebugLogOn, "DebugSyncAgent", "The sync log is on and grows with every pass.");
    }
    if (settings.heartbeatNoResponse) {
        findings.Add(troubles::MainNoResponse, "SyncHeartbeat",
                     "Main's agent has not answered the heartbeat of this computer.");
    }
    for (const std::string& name : settings.bad) {
        findings.Add(troubles::BadSetting, name, "The setting holds no number, or cannot be read.", name);
    }
}

void DiagnoseClock(const Observations& seen, Findings& findings) {
    if (seen.probe && seen.probe->isWritten && std::abs(seen.probe->clockAhead) > ToleratedClockSeconds) {
        findings.Add(troubles::ClockOff, seen.computerName,
                     "The clock of this computer is " + Counted(std::abs(seen.probe->clockAhead), "second") +
                         (seen.probe->clockAhead > 0 ? " ahead of" : " behind") + " the Sync folder's.");
    }
}

void DiagnoseTemporaryFolder(const Observations& seen, Findings& findings) {
    if (seen.temporaryFailure.empty()) {
        return;
    }
    const std::string what = "The folder for working files cannot be used, " + seen.temporaryFailure;
    if (seen.LacksTemporaryFolder()) {
        findings.Add(troubles::NoTemporaryFolder, seen.temporaryFolder,
                     what + ": no sync file can be read or made.", seen.temporaryFolder);
    } else {
        findings.Add(troubles::TemporaryFolderElsewhere, seen.temporaryFolder,
                     what + ". The agent works with '" + seen.temporaryInstead + "' instead.",
                     seen.temporaryFolder);
    }
}

} // namespace

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
    DiagnoseAgent(seen, findings);
    DiagnoseClock(seen, findings);
    DiagnoseTemporaryFolder(seen, findings);
    for (const FullPlace& place : seen.fullPlaces) {
        constexpr std::int64_t Mebibyte = 1024 * 1024;
        findings.Add(troubles::LowSpace, place.folder,
                     "Only " + std::to_string(place.free / Mebibyte) + " MiB are free for " + place.what + ".",
                     place.folder);
    }
}

} // namespace qndr::diagnosis
