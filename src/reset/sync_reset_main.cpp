#include "reset/sync_reset_main.h"

#include "services/company_numbers.h"
#include "shared/dates.h"
#include "shared/failure_rule.h"
#include "shared/formatting.h"
#include "shared/records.h"
#include "shared/sync_log.h"
#include "syncfiles/discovery.h"
#include "syncfiles/failed_update.h"
#include "syncfiles/identity.h"
#include "syncfiles/import.h"
#include "syncfiles/packaging.h"
#include "syncfiles/query_rows.h"

namespace qndr {
namespace {

/// The event number of a reset request. Stored: never change.
constexpr std::int32_t kResetEvent = 2;

std::string NowForSql(AgentContext& context) {
    return FormatSQLDate(LocalToUtc(context, context.services.clock.Now()), false);
}

void RecordRequest(AgentContext& context, std::int32_t id) {
    std::string name;
    Attempt([&] {
        name = context.Database()
                   .ExecuteScaler(FormatStatement("SELECT Name FROM RoamingWorkstations WHERE ID = {0}", id))
                   .ToText();
    });
    const std::string text = FormatString("A sync reset was received from Roaming Workstation {0}", name);
    Attempt([&] { context.CurrentLibrary().RecordEvent(text, kResetEvent); });
}

void EnterResetPending(AgentContext& context, std::int32_t id) {
    const auto build = [&] {
        return FormatStatement(
            "UPDATE RoamingWorkstations SET NextSequenceToRoaming = 0, NextSequenceFromRoaming = 0, "
            "LastReceivedFrom = '{0}', SyncState = {1} WHERE ID = {2}",
            NowForSql(context), SyncStateResetPending, id);
    };
    services::Statement statement = "";
    Attempt([&] { statement = build(); });
    if (Holds([&] { return context.Database().ExecuteNonQuery(statement) != 1; })) {
        LogFailedUpdate(context,
                        "Error: There was a problem updating the RoamingWorkstations table when processing a sync "
                        "reset. More information to follow.",
                        build);
    }
}

void LogOtherWorkstation(AgentContext& context, const std::string& name, const FoundSyncFile& entry) {
    WriteLog(context, "The sync file '" + name +
                          "' will be ignored because it is for a different Roaming Workstation, '" + entry.From +
                          "'.");
}

void TakeResetRequest(AgentContext& context, FoundSyncFile& entry, const services::Node* record,
                      std::vector<std::string>& senders) {
    const std::string name = GetSyncFileName(context, entry);
    WriteLog(context, "The sync file '" + name + "' will be processed.");
    ReadSyncFile(context, entry);
    if (!EqualIdentities(entry.From, GetNodeText("UniqueID", record, ""))) {
        LogOtherWorkstation(context, name, entry);
        return;
    }
    if (entry.Sequence != SyncResetSequence) {
        WriteLog(context, "The sync file '" + name + "' will be ignored because its sequence, " +
                              std::to_string(entry.Sequence) + ", does not indicate a reset.");
        return;
    }
    const std::int32_t id = GetNodeLong("ID", record, 0);
    RecordRequest(context, id);
    EnterResetPending(context, id);
    entry.Delete = FieldTrue;
    if (Holds(
            [&] { return context.services.stringArrayTools.FindString(entry.From, senders, false, false) < 0; })) {
        WriteLog(context, "All files sent from '" + entry.From + "' will be deleted because of the sync reset.");
        Attempt([&] { context.services.stringArrayTools.AddString(entry.From, senders, false); });
    }
}

/// Every file of a sender that asked goes, whatever its sequence, the request once more with it. Files that were
/// not read have no sender and stay.
void SweepFilesOf(AgentContext& context, const std::vector<std::string>& senders,
                  std::vector<FoundSyncFile>& files) {
    for (FoundSyncFile& entry : files) {
        if (entry.FilePath.empty()) {
            continue;
        }
        for (const std::string& sender : senders) {
            if (!sender.empty() && EqualIdentities(entry.From, sender)) {
                WriteLog(context, "The sync file '" + GetSyncFileName(context, entry) +
                                      "' & will be marked marked for deletion.");
                entry.Delete = FieldTrue;
            }
        }
    }
}

void TakeResetRequests(AgentContext& context, const std::string& ownId, const services::Node* record,
                       std::vector<FoundSyncFile>& files) {
    std::vector<std::string> senders{""};
    FindSyncFiles(context, files);
    while (UnprocessedSyncFilesRemain(files)) {
        for (FoundSyncFile& entry : files) {
            if (!entry.FilePath.empty() && EqualIdentities(entry.To, ownId)) {
                TakeResetRequest(context, entry, record, senders);
            }
            entry.Processed = FieldTrue;
        }
    }
    SweepFilesOf(context, senders, files);
}

void EnterReceived(AgentContext& context, std::int32_t id) {
    services::Statement statement = "";
    Attempt([&] {
        statement = FormatStatement("UPDATE RoamingWorkstations SET LastReceivedFrom = '{0}' WHERE ID = {1}",
                                    NowForSql(context), id);
    });
    if (Holds([&] { return context.Database().ExecuteNonQuery(statement) != 1; })) {
        WriteLog(context, "Error: There was a problem updating the RoamingWorkstations table when processing a "
                          "pending sync reset. More information to follow.");
        Attempt([&] { WriteLog(context, context.Database().LastSQLErrorDescription()); });
    }
}

void DropDuringReset(AgentContext& context, FoundSyncFile& entry, const services::Node* record) {
    ReadSyncFile(context, entry);
    const std::string name = GetSyncFileName(context, entry);
    if (!EqualIdentities(entry.From, GetNodeText("UniqueID", record, ""))) {
        LogOtherWorkstation(context, name, entry);
        return;
    }
    WriteLog(context, "The sync file '" + name +
                          "' will be deleted because it's from a roaming workstation in a pending reset state.");
    entry.Delete = FieldTrue;
    EnterReceived(context, GetNodeLong("ID", record, 0));
}

void DropAllDuringReset(AgentContext& context, const std::string& ownId, const services::Node* record,
                        std::vector<FoundSyncFile>& files) {
    FindSyncFiles(context, files);
    while (UnprocessedSyncFilesRemain(files)) {
        for (FoundSyncFile& entry : files) {
            if (!entry.FilePath.empty() && EqualIdentities(entry.To, ownId)) {
                DropDuringReset(context, entry, record);
            }
            entry.Processed = FieldTrue;
        }
    }
}

/// Measured by the database, in UTC: the agent's own clock wrote LastReceivedFrom.
void EndDrainAfterQuiet(AgentContext& context, std::int32_t id) {
    std::int32_t count = 0;
    Attempt([&] {
        count = context.Database()
                    .ExecuteScaler(
                        FormatStatement("SELECT COUNT(*) AS theCount FROM RoamingWorkstations WHERE ID = {0} "
                                        "AND LastReceivedFrom < DATEADD(minute,-5,GETUTCDATE())",
                                        id))
                    .ToLong();
    });
    if (count != 1) {
        return;
    }
    WriteLog(context,
             "The sync state will be changed to Reset Requested because it's been more than 5 minutes since "
             "anything was received from this roaming workstation.");
    const services::Statement statement = FormatStatement(
        "UPDATE RoamingWorkstations SET SyncState = {0} WHERE ID = {1}", SyncStateResetRequested, id);
    if (Holds([&] { return context.Database().ExecuteNonQuery(statement) != 1; })) {
        WriteLog(context,
                 "Error: There was a problem updating the RoamingWorkstations table when setting the system "
                 "state to Reset Requested. More information to follow.");
        Attempt([&] { WriteLog(context, context.Database().LastSQLErrorDescription()); });
    }
}

} // namespace

void CheckForSyncResets(AgentContext& context, ActivityTarget* activity) {
    const QueryRows rows(
        context, FormatStatement("SELECT * FROM RoamingWorkstations WHERE SyncState = {0} OR SyncState = {1}",
                                 SyncStateReady, SyncStateResetRequested));
    for (long index = 0; index < rows.Count(); ++index) {
        const auto record = rows.Row(index);
        const std::string name = GetNodeText("Name", record.get(), "");
        WriteLog(context, "Start checking for sync reset from '" + name + "'.");
        Attempt([&] { SetActivity(context, "Checking for sync reset from '" + name + "'.", activity); });
        ProcessSyncResetsFrom(context, record.get());
        WriteLog(context, "Finish checking for sync reset from '" + name + "'.");
    }
}

void ProcessSyncResetsFrom(AgentContext& context, const services::Node* record) {
    std::vector<FoundSyncFile> files(1);
    const std::string ownId = ReadOwnUniqueID(context);
    if (ownId.empty()) {
        WriteLog(context, "Error: Unable to process sync reset requests becuase the Unique ID of the main company "
                          "could not be read.");
    } else {
        TakeResetRequests(context, ownId, record, files);
    }
    DeleteMarkedSyncFiles(context, files);
}

void ProcessPendingSyncResets(AgentContext& context, ActivityTarget* activity) {
    const QueryRows rows(context, FormatStatement("SELECT * FROM RoamingWorkstations WHERE SyncState = {0}",
                                                  SyncStateResetPending));
    for (long index = 0; index < rows.Count(); ++index) {
        const auto record = rows.Row(index);
        const std::string name = GetNodeText("Name", record.get(), "");
        WriteLog(context, "Start processing pending sync resets from '" + name + "'.");
        Attempt([&] { SetActivity(context, "Processing pending sync resets from '" + name + "'.", activity); });
        ProcessPendingSyncResetsFrom(context, record.get());
        WriteLog(context, "Finish processing pending sync resets from '" + name + "'.");
    }
}

void ProcessPendingSyncResetsFrom(AgentContext& context, const services::Node* record) {
    std::vector<FoundSyncFile> files(1);
    const std::string ownId = ReadOwnUniqueID(context);
    if (ownId.empty()) {
        WriteLog(context, "Error: Unable to process pending sync reset requests becuase the Unique ID of the main "
                          "company could not be read.");
    } else {
        DropAllDuringReset(context, ownId, record, files);
    }
    DeleteMarkedSyncFiles(context, files);
    EndDrainAfterQuiet(context, GetNodeLong("ID", record, 0));
}

} // namespace qndr
