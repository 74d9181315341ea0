#include "initial/initial_sync_main.h"

#include "initial/export_initial_sync_data.h"
#include "services/company_numbers.h"
#include "services/variant.h"
#include "shared/failure_rule.h"
#include "shared/formatting.h"
#include "shared/records.h"
#include "shared/sync_log.h"
#include "syncfiles/discovery.h"
#include "syncfiles/failed_update.h"
#include "syncfiles/identity.h"
#include "syncfiles/packaging.h"
#include "syncfiles/query_rows.h"
#include "syncfiles/routing.h"

namespace qndr {
namespace {

/// Moves the sender's row to the state and marks the file, also when there is no such row.
void MoveSender(AgentContext& context, FoundSyncFile& entry, SyncState state, const std::string& errorText) {
    const services::Statement statement = FormatStatement(
        "UPDATE RoamingWorkstations SET SyncState = {0} WHERE UniqueID = '{1}'", state, entry.From);
    if (Holds([&] { return context.Database().ExecuteNonQuery(statement) != 1; })) {
        LogFailedUpdate(context, errorText, [&] { return statement; });
    }
    entry.Delete = FieldTrue;
}

void TakeRequest(AgentContext& context, FoundSyncFile& entry) {
    const std::string name = GetSyncFileName(context, entry);
    WriteLog(context, "The sync file '" + name + "' will be processed.");
    ReadSyncFile(context, entry);
    if (!IsKnownRoamingWorkstation(context, entry)) {
        WriteLog(context,
                 "The sync file '" + name + "' will be ignored because its for a different main company.");
        return;
    }
    if (entry.SyncState != SyncFileInitialSyncRequest) {
        WriteLog(context, "The sync file '" + name + "' will be ignored because its state, " +
                              std::to_string(entry.SyncState) + " is not 'initial sync requested'.");
        return;
    }
    MoveSender(
        context, entry, SyncStateInitialSyncRequired,
        "Error: There was a problem updating the RoamingWorkstations table when receiving initial sync request. "
        "More information to follow.");
}

void TakeAcknowledge(AgentContext& context, FoundSyncFile& entry) {
    const std::string name = GetSyncFileName(context, entry);
    WriteLog(context, "The sync file '" + name + "' will be processed.");
    ReadSyncFile(context, entry);
    if (entry.SyncState != SyncFileReady) {
        WriteLog(context, "The sync file '" + name + "' will be ignored because its state, " +
                              std::to_string(entry.SyncState) + " is not 'ready'.");
        return;
    }
    MoveSender(context, entry, SyncStateReady,
               "Error: There was a problem updating the RoamingWorkstations table when receiving initial sync "
               "acknowledge. More information to follow.");
}

void TakeAcknowledges(AgentContext& context, const std::string& ownId, std::vector<FoundSyncFile>& files) {
    FindSyncFiles(context, files);
    std::int16_t state = 0;
    Attempt([&] { state = context.Database().ExecuteScaler("SELECT SyncState FROM Company").ToInteger(); });
    if (state != SyncStateNone) {
        WriteLog(context, "Error: ReceiveInitialSyncAcknowledges - 1");
        return;
    }
    for (FoundSyncFile& entry : files) {
        if (!entry.FilePath.empty() && EqualIdentities(entry.To, ownId)) {
            TakeAcknowledge(context, entry);
        }
    }
}

/// The row's move to SyncStateInitialSyncSent, after its file reached the Sync folder. MAX(ID) is read here and
/// not before the export: the later change flow starts above the number stored now.
void EnterInitialSyncSent(AgentContext& context, const services::Node* record) {
    std::int32_t maxId = 0;
    Attempt([&] { maxId = context.Database().ExecuteScaler("SELECT MAX(ID) AS MaxID FROM AuditLog").ToLong(); });
    const services::Statement statement =
        FormatStatement("UPDATE RoamingWorkstations SET SyncState = {0}, LastAuditID = {1} WHERE ID = {2}",
                        SyncStateInitialSyncSent, maxId, GetNodeLong("ID", record, 0));
    if (Holds([&] { return context.Database().ExecuteNonQuery(statement) != 1; })) {
        WriteLog(context, "Error: There was a problem updating the roaming workstation record at the end of an "
                          "initial sync.");
    }
}

/// Fills the folder and packs it. Empty when any part of that failed.
std::string PackInitialSync(AgentContext& context, const std::string& folder, SyncFileInfo& info) {
    if (!ExportInitialSyncData(context, folder, info)) {
        WriteLog(context, "Error: Data could not be exported during an initial sync.");
        return "";
    }
    WriteLog(context, "Data was exported.");
    if (!WriteIdFile(context, folder, info)) {
        WriteLog(context, "The ID file was not added to '" + folder + "'.");
        return "";
    }
    if (!WriteSequenceFile(context, folder, info)) {
        WriteLog(context, "Error: The sequence file was not added to '" + folder + "'.");
        return "";
    }
    std::string path = CreateSyncFile(context, folder);
    if (path.empty()) {
        WriteLog(context, "Error: The data file was not added to '" + folder + "'.");
    } else {
        WriteLog(context, "The data file was added to '" + folder + "'.");
    }
    return path;
}

} // namespace

void ReceiveInitialSyncRequests(AgentContext& context, ActivityTarget* activity) {
    std::vector<FoundSyncFile> files(1);
    WriteLog(context, "Start receiveing initial sync requests.");
    Attempt([&] { SetActivity(context, "Receiveing initial sync requests.", activity); });
    const std::string ownId = ReadOwnUniqueID(context);
    if (ownId.empty()) {
        WriteLog(context,
                 "Error: Unable to receive initial sync requests becuase the Unique ID of the main company "
                 "could not be read.");
    } else {
        FindSyncFiles(context, files);
        for (FoundSyncFile& entry : files) {
            if (!entry.FilePath.empty() &&
                (EqualIdentities(entry.To, ownId) || EqualIdentities(entry.To, "main"))) {
                TakeRequest(context, entry);
            }
        }
    }
    DeleteMarkedSyncFiles(context, files);
    WriteLog(context, "Finish receiveing initial sync requests.");
}

void SendInitialSyncs(AgentContext& context, ActivityTarget* activity) {
    const services::Statement statement =
        FormatStatement("SELECT * FROM RoamingWorkstations WHERE SyncState = {0}", SyncStateInitialSyncRequired);
    const QueryRows rows(context, statement);
    for (long index = 0; index < rows.Count(); ++index) {
        const auto record = rows.Row(index);
        const std::string name = GetNodeText("Name", record.get(), "");
        WriteLog(context, "Start sending initial sync to '" + name + "'.");
        Attempt([&] { SetActivity(context, "Sending initial sync to '" + name + "'.", activity); });
        SendInitialSync(context, record.get());
        WriteLog(context, "Finish sending initial sync to '" + name + "'.");
    }
}

void SendInitialSync(AgentContext& context, const services::Node* record) {
    SyncFileInfo info;
    InitSyncFileInfo(info);
    info.SyncState = SyncFileInitialSync;
    Attempt([&] { info.ReferenceCode = Variant(GetNodeLong("ReferenceCode", record, 0)).ToByte(); });
    const std::string folder = CreateWorkingFolder(context);
    if (folder.empty()) {
        Attempt([&] {
            context.CurrentLibrary().RecordEvent(
                "Unable to perform an initial sync because a working folder cannot be created.");
        });
        WriteLog(context, "Error: Unable to perform an initial sync because a working folder cannot be created.");
        return;
    }
    WriteLog(context, "The working folder '" + folder + "' was created.");
    const std::string path = PackInitialSync(context, folder, info);
    if (!path.empty()) {
        if (CopySyncFileToRoaming(context, path, record)) {
            EnterInitialSyncSent(context, record);
        }
        Attempt([&] { context.services.fileTools.DeleteFile(path); });
    }
    WriteLog(context, "Deleting working folder '" + folder + "'.");
    Attempt([&] { context.services.pathTools.DeleteFolder(folder, true); });
    if (Holds([&] { return context.services.pathTools.FolderExists(folder); })) {
        WriteLog(context, "Error: The working folder '" + folder + "' could not be deleted.");
    }
}

void ReceiveInitialSyncAcknowledges(AgentContext& context, ActivityTarget* activity) {
    std::vector<FoundSyncFile> files(1);
    WriteLog(context, "Start receiveing initial sync acknowledges.");
    Attempt([&] { SetActivity(context, "Receiveing initial sync acknowledges.", activity); });
    const std::string ownId = ReadOwnUniqueID(context);
    if (ownId.empty()) {
        WriteLog(context, "Error: Unable to receive initial sync acknowledges becuase the Unique ID of the main "
                          "company could not be read.");
    } else {
        TakeAcknowledges(context, ownId, files);
    }
    DeleteMarkedSyncFiles(context, files);
    WriteLog(context, "Finish receiveing initial sync acknowledges.");
}

bool IsKnownRoamingWorkstation(AgentContext& context, const FoundSyncFile& entry) {
    const QueryRows rows(context, "SELECT UniqueID FROM RoamingWorkstations");
    for (long index = 0; index < rows.Count(); ++index) {
        if (EqualIdentities(GetNodeText("UniqueID", rows.Row(index).get(), ""), entry.From)) {
            return true;
        }
    }
    return false;
}

} // namespace qndr
