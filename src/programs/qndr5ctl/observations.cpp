#include "programs/qndr5ctl/observations.h"

#include "programs/qndr5ctl/computer_places.h"
#include "programs/qndr5ctl/sync_words.h"
#include "programs/qndr5ctl/whole_number.h"
#include "services/failure.h"
#include "shared/dates.h"
#include "shared/formatting.h"
#include "shared/settings.h"
#include "suite/company/company_events.h"
#include "suite/company/provisioning.h"
#include "suite/company/utf8_path.h"
#include "suite/engine/conflicts.h"

#include <algorithm>
#include <memory>

namespace qndr::control {

namespace {

using services::Failure;

constexpr const char* RoamingSection = "Roaming Workstations";

/// An agent at work moves a state and a file one after the other. When the companies stood still while the folder
/// was read, the two belong together; an agent is never so busy that this does not come about.
constexpr int MostAttempts = 20;

struct Company {
    std::unique_ptr<OpenedCompany> opened;
    ObservedCompany observed;
};

void ObserveSettings(const ControlContext& context, Observations& seen) {
    const auto number = [&](const char* name, std::int32_t fallback) {
        try {
            return context.services.registryTools.GetLong(services::CurrentUserHive, settings::RootKey, name,
                                                          fallback);
        } catch (const Failure&) {
            seen.badSettings.emplace_back(name);
            return fallback;
        }
    };
    seen.stopSync = number(settings::StopSync, 0) != 0;
    seen.debugLog = number(settings::DebugSyncAgent, 0) == 1;
    const bool heartbeat = number(settings::EnableHeartbeat, 1) != 0;
    seen.heartbeatNoResponse = number(settings::SyncHeartbeat, 0) == HeartbeatNoResponse && heartbeat;
}

void ObserveRole(const ControlContext& context, Observations& seen) {
    const auto library = context.services.objects.CreateSharedCodeLibrary();
    if (!library) {
        throw Failure("the company services are not available");
    }
    seen.isRoaming = library->Security().IsRoamingWorkstation();
    library->PreTerminate();
}

bool IsSameFolder(const std::string& left, const std::string& right) {
    std::error_code error;
    return std::filesystem::equivalent(suite::ToPath(left), suite::ToPath(right), error) && !error;
}

/// What the database's own check finds; empty when it is sound.
std::string DamageOf(const suite::SqliteConnection& database) {
    try {
        const std::string words = database.Value("PRAGMA quick_check(1)").value_or("");
        return words == "ok" ? "" : words;
    } catch (const Failure& failure) {
        return failure.what();
    }
}

std::vector<RefusedFile> RefusedHere(const suite::SqliteConnection& database, const std::string& mainUniqueID) {
    auto row = database.Prepare("SELECT Sender, Sequence, RefusedOn FROM RefusedFiles ORDER BY Sender, Sequence");
    std::vector<RefusedFile> files;
    while (row.Step()) {
        const std::string sender(row.Text(0));
        files.push_back({sender.empty() ? mainUniqueID : sender, row.Integer(1), std::string(row.Text(2))});
    }
    return files;
}

std::vector<RefusedFile> RefusedThere(const suite::SqliteConnection& database, const std::string& mainUniqueID) {
    auto row = database.Prepare(
        "SELECT Receiver, Sequence, ToldOn, ifnull((SELECT group_concat(Held, ', ') FROM (SELECT TableName || ' ' "
        "||"
        " COUNT(DISTINCT AuditUniqueID) AS Held FROM AuditLog WHERE Sequence >= 0 AND ID > FromID AND ID <= ToID"
        " GROUP BY TableName ORDER BY TableName)), '') FROM NotTakenFiles ORDER BY Receiver, Sequence");
    std::vector<RefusedFile> files;
    while (row.Step()) {
        const std::string receiver(row.Text(0));
        files.push_back({receiver.empty() ? mainUniqueID : receiver, row.Integer(1), std::string(row.Text(2)),
                         std::string(row.Text(3))});
    }
    return files;
}

void ObserveCompany(ObservedCompany& company, const OpenedCompany& opened, const Observations& seen) {
    const suite::SqliteConnection& database = opened.Database();
    const auto enabled = suite::GetCompanyOption(database, RoamingSection, "EnableSync");
    company.enableSync = ParseWholeNumber(enabled.value_or("0")).value_or(0) != 0;
    company.syncComputerName = suite::GetCompanyOption(database, RoamingSection, "SyncComputerName").value_or("");
    auto conflicts = database.Prepare("SELECT COUNT(*) FROM ImportConflicts WHERE State = ?1");
    conflicts.Bind(1, static_cast<std::int64_t>(suite::ConflictState::Open));
    conflicts.Step();
    company.openConflicts = conflicts.Integer(0);
    auto problems = database.Prepare("SELECT COUNT(*) FROM ImportProblems WHERE OccurredOn >= ?1");
    problems.Bind(1, FormatSQLDate(seen.nowUtc.AddDays(-seen.days), false));
    problems.Step();
    company.putAside = problems.Integer(0);
    // The agent enters another event when it could store something again.
    auto newest = database.Prepare("SELECT EventText, EventNumber FROM CompanyEvents ORDER BY ID DESC LIMIT 1");
    if (newest.Step() && newest.Integer(1) == suite::ComputerTroubleEvent) {
        company.cannotStore = newest.Text(0);
    }
    company.facts = FactsOf(opened);
    company.refusedHere = RefusedHere(database, company.facts.mainUniqueID);
    company.refusedThere = RefusedThere(database, company.facts.mainUniqueID);
}

/// A damaged database may open, and fail only where it is read.
void OpenCompany(const ControlContext& context, const std::string& file, bool isHere, Observations& seen,
                 std::vector<Company>& companies) {
    bool isOpen = false;
    std::string damage;
    try {
        Company company{std::make_unique<OpenedCompany>(context, file), {}};
        isOpen = true;
        damage = DamageOf(company.opened->Database());
        company.observed.file = file;
        company.observed.isHere = isHere;
        company.observed.damage = damage;
        ObserveCompany(company.observed, *company.opened, seen);
        if (company.opened->IsMain() || company.opened->IsRoaming()) {
            companies.push_back(std::move(company));
        } else {
            seen.unopened.push_back({file, "its type is neither main company nor Roaming Workstation", false});
        }
    } catch (const Failure& failure) {
        seen.unopened.push_back({file, damage.empty() ? failure.what() : damage, isOpen});
    }
}

std::vector<Company> OpenCompanies(const ControlContext& context, const WhatToObserve& what, Observations& seen) {
    const std::string own = UserFileLocation(context, "Companies");
    seen.companiesFolders = what.companiesFolders;
    if (seen.companiesFolders.empty() && !own.empty()) {
        seen.companiesFolders.push_back(own);
    }
    std::vector<Company> companies;
    for (const std::string& folder : seen.companiesFolders) {
        if (!context.services.pathTools.FolderExists(folder)) {
            seen.missingFolders.push_back(folder);
            continue;
        }
        std::vector<std::string> files = context.services.pathTools.FindFiles(folder, "*.psd", false);
        std::erase(files, "");
        std::sort(files.begin(), files.end());
        for (const std::string& file : files) {
            OpenCompany(context, file, !own.empty() && IsSameFolder(folder, own), seen, companies);
        }
    }
    return companies;
}

void ReadFolder(const ControlContext& context, Observations& seen) {
    try {
        seen.files = ReadSyncFolder(context, seen.syncFolder);
    } catch (const Failure& failure) {
        seen.syncFolderFailure = failure.what();
    }
}

/// Reads the facts anew; true when nothing has moved since they were read before.
bool StandStill(std::vector<Company>& companies) {
    bool stand = true;
    for (Company& company : companies) {
        const suite::SqliteTransaction reading(company.opened->Database(), suite::SqliteTransaction::Kind::Read);
        CompanyFacts now = FactsOf(*company.opened);
        stand = stand && now == company.observed.facts;
        company.observed.facts = std::move(now);
    }
    return stand;
}

void ObserveExchange(const ControlContext& context, std::vector<Company>& companies, Observations& seen) {
    seen.syncFolderExists = !seen.syncFolder.empty() && context.services.pathTools.FolderExists(seen.syncFolder);
    StandStill(companies);
    for (int attempt = 0; attempt < MostAttempts && seen.KnowsFiles(); ++attempt) {
        ReadFolder(context, seen);
        if (StandStill(companies)) {
            break;
        }
    }
}

/// The name is one that no agent takes for anything, and that tells a person what it is when it stays behind.
Probe ProbeFolder(const ControlContext& context, const std::string& folder) {
    services::FileTools& fileTools = context.services.fileTools;
    Probe probe;
    probe.file = fileTools.CreateTemporaryFile(folder, "~$probe", ".tmp");
    if (probe.file.empty()) {
        return probe;
    }
    try {
        probe.isWritten =
            context.services.textFileTools.WriteTextFile(probe.file, "qndr5ctl doctor", "utf-8", 0) == 1;
        probe.clockAhead = context.services.clock.Now().SecondsSince(fileTools.GetFileDate(probe.file));
    } catch (const Failure&) {
        probe.isWritten = false;
    }
    probe.isRemoved = fileTools.DeleteFile(probe.file);
    return probe;
}

} // namespace

Observations Observe(const ControlContext& context, const WhatToObserve& what) {
    Observations seen;
    seen.computerName = context.services.systemTools.GetComputerName();
    seen.nowUtc = LocalToUtc(context.services, context.services.clock.Now());
    seen.days = what.days;
    ObserveSettings(context, seen);
    ObserveRole(context, seen);
    seen.syncFolder = what.syncFolder.empty() ? UserFileLocation(context, "Sync") : what.syncFolder;
    std::vector<Company> companies = OpenCompanies(context, what, seen);
    ObserveExchange(context, companies, seen);
    for (Company& company : companies) {
        seen.companies.push_back(std::move(company.observed));
    }
    if (what.probe && seen.syncFolderExists) {
        seen.probe = ProbeFolder(context, seen.syncFolder);
    }
    return seen;
}

} // namespace qndr::control
