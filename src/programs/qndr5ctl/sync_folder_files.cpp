#include "programs/qndr5ctl/sync_folder_files.h"

#include "programs/qndr5ctl/computer_places.h"
#include "programs/qndr5ctl/whole_number.h"
#include "services/failure.h"
#include "shared/agent_context.h"
#include "shared/dates.h"
#include "shared/records.h"
#include "suite/admin/provisioning.h"
#include "suite/engine/sent_ranges.h"
#include "suite/files/sync_folder_mark.h"
#include "syncfiles/discovery.h"
#include "text/letter_case.h"

#include <algorithm>

namespace qndr::control {

namespace {

using services::Failure;

struct NameTokens {
    std::string first;
    std::string stamp;
};

/// Nothing unless the name has three tokens.
std::optional<NameTokens> TokensOf(const std::string& baseName) {
    if (std::count(baseName.begin(), baseName.end(), '~') != 2) {
        return std::nullopt;
    }
    return NameTokens{baseName.substr(0, baseName.find('~')), baseName.substr(baseName.rfind('~') + 1)};
}

/// The name of a sync file with which another name begins, as when something was hung on; empty when it does not.
std::string ProperStart(const std::string& name) {
    constexpr std::string_view Extension = ".zip";
    const std::size_t end = text::ToLowerCase(name).find(Extension);
    const std::string start = end == std::string::npos ? "" : name.substr(0, end);
    return TokensOf(start) ? start + std::string(Extension) : "";
}

/// Fills the descriptor's fields in the receivers' own way. Gives the reason when it cannot be read.
std::string ReadDescriptor(AgentContext& agent, FoundSyncFile& entry) {
    const auto zip = agent.services.objects.CreateZipArchive();
    if (!zip) {
        throw Failure("the ZIP component is not available");
    }
    if (zip->OpenZip(entry.FilePath) == 0) {
        return zip->LastErrorText();
    }
    std::string damage = "It has no id.dat.";
    if (const auto descriptor = zip->GetEntryByName("id.dat")) {
        const WorkingFolder folder(agent.services);
        damage = descriptor->Extract(folder.Path()) == 1 ? "" : zip->LastErrorText();
        if (damage.empty()) {
            ReadIdFile(agent, folder.FileOf("id.dat"), entry);
        }
    }
    zip->CloseZip();
    return damage;
}

/// Raises when the file is gone.
ListedFile ReadFile(AgentContext& agent, const std::string& path) {
    services::FileTools& fileTools = agent.services.fileTools;
    ListedFile listed;
    listed.name = fileTools.GetFileName(path);
    listed.size = fileTools.GetFileSize(path);
    const Date now = agent.services.clock.Now();
    listed.ageSeconds = now.SecondsSince(fileTools.GetFileDate(path));

    FoundSyncFile& entry = listed.file.entry;
    entry.FilePath = path;
    const std::string name = text::ToLowerCase(listed.name);
    const bool isHeartbeat = name.ends_with(".rhb");
    const auto tokens = TokensOf(fileTools.GetFileBaseName(path));
    if (name.starts_with("~$") && name.ends_with(".tmp")) {
        listed.file.kind = FileKind::UnfinishedCopy;
    } else if (listed.name == suite::SyncFolderMark) {
        listed.file.kind = FileKind::Mark;
    } else if (isHeartbeat) {
        // Main deletes it whatever its name is.
        listed.file.kind = FileKind::Heartbeat;
        entry.From = tokens ? tokens->first : "";
    } else if (tokens && name.ends_with(".zip")) {
        entry.To = NormalizeUniqueID(tokens->first);
        listed.damage = ReadDescriptor(agent, entry);
        listed.file.kind = listed.damage.empty() ? FileKind::SyncFile : FileKind::UnreadableSyncFile;
    } else if (ReadDescriptor(agent, entry).empty() && !entry.From.empty()) {
        listed.file.kind = FileKind::Misnamed;
        listed.properName = ProperStart(listed.name);
        entry.To = listed.properName.empty() ? "" : NormalizeUniqueID(TokensOf(listed.properName)->first);
    }
    const Date stamp = tokens ? ParseFileStamp(tokens->stamp, NoDate) : NoDate;
    if (stamp != NoDate) {
        listed.ageSeconds = LocalToUtc(agent, now).SecondsSince(stamp);
    }
    listed.ageSeconds = std::max<std::int64_t>(listed.ageSeconds, 0);
    return listed;
}

} // namespace

std::vector<ListedFile> ReadSyncFolder(const ControlContext& context, const std::string& folder) {
    if (!context.services.pathTools.FolderExists(folder)) {
        throw Failure("there is no folder '" + folder + "'");
    }
    AgentContext agent(context.services);
    // Where no folder can be made for it, every file would look damaged.
    const WorkingFolder trial(context.services);
    std::vector<std::string> paths = context.services.pathTools.FindFiles(folder, "*", false);
    std::erase(paths, "");
    std::sort(paths.begin(), paths.end());
    std::vector<ListedFile> files;
    for (const std::string& path : paths) {
        try {
            files.push_back(ReadFile(agent, path));
        } catch (const Failure&) {
            if (context.services.fileTools.FileExists(path)) {
                throw;
            }
        }
    }
    return files;
}

CompanyFacts FactsOf(const OpenedCompany& company) {
    CompanyFacts facts;
    facts.name = company.Text("Name");
    facts.uniqueID = company.Text("UniqueID");
    facts.isMain = company.IsMain();
    facts.syncState = company.Number("SyncState");
    facts.mainUniqueID = company.Text("MainUniqueID");
    facts.nextSequenceFromMain = company.Number("NextSequenceFromMain");
    facts.nextSequenceToMain = company.Number("NextSequenceToMain");
    if (!facts.isMain) {
        facts.confirmed = suite::ConfirmedFiles(company.Database(), suite::MainReceiver);
    } else {
        const auto enabled = suite::GetCompanyOption(company.Database(), "Roaming Workstations", "EnableSync");
        facts.syncEnabled = ParseWholeNumber(enabled.value_or("0")).value_or(0) != 0;
        auto row = company.Database().Prepare(
            "SELECT Name, UniqueID, SyncState, NextSequenceFromRoaming, NextSequenceToRoaming, LastReceivedFrom"
            " FROM RoamingWorkstations ORDER BY ID");
        while (row.Step()) {
            facts.workstations.push_back({std::string(row.Text(0)), std::string(row.Text(1)), row.Integer(2),
                                          row.Integer(3), row.Integer(4), std::string(row.Text(5)),
                                          suite::ConfirmedFiles(company.Database(), row.Text(1))});
        }
    }
    return facts;
}

} // namespace qndr::control
