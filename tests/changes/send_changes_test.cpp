#include "changes/changes_test.h"
#include "changes/send_changes_to_main.h"
#include "changes/send_changes_to_roaming_workstations.h"
#include "initial/export_tables.h"

namespace qndr::testing {
namespace {

class SendChangesTest : public TwinsTest {
  protected:
    SendChangesTest() {
        Sql("UPDATE RoamingWorkstations SET LastAuditID = 1, NextSequenceToRoaming = 5");
        Sql("UPDATE Company SET LastAuditID = 1, NextSequenceToMain = 5");
        Audit("Groups", 1, 1);
    }
    Lines Send() { return Run(IsMain() ? SendChangesToRoamingWorkstations : SendChangesToMain); }
    /// LastAuditID, sequence, state and when it was sent.
    std::string Numbers() {
        return Value(Pick("SELECT group_concat(LastAuditID || ',' || NextSequenceToRoaming || ',' || SyncState || "
                          "',' || coalesce(LastSentTo, ''), ' ') FROM RoamingWorkstations",
                          "SELECT LastAuditID || ',' || NextSequenceToMain || ',' || SyncState || ',' FROM "
                          "Company"));
    }
};
INSTANTIATE_TEST_SUITE_P(OnMainAndRoaming, SendChangesTest, ::testing::Values(1, 2));

class SendChangesToRoamingTest : public SendChangesTest {};
INSTANTIATE_TEST_SUITE_P(OnMain, SendChangesToRoamingTest, ::testing::Values(1));

TEST_P(SendChangesTest, NothingLeavesInOtherStatesAndWhenThereIsNothingToSend) {
    EXPECT_EQ(Send().size(), IsMain() ? 3U : 0U);
    Audit("RoamingWorkstations", 1, 2);
    EXPECT_EQ(Send().size(), IsMain() ? 3U : 1U);
    EXPECT_EQ(Send().size(), IsMain() ? 3U : 1U) << "on every pass";
    EXPECT_EQ(Numbers(), "1,5,4,");
    EXPECT_FALSE(std::filesystem::exists(Path("Temp/~suz")));
    for (const int state : {0, 1, 2, 3, 6, 5}) {
        if (state != 5 || !IsMain()) {
            Sql("UPDATE " + Pick("RoamingWorkstations", "Company") + " SET SyncState = " + std::to_string(state));
            EXPECT_EQ(Send(), Lines{});
        }
    }
    EXPECT_EQ(gate.Count(calls::PathTools::CreateTemporaryFolder), 3);
    EXPECT_EQ(FilesBelow("Sync"), Lines{});
}

TEST_P(SendChangesToRoamingTest, EachWorkstationGetsItsOwnRange) {
    AddWorkstation(OtherID, 4);
    AddWorkstation("NOT-SERVED", 3);
    Audit("Terms", 1, 1);
    gate.Refuse(calls::PathTools::CreateTemporaryFolder, 1);
    Send();
    EXPECT_EQ(Numbers(), "1,5,4, 2,1,4,20261122 19:08:56 0,0,3,") << "a failure for one does not stop the next";
    Send();
    EXPECT_EQ(Numbers(), "2,6,4,20261122 19:09:00 2,1,4,20261122 19:08:56 0,0,3,");
    EXPECT_EQ(engine->exported.at(0).size(), 2U);
    EXPECT_EQ(engine->exported.at(1).size(), 1U);
}

TEST_P(SendChangesToRoamingTest, StateIsReadAfreshAndAllElseComesFromTheRecord) {
    Sql("DELETE FROM AuditLog");
    engine->exports = {{"left", "over"}};
    gate.Before(calls::PathTools::CreateTemporaryFolder,
                [&] { Sql("UPDATE RoamingWorkstations SET SyncState = 5, NextSequenceToRoaming = 0"); });
    Send(); // the full data goes out even when the log is empty
    NotingEngine::Entries all;
    for (const ExportTable& table : ExportTables) {
        all.emplace_back(table.Name, ExportStatement(table));
    }
    EXPECT_EQ(engine->exported, std::vector<NotingEngine::Entries>{all});
    EXPECT_EQ(Numbers(), "0,1,4,20261122 19:08:56");
}

} // namespace
} // namespace qndr::testing
