#include "changes/apply_changes_from_main.h"

#include "changes/clear_tables_before_reset.h"
#include "services/company_numbers.h"
#include "shared/failure_rule.h"
#include "shared/formatting.h"
#include "shared/records.h"
#include "shared/sync_log.h"
#include "shared/versions.h"
#include "syncfiles/discovery.h"
#include "syncfiles/failed_update.h"
#include "syncfiles/identity.h"
#include "syncfiles/import.h"
#include "syncfiles/packaging.h"

namespace qndr {
namespace {

constexpr const char* kUpdateFailed =
    "Error: There was a problem updating the Company table when processing changes from the main system. More "
    "information to follow.";

/// The event number of a sync reset, at either end. Stored: never change.
constexpr std::int32_t kResetEvent = 2;

std::int32_t ReadNextSequence(AgentContext& context) {
    return context.Database().ExecuteScaler("SELECT NextSequenceFromMain FROM Company", "", "0").ToLong();
}

std::int32_t ReadMaxAuditID(AgentContext& context) {
    return context.Database().ExecuteScaler("SELECT MAX(ID) AS MaxID FROM AuditLog").ToLong();
}

/// After the import: all that the log holds at this moment counts as sent.
void FinishReset(AgentContext& context) {
    std::int32_t maxId = 0;
    Attempt([&] { maxId = ReadMaxAuditID(context); });
    const services::Statement statement =
        FormatStatement("UPDATE Company SET SyncState = {0}, LastAuditID = {1}", SyncStateReady, maxId);
    if (Holds([&] { return context.Database().ExecuteNonQuery(statement) != 1; })) {
        LogFailedUpdate(context, kUpdateFailed, [&] {
            return FormatStatement("UPDATE Company SET LastAuditID = {0}", ReadMaxAuditID(context));
        });
    }
    Attempt([&] { context.CurrentLibrary().RecordEvent("Sync reset complete.", kResetEvent); });
}

void MoveSequence(AgentContext& context, FoundSyncFile& entry) {
    const services::Statement statement = "UPDATE Company SET NextSequenceFromMain = NextSequenceFromMain + 1";
    std::int32_t result = 0;
    Attempt([&] { result = context.Database().ExecuteNonQuery(statement); });
    if (result == 1) {
        entry.Delete = FieldTrue;
    } else {
        LogFailedUpdate(context, kUpdateFailed, [&] { return statement; });
    }
}

void TakeChanges(AgentContext& context, FoundSyncFile& entry) {
    const std::string name = GetSyncFileName(context, entry);
    WriteLog(context, "The sync file '" + name + "' will be processed.");
    ReadSyncFile(context, entry);
    // Asked for and compared with nothing: a workstation takes the data of every version.
    GetLatestVersion(context);
    if (Holds([&] { return ReadNextSequence(context) != entry.Sequence; })) {
        Attempt([&] {
            WriteLog(context, "The sync file '" + name + "' will be ignored because its sequence, " +
                                  std::to_string(entry.Sequence) + " is not the next sequence to be processed - " +
                                  std::to_string(ReadNextSequence(context)));
        });
        return;
    }
    const bool isReset = entry.IsSyncReset == FieldTrue;
    if (isReset) {
        ClearTablesBeforeReset(context, entry);
    }
    if (!ImportSyncFileData(context, entry)) {
        return;
    }
    if (isReset) {
        FinishReset(context);
    }
    MoveSequence(context, entry);
}

void TakeAll(AgentContext& context, const std::string& ownId, std::vector<FoundSyncFile>& files) {
    FindSyncFiles(context, files);
    std::int16_t state = 0;
    Attempt([&] { state = context.Database().ExecuteScaler("SELECT SyncState FROM Company").ToInteger(); });
    if (state != SyncStateReady && state != SyncStateResetPending) {
        WriteLog(context,
                 "Changes from the main system will be ignored because an initial sync has not be performed.");
        return;
    }
    while (UnprocessedSyncFilesRemain(files)) {
        for (FoundSyncFile& entry : files) {
            if (!entry.FilePath.empty() && EqualIdentities(entry.To, ownId)) {
                TakeChanges(context, entry);
            }
            entry.Processed = FieldTrue;
        }
    }
}

} // namespace

void ApplyChangesFromMain(AgentContext& context, ActivityTarget* activity) {
    std::vector<FoundSyncFile> files(1);
    Attempt([&] { SetActivity(context, "Applying changes from main.", activity); });
    const std::string ownId = ReadOwnUniqueID(context);
    if (ownId.empty()) {
        WriteLog(context, "Error: Unable to process sync sync changes from the main system becuase the Unique ID "
                          "of the roaming company could not be read.");
    } else {
        TakeAll(context, ownId, files);
    }
    DeleteMarkedSyncFiles(context, files);
}

} // namespace qndr
