#include "initial/initial_sync_roaming.h"
#include "support/agent_bench.h"
#include "syncfiles/descriptor.h"
#include "syncfiles/packaging.h"

namespace qndr::testing {
namespace {

class InitialSyncRoamingTest : public AgentBench {
  protected:
    InitialSyncRoamingTest() {
        OpenCompany(2);
        Sql("UPDATE Company SET LastAuditID = 9, NextSequenceToMain = 8, NextSequenceFromMain = 7");
    }

    void SetState(int state) { Sql("UPDATE Company SET SyncState = " + std::to_string(state)); }
    /// State, LastAuditID and the two sequences.
    std::string Numbers() {
        return Value("SELECT SyncState || ',' || LastAuditID || ',' || NextSequenceToMain || ',' || "
                     "NextSequenceFromMain FROM Company");
    }
    std::string Main() { return Value("SELECT MainUniqueID || ',' || ReferenceCode FROM Company"); }
    std::string Events() { return Value("SELECT group_concat(EventText, '|') FROM CompanyEvents"); }
    FoundSyncFile ReadDropped(const std::string& addressee) {
        FoundSyncFile entry;
        for (const auto& file : std::filesystem::directory_iterator(Path("Sync"))) {
            if (file.path().filename().string().starts_with(addressee + "~")) {
                entry.FilePath = file.path();
            }
        }
        ReadSyncFile(context, entry);
        return entry;
    }
    std::string DropInitialSync(const std::string& middle, const std::string& keys = "ReferenceCode=7\r\n") {
        return DropSyncFile(RoamingID + "~" + middle + "~x.zip",
                            "SyncState=1\r\nFrom={" + MainID + "}\r\n" + keys);
    }
};

TEST_F(InitialSyncRoamingTest, RequestLeavesFromStateOneOnly) {
    for (const int state : {0, 2, 3, 4, 5, 6}) {
        SetState(state);
        SendInitialSyncRequest(context, &activity);
        EXPECT_EQ(Numbers(), std::to_string(state) + ",9,8,7");
    }
    EXPECT_EQ(activity.texts, Lines(6, "Sending initial sync request to main"));
    EXPECT_EQ(FilesBelow("Sync"), Lines{});
    EXPECT_EQ(TakeLog(), Lines{});

    SetState(1);
    SendInitialSyncRequest(context, nullptr);
    EXPECT_EQ(Numbers(), "2,0,0,0");
    EXPECT_EQ(TakeLog(), (Lines{"The id file was added to 'Temp/~suz'. Details to follow:",
                                "SyncState = -2, Sequence = 0, ReferenceCode = 0",
                                "The sync file 'Temp/suzTOKEN.zip' was created.",
                                "The sync file 'Temp/suzTOKEN.zip' was copied for the main system as "
                                "'Sync/MAIN~TOKEN~20261122T190855.zip'."}));
    EXPECT_EQ(FilesBelow("Temp"), Lines{});
    EXPECT_FALSE(std::filesystem::exists(Path("Temp/~suz")));
    const FoundSyncFile sent = ReadDropped("MAIN");
    EXPECT_EQ(sent.SyncState, SyncFileInitialSyncRequest);
    EXPECT_EQ(sent.From, RoamingID);
}

TEST_F(InitialSyncRoamingTest, RequestThatDoesNotGetOutLeavesAllAsItWas) {
    SetState(1);
    for (const char* call : {"PathTools.CreateTemporaryFolder", "ZipArchive.AppendFiles", "FileTools.CopyFile"}) {
        gate.Refuse(call, 1);
        SendInitialSyncRequest(context, nullptr);
        EXPECT_EQ(Numbers(), "1,9,8,7") << call;
        EXPECT_FALSE(std::filesystem::exists(Path("Temp/~suz"))) << call;
    }
    EXPECT_EQ(gate.Count("FileTools.CopyFile"), 1);
    EXPECT_EQ(Events(), "Unable to perform an initial sync request because a working folder cannot be created.");
    gate.Before("Database.ExecuteScaler", Break);
    SendInitialSyncRequest(context, nullptr);
    EXPECT_EQ(Numbers(), "1,9,8,7") << "a state that cannot be read is not taken for 1";
}

TEST_F(InitialSyncRoamingTest, InitialSyncIsTakenInAndAcknowledged) {
    SetState(2);
    const std::string taken = DropInitialSync("a");
    const std::string change = DropSyncFile(RoamingID + "~b~x.zip", "Sequence=0\r\nFrom=" + MainID + "\r\n");
    const std::string foreign = DropSyncFile(MainID + "~c~x.zip", "SyncState=1\r\n");
    ReceiveInitialSync(context, &activity);
    EXPECT_EQ(activity.texts, Lines{"Receiving initial sync."});
    EXPECT_EQ(engine->imports, Lines{"data of " + RoamingID + "~a~x.zip"});
    EXPECT_EQ(Main(), "{" + MainID + "},7");
    EXPECT_EQ(Numbers(), "4,9,8,7");
    EXPECT_FALSE(std::filesystem::exists(taken));
    EXPECT_TRUE(std::filesystem::exists(change));
    EXPECT_TRUE(std::filesystem::exists(foreign));
    const FoundSyncFile acknowledge = ReadDropped("{" + MainID + "}");
    EXPECT_EQ(acknowledge.SyncState, SyncFileReady);
    EXPECT_EQ(acknowledge.From, RoamingID);
    EXPECT_EQ(gate.Count("TextFileTools.WriteTextFile"), 0) << "an acknowledge has no list of files";
    EXPECT_EQ(FilesBelow("Temp"), Lines{});
}

TEST_F(InitialSyncRoamingTest, InitialSyncWaitsInEveryOtherState) {
    const std::string file = DropInitialSync("a");
    for (const int state : {0, 1, 3, 4, 5, 6}) {
        SetState(state);
        ReceiveInitialSync(context, nullptr);
        EXPECT_EQ(Numbers(), std::to_string(state) + ",9,8,7");
    }
    EXPECT_EQ(gate.Count("ZipArchive.OpenZip"), 0);
    EXPECT_TRUE(std::filesystem::exists(file));
    SetState(2);
    TakeLog();
    gate.Before("Database.ExecuteScaler", Break);
    ReceiveInitialSync(context, nullptr);
    EXPECT_EQ(TakeLog(), Lines{}) << "without an identity of its own the step does not look";
}

TEST_F(InitialSyncRoamingTest, FailedImportKeepsTheFileForAnotherTry) {
    SetState(2);
    const std::string file = DropInitialSync("a", "");
    int folders = 0;
    gate.Before("PathTools.CreateTemporaryFolder",
                [&] { gate.Refuse("PathTools.CreateTemporaryFolder", ++folders == 2 ? 1 : 0); });
    ReceiveInitialSync(context, nullptr);
    EXPECT_EQ(Numbers(), "2,9,8,7");
    EXPECT_EQ(Main(), "{" + MainID + "},0");
    EXPECT_TRUE(std::filesystem::exists(file));
    ReceiveInitialSync(context, nullptr);
    EXPECT_EQ(Numbers(), "4,9,8,7");
    EXPECT_FALSE(std::filesystem::exists(file));
}

TEST_F(InitialSyncRoamingTest, FileGoesEvenIfTheAcknowledgeDoesNot) {
    SetState(2);
    const std::string file = DropInitialSync("a");
    gate.Refuse("FileTools.CopyFile", 1);
    ReceiveInitialSync(context, nullptr);
    EXPECT_EQ(Numbers(), "2,9,8,7");
    EXPECT_FALSE(std::filesystem::exists(file));
}

TEST_F(InitialSyncRoamingTest, RefusedDataIsAcknowledgedAndTwoFilesAreBothTaken) {
    SetState(2);
    DropInitialSync("a");
    DropInitialSync("b");
    engine->importSucceeds = false;
    ReceiveInitialSync(context, nullptr);
    EXPECT_EQ(engine->imports.size(), 2U);
    EXPECT_EQ(Numbers(), "4,9,8,7");
    EXPECT_EQ(FilesBelow("Sync").size(), 2U) << "two acknowledges";
}

} // namespace
} // namespace qndr::testing
