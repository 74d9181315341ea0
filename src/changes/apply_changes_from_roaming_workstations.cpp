#include "changes/apply_changes_from_roaming_workstations.h"

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

std::int32_t ReadNextSequence(AgentContext& context, std::int32_t id) {
    return context.Database()
        .ExecuteScaler(
            FormatStatement("SELECT NextSequenceFromRoaming FROM RoamingWorkstations WHERE ID = {0}", id))
        .ToLong();
}

void EnterReceived(AgentContext& context, FoundSyncFile& entry, std::int32_t id) {
    const auto now = [&] { return FormatSQLDate(LocalToUtc(context, context.services.clock.Now()), false); };
    services::Statement statement = "";
    Attempt([&] {
        statement =
            FormatStatement("UPDATE RoamingWorkstations SET NextSequenceFromRoaming = "
                            "NextSequenceFromRoaming + 1, LastReceivedFrom = '{0}', LastKnownAppVersion = '{1}' "
                            "WHERE ID = {2}",
                            now(), entry.FromAppVersion, id);
    });
    std::int32_t result = 0;
    Attempt([&] { result = context.Database().ExecuteNonQuery(statement); });
    if (result == 1) {
        entry.Delete = FieldTrue;
        return;
    }
    // The statement is shown in its older form, without the version.
    LogFailedUpdate(context,
                    "Error: There was a problem updating the RoamingWorkstations table when processing changes "
                    "from a Roaming Workstation. More information to follow.",
                    [&] {
                        return FormatStatement(
                            "UPDATE RoamingWorkstations SET NextSequenceFromRoaming = "
                            "NextSequenceFromRoaming + 1, LastReceivedFrom = '{0}' WHERE ID = {1}",
                            now(), id);
                    });
}

void TakeChanges(AgentContext& context, FoundSyncFile& entry, const services::Node* record) {
    ReadSyncFile(context, entry);
    if (!EqualIdentities(entry.From, GetNodeText("UniqueID", record, ""))) {
        return;
    }
    const std::string name = GetSyncFileName(context, entry);
    WriteLog(context, "The sync file '" + name + "' will be processed.");
    const std::int32_t id = GetNodeLong("ID", record, 0);
    if (Holds([&] { return ReadNextSequence(context, id) != entry.Sequence; })) {
        Attempt([&] {
            WriteLog(context, "The sync file '" + name + "' be ignored because its sequence, " +
                                  std::to_string(entry.Sequence) + ", is not what was expected - " +
                                  std::to_string(ReadNextSequence(context, id)));
        });
        return;
    }
    if (ImportSyncFileData(context, entry)) {
        EnterReceived(context, entry, id);
    }
}

void TakeAll(AgentContext& context, const std::string& ownId, const services::Node* record,
             std::vector<FoundSyncFile>& files) {
    FindSyncFiles(context, files);
    if (GetNodeInteger("SyncState", record, 0) != SyncStateReady) {
        WriteLog(context, "Changes from this Roaming Workstation will not be processed because it has not done an "
                          "initial sync.");
        return;
    }
    while (UnprocessedSyncFilesRemain(files)) {
        for (FoundSyncFile& entry : files) {
            if (!entry.FilePath.empty() && EqualIdentities(entry.To, ownId)) {
                TakeChanges(context, entry, record);
            }
            entry.Processed = FieldTrue;
        }
    }
}

} // namespace

void ApplyChangesFromRoamingWorkstations(AgentContext& context, ActivityTarget* activity) {
    const QueryRows rows(
        context, FormatStatement("SELECT * FROM RoamingWorkstations WHERE SyncState = {0}", SyncStateReady));
    for (long index = 0; index < rows.Count(); ++index) {
        const auto record = rows.Row(index);
        const std::string name = GetNodeText("Name", record.get(), "");
        WriteLog(context, "Start applying changes from roaming workstation '" + name + "'.");
        Attempt(
            [&] { SetActivity(context, "Applying changes from roaming workstation '" + name + "'.", activity); });
        ApplyChangesFromRoamingWorkstation(context, record.get());
        WriteLog(context, "Finish applying changes from roaming workstation '" + name + "'.");
    }
}

void ApplyChangesFromRoamingWorkstation(AgentContext& context, const services::Node* record) {
    std::vector<FoundSyncFile> files(1);
    const std::string ownId = ReadOwnUniqueID(context);
    if (ownId.empty()) {
        WriteLog(context, "Error: Unable to process changes from the Roaming Workstation becuase the Unique ID of "
                          "the main company could not be read.");
    } else {
        TakeAll(context, ownId, record, files);
    }
    DeleteMarkedSyncFiles(context, files);
}

} // namespace qndr
