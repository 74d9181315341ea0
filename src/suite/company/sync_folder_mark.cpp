#include "suite/company/sync_folder_mark.h"

#include "services/failure.h"
#include "suite/company/utf8_path.h"
#include "suite/computer/operating_system.h"
#include "suite/files/text_files.h"

#include <algorithm>
#include <fstream>

namespace qndr::suite {

namespace {

constexpr std::string_view Head = "QNDR 5 Sync folder ";
constexpr std::size_t IdentityLength = 16;
constexpr std::string_view ForPeople =
    "\r\nThe agents know the Sync folder by this file. Leave it where it is.\r\n";

std::filesystem::path MarkOf(const std::string& folder) {
    return ToPath(folder) / ToPath(std::string(SyncFolderMark));
}

} // namespace

std::string ReadSyncFolderMark(const std::string& folder) {
    std::ifstream file(MarkOf(folder), std::ios::binary);
    std::string start(Head.size() + IdentityLength, '\0');
    if (!file.read(start.data(), static_cast<std::streamsize>(start.size())) || !start.starts_with(Head)) {
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
        const std::string text = std::string(Head) + identity + std::string(ForPeople);
        if (DiskTextFileTools().WriteTextFile(FromPath(MarkOf(folder)), text, "utf-8", 0) != 1) {
            throw services::Failure("the file '" + FromPath(MarkOf(folder)) + "' cannot be written");
        }
    }
    return identity;
}

bool IsMarkedAs(const std::string& folder, const std::string& identity) {
    return identity.empty() || ReadSyncFolderMark(folder) == identity;
}

} // namespace qndr::suite
