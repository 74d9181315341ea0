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
    /// The state in the descriptor of the only file that is addressed so.
    int StateSentTo(const std::string& addressee) {
        FoundSyncFile entry;
        for (const auto& file : std::filesystem::directory_iterator(Path("Sync"))) {
            if (file.path().filename().string().starts_with(addressee + "~")) {
                entry.FilePath = file.path();
            }
        }
        ReadSyncFile(context, entry);
        EXPECT_EQ(entry.From, RoamingID);
        return entry.SyncState;
    }
    std::string DropInitialSync(const std::string& middle, const std::string& keys = "ReferenceCode=7\r\n") {
        return DropSyncFile(RoamingID + "~" + middle + "~x.zip",
                            "SyncState=1\r\nFrom={" + MainID + "}\r\n" + keys);
    }
};

TEST_F(InitialSyncRoamingTest, StepsDoNothingInTheStatesOfOthers) {
    DropInitialSync("a");
    for (const int state : {0, 1, 2, 3, 4, 5, 6}) {
        SetState(state);
        if (state != 1) {
            SendInitialSyncRequest(context, &activity);
        }
        if (state != 2) {
            ReceiveInitialSync(context, &activity);
        }
        EXPECT_EQ(Numbers(), std::to_string(state) + ",9,8,7");
    }
    EXPECT_EQ(gate.Count("ZipArchive.OpenZip"), 0);
    EXPECT_EQ(activity.texts[0], "Sending initial sync request to main");
    EXPECT_EQ(activity.texts[1], "Receiving initial sync.");
    TakeLog();
    gate.Before("Database.ExecuteScaler", Break);
    ReceiveInitialSync(context, nullptr);
    EXPECT_EQ(TakeLog(), Lines{}) << "without an identity of its own the step does not look";
    SetState(1);
    SendInitialSyncRequest(context, nullptr);
    EXPECT_EQ(Numbers(), "1,9,8,7") << "a state that cannot be read is not taken for 1";
    EXPECT_EQ(FilesBelow("Sync").size(), 1U);
}

TEST_F(InitialSyncRoamingTest, RequestStartsTheCountersAnewOnceItIsOut) {
    SetState(1);
    for (const char* call : {"PathTools.CreateTemporaryFolder", "ZipArchive.AppendFiles", "FileTools.CopyFile"}) {
        gate.Refuse(call, 1);
        SendInitialSyncRequest(context, nullptr);
        EXPECT_EQ(Numbers(), "1,9,8,7") << call;
        EXPECT_FALSE(std::filesystem::exists(Path("Temp/~suz"))) << call;
    }
    EXPECT_EQ(gate.Count("FileTools.CopyFile"), 1) << "what was not packed is not sent";
    EXPECT_EQ(Value("SELECT group_concat(EventText, '|') FROM CompanyEvents"),
              "Unable to perform an initial sync request because a working folder cannot be created.");
    TakeLog();
    std::filesystem::remove_all(Path("Temp"));
    SendInitialSyncRequest(context, nullptr);
    EXPECT_EQ(Numbers(), "2,0,0,0");
    EXPECT_EQ(TakeLog().size(), 4U);
    EXPECT_EQ(FilesBelow("Temp"), Lines{});
    EXPECT_EQ(StateSentTo("MAIN"), SyncFileInitialSyncRequest);
}

TEST_F(InitialSyncRoamingTest, InitialSyncIsTakenInAndAcknowledged) {
    SetState(2);
    const std::string taken = DropInitialSync("a");
    DropSyncFile(RoamingID + "~b~x.zip", "Sequence=0\r\nFrom=" + MainID + "\r\n");
    DropSyncFile(MainID + "~c~x.zip", "SyncState=1\r\n");
    ReceiveInitialSync(context, nullptr);
    EXPECT_EQ(engine->imports, Lines{"data of " + RoamingID + "~a~x.zip"});
    EXPECT_EQ(Main(), "{" + MainID + "},7");
    EXPECT_EQ(Numbers(), "4,9,8,7");
    EXPECT_FALSE(std::filesystem::exists(taken));
    EXPECT_EQ(FilesBelow("Sync").size(), 3U) << "a change, a foreign file and the acknowledge";
    EXPECT_EQ(StateSentTo("{" + MainID + "}"), SyncFileReady);
    EXPECT_EQ(gate.Count("TextFileTools.WriteTextFile"), 0) << "an acknowledge has no list of files";
    EXPECT_FALSE(std::filesystem::exists(Path("Temp/~suz")));
    EXPECT_EQ(FilesBelow("Temp"), Lines{});
}

TEST_F(InitialSyncRoamingTest, FailedImportKeepsTheFileAndAFailedAcknowledgeDoesNot) {
    SetState(2);
    const std::string file = DropInitialSync("a", "");
    gate.Before("PathTools.CreateTemporaryFolder", [this, folders = 0]() mutable {
        gate.Refuse("PathTools.CreateTemporaryFolder", ++folders == 2 ? 1 : 0);
    });
    ReceiveInitialSync(context, nullptr);
    EXPECT_EQ(Numbers(), "2,9,8,7");
    EXPECT_EQ(Main(), "{" + MainID + "},0");
    EXPECT_TRUE(std::filesystem::exists(file));
    gate.Refuse("FileTools.CopyFile", 1);
    ReceiveInitialSync(context, nullptr);
    EXPECT_EQ(Numbers(), "2,9,8,7");
    EXPECT_EQ(FilesBelow("Sync"), Lines{});
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
