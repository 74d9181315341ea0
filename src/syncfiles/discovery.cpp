#include "syncfiles/discovery.h"

#include "shared/failure_rule.h"
#include "shared/records.h"
#include "shared/settings.h"
#include "shared/sync_log.h"
#include "syncfiles/routing.h"

namespace qndr {
namespace {

std::vector<std::string> Split(const std::string& text, char separator) {
    std::vector<std::string> pieces{""};
    for (const char character : text) {
        if (character == separator) {
            pieces.emplace_back();
        } else {
            pieces.back() += character;
        }
    }
    return pieces;
}

/// `count` characters from the 1-based place `first`, fewer at the text's end.
std::string Middle(const std::string& text, std::size_t first, std::size_t count) {
    return first > text.size() ? "" : text.substr(first - 1, count);
}

/// Long scans would leave the window dead: every fifth element lets pending messages through.
void LetMessagesThrough(AgentContext& context, std::size_t index) {
    if (index % 5 == 0) {
        Attempt([&] { context.services.messages.ProcessMessages(); });
    }
}

void EnterFile(AgentContext& context, const std::string& path, std::vector<FoundSyncFile>& list) {
    std::vector<std::string> tokens;
    Attempt([&] { tokens = Split(context.services.fileTools.GetFileBaseName(path), '~'); });
    if (tokens.size() != 3) {
        WriteLog(context, "The file '" + path +
                              "' is in the sync folder however it is not a valid sync file and will be ignored.");
        return;
    }
    // The second token is no stamp in the names that this system builds, so the date is mostly the default.
    // Nothing reads it.
    const Date nameDate = ParseFileStamp(tokens[1], NoDate);
    Date fileDate;
    Attempt([&] { fileDate = context.services.fileTools.GetFileDate(path); });
    AddFoundSyncFile(path, tokens[0], nameDate, fileDate, list);
}

bool DeleteFile(AgentContext& context, const std::string& path) {
    bool deleted = false;
    Attempt([&] { deleted = context.services.fileTools.DeleteFile(path); });
    return deleted;
}

void RetireFile(AgentContext& context, const FoundSyncFile& entry) {
    std::string name;
    Attempt([&] { name = context.services.fileTools.GetFileName(entry.FilePath); });
    WriteLog(context, "The sync file '" + name + "' has been marked to delete.");
    if (Holds([&] { return !context.services.fileTools.FileExists(entry.FilePath); })) {
        return;
    }
    if (!ManageDeletedSyncFile(context, entry.FilePath)) {
        WriteLog(context,
                 "Error: The sync file '" + name + "' was marked to be deleted but it could not be deleted.");
    }
}

} // namespace

void FindSyncFiles(AgentContext& context, std::vector<FoundSyncFile>& list) {
    const std::string folder = GetSyncFolder(context);
    if (folder.empty()) {
        WriteLog(context, "Error: No sync files could be found because no sync folder has been identified.");
        return;
    }
    std::vector<std::string> files{""};
    Attempt([&] { files = context.services.pathTools.FindFiles(folder, "*.zip", false); });
    if (files.empty() || files.front().empty()) {
        WriteLog(context, "No sync files were found for processing.");
    } else {
        WriteLog(context, std::to_string(files.size()) + " sync files were found for processing.");
    }
    for (std::size_t index = 0; index < files.size(); ++index) {
        if (!files[index].empty()) {
            EnterFile(context, files[index], list);
            LetMessagesThrough(context, index);
        }
    }
}

void AddFoundSyncFile(const std::string& path, const std::string& token, const Date& nameDate,
                      const Date& fileDate, std::vector<FoundSyncFile>& list) {
    if (list.empty() || !list.back().To.empty()) {
        list.emplace_back();
    }
    FoundSyncFile& entry = list.back();
    entry.FilePath = path;
    entry.To = NormalizeUniqueID(token);
    entry.NameDate = nameDate;
    entry.FileDate = fileDate;
}

Date ParseFileStamp(const std::string& text, const Date& fallback) {
    const std::vector<std::string> pieces = Split(text, 'T');
    if (pieces.size() < 2) {
        return fallback;
    }
    const std::string& time = pieces[1];
    return ParseDate(Middle(text, 5, 2) + "/" + Middle(text, 7, 2) + "/" + Middle(text, 1, 4) + " " +
                     Middle(time, 1, 2) + ":" + Middle(time, 3, 2) + ":" + Middle(time, 5, 2))
        .value_or(fallback);
}

void DeleteMarkedSyncFiles(AgentContext& context, const std::vector<FoundSyncFile>& list) {
    for (std::size_t index = 0; index < list.size(); ++index) {
        // Another true value does not retire a file.
        if (!list[index].FilePath.empty() && list[index].Delete == FieldTrue) {
            RetireFile(context, list[index]);
        }
        LetMessagesThrough(context, index);
    }
}

bool ManageDeletedSyncFile(AgentContext& context, const std::string& path) {
    std::int32_t manage = 0;
    Attempt([&] {
        manage = context.services.registryTools.GetLong(services::CurrentUserHive, settings::RootKey,
                                                        settings::ManageDeleting, 1);
    });
    if (manage == 0) {
        WriteLog(context, "Managed deleting is disabled. The sync file '" + path + "' will be deleted.");
        return DeleteFile(context, path);
    }
    std::string folder;
    Attempt([&] { folder = GetDatedFolder(context, R"(Sync Local\Deleted)"); });
    if (Holds([&] { return !context.services.pathTools.CreateNestedFolder(folder); })) {
        WriteLog(context, "Unable to create the manage delete folder '" + folder + "'. The sync file '" + path +
                              "' will be deleted.");
        return DeleteFile(context, path);
    }
    std::string pathFolder;
    std::string name;
    Attempt([&] { context.services.pathTools.SplitPath2(path, pathFolder, name); });
    if (Holds([&] { return context.services.fileTools.MoveFile(path, folder + name, true); })) {
        DeleteFile(context, path);
        return true;
    }
    WriteLog(context, "Unable to move the sync file '" + path +
                          "' while doing a managed delete. The file will be deleted.");
    return DeleteFile(context, path);
}

} // namespace qndr
