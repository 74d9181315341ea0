#include "diagnosis/folder_files.h"

#include "services/company_numbers.h"

namespace qndr::diagnosis {

std::string KindInWords(const FolderFile& file) {
    switch (file.kind) {
    case FileKind::UnreadableSyncFile:
        return "unreadable";
    case FileKind::Heartbeat:
        return "heartbeat";
    case FileKind::Standing:
        return "standing";
    case FileKind::Mark:
        return "mark";
    case FileKind::UnfinishedCopy:
        return "unfinished copy";
    case FileKind::Foreign:
        return "not a sync file";
    case FileKind::Misnamed:
    case FileKind::SyncFile:
        break;
    }
    switch (file.entry.SyncState) {
    case SyncFileInitialSyncRequest:
        return "initial sync request";
    case SyncFileInitialSync:
        return "full data";
    case SyncFileReady:
        return "acknowledge";
    case 0:
        break;
    default:
        return "unknown state " + std::to_string(file.entry.SyncState);
    }
    if (file.entry.Sequence == SyncResetSequence) {
        return "reset request";
    }
    return file.entry.IsSyncReset == FieldTrue ? "reset data" : "changes";
}

} // namespace qndr::diagnosis
