#include "observation/computer_places.h"

#include "services/failure.h"
#include "shared/settings.h"
#include "suite/admin/provisioning.h"
#include "suite/files/sync_folder_mark.h"

#include <algorithm>
#include <sstream>

namespace qndr::observation {

using services::Failure;

namespace {

constexpr const char* SyncFolderName = "UFL:Sync";
/// One folder a line.
constexpr const char* FormerSyncFolders = "UFL:Sync Former";
constexpr std::size_t MostFormerFolders = 5;

} // namespace

std::string ProfileKey(const std::string& profile) {
    return std::string(settings::RootKey) + "\\Settings (" + profile + ")";
}

std::string UserFileLocation(const services::AgentServices& services, const std::string& name) {
    const auto library = services.objects.CreateSharedCodeLibrary();
    if (!library) {
        throw Failure("the company services are not available");
    }
    std::string folder = library->Options().UserFileLocation(name);
    library->PreTerminate();
    return folder;
}

SyncLocation ReadSyncLocation(const services::AgentServices& services, const std::string& profile) {
    const auto text = [&](const std::string& ofProfile, const char* name) {
        return services.registryTools.GetString(services::CurrentUserHive, ProfileKey(ofProfile), name, "");
    };
    const std::string inForce = text(profile, SyncFolderName).empty() ? suite::DefaultProfile : profile;
    SyncLocation location{text(inForce, SyncFolderName), text(inForce, suite::SyncFolderIdentity), {}};
    std::istringstream former(text(inForce, FormerSyncFolders));
    for (std::string folder; std::getline(former, folder);) {
        location.former.push_back(folder);
    }
    return location;
}

void WriteSyncLocation(const services::AgentServices& services, const std::string& profile,
                       const std::string& folder, const std::string& identity) {
    SyncLocation before = ReadSyncLocation(services, profile);
    before.former.insert(before.former.begin(), before.folder);
    std::erase_if(before.former, [&](const std::string& each) { return each.empty() || each == folder; });
    before.former.resize(std::min(before.former.size(), MostFormerFolders));
    std::string former;
    for (const std::string& each : before.former) {
        former += each + "\n";
    }
    const auto write = [&](const char* name, const std::string& text) {
        services.registryTools.SetString(services::CurrentUserHive, ProfileKey(profile), name, text);
    };
    // An identity without its folder, or of another one, would keep the agent from a folder that is right.
    write(suite::SyncFolderIdentity, "");
    write(SyncFolderName, folder);
    write(suite::SyncFolderIdentity, identity);
    write(FormerSyncFolders, former);
}

bool IsRoleSet(const services::AgentServices& services) {
    const auto role = [&](std::int32_t fallback) {
        return services.registryTools.GetLong(services::CurrentUserHive, ProfileKey(suite::DefaultProfile),
                                              RoleName, fallback);
    };
    try {
        return role(0) == role(1);
    } catch (const Failure&) {
        return true; // there is something that cannot be read
    }
}

std::vector<std::string> CompanyFilesHere(const services::AgentServices& services) {
    const std::string folder = UserFileLocation(services, "Companies");
    std::vector<std::string> files;
    if (!folder.empty()) {
        files = services.pathTools.FindFiles(folder, "*.psd", false);
        std::erase(files, "");
        std::sort(files.begin(), files.end());
    }
    return files;
}

} // namespace qndr::observation
