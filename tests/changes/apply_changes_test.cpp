#include "changes/apply_changes_from_main.h"
#include "changes/apply_changes_from_roaming_workstations.h"
#include "changes/changes_test.h"

namespace qndr::testing {
namespace {

class ApplyChangesTest : public TwinsTest {
  protected:
    ApplyChangesTest() {
        Sql("UPDATE RoamingWorkstations SET NextSequenceFromRoaming = 5");
        Sql("UPDATE Company SET NextSequenceFromMain = 5");
    }
    Lines Apply() { return Run(IsMain() ? ApplyChangesFromRoamingWorkstations : ApplyChangesFromMain); }
    std::string Drop(int sequence, const std::string& keys = "") {
        return DropSyncFile(name, "Sequence=" + std::to_string(sequence) + "\r\nFrom=" + senderId + "\r\n" + keys);
    }
    /// The expected sequence and what moves with it.
    std::string Numbers() {
        return Value(Pick("SELECT group_concat(NextSequenceFromRoaming || ',' || coalesce(LastReceivedFrom, ''), "
                          "' ') FROM RoamingWorkstations",
                          "SELECT NextSequenceFromMain || ',' || SyncState FROM Company"));
    }

    const std::string ownId = Pick(MainID, RoamingID);
    const std::string senderId = Pick(RoamingID, MainID);
    const std::string name = ownId + "~a~x.zip";
};
INSTANTIATE_TEST_SUITE_P(OnMainAndRoaming, ApplyChangesTest, ::testing::Values(1, 2));

TEST_P(ApplyChangesTest, OnlyTheExpectedSequenceIsTaken) {
    for (const int sequence : {4, 6, -1, 5, 5}) {
        Drop(sequence);
        Apply();
    }
    EXPECT_EQ(engine->imports.size(), 1U);
    EXPECT_EQ(FilesBelow("Sync"), Lines{"Sync/" + name}) << "a duplicate stays";
    EXPECT_EQ(Numbers(), Pick("6,20261122 19:08:52", "6,4"));
}

TEST_P(ApplyChangesTest, UpdateOfTheNumbersThatDoesNotTouchOneRowLeavesTheFile) {
    Drop(5);
    gate.Before(calls::Engine::ImportFile, [&] { Sql("DELETE FROM " + Pick("RoamingWorkstations", "Company")); });
    Apply();
    EXPECT_EQ(engine->imports.size(), 1U);
    EXPECT_EQ(FilesBelow("Sync"), Lines{"Sync/" + name});
}

class ApplyChangesFromRoamingTest : public ApplyChangesTest {};
INSTANTIATE_TEST_SUITE_P(OnMain, ApplyChangesFromRoamingTest, ::testing::Values(1));

TEST_P(ApplyChangesFromRoamingTest, FilesAreTakenUnderTheirOwnWorkstation) {
    Sql("UPDATE RoamingWorkstations SET SyncState = 6");
    AddWorkstation("OTHER", 4);
    AddWorkstation("THIRD", 4);
    AddWorkstation("RESET", 5);
    DropSyncFile(name, "Sequence=0\r\nFrom=third\r\n");
    DropSyncFile(MainID + "~b~x.zip", "Sequence=5\r\nFrom=" + RoamingID + "\r\n");
    DropSyncFile(MainID + "~c~x.zip", "Sequence=0\r\nFrom=RESET\r\n");
    EXPECT_EQ(Apply().size(), 9U) << "two workstations, and of one a file";
    EXPECT_EQ(Numbers(), "5, 0, 1,20261122 19:08:52 0,");
    EXPECT_EQ(FilesBelow("Sync").size(), 2U) << "those of the other states wait for their own steps";
}

class ApplyChangesFromMainTest : public ApplyChangesTest {};
INSTANTIATE_TEST_SUITE_P(OnRoaming, ApplyChangesFromMainTest, ::testing::Values(2));

TEST_P(ApplyChangesFromMainTest, StatesOtherThanReadyAndResetPendingRefuse) {
    Drop(5);
    for (const int state : {0, 1, 2, 3, 5, 6}) {
        EXPECT_EQ(gate.Count(calls::ZipArchive::OpenZip), 0);
        Sql("UPDATE Company SET SyncState = " + std::to_string(state));
        Apply();
    }
    EXPECT_EQ(Numbers(), "6,6") << "a file without the mark of a reset is applied like any other";
}

} // namespace
} // namespace qndr::testing
