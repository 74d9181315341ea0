#include "syncfiles/import.h"

#include "shared/failure_rule.h"
#include "shared/sync_log.h"
#include "syncfiles/packaging.h"

#include <algorithm>

namespace qndr {
namespace {

/// The texts of one file's import. Most name the file, one gives its full path.
struct ImportTexts {
    std::string name;
    std::string filePath;
    std::string about; ///< the beginning of every error line
};

void ImportDataFile(AgentContext& context, const ImportTexts& texts, const std::string& dataFile) {
    if (Holds([&] { return context.CurrentEngine().ImportFile(dataFile); })) {
        WriteLog(context, "The sync file '" + texts.name + "' was processed.");
    } else {
        WriteLog(context, "Warning: Unable to process the sync file '" + texts.filePath +
                              "' because its extracted data.xml file, '" + dataFile +
                              "' could not be imported. This will not prevent future imports.");
    }
    Attempt([&] { context.services.fileTools.DeleteFile(dataFile); });
}

/// False when this computer could not bring the data as far as the engine.
bool ImportDataEntry(AgentContext& context, const ImportTexts& texts, services::ZipArchive& zip,
                     services::ZipEntry& dataEntry) {
    const std::string folder = CreateWorkingFolder(context);
    if (folder.empty()) {
        WriteLog(context, texts.about + "' because a temporary folder could not be created.");
        return false;
    }
    bool failed = false;
    if (Holds([&] { return dataEntry.Extract(folder) != 1; })) {
        failed = true;
        WriteLog(context, texts.about + "' because its data.xml file could not be extracted to '" + folder +
                              "'. More informtion to follow.");
        Attempt([&] { WriteLog(context, zip.LastErrorText()); });
    } else {
        std::string dataFile;
        Attempt([&] { dataFile = context.services.pathTools.FixPath(folder, true) + "data.xml"; });
        if (Holds([&] { return !context.services.fileTools.FileExists(dataFile); })) {
            failed = true;
            WriteLog(context, texts.about + "' because its extracted data.xml file, '" + dataFile +
                                  "' could not be found.");
        } else {
            ImportDataFile(context, texts, dataFile);
        }
    }
    Attempt([&] { context.services.pathTools.DeleteFolder(folder, true); });
    return !failed;
}

} // namespace

bool ImportSyncFileData(AgentContext& context, const FoundSyncFile& entry) {
    const std::string name = GetSyncFileName(context, entry);
    const ImportTexts texts{name, entry.FilePath, "Error: Unable to process the sync file '" + name};
    if (Holds([&] { return !context.services.fileTools.FileExists(entry.FilePath); })) {
        WriteLog(context, "The sync file '" + name + "' will not be processed becuase it does not exist.");
        return false;
    }
    std::unique_ptr<services::ZipArchive> zip;
    Attempt([&] { zip = context.services.objects.CreateZipArchive(); });
    if (Holds([&] { return Present(zip).OpenZip(entry.FilePath) == 0; })) {
        WriteLog(context, texts.about + "' because it could not be opened. More information to follow.");
        Attempt([&] { WriteLog(context, Present(zip).LastErrorText()); });
        return true;
    }
    bool done = true;
    std::unique_ptr<services::ZipEntry> dataEntry;
    Attempt([&] { dataEntry = zip->GetEntryByName("data.xml"); });
    if (!dataEntry) {
        WriteLog(context, texts.about + "' because its data.xml file could not be found.");
    } else {
        done = ImportDataEntry(context, texts, *zip, *dataEntry);
        dataEntry.reset();
    }
    Attempt([&] { zip->CloseZip(); });
    return done;
}

bool UnprocessedSyncFilesRemain(const std::vector<FoundSyncFile>& files) {
    return std::any_of(files.begin(), files.end(), [](const FoundSyncFile& entry) {
        return !entry.FilePath.empty() && entry.Processed == FieldFalse;
    });
}

} // namespace qndr
