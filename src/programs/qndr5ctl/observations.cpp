#include "programs/qndr5ctl/observations.h"

#include "programs/qndr5ctl/computer_places.h"
#include "programs/qndr5ctl/sync_words.h"
#include "programs/qndr5ctl/whole_number.h"
#include "services/failure.h"
#include "shared/dates.h"
#include "shared/formatting.h"
#include "shared/records.h"
#include "shared/settings.h"
#include "suite/admin/conflicts.h"
#include "suite/admin/provisioning.h"
#include "suite/computer/temporary_places.h"
#include "suite/files/sync_folder_mark.h"
#include "suite/schema/company_events.h"
#include "text/utf8_path.h"

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

/// Below this, or below the size of the largest database for what holds whole copies of it, a place counts as
/// full.
constexpr std::int64_t LeastSpace = 64LL * 1024 * 1024;

void ObserveSettings(const ControlContext& context, Observations& seen) {
    services::RegistryTools& registry = context.services.registryTools;
    ObservedSettings& found = seen.settings;
    const auto number = [&](const char* name, std::int32_t fallback) {
        try {
            return registry.GetLong(services::CurrentUserHive, settings::RootKey, name, fallback);
        } catch (const Failure&) {
            found.bad.emplace_back(name);
            return fallback;
        }
    };
    const auto date = [&](const char* name) {
        return ParseDate(registry.GetString(services::CurrentUserHive, settings::RootKey, name, ""));
    };
    found.stopSync = number(settings::StopSync, 0) != 0;
    found.debugLog = number(settings::DebugSyncAgent, 0) == 1;
    const bool heartbeat = number(settings::EnableHeartbeat, 1) != 0;
    found.heartbeatNoResponse = number(settings::SyncHeartbeat, 0) == HeartbeatNoResponse && heartbeat;
    found.frequency = number(settings::SyncFrequency, 5);
    found.lastSync = date(settings::LastSync);
    found.nextSync = date(settings::NextSync);
}

void ObserveRole(const ControlContext& context, Observations& seen) {
    const auto library = context.services.objects.CreateSharedCodeLibrary();
    if (!library) {
        throw Failure("the company services are not available");
    }
    seen.isRoaming = library->Security().IsRoamingWorkstation();
    library->PreTerminate();
    seen.settings.roleIsSet = IsRoleSet(context);
}

void ObserveTemporaryFolder(const ControlContext& context, Observations& seen) {
    const suite::TemporaryPlaces places(context.computer);
    seen.temporaryFolder = places.First();
    seen.temporaryFailure = places.Obstacle();
    try {
        seen.temporaryInstead = seen.temporaryFailure.empty() ? "" : places.Usable();
    } catch (const Failure&) {
        seen.temporaryInstead.clear();
    }
}

bool IsSameFolder(const std::string& left, const std::string& right) {
    std::error_code error;
    return std::filesystem::equivalent(text::ToPath(left), text::ToPath(right), error) && !error;
}

/// What the database's own check finds; empty when it is sound.
std::string DamageOf(const sql::Connection& database) {
    try {
        const std::string words = database.Value("PRAGMA quick_check(1)").value_or("");
        return words == "ok" ? "" : words;
    } catch (const Failure& failure) {
        return failure.what();
    }
}

std::vector<RefusedFile> RefusedHere(const sql::Connection& database, const std::string& mainUniqueID) {
    auto row = database.Prepare("SELECT Sender, Sequence, RefusedOn FROM RefusedFiles ORDER BY Sender, Sequence");
    std::vector<RefusedFile> files;
    while (row.Step()) {
        const std::string sender(row.Text(0));
        files.push_back({sender.empty() ? mainUniqueID : sender, row.Integer(1), std::string(row.Text(2))});
    }
    return files;
}

std::vector<RefusedFile> RefusedThere(const sql::Connection& database, const std::string& mainUniqueID) {
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
    const sql::Connection& database = opened.Database();
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
    const auto text = [&](const char* query) { return database.Value(query).value_or(""); };
    company.database = database.Path();
    company.newestChange = database.Number("SELECT MAX(ID) FROM AuditLog");
    company.changedOn = text("SELECT AddedOn FROM AuditLog ORDER BY ID DESC LIMIT 1");
    company.sentOn =
        text("SELECT AddedOn FROM AuditLog WHERE ID <= (SELECT LastAuditID FROM Company) ORDER BY ID DESC "
             "LIMIT 1");
    // The agent enters another event when it could store something again.
    auto newest = database.Prepare("SELECT EventText, EventNumber FROM CompanyEvents WHERE EventNumber IS NOT 5"
                                   " ORDER BY ID DESC LIMIT 1");
    if (newest.Step() && newest.Integer(1) == suite::ComputerTroubleEvent) {
        company.cannotStore = newest.Text(0);
    }
    auto another = database.Prepare("SELECT OccurredOn, EventText FROM CompanyEvents WHERE EventNumber = ?1"
                                    " AND OccurredOn >= ?2 ORDER BY ID DESC LIMIT 1");
    another.Bind(1, std::int64_t{suite::AnotherAgentEvent});
    another.Bind(2, FormatSQLDate(seen.nowUtc.AddDays(-1), false));
    if (another.Step()) {
        const auto date = ParseDate(std::string(another.Text(0)));
        company.anotherAgent = (date ? FormatGeneralDate(*date) + " UTC: " : "") + std::string(another.Text(1));
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
        Company company{std::make_unique<OpenedCompany>(context, file, OpenedCompany::Older::Leave), {}};
        isOpen = true;
        damage = DamageOf(company.opened->Database());
        company.observed.file = file;
        company.observed.isHere = isHere;
        company.observed.damage = damage;
        company.observed.fileDate = context.services.fileTools.GetFileDate(file);
        ObserveCompany(company.observed, *company.opened, seen);
        if (company.opened->IsMain() || company.opened->IsRoaming()) {
            companies.push_back(std::move(company));
        } else {
            seen.unopened.push_back({file, "its type is neither main company nor Roaming Workstation", {}});
        }
    } catch (const OlderCompany& failure) {
        seen.unopened.push_back({file, failure.what(), UnopenedCompany::Because::Older});
    } catch (const Failure& failure) {
        seen.unopened.push_back(
            {file, damage.empty() ? failure.what() : damage,
             isOpen ? UnopenedCompany::Because::Damaged : UnopenedCompany::Because::NotOpened});
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
        const sql::Transaction reading(company.opened->Database(), sql::Transaction::Kind::Read);
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

void ObserveSyncLocation(const ControlContext& context, const WhatToObserve& what, Observations& seen) {
    const SyncLocation own = ReadSyncLocation(context, suite::DefaultProfile);
    seen.syncFolder = what.syncFolder.empty() ? own.folder : what.syncFolder;
    seen.isOwnSyncFolder =
        !own.folder.empty() && (what.syncFolder.empty() || IsSameFolder(own.folder, what.syncFolder));
    if (seen.isOwnSyncFolder) {
        seen.syncIdentity = own.identity;
        seen.syncMark = suite::ReadSyncFolderMark(seen.syncFolder);
    }
}

bool IsBetween(const FoundSyncFile& entry, const ObservedCompany& company) {
    return EqualIdentities(entry.From, company.facts.uniqueID) ||
           EqualIdentities(entry.To, NormalizeUniqueID(company.facts.uniqueID));
}

/// What was dropped, or came, while this computer used another folder.
void ObserveFormerFolders(const ControlContext& context, Observations& seen) {
    for (const std::string& folder : ReadSyncLocation(context, suite::DefaultProfile).former) {
        if (!seen.isOwnSyncFolder || !context.services.pathTools.FolderExists(folder) ||
            IsSameFolder(folder, seen.syncFolder)) {
            continue;
        }
        std::vector<ListedFile> files;
        try {
            files = ReadSyncFolder(context, folder);
        } catch (const Failure&) {
            continue; // nobody needs to reach it any more
        }
        for (ListedFile& listed : files) {
            const bool isOwn = std::any_of(seen.companies.begin(), seen.companies.end(), [&](const auto& company) {
                return company.isHere && IsBetween(listed.file.entry, company);
            });
            if (listed.file.kind == FileKind::SyncFile && isOwn) {
                seen.formerFiles.push_back(std::move(listed));
            }
        }
    }
}

void ObserveSpace(const ControlContext& context, Observations& seen) {
    std::int64_t wanted = LeastSpace;
    std::error_code error;
    for (const ObservedCompany& company : seen.companies) {
        const auto size = std::filesystem::file_size(text::ToPath(company.database), error);
        wanted = std::max(wanted, error ? 0 : static_cast<std::int64_t>(size));
    }
    const auto look = [&](const std::string& what, const std::string& folder) {
        const std::int64_t free = FreeSpaceAt(folder);
        if (free >= 0 && free < wanted) {
            seen.fullPlaces.push_back({what, folder, free});
        }
    };
    if (seen.syncFolderExists) {
        look("the files in the Sync folder", seen.syncFolder);
    }
    look("working files", context.computer.temporaryFolder);
    for (const ObservedCompany& company : seen.companies) {
        if (company.isHere) {
            look("the database of " + company.facts.name,
                 text::FromPath(text::ToPath(company.database).parent_path()));
        }
    }
}

bool LiesIn(const std::string& inner, const std::string& outer) {
    std::error_code error;
    const std::string folder = text::FromPath(std::filesystem::weakly_canonical(text::ToPath(inner), error) / "");
    return folder.starts_with(text::FromPath(std::filesystem::weakly_canonical(text::ToPath(outer), error) / ""));
}

void ObserveNesting(Observations& seen) {
    for (const std::string& folder : seen.companiesFolders) {
        if (seen.syncFolderExists && (LiesIn(seen.syncFolder, folder) || LiesIn(folder, seen.syncFolder))) {
            seen.nestedFolder = folder;
        }
    }
}

} // namespace

Observations Observe(const ControlContext& context, const WhatToObserve& what) {
    Observations seen;
    seen.computerName = context.services.systemTools.GetComputerName();
    seen.now = context.services.clock.Now();
    seen.nowUtc = LocalToUtc(context.services, seen.now);
    seen.days = what.days;
    ObserveSettings(context, seen);
    ObserveRole(context, seen);
    ObserveTemporaryFolder(context, seen);
    ObserveSyncLocation(context, what, seen);
    std::vector<Company> companies = OpenCompanies(context, what, seen);
    ObserveExchange(context, companies, seen);
    for (Company& company : companies) {
        seen.companies.push_back(std::move(company.observed));
    }
    ObserveFormerFolders(context, seen);
    ObserveNesting(seen);
    ObserveSpace(context, seen);
    if (seen.syncFolderExists && seen.IsRightFolder()) {
        seen.probe = ProbeFolder(context, seen.syncFolder);
    }
    return seen;
}

} // namespace qndr::control
