#include "initial/initial_sync_roaming.h"

#include "services/company_numbers.h"
#include "shared/failure_rule.h"
#include "shared/formatting.h"
#include "shared/records.h"
#include "syncfiles/descriptor.h"
#include "syncfiles/discovery.h"
#include "syncfiles/identity.h"
#include "syncfiles/import.h"
#include "syncfiles/packaging.h"
#include "syncfiles/routing.h"

namespace qndr {
namespace {

std::int16_t ReadSyncState(AgentContext& context) {
    std::int16_t state = 0;
    Attempt([&] { state = context.Database().ExecuteScaler("SELECT SyncState FROM Company").ToInteger(); });
    return state;
}

void DeleteWorkingFolder(AgentContext& context, const std::string& folder) {
    Attempt([&] { context.services.pathTools.DeleteFolder(folder, true); });
}

/// Sends the packed file to main. When it has reached the Sync folder, the statement is run, its result unseen.
/// The packed file is gone afterwards.
void SendToMain(AgentContext& context, const std::string& path, const services::Statement& statement) {
    if (CopySyncFileToMain(context, path)) {
        Attempt([&] { context.Database().ExecuteNonQuery(statement); });
    }
    Attempt([&] { context.services.fileTools.DeleteFile(path); });
}

/// True when the file was taken in as the initial sync.
bool TakeInitialSync(AgentContext& context, FoundSyncFile& entry) {
    ReadSyncFile(context, entry);
    if (entry.SyncState != SyncFileInitialSync) {
        return false;
    }
    // Before the import, and not taken back when that fails: the acknowledge needs the address.
    const services::Statement statement = FormatStatement(
        "UPDATE Company SET MainUniqueID = '{0}', ReferenceCode = {1}", entry.From, entry.ReferenceCode);
    Attempt([&] { context.Database().ExecuteNonQuery(statement); });
    return ImportSyncFileData(context, entry);
}

} // namespace

void SendInitialSyncRequest(AgentContext& context, ActivityTarget* activity) {
    SyncFileInfo info;
    InitSyncFileInfo(info);
    Attempt([&] { SetActivity(context, "Sending initial sync request to main", activity); });
    if (ReadSyncState(context) != SyncStateInitialSyncRequired) {
        return;
    }
    info.SyncState = SyncFileInitialSyncRequest;
    const std::string folder = CreateWorkingFolder(context);
    if (folder.empty()) {
        Attempt([&] {
            context.CurrentLibrary().RecordEvent(
                "Unable to perform an initial sync request because a working folder cannot be created.");
        });
        return;
    }
    const std::string path = CreateDescribedSyncFile(context, folder, info);
    if (!path.empty()) {
        SendToMain(context, path,
                   FormatStatement("UPDATE Company SET SyncState = {0}, LastAuditID = 0, NextSequenceToMain = 0, "
                                   "NextSequenceFromMain = 0",
                                   SyncStateInitialSyncRequested));
    }
    DeleteWorkingFolder(context, folder);
}

void ReceiveInitialSync(AgentContext& context, ActivityTarget* activity) {
    std::vector<FoundSyncFile> files(1);
    Attempt([&] { SetActivity(context, "Receiving initial sync.", activity); });
    const std::string ownId = ReadOwnUniqueID(context);
    if (!ownId.empty()) {
        FindSyncFiles(context, files);
        // Read once: a second initial sync file in the list is taken in over the first.
        if (ReadSyncState(context) == SyncStateInitialSyncRequested) {
            for (FoundSyncFile& entry : files) {
                if (!entry.FilePath.empty() && EqualIdentities(entry.To, ownId) &&
                    TakeInitialSync(context, entry)) {
                    SendInitialSyncAcknowledge(context);
                    entry.Delete = FieldTrue;
                }
            }
        }
    }
    DeleteMarkedSyncFiles(context, files);
}

void SendInitialSyncAcknowledge(AgentContext& context) {
    SyncFileInfo info;
    InitSyncFileInfo(info);
    info.SyncState = SyncFileReady;
    const std::string folder = CreateWorkingFolder(context);
    if (folder.empty()) {
        return;
    }
    std::string path;
    if (WriteIdFile(context, folder, info)) {
        path = CreateSyncFile(context, folder);
    }
    if (!path.empty()) {
        SendToMain(context, path, FormatStatement("UPDATE Company SET SyncState = {0}", SyncStateReady));
    }
    DeleteWorkingFolder(context, folder);
}

} // namespace qndr
