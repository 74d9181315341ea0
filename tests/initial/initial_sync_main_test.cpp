#include "initial/export_initial_sync_data.h"
#include "initial/export_tables.h"
#include "initial/initial_sync_main.h"
#include "support/agent_bench.h"

namespace qndr::testing {
namespace {

class InitialSyncMainTest : public AgentBench {
  protected:
    InitialSyncMainTest() { OpenCompany(1); }

    std::string States() {
        return Value("SELECT group_concat(SyncState || '/' || LastAuditID, ' ') FROM RoamingWorkstations");
    }
    std::string Events() { return Value("SELECT group_concat(EventText, '|') FROM CompanyEvents"); }
    void Drop(const std::string& addressee, const std::string& state, const std::string& from = RoamingID) {
        DropSyncFile(addressee + "~t~x.zip", "SyncState=" + state + "\r\nFrom=" + from + "\r\n");
    }
    /// What one of the steps logs.
    Lines Run(void (*step)(AgentContext&, ActivityTarget*)) {
        TakeLog();
        step(context, &activity);
        return TakeLog();
    }
    /// Runs one of the two receiving steps and expects its first and its last line and these between them.
    void ExpectReceived(const std::string& what, const Lines& between) {
        const bool requests = what == "requests";
        Lines expected{"Start receiveing initial sync " + what + "."};
        expected.insert(expected.end(), between.begin(), between.end());
        expected.push_back("Finish receiveing initial sync " + what + ".");
        EXPECT_EQ(Run(requests ? ReceiveInitialSyncRequests : ReceiveInitialSyncAcknowledges), expected);
        EXPECT_EQ(activity.texts.back(), "Receiveing initial sync " + what + ".");
    }
    /// The line about a file that was dropped for this addressee.
    static std::string Of(const std::string& addressee, const std::string& rest) {
        return "The sync file '" + addressee + "~t~x.zip' " + rest;
    }
    const std::string found = "1 sync files were found for processing.";
    const std::string processed = "will be processed.";
    const std::string marked = "has been marked to delete.";
};

TEST_F(InitialSyncMainTest, FullExportIsTheSchemasListInItsOrder) {
    Lines expected;
    for (const suite::Table& table : suite::AuditedTables()) {
        if (table.exported) {
            expected.push_back(std::string(table.name) + ": SELECT * FROM vwExporting_" + std::string(table.name));
        }
    }
    for (const std::size_t place : {33U, 37U, 40U, 43U}) {
        expected.at(place - 1) += " WHERE ActivityDate > DATEADD(day,-30,GETUTCDATE())";
    }
    expected.at(48) += " WHERE AttachmentType <> 2 AND AttachmentType <> 3";
    Lines listed;
    for (const ExportTable& table : ExportTables) {
        listed.push_back(std::string(table.Name) + ": " + ExportStatement(table));
        EXPECT_NE(Company().ExecuteRead(services::Statement(ExportStatement(table))), nullptr)
            << Company().LastSQLErrorDescription();
    }
    EXPECT_EQ(listed, expected);
}

TEST_F(InitialSyncMainTest, ExportGoesOnWithoutTheRowThatFails) {
    gate.Refuse("Engine.AddToExport", 1);
    SyncFileInfo info;
    EXPECT_TRUE(ExportInitialSyncData(context, folder.Path(), info));
    EXPECT_EQ(info.Files, Lines{Path("data.xml")});
    EXPECT_TRUE(ExportInitialSyncData(context, folder.Path(), info));
    EXPECT_EQ(engine->exports.size(), 105U) << "what is pending stays pending";
}

TEST_F(InitialSyncMainTest, RequestsOfKnownWorkstationsAreTaken) {
    AddWorkstation(RoamingID, 4);
    const std::string lower = "{aaaaaaaa-0000-4000-8000-000000000001}";
    Drop(lower, "-2", "b" + RoamingID.substr(1));
    ExpectReceived("requests", {found, Of(lower, processed), Of(lower, marked)});
    EXPECT_EQ(States(), "1/0") << "a request counts whatever the row's state is";
    Sql("UPDATE RoamingWorkstations SET SyncState = 3");
    Drop("MAIN", "-2");
    gate.Refuse("Database.ExecuteNonQuery", 1);
    ExpectReceived("requests",
                   {found, Of("MAIN", processed),
                    "Error: There was a problem updating the RoamingWorkstations table when receiving "
                    "initial sync request. More information to follow.",
                    "UPDATE RoamingWorkstations SET SyncState = 1 WHERE UniqueID = '" + RoamingID + "'",
                    Company().LastSQLErrorDescription(), Of("MAIN", marked)});
    EXPECT_EQ(FilesBelow("Sync"), Lines{}) << "the file goes in both cases";
}

TEST_F(InitialSyncMainTest, OtherFilesOfTheFolderAreLeftToTheirSteps) {
    AddWorkstation(RoamingID, 3);
    const auto expectLeft = [&](const std::string& what, const std::string& addressee, const std::string& why) {
        Lines lines{found};
        if (!why.empty()) {
            lines.push_back(Of(addressee, processed));
            lines.push_back(Of(addressee, "will be ignored because " + why));
        }
        ExpectReceived(what, lines);
        EXPECT_TRUE(std::filesystem::remove(Path("Sync/" + addressee + "~t~x.zip"))) << "the file stays";
        EXPECT_EQ(States(), "3/0");
    };
    Drop("main", "-2", "stranger");
    expectLeft("requests", "main", "its for a different main company.");
    Drop(MainID, "0");
    expectLeft("requests", MainID, "its state, 0 is not 'initial sync requested'.");
    Drop(RoamingID, "-2");
    expectLeft("requests", RoamingID, "");
    Drop(MainID, "1");
    expectLeft("acknowledges", MainID, "its state, 1 is not 'ready'.");
    Drop("main", "4");
    expectLeft("acknowledges", "main", "");
    Sql("UPDATE Company SET SyncState = 4");
    Drop(MainID, "4");
    ExpectReceived("acknowledges", {found, "Error: ReceiveInitialSyncAcknowledges - 1"});
    gate.Before("Database.ExecuteScaler", Break);
    for (const std::string what : {"requests", "acknowledges"}) {
        ExpectReceived(what, {"Error: Unable to receive initial sync " + what +
                              " becuase the Unique ID of the main company could not be read."});
    }
    EXPECT_EQ(States(), "3/0");
}

TEST_F(InitialSyncMainTest, AcknowledgesCloseTheExchange) {
    AddWorkstation(RoamingID, 3);
    Drop(MainID, "4");
    ExpectReceived("acknowledges", {found, Of(MainID, processed), Of(MainID, marked)});
    EXPECT_EQ(States(), "4/0");
    Drop(MainID, "4", "stranger");
    ExpectReceived("acknowledges",
                   {found, Of(MainID, processed),
                    "Error: There was a problem updating the RoamingWorkstations table when receiving "
                    "initial sync acknowledge. More information to follow.",
                    "UPDATE RoamingWorkstations SET SyncState = 4 WHERE UniqueID = 'stranger'",
                    Company().LastSQLErrorDescription(), Of(MainID, marked)});
    EXPECT_EQ(FilesBelow("Sync"), Lines{});
}

TEST_F(InitialSyncMainTest, EveryRowThatAsksGetsTheFullData) {
    EXPECT_EQ(Run(SendInitialSyncs), Lines{});
    AddWorkstation("other", 4);
    AddWorkstation(RoamingID, 1);
    Sql("INSERT INTO Terms (UniqueID, Name) VALUES ('T', 'Net 30')");
    EXPECT_EQ(
        Run(SendInitialSyncs),
        (Lines{"Start sending initial sync to 'Laptop'.", "The working folder 'Temp/~suz' was created.",
               "Data was exported.", "The id file was added to 'Temp/~suz'. Details to follow:",
               "SyncState = 1, Sequence = 0, ReferenceCode = 7", "The sequence file was added to 'Temp/~suz'.",
               "The sync file 'Temp/suzTOKEN.zip' was created.", "The data file was added to 'Temp/~suz'.",
               "The sync file 'Temp/suzTOKEN.zip' for the Roaming Workstation '" + RoamingID +
                   "' was copied to 'Sync/" + RoamingID + "~TOKEN~20261122T190855.zip'.",
               "Deleting working folder 'Temp/~suz'.", "Finish sending initial sync to 'Laptop'."}));
    EXPECT_EQ(activity.texts, Lines{"Sending initial sync to 'Laptop'."});
    EXPECT_EQ(States(), "4/0 3/1");
    EXPECT_EQ(FilesBelow("Temp"), Lines{});
}

TEST_F(InitialSyncMainTest, EachFailureLeavesTheRowForTheNextPass) {
    AddWorkstation(RoamingID, 1, 300);
    const auto expectLine = [&](const std::string& call, std::size_t fromEnd, const std::string& line) {
        gate.Refuse(call, 1);
        const Lines lines = Run(SendInitialSyncs);
        ASSERT_GT(lines.size(), fromEnd) << call;
        EXPECT_EQ(lines[lines.size() - 1 - fromEnd], line) << call;
        EXPECT_EQ(States(), "1/0") << call;
        EXPECT_FALSE(std::filesystem::exists(Path("Temp/~suz"))) << call;
    };
    const std::string noFolder = "Unable to perform an initial sync because a working folder cannot be created.";
    expectLine("PathTools.CreateTemporaryFolder", 1, "Error: " + noFolder);
    expectLine("Engine.DoExport", 3, "Error: There was a problem exporting data during a sync. (100)");
    EXPECT_EQ(Events(), noFolder + "|There was a problem exporting data during a sync. (100)");
    expectLine("Engine.DoExport", 2, "Error: Data could not be exported during an initial sync.");
    expectLine("TextFileTools.WriteTextFile", 2, "Error: The sequence file was not added to 'Temp/~suz'.");
    expectLine("FileTools.CopyFile", 1, "Deleting working folder 'Temp/~suz'.");
    expectLine(
        "Database.ExecuteNonQuery", 2,
        "Error: There was a problem updating the roaming workstation record at the end of an initial sync.");
    EXPECT_EQ(FilesBelow("Temp"), Lines{}) << "the packed file goes in both cases";
    expectLine("ZipArchive.WriteZipAndClose", 2, "Error: The data file was not added to 'Temp/~suz'.");
    gate.Refuse("PathTools.DeleteFolder", 1);
    const Lines lines = Run(SendInitialSyncs);
    EXPECT_EQ(lines[4], "SyncState = 1, Sequence = 0, ReferenceCode = 0") << "300 is no byte";
    EXPECT_EQ(lines[10], "Error: The working folder 'Temp/~suz' could not be deleted.");
    EXPECT_EQ(States(), "3/0");
}

} // namespace
} // namespace qndr::testing
