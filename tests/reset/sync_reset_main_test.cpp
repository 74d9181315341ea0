#include "reset/sync_reset_main.h"
#include "support/agent_bench.h"

namespace qndr::testing {
namespace {

class SyncResetMainTest : public AgentBench {
  protected:
    SyncResetMainTest() {
        OpenCompany(1);
        AddWorkstation(RoamingID, 4);
        Sql("UPDATE RoamingWorkstations SET LastAuditID = 3, NextSequenceToRoaming = 5, NextSequenceFromRoaming = "
            "6");
    }
    void SetState(int state) { Sql("UPDATE RoamingWorkstations SET SyncState = " + std::to_string(state)); }
    /// State, the two sequences, LastAuditID and when something last came, row by row.
    std::string Rows() {
        return Value(
            "SELECT group_concat(SyncState || ',' || NextSequenceToRoaming || ',' || "
            "NextSequenceFromRoaming || ',' || LastAuditID || ',' || coalesce(LastReceivedFrom, ''), ' ') "
            "FROM RoamingWorkstations");
    }
    /// A file for main.
    void Drop(const std::string& token, int sequence, const std::string& from = RoamingID) {
        DropSyncFile(MainID + "~" + token + "~x.zip",
                     "Sequence=" + std::to_string(sequence) + "\r\nFrom=" + from + "\r\n");
    }
};

TEST_F(SyncResetMainTest, EachWorkstationsRequestsAreTakenInItsOwnTurn) {
    AddWorkstation(OtherID, 5);
    Drop("a", -1);
    Drop("b", -1);
    Drop("c", -1, OtherID);
    Run(CheckForSyncResets);
    EXPECT_EQ(gate.Count(calls::Database::ExecuteNonQuery), 3);
    EXPECT_EQ(Rows(), "6,0,0,3,20261122 19:08:52 6,0,0,0,20261122 19:08:52") << "the drain starts anew";
    EXPECT_EQ(FilesBelow("Sync"), Lines{});
}

TEST_F(SyncResetMainTest, NothingButTheSequenceAsksAndOnlyInTheRightStates) {
    DropSyncFile(MainID + "~a~x.zip", "IsSyncReset=1\r\nResetDate=2026-11-01 00:00:00\r\nFrom=" + RoamingID);
    Run(CheckForSyncResets);
    Drop("b", -1);
    for (const int state : {0, 1, 2, 3, 6}) {
        SetState(state);
        EXPECT_EQ(Run(CheckForSyncResets), Lines{}) << state;
    }
    EXPECT_EQ(Rows(), "6,5,6,3,");
    EXPECT_EQ(FilesBelow("Sync").size(), 2U);
}

TEST_F(SyncResetMainTest, WorkstationThatKeepsSendingHoldsItsRow) {
    SetState(6);
    for (const int sequence : {9, 0, -1}) {
        Drop("a", sequence);
        ProcessPendingSyncResets(context, nullptr);
        time.Advance(360'000);
    }
    EXPECT_EQ(Rows(), "6,5,6,3,20261122 19:20:52");
    EXPECT_EQ(Events(), "") << "a request is a file like any other now";
}

TEST_F(SyncResetMainTest, QuietRowIsOwedTheFullDataAfterMoreThanFiveMinutes) {
    const auto stateAt = [&](const std::string& localNow) {
        SetState(6);
        time.SetNow(*ParseDate(localNow));
        ProcessPendingSyncResets(context, nullptr);
        return Rows().substr(0, 1);
    };
    for (const auto& [bias, exact, later] : {std::tuple{300, "2026-11-22 19:03:00", "2026-11-22 19:03:01"},
                                             std::tuple{-780, "2026-11-23 13:03:00", "2026-11-23 13:03:01"}}) {
        // An hour of daylight time is in force.
        time.SetTimeZone({.state = 2, .bias = bias + 60, .standardBias = 0, .daylightBias = -60});
        Sql("UPDATE RoamingWorkstations SET LastReceivedFrom = '20261122 23:58:00'");
        EXPECT_EQ(stateAt(exact), "6") << bias;
        EXPECT_EQ(stateAt(later), "5") << bias;
        // What the agent writes is what the rule compares with.
        SetState(4);
        Drop("a", -1);
        CheckForSyncResets(context, nullptr);
        EXPECT_EQ(Rows(), "6,0,0,3,20261123 00:03:01") << bias;
        EXPECT_EQ(stateAt(later), "6") << bias;
    }
    Sql("UPDATE RoamingWorkstations SET LastReceivedFrom = NULL");
    EXPECT_EQ(stateAt("2026-12-31 00:00:00"), "6") << "until a file comes";
}

} // namespace
} // namespace qndr::testing
