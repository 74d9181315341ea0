#include "initial/initial_sync_roaming.h"
#include "support/agent_bench.h"

namespace qndr::testing {
namespace {

class InitialSyncRoamingTest : public AgentBench {
  protected:
    InitialSyncRoamingTest() { OpenCompany(2); }

    void SetState(int state) { Sql("UPDATE Company SET ReferenceCode = 9, SyncState = " + std::to_string(state)); }
    std::string State() { return Value("SELECT SyncState || ',' || ReferenceCode FROM Company"); }
    void DropInitialSync(const std::string& middle) {
        DropSyncFile(RoamingID + "~" + middle + "~x.zip", "SyncState=1\r\nFrom={" + MainID + "}\r\n");
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
        EXPECT_EQ(State(), std::to_string(state) + ",9");
    }
    EXPECT_EQ(gate.Count(calls::ZipArchive::OpenZip), 0);
    EXPECT_EQ(FilesBelow("Sync").size(), 1U);
}

TEST_F(InitialSyncRoamingTest, RefusedDataIsAcknowledgedAndTwoFilesAreBothTaken) {
    SetState(2);
    DropInitialSync("a");
    DropInitialSync("b");
    engine->importSucceeds = false;
    ReceiveInitialSync(context, nullptr);
    EXPECT_EQ(engine->imports.size(), 2U);
    EXPECT_EQ(State(), "4,0") << "without a code in the descriptor";
    const Lines sent = FilesBelow("Sync");
    EXPECT_EQ(sent.size(), 2U) << "two acknowledges";
    EXPECT_TRUE(sent[0].starts_with("Sync/{" + MainID + "}~")) << sent[0];
}

} // namespace
} // namespace qndr::testing
