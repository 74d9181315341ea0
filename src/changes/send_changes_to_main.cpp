#include "changes/send_changes_to_main.h"

#include "changes/export_audited_changes.h"
#include "services/company_numbers.h"
#include "shared/failure_rule.h"
#include "shared/formatting.h"
#include "shared/sync_log.h"
#include "syncfiles/failed_update.h"
#include "syncfiles/packaging.h"
#include "syncfiles/routing.h"

namespace qndr {
namespace {

/// A read that fails leaves the value as it was.
void ReadLong(AgentContext& context, const services::Statement& statement, std::int32_t& value) {
    Attempt([&] { value = context.Database().ExecuteScaler(statement).ToLong(); });
}

/// True when "data.xml" lies in the folder and in `info`. `maxId` is then the audit row up to which it speaks.
bool ExportForMain(AgentContext& context, const std::string& folder, SyncFileInfo& info, std::int32_t& maxId) {
    std::int32_t lastAuditId = 0;
    ReadLong(context, "SELECT LastAuditID FROM Company", lastAuditId);
    const services::Statement statement =
        FormatStatement("SELECT COUNT(*) AS MyCount FROM AuditLog WHERE ID > {0}", lastAuditId);
    std::int32_t count = 0;
    Attempt([&] { count = context.Database().ExecuteScaler(statement, "", "0").ToLong(); });
    if (count <= 0) {
        return false;
    }
    ReadLong(context, "SELECT MAX(ID) AS MaxID FROM AuditLog", maxId);
    // The quote stays open on purpose.
    WriteLog(context,
             "Changes up to AuditLog entry '" + std::to_string(maxId) + " will be sent to the main system.");
    ReadLong(context, "SELECT LastAuditID FROM Company", lastAuditId);
    return ExportAuditedChanges(context, folder, info, lastAuditId, maxId);
}

void EnterSent(AgentContext& context, std::int32_t maxId) {
    const auto build = [&] {
        return FormatStatement("UPDATE Company SET LastAuditID = {0}, NextSequenceToMain = NextSequenceToMain + 1",
                               maxId);
    };
    if (Holds([&] { return context.Database().ExecuteNonQuery(build()) != 1; })) {
        LogFailedUpdate(context,
                        "Error: There was a problem updating the Company table when sending changes from the main "
                        "system. More information to follow.",
                        build);
    }
}

} // namespace

void SendChangesToMain(AgentContext& context, ActivityTarget* activity) {
    SyncFileInfo info;
    InitSyncFileInfo(info);
    Attempt([&] { SetActivity(context, "Sending changes to main.", activity); });
    std::int16_t state = 0;
    Attempt([&] { state = context.Database().ExecuteScaler("SELECT SyncState FROM Company").ToInteger(); });
    if (state != SyncStateReady) {
        return;
    }
    ReadLong(context, "SELECT NextSequenceToMain FROM Company", info.Sequence);
    const std::string folder = CreateWorkingFolder(context);
    if (folder.empty()) {
        Attempt([&] {
            context.CurrentLibrary().RecordEvent(
                "Unable to send changes to the main system because a working folder cannot be created.");
        });
        WriteLog(context,
                 "Error: Unable to send changes to the main system because a working folder cannot be created.");
        return;
    }
    std::int32_t maxId = 0;
    std::string path;
    if (ExportForMain(context, folder, info, maxId)) {
        path = CreateDescribedSyncFile(context, folder, info);
    }
    if (!path.empty()) {
        if (CopySyncFileToMain(context, path)) {
            EnterSent(context, maxId);
        }
        Attempt([&] { context.services.fileTools.DeleteFile(path); });
    }
    Attempt([&] { context.services.pathTools.DeleteFolder(folder, true); });
}

} // namespace qndr
