#include "initial/export_initial_sync_data.h"
#include "initial/export_tables.h"
#include "initial/initial_sync_main.h"
#include "support/agent_bench.h"
#include "syncfiles/packaging.h"

namespace qndr::testing {
namespace {

class InitialSyncMainTest : public AgentBench {
  protected:
    InitialSyncMainTest() { OpenCompany(1); }

    std::string States() {
        return Value("SELECT group_concat(SyncState || '/' || LastAuditID, ' ') FROM RoamingWorkstations");
    }
    std::string Events() { return Value("SELECT group_concat(EventText, '|') FROM CompanyEvents"); }
    std::string DropRequest(const std::string& addressee, const std::string& from = RoamingID) {
        return DropSyncFile(addressee + "~t~x.zip", "SyncState=-2\r\nFrom=" + from + "\r\n");
    }
    Lines Requests() {
        TakeLog();
        ReceiveInitialSyncRequests(context, &activity);
        return TakeLog();
    }
    Lines Acknowledges() {
        TakeLog();
        ReceiveInitialSyncAcknowledges(context, &activity);
        return TakeLog();
    }
    Lines Sends() {
        TakeLog();
        SendInitialSyncs(context, &activity);
        return TakeLog();
    }
};

TEST_F(InitialSyncMainTest, FullExportIsTheSchemasListInItsOrder) {
    Lines exported;
    for (const suite::Table& table : suite::AuditedTables()) {
        if (table.exported) {
            exported.emplace_back(table.name);
        }
    }
    Lines listed;
    for (const ExportTable& table : ExportTables) {
        listed.emplace_back(table.Name);
        EXPECT_NE(Company().ExecuteRead(ExportStatement(table)), nullptr) << Company().LastSQLErrorDescription();
    }
    EXPECT_EQ(listed, exported);
    EXPECT_EQ(ExportStatement(ExportTables[0]), "SELECT * FROM vwExporting_ProductTypes");
    const auto held = [](std::size_t place) { return ExportStatement(ExportTables[place - 1]); };
    const std::string recent = " WHERE ActivityDate > DATEADD(day,-30,GETUTCDATE())";
    EXPECT_EQ(held(33), "SELECT * FROM vwExporting_EmployeeActivity" + recent);
    EXPECT_EQ(held(37), "SELECT * FROM vwExporting_CustomerActivity" + recent);
    EXPECT_EQ(held(40), "SELECT * FROM vwExporting_VendorActivity" + recent);
    EXPECT_EQ(held(43), "SELECT * FROM vwExporting_ProductActivity" + recent);
    EXPECT_EQ(held(49), "SELECT * FROM vwExporting_Attachments WHERE AttachmentType <> 2 AND AttachmentType <> 3");
}

TEST_F(InitialSyncMainTest, ExportGoesOnWithoutTheRowThatFails) {
    int added = 0;
    gate.Before("Engine.AddToExport", [&] {
        if (++added == 2) {
            Break();
        }
    });
    SyncFileInfo info;
    EXPECT_TRUE(ExportInitialSyncData(context, folder.path, info));
    EXPECT_EQ(engine->exports.size(), 52U);
    EXPECT_EQ(info.Files, Lines{Path("data.xml")});
    EXPECT_TRUE(ExportInitialSyncData(context, folder.path, info));
    EXPECT_EQ(engine->exports.size(), 105U) << "what is pending stays pending";
}

TEST_F(InitialSyncMainTest, RequestsOfKnownWorkstationsAreTaken) {
    AddWorkstation(RoamingID, 4);
    std::string lower = MainID;
    std::transform(lower.begin(), lower.end(), lower.begin(), [](unsigned char c) { return std::tolower(c); });
    const std::string processed = "The sync file '{" + lower + "}~t~x.zip' will be processed.";
    const std::string marked = "The sync file '{" + lower + "}~t~x.zip' has been marked to delete.";
    std::string from = RoamingID;
    from[0] = 'b';
    DropRequest("{" + lower + "}", from);
    EXPECT_EQ(Requests(),
              (Lines{"Start receiveing initial sync requests.", "1 sync files were found for processing.",
                     processed, marked, "Finish receiveing initial sync requests."}));
    EXPECT_EQ(activity.texts, Lines{"Receiveing initial sync requests."});
    EXPECT_EQ(States(), "1/0") << "a request counts whatever the row's state is";
    EXPECT_EQ(FilesBelow("Sync"), Lines{});

    Sql("UPDATE RoamingWorkstations SET SyncState = 3");
    DropRequest("MAIN");
    Requests();
    EXPECT_EQ(States(), "1/0");
    EXPECT_EQ(FilesBelow("Sync"), Lines{});
}

TEST_F(InitialSyncMainTest, OtherFilesOfTheFolderAreLeftToTheirSteps) {
    AddWorkstation(RoamingID, 4);
    const auto expectIgnored = [&](const std::string& file, const std::string& why) {
        const std::string name = std::filesystem::path(file).filename();
        EXPECT_EQ(Requests(),
                  (Lines{"Start receiveing initial sync requests.", "1 sync files were found for processing.",
                         "The sync file '" + name + "' will be processed.",
                         "The sync file '" + name + "' will be ignored because " + why,
                         "Finish receiveing initial sync requests."}));
        EXPECT_TRUE(std::filesystem::remove(file)) << "the file stays";
        EXPECT_EQ(States(), "4/0");
    };
    expectIgnored(DropRequest("main", "stranger"), "its for a different main company.");
    expectIgnored(DropSyncFile(MainID + "~a~x.zip", "Sequence=3\r\nFrom=" + RoamingID + "\r\n"),
                  "its state, 0 is not 'initial sync requested'.");
    DropRequest(RoamingID);
    EXPECT_EQ(Requests().size(), 3U) << "a file for another is passed over without a word";
    EXPECT_EQ(FilesBelow("Sync").size(), 1U);
}

TEST_F(InitialSyncMainTest, RequestThatCannotBeEnteredIsReportedAndGoes) {
    AddWorkstation(RoamingID, 4);
    DropRequest("MAIN");
    gate.Refuse("Database.ExecuteNonQuery", 1);
    Lines lines = Requests();
    ASSERT_EQ(lines.size(), 8U);
    EXPECT_EQ(lines[3],
              "Error: There was a problem updating the RoamingWorkstations table when receiving initial sync "
              "request. More information to follow.");
    EXPECT_EQ(lines[4], "UPDATE RoamingWorkstations SET SyncState = 1 WHERE UniqueID = '" + RoamingID + "'");
    EXPECT_EQ(FilesBelow("Sync"), Lines{});

    gate.Before("Database.ExecuteScaler", Break);
    EXPECT_EQ(Requests(),
              (Lines{"Start receiveing initial sync requests.",
                     "Error: Unable to receive initial sync requests becuase the Unique ID of the main "
                     "company could not be read.",
                     "Finish receiveing initial sync requests."}));
}

TEST_F(InitialSyncMainTest, EveryRowThatAsksGetsTheFullData) {
    EXPECT_EQ(Sends(), Lines{});
    AddWorkstation("other", 4);
    AddWorkstation(RoamingID, 1, 300);
    Sql("INSERT INTO Terms (UniqueID, Name) VALUES ('T', 'Net 30')");
    const std::string lastAudit = Value("SELECT MAX(ID) FROM AuditLog");
    EXPECT_EQ(
        Sends(),
        (Lines{"Start sending initial sync to 'Laptop'.", "The working folder 'Temp/~suz' was created.",
               "Data was exported.", "The id file was added to 'Temp/~suz'. Details to follow:",
               "SyncState = 1, Sequence = 0, ReferenceCode = 0", "The sequence file was added to 'Temp/~suz'.",
               "The sync file 'Temp/suzTOKEN.zip' was created.", "The data file was added to 'Temp/~suz'.",
               "The sync file 'Temp/suzTOKEN.zip' for the Roaming Workstation '" + RoamingID +
                   "' was copied to 'Sync/" + RoamingID + "~TOKEN~20261122T190855.zip'.",
               "Deleting working folder 'Temp/~suz'.", "Finish sending initial sync to 'Laptop'."}));
    EXPECT_EQ(activity.texts, Lines{"Sending initial sync to 'Laptop'."});
    EXPECT_EQ(lastAudit, "1");
    EXPECT_EQ(States(), "4/0 3/1");
    EXPECT_EQ(FilesBelow("Temp"), Lines{});
}

TEST_F(InitialSyncMainTest, EachFailureLeavesTheRowForTheNextPass) {
    AddWorkstation(RoamingID, 1);
    // The lines between the start and the deletion of the working folder, without those of the routines inside.
    const auto expectLine = [&](const std::string& call, const std::string& line) {
        gate.Refuse(call, 1);
        const Lines lines = Sends();
        EXPECT_EQ(std::count(lines.begin(), lines.end(), line), 1) << call;
        EXPECT_EQ(std::count(lines.begin(), lines.end(), "Deleting working folder 'Temp/~suz'."), 1) << call;
        EXPECT_EQ(States(), "1/0") << call;
        EXPECT_FALSE(std::filesystem::exists(Path("Temp/~suz"))) << call;
    };
    expectLine("Engine.DoExport", "Error: Data could not be exported during an initial sync.");
    EXPECT_EQ(Events(), "There was a problem exporting data during a sync. (100)");
    expectLine("Engine.DoExport", "Error: There was a problem exporting data during a sync. (100)");
    expectLine("TextFileTools.WriteTextFile", "Error: The sequence file was not added to 'Temp/~suz'.");
    expectLine("ZipArchive.WriteZipAndClose", "Error: The data file was not added to 'Temp/~suz'.");
    expectLine(
        "Database.ExecuteNonQuery",
        "Error: There was a problem updating the roaming workstation record at the end of an initial sync.");
    gate.Refuse("FileTools.CopyFile", 1);
    EXPECT_EQ(Sends().size(), 11U);
    EXPECT_EQ(States(), "1/0");

    Sql("DELETE FROM CompanyEvents");
    gate.Refuse("PathTools.CreateTemporaryFolder", 1);
    EXPECT_EQ(Sends(),
              (Lines{"Start sending initial sync to 'Laptop'.",
                     "Error: Unable to perform an initial sync because a working folder cannot be created.",
                     "Finish sending initial sync to 'Laptop'."}));
    EXPECT_EQ(Events(), "Unable to perform an initial sync because a working folder cannot be created.");
    gate.Refuse("PathTools.DeleteFolder", 1);
    const Lines lines = Sends();
    EXPECT_EQ(lines[lines.size() - 2], "Error: The working folder 'Temp/~suz' could not be deleted.");
    EXPECT_EQ(States(), "3/0");
}

TEST_F(InitialSyncMainTest, AcknowledgesCloseTheExchange) {
    AddWorkstation(RoamingID, 3);
    DropSyncFile("main~a~x.zip", "SyncState=4\r\nFrom=" + RoamingID + "\r\n");
    EXPECT_EQ(Acknowledges(),
              (Lines{"Start receiveing initial sync acknowledges.", "1 sync files were found for processing.",
                     "Finish receiveing initial sync acknowledges."}))
        << "an acknowledge knows the real identity";
    std::filesystem::remove(Path("Sync/main~a~x.zip"));
    const std::string name = MainID + "~a~x.zip";
    const auto drop = [&](const std::string& keys) {
        DropSyncFile(name, keys + "From=" + RoamingID + "\r\n");
        return Acknowledges();
    };
    EXPECT_EQ(drop("SyncState=1\r\n")[3],
              "The sync file '" + name + "' will be ignored because its state, 1 is not 'ready'.");
    EXPECT_EQ(States(), "3/0");
    EXPECT_EQ(drop("SyncState=4\r\n"),
              (Lines{"Start receiveing initial sync acknowledges.", "1 sync files were found for processing.",
                     "The sync file '" + name + "' will be processed.",
                     "The sync file '" + name + "' has been marked to delete.",
                     "Finish receiveing initial sync acknowledges."}));
    EXPECT_EQ(States(), "4/0");
    EXPECT_EQ(activity.texts.back(), "Receiveing initial sync acknowledges.");

    Sql("DELETE FROM RoamingWorkstations");
    Lines lines = drop("SyncState=4\r\n");
    ASSERT_EQ(lines.size(), 8U);
    EXPECT_EQ(lines[3],
              "Error: There was a problem updating the RoamingWorkstations table when receiving initial sync "
              "acknowledge. More information to follow.");
    EXPECT_EQ(lines[4], "UPDATE RoamingWorkstations SET SyncState = 4 WHERE UniqueID = '" + RoamingID + "'");
    EXPECT_EQ(FilesBelow("Sync"), Lines{});
}

TEST_F(InitialSyncMainTest, MainCompanyInAnyStateButNoneTakesNoAcknowledge) {
    AddWorkstation(RoamingID, 3);
    Sql("UPDATE Company SET SyncState = 4");
    DropSyncFile(MainID + "~a~x.zip", "SyncState=4\r\nFrom=" + RoamingID + "\r\n");
    EXPECT_EQ(Acknowledges()[2], "Error: ReceiveInitialSyncAcknowledges - 1");
    gate.Before("Database.ExecuteScaler", Break);
    EXPECT_EQ(Acknowledges()[1],
              "Error: Unable to receive initial sync acknowledges becuase the Unique ID of the main "
              "company could not be read.");
    EXPECT_EQ(States(), "3/0");
}

} // namespace
} // namespace qndr::testing
