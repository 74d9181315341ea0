#include "syncfiles/descriptor.h"

#include "services/variant.h"
#include "shared/dates.h"
#include "shared/failure_rule.h"
#include "shared/formatting.h"
#include "shared/sync_log.h"
#include "shared/versions.h"

namespace qndr {
namespace {

constexpr const char* Section = "GENERAL";

void WriteKey(AgentContext& context, const std::string& path, const std::string& key, const std::string& value) {
    Attempt([&] { context.services.iniTools.SetValue(Section, key, value, path); });
}

void WriteKind(AgentContext& context, const std::string& path, const SyncFileInfo& info) {
    if (info.IsMessage != FieldFalse) {
        WriteKey(context, path, "MessageCode", std::to_string(info.MessageCode));
        return;
    }
    if (info.SyncState != 0) {
        WriteKey(context, path, "SyncState", std::to_string(info.SyncState));
    } else {
        WriteKey(context, path, "Sequence", std::to_string(info.Sequence));
    }
    if (info.Sequence == SyncResetSequence) {
        WriteKey(context, path, "ResetDate", FormatGeneralDate(info.ResetDate));
    }
}

void WriteSender(AgentContext& context, const std::string& path) {
    std::string from;
    Attempt([&] { from = context.Database().ExecuteScaler("SELECT UniqueID FROM Company").ToText(); });
    WriteKey(context, path, "From", from);
    std::string fromType;
    Attempt([&] { fromType = context.Database().ExecuteScaler("SELECT CompanyType FROM Company").ToText(); });
    WriteKey(context, path, "FromType", fromType);
    WriteKey(context, path, "FromCompanyVersion", GetLatestVersion(context));
    WriteKey(context, path, "FromAppVersion", GetApplicationVersion(context));
    std::string sentOn;
    Attempt([&] { sentOn = FormatGeneralDate(LocalToUtc(context, context.services.clock.Now())); });
    WriteKey(context, path, "SentOn", sentOn);
}

} // namespace

std::string GetSyncFileName(AgentContext& context, const FoundSyncFile& entry) {
    std::string name;
    Attempt([&] { name = context.services.fileTools.GetFileName(entry.FilePath); });
    return name;
}

void InitSyncFileInfo(SyncFileInfo& info) {
    info = SyncFileInfo{};
}

void AddFileToSyncFileInfo(const std::string& path, SyncFileInfo& info) {
    if (info.Files.empty() || !info.Files.back().empty()) {
        info.Files.emplace_back();
    }
    info.Files.back() = path;
}

bool WriteIdFile(AgentContext& context, const std::string& folder, const SyncFileInfo& info) {
    std::string path;
    Attempt([&] { path = context.services.pathTools.FixPath(folder, true) + "id.dat"; });
    WriteKind(context, path, info);
    if (info.IsSyncReset != FieldFalse) {
        WriteKey(context, path, "IsSyncReset", "1");
    }
    if (info.ReferenceCode > 0) {
        WriteKey(context, path, "ReferenceCode", std::to_string(info.ReferenceCode));
    }
    WriteSender(context, path);
    WriteLog(context, "The id file was added to '" + folder + "'. Details to follow:");
    WriteLog(context, FormatString("SyncState = {0}, Sequence = {1}, ReferenceCode = {2}", info.SyncState,
                                   info.Sequence, info.ReferenceCode));
    return true;
}

bool WriteSequenceFile(AgentContext& context, const std::string& folder, const SyncFileInfo& info) {
    std::string text;
    for (const std::string& file : info.Files) {
        if (file.empty()) {
            continue;
        }
        if (!text.empty()) {
            text += "\r\n";
        }
        Attempt([&] { text += context.services.fileTools.GetFileName(file); });
    }
    if (text.empty()) {
        return true;
    }
    std::string path;
    Attempt([&] { path = context.services.pathTools.FixPath(folder, true) + "sequence.dat"; });
    if (Holds([&] { return context.services.textFileTools.WriteTextFile(path, text, "utf-8", 0) == 1; })) {
        WriteLog(context, "The sequence file was added to '" + folder + "'.");
        return true;
    }
    WriteLog(context, "A sequence file '" + path + "' could not be written to.");
    return false;
}

void ReadIdFile(AgentContext& context, const std::string& path, FoundSyncFile& entry) {
    const auto read = [&](const char* key, const char* fallback) {
        return context.services.iniTools.GetValue(Section, key, fallback, path);
    };
    std::string code;
    Attempt([&] { code = read("MessageCode", "0"); });
    Attempt([&] { entry.IsMessage = Variant(code).ToLong() != 0 ? FieldTrue : FieldFalse; });
    Attempt([&] { entry.MessageCode = Variant(code).ToInteger(); });
    Attempt([&] { entry.From = read("From", ""); });
    Attempt([&] { entry.FromCompanyVersion = read("FromCompanyVersion", ""); });
    Attempt([&] { entry.FromAppVersion = read("FromAppVersion", ""); });
    Attempt([&] { entry.ReferenceCode = Variant(read("ReferenceCode", "0")).ToByte(); });
    Attempt([&] { entry.SyncState = Variant(read("SyncState", "0")).ToInteger(); });
    Attempt([&] { entry.Sequence = Variant(read("Sequence", "0")).ToLong(); });
    Attempt([&] { entry.IsSyncReset = Variant(read("IsSyncReset", "0")).ToLong() == 1 ? FieldTrue : FieldFalse; });
    std::string resetDate;
    Attempt([&] { resetDate = read("ResetDate", ""); });
    if (const auto date = ParseDate(resetDate)) {
        entry.ResetDate = *date;
    }
}

} // namespace qndr
