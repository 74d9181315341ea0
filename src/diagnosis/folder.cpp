#include "diagnosis/sections.h"

namespace qndr::diagnosis {

namespace {

void DiagnoseRights(const Observations& seen, const Probe& probe, Findings& findings) {
    if (!probe.isWritten) {
        findings.Add(troubles::SyncFolderNotWritable, seen.syncFolder,
                     "No file can be written into the Sync folder.");
    }
    if (!probe.file.empty() && (!probe.isRemoved || (probe.isWritten && !probe.isRenamed))) {
        findings.Add(troubles::SyncFolderNotCleanable, seen.syncFolder,
                     "Files can be made in the Sync folder, but not renamed or deleted there.", probe.file);
    } else if (probe.isSticky) {
        findings.Add(
            troubles::SyncFolderSticky, seen.syncFolder,
            "The Sync folder lets everybody delete his own files alone: what another user wrote cannot be "
            "taken away, and is taken again.",
            seen.syncFolder);
    }
}

void DiagnoseIdentity(const Observations& seen, Findings& findings) {
    if (!seen.isOwnSyncFolder) {
        return;
    }
    if (!seen.IsRightFolder()) {
        findings.Add(
            troubles::SyncFolderWrong, seen.syncFolder,
            seen.syncMark.empty()
                ? "The mark of the Sync folder is not there: the share is not mounted, or this is not the "
                  "folder that was set up. The agent leaves it alone."
                : "The mark says that this is not the folder that was set up. The agent leaves it alone.",
            seen.syncFolder);
    } else if (seen.syncIdentity.empty()) {
        findings.Add(troubles::SyncFolderUnmarked, seen.syncFolder,
                     "This computer cannot tell the Sync folder from an empty folder under a share that is not "
                     "mounted.",
                     seen.syncFolder);
    }
}

} // namespace

void DiagnoseFolder(const Observations& seen, Findings& findings) {
    if (seen.syncFolder.empty()) {
        findings.Add(troubles::NoSyncLocation, seen.computerName, "This computer has no Sync location.");
        return;
    }
    if (!seen.syncFolderExists) {
        findings.Add(troubles::NoSyncFolder, seen.syncFolder, "The Sync folder does not exist or is not reached.");
        return;
    }
    if (!seen.syncFolderFailure.empty() && !seen.LacksTemporaryFolder()) {
        findings.Add(troubles::SyncFolderUnreadable, seen.syncFolder,
                     "The Sync folder cannot be read: " + seen.syncFolderFailure);
    }
    DiagnoseIdentity(seen, findings);
    if (seen.probe) {
        DiagnoseRights(seen, *seen.probe, findings);
    }
    if (!seen.nestedFolder.empty()) {
        findings.Add(troubles::FoldersNested, seen.syncFolder,
                     "The Sync folder and the Companies folder '" + seen.nestedFolder +
                         "' lie within each other: whatever carries the one carries the databases too, and spoils "
                         "them.");
    }
    for (const ListedFile& listed : seen.formerFiles) {
        findings.Add(troubles::FileInFormerFolder, listed.name,
                     "A sync file (" + KindInWords(listed.file) + ") lies in '" + listed.file.entry.FilePath +
                         "', where nobody looks for it.",
                     listed.file.entry.FilePath, seen.syncFolder + "/");
    }
}

} // namespace qndr::diagnosis
