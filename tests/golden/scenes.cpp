#include "changes/order_backups.h"
#include "golden/golden_run.h"
#include "heartbeat/heartbeat.h"
#include "shared/formatting.h"
#include "shared/sync_log.h"
#include "suite/schema/company_schema.h"
#include "syncfiles/discovery.h"
#include "syncfiles/import.h"
#include "syncfiles/packaging.h"
#include "syncfiles/query_rows.h"
#include "syncfiles/routing.h"

namespace qndr::testing {
namespace {

void OpenMain(GoldenRun& run, int state, const std::string& numbers = "") {
    run.OpenCompany(1);
    run.Sql("UPDATE Company SET UniqueID = '{" + MainID + "}'"); // braces do no harm
    run.AddWorkstation(RoamingID, state);
    run.Sql(
        "UPDATE RoamingWorkstations SET LastAuditID = 1, NextSequenceToRoaming = 5, NextSequenceFromRoaming = 6" +
        numbers);
}

void OpenRoaming(GoldenRun& run, int state) {
    run.OpenCompany(2);
    run.Sql(
        "UPDATE Company SET LastAuditID = 1, NextSequenceToMain = 8, NextSequenceFromMain = 7, MainUniqueID = '" +
        MainID + "', SyncState = " + std::to_string(state));
}

std::string From(const std::string& id, const std::string& keys) {
    return keys + "\r\nFrom=" + id + "\r\nFromAppVersion=5.0.7\r\n";
}

/// One change of each kind above the row that was sent already, and one that never travels.
void AuditChanges(GoldenRun& run) {
    run.Audit("Groups", 1, 1);
    run.Audit("Terms", 4, 2);
    run.Audit("RoamingWorkstations", 1, 2);
    run.Audit("Terms", 5, 3);
}

void Requests(GoldenRun& run) {
    OpenMain(run, 4);
    run.DropSyncFile("MAIN~a~x.zip", From("b" + RoamingID.substr(1), "SyncState=-2"));
    run.DropSyncFile(MainID + "~b~x.zip", From(RoamingID, "Sequence=6"));
    run.DropSyncFile("main~c~x.zip", From("stranger", "SyncState=-2"));
    run.DropSyncFile(OtherID + "~d~x.zip", From(RoamingID, "SyncState=-2"));
}

void InitialSyncs(GoldenRun& run) {
    OpenMain(run, 1);
    run.AddWorkstation(OtherID, 4);
    run.Audit("Groups", 1, 1);
    // What is logged during the export counts as given.
    run.engine->duringExport = [&run] { run.Audit("Terms", 1, 1); };
}

void Acknowledges(GoldenRun& run) {
    OpenMain(run, 3);
    run.DropSyncFile(MainID + "~a~x.zip", From(RoamingID, "SyncState=4"));
    run.DropSyncFile(MainID + "~b~x.zip", From(RoamingID, "SyncState=1"));
    run.DropSyncFile(MainID + "~c~x.zip", From("stranger", "SyncState=4"));
    run.DropSyncFile("MAIN~d~x.zip", From(RoamingID, "SyncState=4"));
}

void ResetRequests(GoldenRun& run) {
    OpenMain(run, 4);
    run.AddWorkstation(OtherID, 6);
    run.DropSyncFile(MainID + "~a~x.zip", From(RoamingID, "Sequence=6"));
    run.DropSyncFile(MainID + "~b~x.zip", From("b" + RoamingID.substr(1), "Sequence=-1"));
    run.DropSyncFile(MainID + "~c~x.zip", From(OtherID, "Sequence=-1"));
    run.DropSyncFile(OtherID + "~d~x.zip", From(RoamingID, "Sequence=-1"));
    run.DropSyncFile("MAIN~e~x.zip", From(RoamingID, "Sequence=-1"));
}

void Drain(GoldenRun& run) {
    OpenMain(run, 6, ", LastReceivedFrom = '20261122 19:00:00'");
    run.AddWorkstation(OtherID, 6);
    run.Sql("UPDATE RoamingWorkstations SET LastReceivedFrom = '20261122 19:00:00'");
    run.DropSyncFile(MainID + "~a~x.zip", From(RoamingID, "Sequence=-1"));
    run.DropSyncFile("MAIN~b~x.zip", From(OtherID, "Sequence=0"));
}

void ChangesFromRoaming(GoldenRun& run) {
    OpenMain(run, 4);
    run.AddWorkstation(OtherID, 5);
    run.DropSyncFile(MainID + "~a~x.zip", From("b" + RoamingID.substr(1), "Sequence=6"));
    run.DropSyncFile(MainID + "~b~x.zip", From(RoamingID, "Sequence=8"));
    run.DropSyncFile(MainID + "~c~x.zip", From(OtherID, "Sequence=7"));
    run.DropSyncFile(OtherID + "~d~x.zip", From(RoamingID, "Sequence=7"));
}

void ChangesToRoaming(GoldenRun& run) {
    OpenMain(run, 4);
    AuditChanges(run);
    run.engine->duringExport = [&run] { run.Audit("Vendors", 1, 1); };
}

void FullDataToRoaming(GoldenRun& run) {
    OpenMain(run, 5, ", NextSequenceToRoaming = 0");
    AuditChanges(run);
    run.engine->duringExport = [&run] { run.Audit("Vendors", 1, 1); };
}

void Request(GoldenRun& run) {
    OpenRoaming(run, 1);
    run.Sql("UPDATE Company SET MainUniqueID = NULL");
}

void InitialSync(GoldenRun& run) {
    OpenRoaming(run, 2);
    run.Sql("UPDATE Company SET MainUniqueID = NULL");
    run.DropSyncFile("{" + RoamingID + "}~a~x.zip", From(MainID, "SyncState=1\r\nReferenceCode=7"));
    run.DropSyncFile(RoamingID + "~b~x.zip", From(MainID, "Sequence=7"));
    run.DropSyncFile(OtherID + "~c~x.zip", From(MainID, "SyncState=1"));
}

void ResetRequest(GoldenRun& run) {
    OpenRoaming(run, 5);
    AuditChanges(run);
    run.DropSyncFile("{" + RoamingID + "}~a~x.zip", From(MainID, "Sequence=7"));
    run.DropSyncFile(OtherID + "~b~x.zip", From(MainID, "Sequence=7"));
}

void OrderNumbers(GoldenRun& run) {
    OpenRoaming(run, 4);
    run.Sql("INSERT INTO Orders (UniqueID, State, ReferenceNumber, OrderNumber) VALUES ('O1', 2, 41, 1001), "
            "('O2', 2, NULL, 1002)");
    run.Sql("INSERT INTO PurchaseOrders (UniqueID, State, ReferenceNumber, PONumber) VALUES ('P1', 3, 42, 'X')");
    run.Sql("INSERT INTO PurchaseOrders (UniqueID, State, ReferenceNumber, PONumber) VALUES ('P2', 3, 43, 2002)");
    run.Sql("INSERT INTO Orders (UniqueID, State, SyncState) VALUES ('O3', 2, 1)");
}

void ChangesFromMain(GoldenRun& run) {
    OpenRoaming(run, 4);
    run.DropSyncFile(RoamingID + "~a~x.zip", From(MainID, "Sequence=7"));
    run.DropSyncFile(RoamingID + "~b~x.zip", From(MainID, "Sequence=9"));
    run.DropSyncFile(OtherID + "~c~x.zip", From(MainID, "Sequence=8"));
}

void FullDataFromMain(GoldenRun& run) {
    OpenRoaming(run, 6);
    run.counted = {"AuditLog", "cacheProductStyles"};
    run.Sql("BEGIN");
    run.Sql("INSERT INTO cacheProductStyles (ProductUniqueID) VALUES ('P')");
    for (const suite::Table& table : suite::AuditedTables()) {
        if (table.exported) {
            run.counted.emplace_back(table.name);
            run.Sql("INSERT INTO " + run.counted.back() + " (UniqueID) VALUES ('U')");
        }
    }
    run.Sql("COMMIT");
    run.DropSyncFile(RoamingID + "~a~x.zip", From(MainID, "Sequence=7\r\nIsSyncReset=1"));
    // What is logged during the import counts as sent.
    run.engine->duringImport = [&run] { run.Audit("Terms", 1, 1); };
}

void ChangesToMain(GoldenRun& run) {
    OpenRoaming(run, 4);
    AuditChanges(run);
    run.engine->duringExport = [&run] { run.Audit("Vendors", 1, 1); };
}

// What several steps call.

void PackedFolder(GoldenRun& run) {
    run.OpenCompany(2);
    std::filesystem::create_directory(run.Path("pack"));
}

void CreateFile(AgentContext& context, ActivityTarget* /*activity*/) {
    SyncFileInfo info{.Sequence = SyncResetSequence, .IsSyncReset = FieldTrue, .ReferenceCode = 7};
    AddFileToSyncFileInfo("pack/data.xml", info);
    WriteLog(context, "= '" + CreateDescribedSyncFile(context, "pack", info) + "'");
}

void FileToSend(GoldenRun& run) {
    run.OpenCompany(2);
    run.AddWorkstation("{Lap}", 4);
    run.SetNumber(settings::KeepSyncFiles, 1);
    WriteText(run.Path("suz.zip"), "archive");
}

void CopyToMain(AgentContext& context, ActivityTarget* /*activity*/) {
    WriteLog(context, CopySyncFileToMain(context, "suz.zip") ? "= copied" : "= not copied");
}

void CopyToRoaming(AgentContext& context, ActivityTarget* /*activity*/) {
    const QueryRows rows(context, "SELECT * FROM RoamingWorkstations");
    WriteLog(context, CopySyncFileToRoaming(context, "suz.zip", rows.Row(0).get()) ? "= copied" : "= not copied");
}

void FoundFile(GoldenRun& run) {
    run.OpenCompany(1);
    run.DropSyncFile("a~b~c.zip",
                     From(RoamingID,
                          "MessageCode=12\r\nSyncState=4\r\nSequence=3\r\nReferenceCode=7\r\n"
                          "IsSyncReset=1\r\nResetDate=2026-11-01 10:00:00\r\nFromCompanyVersion=5.0.1"));
}

FoundSyncFile Found(AgentContext& context) {
    FoundSyncFile entry;
    entry.FilePath = context.SyncFolder + "/a~b~c.zip";
    entry.Delete = FieldTrue;
    return entry;
}

void ReadFile(AgentContext& context, ActivityTarget* /*activity*/) {
    FoundSyncFile entry = Found(context);
    ReadSyncFile(context, entry);
    WriteLog(context,
             FormatString("= message {0} {1}, from {2}, versions {3} {4}, state {5}, sequence {6}, reset {7} "
                          "{8}, code {9}",
                          entry.IsMessage, entry.MessageCode, entry.From, entry.FromCompanyVersion,
                          entry.FromAppVersion, entry.SyncState, entry.Sequence, entry.IsSyncReset,
                          FormatGeneralDate(entry.ResetDate), entry.ReferenceCode));
}

void ImportFile(AgentContext& context, ActivityTarget* /*activity*/) {
    WriteLog(context, ImportSyncFileData(context, Found(context)) ? "= done" : "= to be tried again");
}

void DeleteFiles(AgentContext& context, ActivityTarget* /*activity*/) {
    DeleteMarkedSyncFiles(context, {FoundSyncFile(), Found(context)});
}

void OrderToBackUp(GoldenRun& run) {
    run.OpenCompany(2);
    run.Audit("Orders", 9, 1, "1001");
}

void BackUp(AgentContext& context, ActivityTarget* /*activity*/) {
    const QueryRows rows(context, "SELECT * FROM AuditLog");
    BackupOrder(context, rows.Row(0).get());
}

void CheckHeartbeat(AgentContext& context, ActivityTarget* activity) {
    Heartbeat heartbeat(context, *activity);
    heartbeat.CheckHeartbeat(5);
}

void HeartbeatOfMain(GoldenRun& run) {
    run.OpenCompany(1);
    run.context.OperatingMode = 1;
    WriteText(run.Path("Sync/one~a~x.rhb"), "");
    WriteText(run.Path("Sync/two~a~x.RHB"), "");
    WriteText(run.Path("Sync/two~a~x.zip"), "");
}

void HeartbeatOfRoaming(GoldenRun& run) {
    run.OpenCompany(2);
    run.context.OperatingMode = 2;
}

} // namespace

const std::vector<Scene>& Scenes() {
    static const std::vector<Scene> scenes{
        {"ReceiveInitialSyncRequests", Requests},
        {"SendInitialSyncs", InitialSyncs},
        {"ReceiveInitialSyncAcknowledges", Acknowledges},
        {"CheckForSyncResets", ResetRequests},
        {"ProcessPendingSyncResets", Drain},
        {"ApplyChangesFromRoamingWorkstations", ChangesFromRoaming},
        {"SendChangesToRoamingWorkstations", ChangesToRoaming},
        {"SendChangesToRoamingWorkstations_FullData", FullDataToRoaming},
        {"SendInitialSyncRequest", Request},
        {"ReceiveInitialSync", InitialSync},
        {"SendSyncResetToMain", ResetRequest},
        {"SendOrderNumberSyncs", OrderNumbers},
        {"ApplyChangesFromMain", ChangesFromMain},
        {"ApplyChangesFromMain_FullData", FullDataFromMain},
        {"SendChangesToMain", ChangesToMain},
        {"CheckHeartbeat_Main", HeartbeatOfMain, CheckHeartbeat},
        {"CheckHeartbeat_Roaming", HeartbeatOfRoaming, CheckHeartbeat},
        {"CreateDescribedSyncFile", PackedFolder, CreateFile, true},
        {"CopySyncFileToMain", FileToSend, CopyToMain, true},
        {"CopySyncFileToRoaming", FileToSend, CopyToRoaming, true},
        {"ReadSyncFile", FoundFile, ReadFile, true},
        {"ImportSyncFileData", FoundFile, ImportFile, true},
        {"DeleteMarkedSyncFiles", FoundFile, DeleteFiles, true},
        {"BackupOrder", OrderToBackUp, BackUp, true},
    };
    return scenes;
}

} // namespace qndr::testing
