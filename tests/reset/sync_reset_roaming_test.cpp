#include "changes/changes_test.h"
#include "reset/sync_reset_roaming.h"
#include "syncfiles/packaging.h"

namespace qndr::testing {
namespace {

class SyncResetRoamingTest : public ChangesTest {
  protected:
    SyncResetRoamingTest() {
        OpenCompany(2);
        Audit("Terms", 1, 1);
        Audit("Terms", 2, 1);
        AskForReset();
    }
    void AskForReset() {
        Sql("UPDATE Company SET SyncState = 5, LastAuditID = 1, NextSequenceToMain = 8, NextSequenceFromMain = 7, "
            "MainUniqueID = '" +
            MainID + "'");
    }
    /// State, LastAuditID and the two sequences.
    std::string Numbers() {
        return Value("SELECT SyncState || ',' || LastAuditID || ',' || NextSequenceToMain || ',' || "
                     "NextSequenceFromMain FROM Company");
    }
    /// What main has sent and this workstation has not taken yet.
    void DropWaiting() { DropSyncFile(RoamingID + "~t~x.zip", "Sequence=7\r\nFrom=" + MainID + "\r\n"); }
    /// The only request in the Sync folder, taken out of it.
    FoundSyncFile TakeRequest(const std::string& addressee = MainID) {
        FoundSyncFile entry;
        for (const auto& file : std::filesystem::directory_iterator(Path("Sync"))) {
            if (file.path().filename().string().starts_with(addressee + "~")) {
                EXPECT_EQ(entry.FilePath, "") << "a second request";
                entry.FilePath = file.path();
            }
        }
        ReadSyncFile(context, entry);
        EXPECT_EQ(entry.From, RoamingID);
        EXPECT_TRUE(std::filesystem::remove(entry.FilePath));
        return entry;
    }
};

TEST_F(SyncResetRoamingTest, RequestGivesUpTheNumbersAndWhatWaitsHere) {
    const std::string own = "{bbbbbbbb-0000-4000-8000-000000000002}~t~x.zip";
    DropSyncFile(own, "Sequence=7\r\n");
    DropSyncFile(OtherID + "~t~x.zip", "Sequence=7\r\n");
    const std::string request = MainID + "~TOKEN~20261122T190855.zip";
    EXPECT_EQ(
        Run(SendSyncResetToMain),
        (Lines{"The id file was added to 'Temp/~suz'. Details to follow:",
               "SyncState = 0, Sequence = -1, ReferenceCode = 0", "The sync file 'Temp/suzTOKEN.zip' was created.",
               "The sync file 'Temp/suzTOKEN.zip' was copied for the main system as 'Sync/" + request + "'.",
               "3 sync files were found for processing.",
               "The sync file '" + own + "' has been marked to delete."}));
    EXPECT_EQ(Numbers(), "6,2,0,0");
    EXPECT_EQ(FilesBelow("Sync"), (Lines{"Sync/" + request, "Sync/" + OtherID + "~t~x.zip"}));
    EXPECT_EQ(FilesBelow("Local"), Lines{"Local/Acme/Sync Local/Deleted/2026/11/" + own});
    EXPECT_EQ(gate.Count("ZipArchive.OpenZip"), 0) << "what goes is not read";
    EXPECT_EQ(FilesBelow("Temp"), Lines{});
    EXPECT_TRUE(WorkingFolderIsGone());
    EXPECT_EQ(Events(), "");

    const FoundSyncFile entry = TakeRequest();
    EXPECT_EQ(entry.SyncState, 0);
    EXPECT_EQ(entry.Sequence, SyncResetSequence);
    EXPECT_EQ(entry.IsSyncReset, FieldFalse);
    EXPECT_EQ(gate.Count("TextFileTools.WriteTextFile"), 0) << "a request has no list of files";
}

TEST_F(SyncResetRoamingTest, OnlyTheStateOfAResetActs) {
    DropWaiting();
    for (const int state : {0, 1, 2, 3, 4, 6}) {
        Sql("UPDATE Company SET SyncState = " + std::to_string(state));
        EXPECT_EQ(Run(SendSyncResetToMain), Lines{});
        EXPECT_EQ(Numbers(), std::to_string(state) + ",1,8,7");
    }
    AskForReset();
    gate.Refuse("Database.ExecuteScaler", 1);
    EXPECT_EQ(Run(SendSyncResetToMain), Lines{}) << "a state that cannot be read";
    EXPECT_EQ(activity.texts, Lines(7, "Sending sync reset to main"));
    EXPECT_EQ(FilesBelow("Sync").size(), 1U);
}

TEST_F(SyncResetRoamingTest, ResetDateComesFromTheOptionOrIsAFortnightAgo) {
    const auto dateOf = [&](const std::string& option) {
        Sql("DELETE FROM CompanyOptions");
        if (option != "missing") {
            Sql("INSERT INTO CompanyOptions (Profile, Section, OptionKey, Value) VALUES ('Default', 'Roaming "
                "Workstations', 'ResetSyncDate', '" +
                option + "')");
        }
        AskForReset();
        SendSyncResetToMain(context, nullptr);
        return FormatGeneralDate(TakeRequest().ResetDate);
    };
    EXPECT_EQ(dateOf("2026-10-01 07:30:00"), "2026-10-01 07:30:00");
    EXPECT_EQ(dateOf("soon"), "1900-01-01 00:00:00");
    time.SetNow(*ParseDate("2026-11-14 20:00:00"));
    EXPECT_EQ(dateOf("missing"), "2026-11-01 01:00:00");
    time.SetNow(*ParseDate("2026-11-15 02:00:00"));
    time.SetTimeZone({.state = 2, .bias = -330, .standardBias = 0, .daylightBias = -60});
    EXPECT_EQ(dateOf(""), "2026-10-31 19:30:00");
}

TEST_F(SyncResetRoamingTest, EachFailureOnTheWayLeavesAllForTheNextPass) {
    DropWaiting();
    const std::string noFolder = "Unable to perform an sync request because a working folder cannot be created.";
    gate.Refuse("PathTools.CreateTemporaryFolder", 1);
    EXPECT_EQ(Run(SendSyncResetToMain), Lines{}) << "the event alone tells";
    EXPECT_EQ(Events(), noFolder);
    for (const std::string call :
         {"FileTools.CopyFile", "Options.UserFileLocation", "ObjectFactory.CreateZipArchive",
          "FileTools.CreateTemporaryFile", "ZipArchive.WriteZipAndClose"}) {
        gate.Refuse(call, 1);
        SendSyncResetToMain(context, nullptr);
        EXPECT_EQ(Numbers(), "5,1,8,7") << call;
        EXPECT_EQ(FilesBelow("Sync").size(), 1U) << call;
        EXPECT_TRUE(WorkingFolderIsGone()) << call;
        if (call == "Options.UserFileLocation") {
            EXPECT_EQ(FilesBelow("Temp"), Lines{}) << "what was packed goes";
        }
    }
    EXPECT_EQ(gate.Count("FileTools.CopyFile"), 1) << "what was not packed is not sent";
    SendSyncResetToMain(context, nullptr);
    EXPECT_EQ(Numbers(), "6,2,0,0");
    EXPECT_EQ(FilesBelow("Sync").size(), 1U) << "the request in the place of what waited";
    EXPECT_EQ(Events(), noFolder);
}

TEST_F(SyncResetRoamingTest, RequestThatIsOutCountsWhateverFailsBehindIt) {
    DropWaiting();
    RefuseUpdates("ON Company");
    EXPECT_EQ(Run(SendSyncResetToMain).size(), 6U) << "the update's end is not looked at";
    AllowUpdates();
    EXPECT_EQ(Numbers(), "5,1,8,7");
    TakeRequest();
    EXPECT_EQ(FilesBelow("Sync"), Lines{});

    // The local archive goes between the update and the reading of the own identity.
    DropWaiting();
    Sql("DELETE FROM AuditLog");
    gate.Before("FileTools.DeleteFile", [&] { gate.Refuse("Database.ExecuteScaler"); });
    EXPECT_EQ(Run(SendSyncResetToMain).size(), 4U) << "the folder is not even searched";
    gate.Refuse("Database.ExecuteScaler", 0);
    gate.Before("FileTools.DeleteFile", [] {});
    EXPECT_EQ(Numbers(), "6,0,0,0") << "an empty log counts as 0";
    TakeRequest();
    EXPECT_EQ(FilesBelow("Sync").size(), 1U);

    AskForReset();
    Sql("UPDATE Company SET MainUniqueID = ''");
    SendSyncResetToMain(context, nullptr);
    EXPECT_EQ(Numbers(), "6,0,0,0");
    TakeRequest("MAIN");
    EXPECT_EQ(FilesBelow("Sync"), Lines{});
}

} // namespace
} // namespace qndr::testing
