#include "heartbeat/heartbeat.h"

#include "shared/failure_rule.h"
#include "shared/formatting.h"
#include "shared/settings.h"
#include "shared/sync_log.h"
#include "syncfiles/routing.h"
#include "text/letter_case.h"

#include <memory>
#include <vector>

namespace qndr {
namespace {

// What `SyncHeartbeat` says. Stored: never change.
constexpr std::int32_t kHeartbeatOk = 1;
constexpr std::int32_t kHeartbeatNoResponse = 2;

} // namespace

void Heartbeat::CheckHeartbeat(std::int32_t syncFrequency) {
    std::int32_t enabled = 0;
    Attempt([&] {
        enabled = context_.services.registryTools.GetLong(services::CurrentUserHive, settings::RootKey,
                                                          settings::EnableHeartbeat, 1);
    });
    if (enabled == 0) {
        return;
    }
    Attempt([&] { tray_.SetText("Checking heartbeat..."); });
    if (context_.OperatingMode <= 0) {
        return;
    }
    std::unique_ptr<services::SharedCodeLibrary> library;
    Attempt([&] { library = context_.services.objects.CreateSharedCodeLibrary(); });
    if (!library) {
        return;
    }
    if (!context_.Profile.empty()) {
        Attempt([&] { library->Profiles().SetProfile(context_.Profile); });
    }
    if (context_.OperatingMode == 1) {
        CheckHeartbeatAsMain(*library);
    } else if (context_.OperatingMode == 2) {
        CheckHeartbeatAsRoaming(*library, syncFrequency);
    }
}

void Heartbeat::CheckHeartbeatAsMain(services::SharedCodeLibrary& /*library*/) {
    SetStatus(kHeartbeatOk);
    if (Holds([&] { return !context_.services.pathTools.FolderExists(context_.SyncFolder); })) {
        return;
    }
    std::vector<std::string> files;
    Attempt([&] { files = context_.services.pathTools.FindFiles(context_.SyncFolder, "*.rhb", false); });
    for (const std::string& file : files) {
        if (file.empty()) {
            continue;
        }
        if (Holds([&] { return context_.services.fileTools.FileIsPresent(file); }) &&
            Holds([&] { return !context_.services.fileTools.DeleteFile(file); })) {
            WriteLog(context_,
                     FormatString("The roaming workstation heartbeat file '{0}' could not be deleted.", file));
        }
        Attempt([&] { context_.services.messages.ProcessMessages(); });
    }
}

void Heartbeat::CheckHeartbeatAsRoaming(services::SharedCodeLibrary& /*library*/, std::int32_t syncFrequency) {
    if (Holds([&] { return !context_.services.pathTools.FolderExists(context_.SyncFolder); })) {
        return;
    }
    if (!heartbeatFile_.empty()) {
        if (IsAwaitedFileThere()) {
            if (Holds([&] {
                    return context_.services.clock.Now() >=
                           heartbeatSent_.AddMinutes(2 * std::int64_t{syncFrequency});
                })) {
                SetStatus(kHeartbeatNoResponse);
            }
        } else {
            SetStatus(kHeartbeatOk);
            heartbeatFile_.clear();
            heartbeatSent_ = NoDate;
        }
    }
    if (heartbeatFile_.empty()) {
        SendHeartbeatFile();
    }
}

bool Heartbeat::IsAwaitedFileThere() {
    // A folder that cannot be read says nothing of main: the file stays awaited.
    std::vector<std::string> files{heartbeatFile_};
    Attempt([&] { files = context_.services.pathTools.FindFiles(context_.SyncFolder, "*.rhb", false); });
    const std::string awaited = text::ToLowerCase(heartbeatFile_);
    for (const std::string& file : files) {
        if (!file.empty() &&
            Holds([&] { return text::ToLowerCase(context_.services.fileTools.GetFileName(file)) == awaited; })) {
            return true;
        }
    }
    return false;
}

void Heartbeat::SendHeartbeatFile() {
    const std::string path = CreateHeartbeatFile(context_);
    if (path.empty()) {
        return;
    }
    // The result is not asked for: after a failed copy there is no name, and the next step sends a new file.
    std::string copy;
    CopyHeartbeatFileToMain(context_, path, copy);
    Attempt([&] { heartbeatFile_ = context_.services.fileTools.GetFileName(copy); });
    Attempt([&] { heartbeatSent_ = context_.services.clock.Now(); });
    Attempt([&] { context_.services.fileTools.DeleteFile(path); });
}

void Heartbeat::SetStatus(std::int32_t status) {
    Attempt([&] {
        context_.services.registryTools.SetLong(services::CurrentUserHive, settings::RootKey,
                                                settings::SyncHeartbeat, status);
    });
}

std::string CreateHeartbeatFile(AgentContext& context) {
    std::string path;
    Attempt([&] { path = context.services.fileTools.CreateTemporaryFile("", "suz", ".tmp"); });
    if (path.empty()) {
        WriteLog(context, "A temporary file could not be created");
        return "";
    }
    std::string content;
    Attempt([&] { content = "QNDR 5 Heartbeat File\r\n" + FormatGeneralDate(context.services.clock.Now()); });
    if (Holds([&] { return context.services.textFileTools.WriteTextFile(path, content, "utf-8", 0) != 1; })) {
        WriteLog(context, FormatString("A temporary heartbeat file was created, '{0}' however it could not be "
                                       "written to. A heartbeat file won't be created.",
                                       path));
        Attempt([&] { context.services.fileTools.DeleteFile(path); });
        return "";
    }
    return path;
}

} // namespace qndr
