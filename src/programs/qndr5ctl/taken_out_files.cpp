#include "programs/qndr5ctl/taken_out_files.h"

#include "observation/sync_folder_files.h"
#include "services/failure.h"
#include "shared/records.h"

namespace qndr::control {

using services::Failure;

std::string TakenOutFolder(const ControlContext& context) {
    services::PathTools& pathTools = context.services.pathTools;
    std::string folder = pathTools.FixPath(context.computer.commonApplicationData, true) + "Velmoran";
    return pathTools.FixPath(folder, true) + "Taken out";
}

std::string TakeOut(const ControlContext& context, const std::string& path) {
    services::PathTools& pathTools = context.services.pathTools;
    if (!context.services.fileTools.FileExists(path)) {
        throw Failure("there is no file '" + path + "'");
    }
    const std::string folder = TakenOutFolder(context);
    const std::string target = pathTools.FixPath(folder, true) + context.services.fileTools.GetFileName(path);
    if (!pathTools.CreateNestedFolder(folder) || !context.services.fileTools.MoveFile(path, target, true)) {
        throw Failure("the file '" + path + "' cannot be moved to '" + folder + "'");
    }
    return target;
}

std::size_t TakeOutFilesOf(const ControlContext& context, const std::string& syncFolder,
                           const std::string& workstationUniqueID) {
    std::size_t count = 0;
    for (const diagnosis::ListedFile& listed : observation::ReadSyncFolder(context.services, syncFolder)) {
        const FoundSyncFile& entry = listed.file.entry;
        const bool isSyncFile = listed.file.kind == diagnosis::FileKind::SyncFile ||
                                listed.file.kind == diagnosis::FileKind::UnreadableSyncFile;
        if (isSyncFile && (EqualIdentities(entry.From, workstationUniqueID) ||
                           EqualIdentities(entry.To, NormalizeUniqueID(workstationUniqueID)))) {
            TakeOut(context, entry.FilePath);
            ++count;
        }
    }
    return count;
}

} // namespace qndr::control
