#include "changes/order_backups.h"

#include "shared/dates.h"
#include "shared/failure_rule.h"
#include "shared/records.h"
#include "shared/sync_log.h"
#include "syncfiles/packaging.h"
#include "syncfiles/routing.h"

#include <memory>

namespace qndr {
namespace {

void LogLastErrorText(AgentContext& context, const services::ZipArchive& zip) {
    Attempt([&] { WriteLog(context, zip.LastErrorText()); });
}

/// The folder of the month goes by local time and the stamp in the name by UTC: on a month's first and last day
/// they may disagree.
std::string BuildTarget(AgentContext& context, const std::string& backupFolder, const std::string& auditData) {
    return backupFolder + "ODR" + auditData + "~" + NewFileToken(context) + "~" +
           FormatFileStamp(LocalToUtc(context, context.services.clock.Now())) + ".zip";
}

void StoreBackup(AgentContext& context, const std::string& zipFile, const std::string& backupFolder,
                 const services::Node* record) {
    const std::string auditData = GetNodeString("AuditData", record, "");
    std::string target;
    Attempt([&] { target = BuildTarget(context, backupFolder, auditData); });
    if (Holds([&] { return CopyUnderName(context, zipFile, target, auditData); })) {
        WriteLog(context, "The order backup file '" + zipFile + "' was copied to '" + target + "'.");
    } else {
        WriteLog(context, "Error: Unable to copy a order backup file '" + zipFile + "' to '" + target + "'.");
    }
    Attempt([&] { context.services.fileTools.DeleteFile(zipFile); });
}

/// Exports the order into the file, which lies in the working folder, and packs that folder.
void ExportAndStore(AgentContext& context, const std::string& workFolder, const std::string& xmlFile,
                    const std::string& backupFolder, const services::Node* record) {
    const std::string id = GetNodeString("AuditUniqueID", record, "");
    Attempt([&] { context.CurrentEngine().ClearExports(); });
    if (Holds([&] { return !context.CurrentEngine().ExportOrder(GetNodeLong("RecordID", record, 0), xmlFile); })) {
        WriteLog(context, "Error: Unable to export order " + id + " while backing it up.");
        return;
    }
    WriteLog(context, "Order " + id + " was backed up to '" + xmlFile + "'.");
    const std::string zipFile = CreateOrderBackupFile(context, workFolder);
    if (zipFile.empty()) {
        WriteLog(context, "Error: Unable to backup order " + id + ".");
    } else {
        StoreBackup(context, zipFile, backupFolder, record);
    }
}

} // namespace

void BackupOrder(AgentContext& context, const services::Node* record) {
    const std::string id = GetNodeString("AuditUniqueID", record, "");
    std::string backupFolder;
    Attempt([&] { backupFolder = GetDatedFolder(context, R"(Sync Local\Orders)"); });
    if (backupFolder.empty()) {
        WriteLog(context, "Error: Unable to backup order " + id + "' because no backup folder was specified.");
        return;
    }
    if (Holds([&] { return !context.services.pathTools.CreateNestedFolder(backupFolder); })) {
        WriteLog(context, "Error: Unable to backup order " + id + "' because the backup folder '" + backupFolder +
                              "' could not be created.");
        return;
    }
    const std::string workFolder = CreateWorkingFolder(context);
    if (workFolder.empty()) {
        WriteLog(context, "Error: Unable to backup order " + id + ". A working folder cannot be created.");
        return;
    }
    std::string xmlFile;
    Attempt([&] { xmlFile = context.services.fileTools.CreateTemporaryFile(workFolder, "suz", ".xml"); });
    if (!xmlFile.empty()) {
        ExportAndStore(context, workFolder, xmlFile, backupFolder, record);
        Attempt([&] { context.services.fileTools.DeleteFile(xmlFile); });
    }
    Attempt([&] { context.services.pathTools.DeleteFolder(workFolder, true); });
}

std::string CreateOrderBackupFile(AgentContext& context, const std::string& folder) {
    std::unique_ptr<services::ZipArchive> zip;
    Attempt([&] { zip = context.services.objects.CreateZipArchive(); });
    if (!zip) {
        WriteLog(context, "Error: Unable to create a order backup file because the Zip library could not be "
                          "accessed. (1)");
        return "";
    }
    std::string zipPath;
    Attempt([&] { zipPath = context.services.fileTools.CreateTemporaryFile("", "suz", ".zip"); });
    if (zipPath.empty()) {
        WriteLog(context, "Error: Unable to create a order backup file because a temporary file could not be "
                          "created.");
        return "";
    }
    if (Holds([&] { return zip->NewZip(zipPath) != 1; })) {
        WriteLog(context, "Error: Unable to create a order backup file because a new zip file could not be "
                          "created. More information to follow.");
        LogLastErrorText(context, *zip);
        return "";
    }
    std::string result;
    if (Holds(
            [&] { return zip->AppendFiles(context.services.pathTools.FixPath(folder, true) + "*.*", 1) != 1; })) {
        WriteLog(context, "Error: Unable to create a order backup file because the files from the folder '" +
                              folder + "' could not be added. More information to follow.");
        LogLastErrorText(context, *zip);
    } else if (Holds([&] { return zip->WriteZipAndClose() != 1; })) {
        WriteLog(context, "Error: Unable to create a order backup file because the zip file could not be written "
                          "to. More information to follow.");
        LogLastErrorText(context, *zip);
    } else {
        result = zipPath;
        WriteLog(context, "The order backup file '" + zipPath + "' was created.");
    }
    Attempt([&] { zip->CloseZip(); });
    return result;
}

} // namespace qndr
