#include "reset/sync_reset_roaming.h"

#include "services/company_numbers.h"
#include "shared/dates.h"
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

constexpr std::int64_t kDefaultResetDays = 14;

/// An option that is no date leaves the no-date value, which goes out as such.
void ReadResetDate(AgentContext& context, SyncFileInfo& info) {
    std::string fallback;
    Attempt([&] {
        fallback =
            FormatGeneralDate(LocalToUtc(context, context.services.clock.Now()).AddDays(-kDefaultResetDays));
    });
    Attempt([&] {
        info.ResetDate = context.CurrentLibrary()
                             .Options()
                             .GetCompanyOption("Roaming Workstations", "ResetSyncDate", fallback)
                             .ToDate();
    });
}

/// From here on only what comes after the reset counts: the local changes above the old LastAuditID are given up.
void EnterResetPending(AgentContext& context) {
    std::int32_t maxId = 0;
    Attempt([&] { maxId = context.Database().ExecuteScaler("SELECT MAX(ID) AS MaxID FROM AuditLog").ToLong(); });
    Attempt([&] {
        context.Database().ExecuteNonQuery(
            FormatStatement("UPDATE Company SET SyncState = {0}, LastAuditID = {1}, NextSequenceToMain = 0, "
                            "NextSequenceFromMain = 0",
                            SyncStateResetPending, maxId));
    });
}

/// True when the request has reached the Sync folder, whether the state could be moved or not.
bool SendRequest(AgentContext& context, const SyncFileInfo& info) {
    const std::string folder = CreateWorkingFolder(context);
    if (folder.empty()) {
        Attempt([&] {
            context.CurrentLibrary().RecordEvent(
                "Unable to perform an sync request because a working folder cannot be created.");
        });
        return false;
    }
    bool isSent = false;
    const std::string path = CreateDescribedSyncFile(context, folder, info);
    if (!path.empty()) {
        if (CopySyncFileToMain(context, path)) {
            EnterResetPending(context);
            isSent = true;
        }
        Attempt([&] { context.services.fileTools.DeleteFile(path); });
    }
    Attempt([&] { context.services.pathTools.DeleteFolder(folder, true); });
    return isSent;
}

/// What main has sent by the old sequence numbers and was not taken yet goes unread.
void DeleteWaitingFiles(AgentContext& context) {
    std::vector<FoundSyncFile> files(1);
    const std::string ownId = ReadOwnUniqueID(context);
    if (!ownId.empty()) {
        FindSyncFiles(context, files);
        while (UnprocessedSyncFilesRemain(files)) {
            for (FoundSyncFile& entry : files) {
                if (EqualIdentities(entry.To, ownId)) {
                    entry.Delete = FieldTrue;
                }
                entry.Processed = FieldTrue;
            }
        }
    }
    DeleteMarkedSyncFiles(context, files);
}

} // namespace

void SendSyncResetToMain(AgentContext& context, ActivityTarget* activity) {
    SyncFileInfo info;
    InitSyncFileInfo(info);
    Attempt([&] { SetActivity(context, "Sending sync reset to main", activity); });
    std::int16_t state = 0;
    Attempt([&] { state = context.Database().ExecuteScaler("SELECT SyncState FROM Company").ToInteger(); });
    if (state != SyncStateResetRequested) {
        return;
    }
    info.Sequence = SyncResetSequence;
    ReadResetDate(context, info);
    if (SendRequest(context, info)) {
        DeleteWaitingFiles(context);
    }
}

} // namespace qndr
