#include "changes/send_changes_to_roaming_workstations.h"

#include "changes/export_audited_changes.h"
#include "initial/export_reset_data.h"
#include "services/company_numbers.h"
#include "shared/dates.h"
#include "shared/failure_rule.h"
#include "shared/formatting.h"
#include "shared/records.h"
#include "shared/sync_log.h"
#include "syncfiles/failed_update.h"
#include "syncfiles/packaging.h"
#include "syncfiles/query_rows.h"
#include "syncfiles/routing.h"

namespace qndr {
namespace {

/// Read before the export, so that audit rows written meanwhile lie above it and go with the next file.
std::int32_t ReadMaxAuditID(AgentContext& context) {
    std::int32_t maxId = 0;
    Attempt([&] { maxId = context.Database().ExecuteScaler("SELECT MAX(ID) AS MaxID FROM AuditLog").ToLong(); });
    return maxId;
}

void LogRange(AgentContext& context, std::int32_t maxId) {
    // The quote stays open on purpose.
    WriteLog(context, "Changes up to AuditLog entry '" + std::to_string(maxId) +
                          " will be sent to this Roaming Workstation.");
}

/// True when "data.xml" lies in the folder and in `info`. `maxId` is then the audit row up to which it speaks.
bool ExportFor(AgentContext& context, const services::Node* record, const std::string& folder, SyncFileInfo& info,
               std::int32_t& maxId) {
    if (info.IsSyncReset == FieldTrue) {
        maxId = ReadMaxAuditID(context);
        LogRange(context, maxId);
        return ExportResetData(context, folder, info);
    }
    const std::int32_t lastAuditId = GetNodeLong("LastAuditID", record, 0);
    std::int32_t count = 0;
    Attempt([&] {
        count = context.Database()
                    .ExecuteScaler(
                        FormatStatement("SELECT COUNT(*) AS MyCount FROM AuditLog WHERE ID > {0}", lastAuditId),
                        "", "0")
                    .ToLong();
    });
    if (count <= 0) {
        WriteLog(context, "No changes were found to be sent to this Roaming Workstation.");
        return false;
    }
    maxId = ReadMaxAuditID(context);
    LogRange(context, maxId);
    return ExportAuditedChanges(context, folder, info, lastAuditId, maxId);
}

void EnterSent(AgentContext& context, const services::Node* record, std::int32_t maxId) {
    const auto build = [&] {
        return FormatStatement(
            "UPDATE RoamingWorkstations SET LastAuditID = {0}, NextSequenceToRoaming = NextSequenceToRoaming + 1, "
            "LastSentTo = '{1}', SyncState = {2} WHERE ID = {3}",
            maxId, FormatSQLDate(LocalToUtc(context, context.services.clock.Now()), false), SyncStateReady,
            GetNodeLong("ID", record, 0));
    };
    services::Statement statement = "";
    Attempt([&] { statement = build(); });
    if (Holds([&] { return context.Database().ExecuteNonQuery(statement) != 1; })) {
        LogFailedUpdate(
            context,
            "Error: There was a problem updating the RoamingWorkstations table when sending changes to "
            "a Roaming Workstation. More information to follow.",
            build);
    }
}

} // namespace

void SendChangesToRoamingWorkstations(AgentContext& context, ActivityTarget* activity) {
    const QueryRows rows(
        context, FormatStatement("SELECT * FROM RoamingWorkstations WHERE SyncState = {0} OR SyncState = {1}",
                                 SyncStateReady, SyncStateResetRequested));
    for (long index = 0; index < rows.Count(); ++index) {
        const auto record = rows.Row(index);
        const std::string name = GetNodeText("Name", record.get(), "");
        WriteLog(context, "Start sending changes to roaming workstation '" + name + "'.");
        Attempt([&] { SetActivity(context, "Sending changes to roaming workstation '" + name + "'.", activity); });
        SendChangesToRoamingWorkstation(context, record.get());
        WriteLog(context, "Finish sending changes to roaming workstation '" + name + "'.");
    }
}

void SendChangesToRoamingWorkstation(AgentContext& context, const services::Node* record) {
    SyncFileInfo info;
    InitSyncFileInfo(info);
    info.Sequence = GetNodeLong("NextSequenceToRoaming", record, 0);
    const std::string folder = CreateWorkingFolder(context);
    if (folder.empty()) {
        Attempt([&] {
            context.CurrentLibrary().RecordEvent(
                "Unable to send changes to a Roaming Workstation because a working folder cannot be created.");
        });
        WriteLog(context, "Error: Unable to send changes to a Roaming Workstation because a working folder cannot "
                          "be created.");
        return;
    }
    Attempt([&] {
        const services::Statement statement = FormatStatement(
            "SELECT SyncState FROM RoamingWorkstations WHERE ID = {0}", GetNodeLong("ID", record, 0));
        const std::int16_t state = context.Database().ExecuteScaler(statement, "", "0").ToInteger();
        info.IsSyncReset = state == SyncStateResetRequested ? FieldTrue : FieldFalse;
    });
    std::int32_t maxId = 0;
    std::string path;
    if (ExportFor(context, record, folder, info, maxId)) {
        path = CreateDescribedSyncFile(context, folder, info);
    }
    if (!path.empty()) {
        if (CopySyncFileToRoaming(context, path, record)) {
            EnterSent(context, record, maxId);
        }
        Attempt([&] { context.services.fileTools.DeleteFile(path); });
    }
    Attempt([&] { context.services.pathTools.DeleteFolder(folder, true); });
}

} // namespace qndr
