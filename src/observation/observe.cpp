#include "observation/observe.h"

#include "observation/company_facts.h"
#include "observation/computer_places.h"
#include "observation/folder_probe.h"
#include "observation/observe_company.h"
#include "observation/opened_company.h"
#include "observation/sync_folder_files.h"
#include "services/failure.h"
#include "shared/dates.h"
#include "shared/records.h"
#include "shared/settings.h"
#include "suite/admin/provisioning.h"
#include "suite/computer/temporary_places.h"
#include "suite/files/sync_folder_mark.h"
#include "text/utf8_path.h"

#include <algorithm>
#include <memory>

namespace qndr::observation {

namespace {

using diagnosis::ListedFile;
using diagnosis::Observations;
using diagnosis::ObservedCompany;
using diagnosis::ObservedSettings;
using diagnosis::UnopenedCompany;
using services::Failure;

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

void ObserveSettings(const services::AgentServices& services, Observations& seen) {
    services::RegistryTools& registry = services.registryTools;
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

void ObserveRole(const services::AgentServices& services, Observations& seen) {
    const auto library = services.objects.CreateSharedCodeLibrary();
    if (!library) {
        throw Failure("the company services are not available");
    }
    seen.isRoaming = library->Security().IsRoamingWorkstation();
    library->PreTerminate();
    seen.settings.roleIsSet = IsRoleSet(services);
}

void ObserveTemporaryFolder(const suite::Computer& computer, Observations& seen) {
    const suite::TemporaryPlaces places(computer);
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

/// A damaged database may open, and fail only where it is read.
void OpenCompany(const services::AgentServices& services, const std::string& file, bool isHere, Observations& seen,
                 std::vector<Company>& companies) {
    bool isOpen = false;
    std::string damage;
    try {
        Company company{std::make_unique<OpenedCompany>(services, file, OpenedCompany::Older::Leave), {}};
        isOpen = true;
        damage = DamageOf(company.opened->Database());
        company.observed.file = file;
        company.observed.isHere = isHere;
        company.observed.damage = damage;
        company.observed.fileDate = services.fileTools.GetFileDate(file);
        ObserveCompany(company.observed, company.opened->Database(), seen.nowUtc, seen.days);
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

std::vector<Company> OpenCompanies(const services::AgentServices& services, const WhatToObserve& what,
                                   Observations& seen) {
    const std::string own = UserFileLocation(services, "Companies");
    seen.companiesFolders = what.companiesFolders;
    if (seen.companiesFolders.empty() && !own.empty()) {
        seen.companiesFolders.push_back(own);
    }
    std::vector<Company> companies;
    for (const std::string& folder : seen.companiesFolders) {
        if (!services.pathTools.FolderExists(folder)) {
            seen.missingFolders.push_back(folder);
            continue;
        }
        std::vector<std::string> files = services.pathTools.FindFiles(folder, "*.psd", false);
        std::erase(files, "");
        std::sort(files.begin(), files.end());
        for (const std::string& file : files) {
            OpenCompany(services, file, !own.empty() && IsSameFolder(folder, own), seen, companies);
        }
    }
    return companies;
}

void ReadFolder(const services::AgentServices& services, Observations& seen) {
    try {
        seen.files = ReadSyncFolder(services, seen.syncFolder);
    } catch (const Failure& failure) {
        seen.syncFolderFailure = failure.what();
    }
}

/// Reads the facts anew; true when nothing has moved since they were read before.
bool StandStill(std::vector<Company>& companies) {
    bool stand = true;
    for (Company& company : companies) {
        const sql::Transaction reading(company.opened->Database(), sql::Transaction::Kind::Read);
        diagnosis::CompanyFacts now = ReadCompanyFacts(company.opened->Database());
        stand = stand && now == company.observed.facts;
        company.observed.facts = std::move(now);
    }
    return stand;
}

void ObserveExchange(const services::AgentServices& services, std::vector<Company>& companies,
                     Observations& seen) {
    seen.syncFolderExists = !seen.syncFolder.empty() && services.pathTools.FolderExists(seen.syncFolder);
    StandStill(companies);
    for (int attempt = 0; attempt < MostAttempts && seen.KnowsFiles(); ++attempt) {
        ReadFolder(services, seen);
        if (StandStill(companies)) {
            break;
        }
    }
}

void ObserveSyncLocation(const services::AgentServices& services, const WhatToObserve& what, Observations& seen) {
    const SyncLocation own = ReadSyncLocation(services, suite::DefaultProfile);
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
void ObserveFormerFolders(const services::AgentServices& services, Observations& seen) {
    for (const std::string& folder : ReadSyncLocation(services, suite::DefaultProfile).former) {
        if (!seen.isOwnSyncFolder || !services.pathTools.FolderExists(folder) ||
            IsSameFolder(folder, seen.syncFolder)) {
            continue;
        }
        std::vector<ListedFile> files;
        try {
            files = ReadSyncFolder(services, folder);
        } catch (const Failure&) {
            continue; // nobody needs to reach it any more
        }
        for (ListedFile& listed : files) {
            const bool isOwn = std::any_of(seen.companies.begin(), seen.companies.end(), [&](const auto& company) {
                return company.isHere && IsBetween(listed.file.entry, company);
            });
            if (listed.file.kind == diagnosis::FileKind::SyncFile && isOwn) {
                seen.formerFiles.push_back(std::move(listed));
            }
        }
    }
}

void ObserveSpace(const suite::Computer& computer, Observations& seen) {
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
    look("working files", computer.temporaryFolder);
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

Observations Observe(const suite::Computer& computer, const services::AgentServices& services,
                     const WhatToObserve& what) {
    Observations seen;
    seen.computerName = services.systemTools.GetComputerName();
    seen.now = services.clock.Now();
    seen.nowUtc = LocalToUtc(services, seen.now);
    seen.days = what.days;
    ObserveSettings(services, seen);
    ObserveRole(services, seen);
    ObserveTemporaryFolder(computer, seen);
    ObserveSyncLocation(services, what, seen);
    std::vector<Company> companies = OpenCompanies(services, what, seen);
    ObserveExchange(services, companies, seen);
    for (Company& company : companies) {
        seen.companies.push_back(std::move(company.observed));
    }
    ObserveFormerFolders(services, seen);
    ObserveNesting(seen);
    ObserveSpace(computer, seen);
    return seen;
}

} // namespace qndr::observation
