#include "observation/sync_folder_files.h"

#include "observation/working_folder.h"
#include "services/failure.h"
#include "shared/agent_context.h"
#include "shared/dates.h"
#include "shared/records.h"
#include "suite/files/sync_folder_mark.h"
#include "syncfiles/discovery.h"
#include "text/letter_case.h"

#include <algorithm>

namespace qndr::observation {

namespace {

using diagnosis::FileKind;
using diagnosis::ListedFile;
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
    } else if (tokens && name.ends_with("~standing.rsf")) {
        listed.file.kind = FileKind::Standing;
        entry.To = NormalizeUniqueID(tokens->first);
        entry.From =
            listed.name.substr(tokens->first.size() + 1, listed.name.rfind('~') - tokens->first.size() - 1);
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

ListedFile ReadFileOfSyncFolder(const services::AgentServices& services, const std::string& path) {
    AgentContext agent(services);
    return ReadFile(agent, path);
}

std::vector<ListedFile> ReadSyncFolder(const services::AgentServices& services, const std::string& folder) {
    if (!services.pathTools.FolderExists(folder)) {
        throw Failure("there is no folder '" + folder + "'");
    }
    AgentContext agent(services);
    // Where no folder can be made for it, every file would look damaged.
    const WorkingFolder trial(services);
    std::vector<std::string> paths = services.pathTools.FindFiles(folder, "*", false);
    std::erase(paths, "");
    std::sort(paths.begin(), paths.end());
    std::vector<ListedFile> files;
    for (const std::string& path : paths) {
        try {
            files.push_back(ReadFile(agent, path));
        } catch (const Failure&) {
            if (services.fileTools.FileExists(path)) {
                throw;
            }
        }
    }
    std::ranges::stable_partition(files,
                                  [](const ListedFile& listed) { return listed.file.kind != FileKind::Standing; });
    return files;
}

} // namespace qndr::observation
