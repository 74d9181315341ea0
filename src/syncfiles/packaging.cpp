#include "syncfiles/packaging.h"

#include "shared/failure_rule.h"
#include "shared/sync_log.h"

namespace qndr {
namespace {

void LogLastErrorText(AgentContext& context, const std::unique_ptr<services::ZipArchive>& zip) {
    Attempt([&] { WriteLog(context, Present(zip).LastErrorText()); });
}

/// Extracts and reads "id.dat" by way of a working folder, which is gone afterwards.
void ReadIdEntry(AgentContext& context, const std::string& about, const std::unique_ptr<services::ZipArchive>& zip,
                 services::ZipEntry& idEntry, FoundSyncFile& entry) {
    const std::string folder = CreateWorkingFolder(context);
    if (folder.empty()) {
        return;
    }
    std::string path;
    if (Holds([&] { return idEntry.Extract(folder) != 1; })) {
        WriteLog(context, about + "' becuase its id.dat file could not read. More information to follow.");
        LogLastErrorText(context, zip);
    } else {
        Attempt([&] { path = context.services.pathTools.FixPath(folder, true) + "id.dat"; });
        if (Holds([&] { return !context.services.fileTools.FileExists(path); })) {
            WriteLog(context, about + "' becuase its id.dat file could not extracted to '" + path + ".");
        } else {
            ReadIdFile(context, path, entry);
            Attempt([&] { context.services.fileTools.DeleteFile(path); });
        }
    }
    Attempt([&] { context.services.pathTools.DeleteFolder(folder, true); });
}

} // namespace

std::string CreateWorkingFolder(AgentContext& context) {
    std::string folder;
    Attempt([&] { folder = context.services.pathTools.CreateTemporaryFolder("", "~suz", true); });
    return folder;
}

std::string CreateSyncFile(AgentContext& context, const std::string& folder) {
    std::unique_ptr<services::ZipArchive> zip;
    Attempt([&] { zip = context.services.objects.CreateZipArchive(); });
    if (!zip) {
        WriteLog(context,
                 "Error: Unable to create a sync file because the Zip library could not be accessed. (1)");
        return "";
    }
    std::string path;
    Attempt([&] { path = context.services.fileTools.CreateTemporaryFile("", "suz", ".zip"); });
    if (path.empty()) {
        WriteLog(context, "Error: Unable to create a sync file because a temporary file could not be created.");
        return "";
    }
    if (Holds([&] { return zip->NewZip(path) != 1; })) {
        WriteLog(context, "Error: Unable to create a sync file because a new zip file could not be created. More "
                          "information to follow.");
        LogLastErrorText(context, zip);
        return "";
    }
    if (Holds(
            [&] { return zip->AppendFiles(context.services.pathTools.FixPath(folder, true) + "*.*", 1) != 1; })) {
        WriteLog(context, "Error: Unable to create a sync file because the files from the folder '" + folder +
                              "' could not be added. More information to follow.");
        LogLastErrorText(context, zip);
        return "";
    }
    if (Holds([&] { return zip->WriteZipAndClose() != 1; })) {
        WriteLog(context, "Error: Unable to create a sync file because the zip file could not be written to. More "
                          "information to follow.");
        LogLastErrorText(context, zip);
        return "";
    }
    WriteLog(context, "The sync file '" + path + "' was created.");
    return path;
}

std::string CreateDescribedSyncFile(AgentContext& context, const std::string& folder, const SyncFileInfo& info) {
    if (WriteIdFile(context, folder, info) && WriteSequenceFile(context, folder, info)) {
        return CreateSyncFile(context, folder);
    }
    return "";
}

void ReadSyncFile(AgentContext& context, FoundSyncFile& entry) {
    const std::string name = GetSyncFileName(context, entry);
    if (Holds([&] { return !context.services.fileTools.FileExists(entry.FilePath); })) {
        WriteLog(context, "Error: The sync file '" + name + "' will not be read because it does not exist.");
        return;
    }
    const std::string about = "Error: Unable to read the sync file '" + name;
    std::unique_ptr<services::ZipArchive> zip;
    Attempt([&] { zip = context.services.objects.CreateZipArchive(); });
    if (Holds([&] { return Present(zip).OpenZip(entry.FilePath) == 0; })) {
        WriteLog(context, about + "' becuase it could not be opened. More information to follow.");
        LogLastErrorText(context, zip);
        return;
    }
    std::unique_ptr<services::ZipEntry> idEntry;
    Attempt([&] { idEntry = zip->GetEntryByName("id.dat"); });
    if (!idEntry) {
        WriteLog(context, about + "' becuase its id.dat file could not be found.");
    } else {
        ReadIdEntry(context, about, zip, *idEntry, entry);
        idEntry.reset();
    }
    Attempt([&] { zip->CloseZip(); });
}

} // namespace qndr
