#include "changes/changes_test.h"
#include "changes/send_changes_to_main.h"
#include "changes/send_changes_to_roaming_workstations.h"
#include "initial/export_tables.h"
#include "syncfiles/packaging.h"

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
    /// Addressee and descriptor of the files that were sent, sorted.
    Lines Sent() {
        Lines sent;
        for (const auto& file : std::filesystem::directory_iterator(Path("Sync"))) {
            FoundSyncFile entry;
            entry.FilePath = file.path();
            ReadSyncFile(context, entry);
            sent.push_back(GetSyncFileName(context, entry).substr(0, addressee.size()) + " " +
                           std::to_string(entry.Sequence) + (entry.IsSyncReset == FieldTrue ? " reset" : ""));
        }
        std::sort(sent.begin(), sent.end());
        return sent;
    }
    std::string TablesOfExport(std::size_t index) {
        std::string tables;
        for (const auto& [table, statement] : engine->exported.at(index)) {
            tables += table + " ";
        }
        return tables;
    }
    const std::string addressee = Pick(RoamingID, "MAIN");
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
    EXPECT_EQ(gate.Count("PathTools.CreateTemporaryFolder"), 3);
    EXPECT_EQ(FilesBelow("Sync"), Lines{});
}

TEST_P(SendChangesToRoamingTest, EachWorkstationGetsItsOwnRange) {
    AddWorkstation(OtherID, 4);
    AddWorkstation("NOT-SERVED", 3);
    Audit("Terms", 1, 1);
    gate.Refuse("PathTools.CreateTemporaryFolder", 1);
    Run(SendChangesToRoamingWorkstations);
    EXPECT_EQ(Numbers(), "1,5,4, 2,1,4,20261122 19:08:56 0,0,3,") << "a failure for one does not stop the next";
    Run(SendChangesToRoamingWorkstations);
    EXPECT_EQ(Numbers(), "2,6,4,20261122 19:09:00 2,1,4,20261122 19:08:56 0,0,3,");
    EXPECT_EQ(Sent(), (Lines{RoamingID + " 5", OtherID + " 0"}));
    EXPECT_EQ(TablesOfExport(0), "Groups Terms ");
    EXPECT_EQ(TablesOfExport(1), "Terms ");
}

TEST_P(SendChangesToRoamingTest, StateIsReadAfreshAndAllElseComesFromTheRecord) {
    Sql("DELETE FROM AuditLog");
    engine->exports = {{"left", "over"}};
    gate.Before("PathTools.CreateTemporaryFolder",
                [&] { Sql("UPDATE RoamingWorkstations SET SyncState = 5, NextSequenceToRoaming = 0"); });
    gate.Before("Engine.DoExport",
                [&] { EXPECT_EQ(FormatGeneralDate(time.Now()), "2026-11-22 14:08:53") << "after a pause"; });
    Send(); // the full data goes out even when the log is empty
    gate.Before("PathTools.CreateTemporaryFolder", [] {});
    EXPECT_EQ(Sent(), Lines{RoamingID + " 5 reset"});
    NotingEngine::Entries all;
    for (const ExportTable& table : ExportTables) {
        all.emplace_back(table.Name, ExportStatement(table));
    }
    EXPECT_EQ(engine->exported, std::vector<NotingEngine::Entries>{all});
    EXPECT_EQ(Numbers(), "0,1,4,20261122 19:08:56");
}

} // namespace
} // namespace qndr::testing
