#include "syncfiles/routing.h"

#include "shared/dates.h"
#include "shared/failure_rule.h"
#include "shared/formatting.h"
#include "shared/records.h"
#include "shared/settings.h"
#include "shared/sync_log.h"
#include "syncfiles/wait.h"
#include "text/editing.h"

#include <string>

namespace qndr {
namespace {

/// Path in the Sync folder of a file that leaves at `now`, a local time.
std::string BuildTarget(AgentContext& context, const std::string& folder, const std::string& firstToken,
                        const Date& now, const std::string& extension) {
    return context.services.pathTools.FixPath(folder, true) + firstToken + "~" + NewFileToken(context) + "~" +
           FormatFileStamp(LocalToUtc(context, now)) + extension;
}

Date PresentMoment(AgentContext& context) {
    Date now;
    Attempt([&] { now = context.services.clock.Now(); });
    return now;
}

} // namespace

std::string GetSyncFolder(AgentContext& context) {
    std::string folder;
    Attempt([&] { folder = context.CurrentLibrary().Options().UserFileLocation("Sync"); });
    return folder;
}

std::string GetRootFolderPath(AgentContext& context, bool flag) {
    std::unique_ptr<services::FileManager> manager;
    Attempt([&] { manager = context.services.objects.CreateFileManager(); });
    if (!manager) {
        return "";
    }
    std::string path;
    Attempt([&] { manager->Initialize(context.CurrentLibrary()); });
    Attempt([&] { path = manager->GetRootFolderPath(flag); });
    Attempt([&] { manager->PreTerminate(); });
    return path;
}

std::string GetLocalFolder(AgentContext& context, const std::string& below) {
    services::PathTools& pathTools = context.services.pathTools;
    std::string folder = pathTools.FixPath(GetRootFolderPath(context, false), true);
    for (std::size_t start = 0; start < below.size();) {
        const std::size_t end = std::min(below.find('\\', start), below.size());
        folder = pathTools.FixPath(folder.append(below, start, end - start), true);
        start = end + 1;
    }
    return folder;
}

std::string GetDatedFolder(AgentContext& context, const std::string& below) {
    const CivilTime today = context.services.clock.Now().Civil();
    return GetLocalFolder(
        context,
        below + "\\" + FormatString(R"({0}\{1})", text::Digits(today.year, 4), text::Digits(today.month, 2)));
}

std::string NewFileToken(AgentContext& context) {
    std::string identifier;
    Attempt([&] { identifier = context.services.systemTools.GetIdentifierText(); });
    std::string token;
    Attempt([&] { token = context.services.fileTools.ToFileToken(identifier); });
    std::erase_if(token, [](char character) { return character == '-' || character == ':'; });
    return token;
}

bool CopyUnderName(AgentContext& context, const std::string& source, const std::string& target,
                   const std::string& textInName) {
    return textInName.find_first_of("/\\") == std::string::npos &&
           context.services.fileTools.CopyFile(source, target, false);
}

bool CopySyncFileToRoaming(AgentContext& context, const std::string& source, const services::Node* workstation) {
    Wait(context, 3);
    const std::string uniqueId = GetNodeText("UniqueID", workstation, "");
    const std::string about = " sync file '" + source + "' for the Roaming Workstation '" + uniqueId;
    const std::string folder = GetSyncFolder(context);
    if (folder.empty()) {
        WriteLog(context,
                 "Error: Unable to copy a" + about + "' because the 'SYNC' folder could not be identified.");
        return false;
    }
    const Date now = PresentMoment(context);
    std::string target;
    Attempt([&] { target = BuildTarget(context, folder, uniqueId, now, ".zip"); });
    KeepSyncFile(context, source, target);
    if (Holds([&] { return CopyUnderName(context, source, target, uniqueId); })) {
        WriteLog(context, "The" + about + "' was copied to '" + target + "'.");
        return true;
    }
    WriteLog(context, "Error: Unable to copy a" + about + "' to '" + target + "'.");
    return false;
}

bool CopySyncFileToMain(AgentContext& context, const std::string& source) {
    Wait(context, 3);
    const std::string folder = GetSyncFolder(context);
    if (folder.empty()) {
        WriteLog(context, "Error: Unable to copy a sync file '" + source +
                              "' for the main system because the 'SYNC' folder could not be identified.");
        return false;
    }
    const Date now = PresentMoment(context);
    std::string mainUniqueId;
    std::string target;
    Attempt([&] {
        mainUniqueId = context.Database().ExecuteScaler("SELECT MainUniqueID FROM Company", "", "MAIN").ToText();
        target = BuildTarget(context, folder, mainUniqueId, now, ".zip");
    });
    KeepSyncFile(context, source, target);
    if (Holds([&] { return CopyUnderName(context, source, target, mainUniqueId); })) {
        WriteLog(context, "The sync file '" + source + "' was copied for the main system as '" + target + "'.");
        return true;
    }
    WriteLog(context,
             "Error: Unable to copy a sync file '" + source + "' for the main system as '" + target + "'.");
    return false;
}

bool CopyHeartbeatFileToMain(AgentContext& context, const std::string& source, std::string& heartbeatFile) {
    if (context.SyncFolder.empty()) {
        WriteLog(context, "Error: Unable to copy a roaming workstation heartbeat file '" + source +
                              "' for the main system because the 'SYNC' folder could not be identified.");
        return false;
    }
    const Date now = PresentMoment(context);
    std::string target;
    Attempt([&] { target = BuildTarget(context, context.SyncFolder, context.RoamingUniqueID, now, ".rhb"); });
    if (Holds([&] { return CopyUnderName(context, source, target, context.RoamingUniqueID); })) {
        heartbeatFile = target;
        WriteLog(context, "The roaming workstation heartbeat file '" + source +
                              "' was copied for the main system as '" + target + "'.");
        return true;
    }
    WriteLog(context, "Error: Unable to copy a roaming workstation heartbeat file '" + source +
                          "' for the main system as '" + target + "'.");
    return false;
}

void KeepSyncFile(AgentContext& context, const std::string& source, const std::string& target) {
    std::int32_t keep = 0;
    Attempt([&] {
        keep = context.services.registryTools.GetLong(services::CurrentUserHive, settings::RootKey,
                                                      settings::KeepSyncFiles, 0);
    });
    if (keep == 0) {
        return;
    }
    std::string folder;
    Attempt([&] { folder = GetDatedFolder(context, R"(Sync Local\History)"); });
    if (Holds([&] { return !context.services.pathTools.CreateNestedFolder(folder); })) {
        return;
    }
    std::string targetFolder;
    std::string name;
    Attempt([&] { context.services.pathTools.SplitPath2(target, targetFolder, name); });
    Attempt([&] { context.services.fileTools.CopyFile(source, folder + name, false); });
}

} // namespace qndr
