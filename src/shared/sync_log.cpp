#include "shared/sync_log.h"

#include "shared/failure_rule.h"
#include "shared/text.h"

#include <optional>

namespace qndr {
namespace {

using services::AgentServices;
using services::CurrentUserHive;

constexpr std::int32_t kCommonApplicationData = 35;
constexpr std::int64_t kLargestLog = 131072;
constexpr int kDaysToLog = 7;
constexpr std::size_t kTimeWidth = 25;

std::int32_t ReadSwitch(const AgentServices& services, const std::string& key) {
    std::int32_t value = 0;
    Attempt([&] { value = services.registryTools.GetLong(CurrentUserHive, key, settings::DebugSyncAgent, 0); });
    return value;
}

std::optional<Date> ReadStartDate(const AgentServices& services, const std::string& key) {
    std::string text;
    Attempt([&] {
        text = services.registryTools.GetString(CurrentUserHive, key, settings::DebugSyncAgentStartDate, "");
    });
    return ParseDate(text);
}

/// "m-d-yyyy HhNn"
std::string FormatRotationTime(const Date& now) {
    const CivilTime civil = now.Civil();
    return std::to_string(civil.month) + "-" + std::to_string(civil.day) + "-" + Digits(civil.year, 4) + " " +
           Digits(civil.hour, 2) + Digits(civil.minute, 2);
}

/// Renames a log that has grown too large. When that fails the file goes on growing: no line is lost for it.
void RotateLog(const AgentServices& services, const std::string& path) {
    if (!Holds([&] { return services.fileTools.FileExists(path); })) {
        return;
    }
    std::int64_t size = 0;
    Attempt([&] { size = services.fileTools.GetFileSize(path); });
    if (size <= kLargestLog) {
        return;
    }
    std::string folder;
    std::string name;
    std::string extension;
    Attempt([&] { services.pathTools.SplitPath(path, folder, name, extension); });
    std::string time;
    Attempt([&] { time = FormatRotationTime(services.clock.Now()); });
    Attempt([&] { services.fileTools.MoveFile(path, folder + name + " (" + time + ")" + extension, false); });
}

} // namespace

void ReadDebugSetting(const AgentServices& services, const std::string& key) {
    if (ReadSwitch(services, key) != 1) {
        return;
    }
    if (!ReadStartDate(services, key)) {
        Attempt([&] {
            services.registryTools.SetString(CurrentUserHive, key, settings::DebugSyncAgentStartDate,
                                             FormatGeneralDate(services.clock.Now()));
        });
    }
    const auto start = ReadStartDate(services, key);
    if (Holds([&] { return start && *start < services.clock.Now().AddDays(-kDaysToLog); })) {
        Attempt([&] { services.registryTools.SetLong(CurrentUserHive, key, settings::DebugSyncAgent, 0); });
    }
}

void WriteLog(const AgentServices& services, const std::string& key, const std::string& message) {
    if (services.reports != nullptr) {
        services.reports->LineReported(message);
    }
    if (ReadSwitch(services, key) == 1) {
        WriteLogEntry(services, message, 0, "");
    }
}

void WriteLog(const AgentServices& services, const std::string& message) {
    WriteLog(services, settings::RootKey, message);
}

void WriteLogEntry(const AgentServices& services, const std::string& message, std::int32_t errorNumber,
                   const std::string& errorDescription) {
    const std::string path = GetLogFilePath(services);
    std::string error;
    if (errorNumber != 0 || !errorDescription.empty()) {
        error = Trim(Trim(errorDescription) + " (" + std::to_string(errorNumber) + ")");
    }
    RotateLog(services, path);
    std::string time;
    Attempt([&] { time = FormatGeneralDate(services.clock.Now()); });
    if (time.size() < kTimeWidth) {
        time.resize(kTimeWidth, ' ');
    }
    std::string lines = time + message + "\r\n";
    if (!error.empty()) {
        lines += time + error + "\r\n";
    }
    Attempt([&] { services.textAppender.Append(path, lines); });
}

std::string GetLogsFolder(const AgentServices& services) {
    auto& paths = services.pathTools;
    std::string folder;
    Attempt([&] { folder = services.specialFolderTools.GetFolderPath(kCommonApplicationData); });
    Attempt([&] { folder = paths.FixPath(folder, true); });
    if (!Holds([&] { return paths.FolderExists(folder); })) {
        return "";
    }
    Attempt([&] { folder += paths.FixPath("Velmoran", true) + "Logs"; });
    if (!Holds([&] { return paths.CreateNestedFolder(folder); })) {
        return "";
    }
    Attempt([&] { folder = paths.FixPath(folder, true); });
    return folder;
}

std::string GetLogFilePath(const AgentServices& services) {
    std::string fileName;
    Attempt([&] {
        const CivilTime today = services.clock.Now().Civil();
        fileName = services.program.ExecutableName() + " " + Digits(today.month, 2) + Digits(today.year % 100, 2) +
                   ".log";
    });
    const std::string folder = GetLogsFolder(services);
    return folder.empty() ? "" : folder + fileName;
}

} // namespace qndr
