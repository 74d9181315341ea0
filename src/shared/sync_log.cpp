#include "shared/sync_log.h"

#include "shared/failure_rule.h"
#include "text/editing.h"
#include "text/utf8.h"

#include <algorithm>
#include <cstddef>
#include <optional>
#include <string_view>

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
    return std::to_string(civil.month) + "-" + std::to_string(civil.day) + "-" + text::Digits(civil.year, 4) +
           " " + text::Digits(civil.hour, 2) + text::Digits(civil.minute, 2);
}

/// Whether a terminal or an editor obeys the character instead of showing it: C0, DEL, C1, and the two line breaks
/// beyond them.
bool IsControl(std::string_view character) {
    const auto first = static_cast<unsigned char>(character.front());
    if (character.size() == 1) {
        return first < 0x20 || (first >= 0x7F && first < 0xA0);
    }
    return (first == 0xC2 && static_cast<unsigned char>(character[1]) < 0xA0) || character == "\u2028" ||
           character == "\u2029";
}

/// One line, whatever it holds: texts of other computers' files stand in messages, and none of them may make a
/// line of its own or tell a terminal what to do. Such a character becomes its bytes in hexadecimal.
std::string AsOneLine(std::string_view message) {
    constexpr std::string_view digits = "0123456789ABCDEF";
    std::string line;
    while (!message.empty()) {
        // A byte that begins no character stands for itself.
        const std::string_view character =
            message.substr(0, std::max<std::size_t>(text::CharacterLength(message), 1));
        if (IsControl(character)) {
            for (const char byte : character) {
                const auto value = static_cast<unsigned char>(byte);
                line.append("\\x").append(1, digits[value / 16]).append(1, digits[value % 16]);
            }
        } else {
            line.append(character);
        }
        message.remove_prefix(character.size());
    }
    return line;
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
        error = text::Trimmed(text::Trimmed(errorDescription) + " (" + std::to_string(errorNumber) + ")");
    }
    RotateLog(services, path);
    std::string time;
    Attempt([&] { time = FormatGeneralDate(services.clock.Now()); });
    if (time.size() < kTimeWidth) {
        time.resize(kTimeWidth, ' ');
    }
    std::string lines = time + AsOneLine(message) + "\r\n";
    if (!error.empty()) {
        lines += time + AsOneLine(error) + "\r\n";
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
        fileName = services.program.ExecutableName() + " " + text::Digits(today.month, 2) +
                   text::Digits(today.year % 100, 2) + ".log";
    });
    const std::string folder = GetLogsFolder(services);
    return folder.empty() ? "" : folder + fileName;
}

} // namespace qndr
