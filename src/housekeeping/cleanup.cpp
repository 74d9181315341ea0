#include "housekeeping/cleanup.h"

#include "shared/failure_rule.h"
#include "syncfiles/routing.h"
#include "text/letter_case.h"

#include <algorithm>
#include <cmath>

namespace qndr {
namespace {

constexpr std::int16_t kFolderDays = 3;

/// The number of midnights between the two.
std::int64_t DaysBetween(const Date& from, const Date& to) {
    return static_cast<std::int64_t>(std::floor(to.Days()) - std::floor(from.Days()));
}

/// What has no date to be read is not old.
bool IsOlderThan(AgentContext& context, const std::string& path, std::int16_t days) {
    std::int64_t age = 0;
    Attempt(
        [&] { age = DaysBetween(context.services.fileTools.GetFileDate(path), context.services.clock.Now()); });
    return age > days;
}

std::vector<std::string> FindFolders(AgentContext& context, const std::string& base) {
    std::vector<std::string> folders{""};
    if (base.empty()) {
        return folders;
    }
    Attempt([&] { folders = context.services.pathTools.FindFolders(base); });
    return folders;
}

void AddFolder(AgentContext& context, const std::string& folder, std::vector<std::string>& list) {
    Attempt([&] { context.services.stringArrayTools.AddString(folder, list, false); });
}

/// `below` is a path with "\" between its folders, whatever the platform's separator.
void CleanupLocalTree(AgentContext& context, const std::string& below, std::int16_t days) {
    // Without a root the path would lead below whatever folder the process is in.
    if (GetRootFolderPath(context, false).empty()) {
        return;
    }
    std::string base;
    Attempt([&] { base = GetLocalFolder(context, below); });
    // Nothing has been kept yet, and a folder that is not there has no date to ask for.
    if (Holds([&] { return !context.services.pathTools.FolderExists(base); })) {
        return;
    }
    std::vector<std::string> list{""};
    AddFolder(context, base, list);
    AddFolders(context, FindFolders(context, base), list);
    DeleteOldFiles(context, list, true, days);
    DeleteOldEmptyFolders(context, list, kFolderDays);
}

} // namespace

void CleanupTempFiles(AgentContext& context, ActivityTarget* target) {
    Attempt([&] { SetActivity(context, "Cleaning up temp files...", target); });
    if (IsProcessRunning(context, "qndr5.exe")) {
        return;
    }
    const std::vector<std::string> list = GetTemporaryCleanupFolders(context);
    DeleteOldFiles(context, list, false, 5);
    DeleteOldEmptyFolders(context, list, kFolderDays);
}

void CleanupSyncBackups(AgentContext& context, ActivityTarget* target) {
    Attempt([&] { SetActivity(context, "Cleaning up sync backups...", target); });
    CleanupLocalTree(context, R"(Sync Local\History)", 30);
}

void CleanupOrderBackups(AgentContext& context, ActivityTarget* target) {
    Attempt([&] { SetActivity(context, "Cleaning up order backups...", target); });
    CleanupLocalTree(context, R"(Sync Local\Orders)", 90);
}

void CleanupDeletedSyncFiles(AgentContext& context, ActivityTarget* target) {
    Attempt([&] { SetActivity(context, "Cleaning up delete sync files...", target); });
    CleanupLocalTree(context, R"(Sync Local\Deleted)", 3);
}

std::vector<std::string> GetTemporaryCleanupFolders(AgentContext& context) {
    std::string temporaryFolder;
    Attempt([&] { temporaryFolder = context.services.pathTools.GetTemporaryFolder(); });
    std::vector<std::string> list{""};
    AddFolder(context, temporaryFolder, list);
    AddFolders(context, FindFolders(context, temporaryFolder), list);
    ExcludeProtectedFolders(context, list);
    return list;
}

void AddFolders(AgentContext& context, const std::vector<std::string>& source, std::vector<std::string>& target) {
    for (const std::string& folder : source) {
        AddFolder(context, folder, target);
    }
}

void ExcludeProtectedFolders(AgentContext& context, std::vector<std::string>& list) {
    const auto contains = [](const std::string& path, const char* text) {
        return path.find(text) != std::string::npos;
    };
    for (std::string& folder : list) {
        if (contains(folder, "Temporary Internet Files") || contains(folder, "History") ||
            contains(folder, "WebInstaller") ||
            Holds([&] { return context.services.fileTools.FileHasAttribute(folder, 4); }) ||
            Holds([&] { return context.services.fileTools.FileHasAttribute(folder, 2); })) {
            folder.clear();
        }
    }
}

void DeleteOldFiles(AgentContext& context, const std::vector<std::string>& list, bool allFiles,
                    std::int16_t days) {
    services::FileTools& fileTools = context.services.fileTools;
    for (const std::string& folder : list) {
        if (folder.empty()) {
            continue;
        }
        const bool takesAll = allFiles || Holds([&] {
                                  return text::ToUpperCase(folder).starts_with(
                                      text::ToUpperCase(context.services.pathTools.GetTemporaryFolder()));
                              });
        std::vector<std::string> files;
        Attempt([&] { files = context.services.pathTools.FindFiles(folder, takesAll ? "*.*" : "*.tmp", false); });
        for (const std::string& file : files) {
            if (file.empty()) {
                continue;
            }
            if (IsOlderThan(context, file, days)) {
                Attempt([&] { fileTools.DeleteFile(file); });
            }
            Attempt([&] { context.services.messages.ProcessMessages(); });
        }
    }
}

void DeleteOldEmptyFolders(AgentContext& context, const std::vector<std::string>& list, std::int16_t days) {
    services::PathTools& pathTools = context.services.pathTools;
    for (const std::string& folder : list) {
        if (folder.empty() || Holds([&] { return pathTools.FolderContainsFiles(folder, false); })) {
            continue;
        }
        if (IsOlderThan(context, folder, days)) {
            Attempt([&] { pathTools.DeleteFolder(folder, true); });
        }
    }
}

bool IsProcessRunning(AgentContext& context, const std::string& fileName) {
    std::vector<std::string> names;
    Attempt([&] { names = context.services.processes.Names(); });
    return std::any_of(names.begin(), names.end(),
                       [&](const std::string& name) { return text::EqualsWithoutCase(name, fileName); });
}

} // namespace qndr
