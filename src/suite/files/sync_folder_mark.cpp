#include "suite/files/sync_folder_mark.h"

#include "services/failure.h"
#include "suite/computer/file_calls.h"
#include "suite/computer/operating_system.h"
#include "suite/files/path_text.h"

#include <algorithm>
#include <filesystem>

namespace qndr::suite {

namespace {

constexpr std::string_view Head = "QNDR 5 Sync folder ";
constexpr std::size_t IdentityLength = 16;
constexpr std::string_view ForPeople =
    "\r\nThe agents know the Sync folder by this file. Leave it where it is.\r\n";

std::string MarkOf(const std::string& folder) {
    return WithSeparator(folder) + std::string(SyncFolderMark);
}

} // namespace

std::string ReadSyncFolderMark(const std::string& folder) {
    OpenFile file;
    std::string start(Head.size() + IdentityLength, '\0');
    std::size_t count = 0;
    if (file.OpenForReading(MarkOf(folder)) || file.Read(start, count) || count != start.size() ||
        !start.starts_with(Head)) {
        return "";
    }
    const std::string identity = start.substr(Head.size());
    const bool fits = std::all_of(identity.begin(), identity.end(),
                                  [](char c) { return (c >= '0' && c <= '9') || (c >= 'a' && c <= 'f'); });
    return fits ? identity : "";
}

std::string MakeSyncFolderMark(const std::string& folder) {
    std::string identity = ReadSyncFolderMark(folder);
    if (identity.empty()) {
        identity = RandomToken();
        // Other users' agents read it.
        const std::string working = WithSeparator(folder) + "~$" + RandomToken() + ".tmp";
        OpenFile file;
        if (file.CreateNew(working, FileAccess::LikeFolder) ||
            file.Write(std::string(Head) + identity + std::string(ForPeople)) || file.Close() ||
            RenameFile(working, MarkOf(folder), Existing::Replace)) {
            std::error_code ignored;
            std::filesystem::remove(working, ignored);
            throw services::Failure("the file '" + MarkOf(folder) + "' cannot be written");
        }
    }
    return identity;
}

bool IsMarkedAs(const std::string& folder, const std::string& identity) {
    return identity.empty() || ReadSyncFolderMark(folder) == identity;
}

} // namespace qndr::suite
