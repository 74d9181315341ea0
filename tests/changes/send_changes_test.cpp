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
    Lines Send() {
        return IsMain() ? RunForOne(SendChangesToRoamingWorkstations, "sending changes to")
                        : Run(SendChangesToMain);
    }
    /// LastAuditID, sequence, state and when it was sent.
    std::string Numbers() {
        return Value(Pick("SELECT group_concat(LastAuditID || ',' || NextSequenceToRoaming || ',' || SyncState || "
                          "',' || coalesce(LastSentTo, ''), ' ') FROM RoamingWorkstations",
                          "SELECT LastAuditID || ',' || NextSequenceToMain || ',' || SyncState || ',' FROM "
                          "Company"));
    }
    std::string UpTo(int id) const {
        return "Changes up to AuditLog entry '" + std::to_string(id) + " will be sent to " +
               Pick("this Roaming Workstation.", "the main system.");
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

TEST_P(SendChangesTest, NumbersMoveTogetherOnceTheFileIsOut) {
    Audit("Terms", 1, 1);
    gate.Before("Engine.ClearExports", [&] { Audit("Vendors", 1, 1); });
    EXPECT_EQ(Send(), (Lines{UpTo(2), "The id file was added to 'Temp/~suz'. Details to follow:",
                             "SyncState = 0, Sequence = 5, ReferenceCode = 0",
                             "The sequence file was added to 'Temp/~suz'.",
                             "The sync file 'Temp/suzTOKEN.zip' was created.",
                             "The sync file 'Temp/suzTOKEN.zip' " +
                                 Pick("for the Roaming Workstation '" + RoamingID + "' was copied to '",
                                      "was copied for the main system as '") +
                                 "Sync/" + addressee + "~TOKEN~20261122T190856.zip'."}));
    gate.Before("Engine.ClearExports", [] {});
    EXPECT_EQ(Numbers(), Pick("2,6,4,20261122 19:08:56", "2,6,4,"));
    EXPECT_EQ(TablesOfExport(0), "Terms ") << "what was written meanwhile goes with the next file";
    EXPECT_EQ(Sent(), Lines{addressee + " 5"});
    Sql("UPDATE Company SET MainUniqueID = '" + MainID + "'");
    EXPECT_NE(Send().back().find("Sync/" + Pick(RoamingID, MainID)), std::string::npos);
    EXPECT_EQ(TablesOfExport(1), "Vendors Vendors ");
    EXPECT_EQ(FilesBelow("Temp"), Lines{});
    EXPECT_TRUE(WorkingFolderIsGone());
    EXPECT_EQ(activity.texts[0],
              Pick("Sending changes to roaming workstation 'Laptop'.", "Sending changes to main."));
    EXPECT_EQ(Events(), "");
}

TEST_P(SendChangesTest, NothingLeavesInOtherStatesAndWhenThereIsNothingToSend) {
    EXPECT_EQ(Send(), IsMain() ? Lines{"No changes were found to be sent to this Roaming Workstation."} : Lines{});
    Audit("RoamingWorkstations", 1, 2);
    EXPECT_EQ(Send(), Lines{UpTo(2)});
    EXPECT_EQ(Send(), Lines{UpTo(2)}) << "on every pass";
    EXPECT_EQ(Numbers(), "1,5,4,");
    EXPECT_TRUE(WorkingFolderIsGone());
    for (const int state : {0, 1, 2, 3, 6, 5}) {
        if (state == 5 && IsMain()) {
            continue;
        }
        Sql("UPDATE " + Pick("RoamingWorkstations", "Company") + " SET SyncState = " + std::to_string(state));
        EXPECT_EQ(Run(IsMain() ? SendChangesToRoamingWorkstations : SendChangesToMain), Lines{});
    }
    EXPECT_EQ(gate.Count("PathTools.CreateTemporaryFolder"), 3);
    EXPECT_EQ(FilesBelow("Sync"), Lines{});
}

TEST_P(SendChangesTest, EachFailureLeavesTheNumbersForTheNextPass) {
    Audit("Terms", 1, 1);
    for (const std::string call : {"PathTools.CreateTemporaryFolder", "Engine.DoExport",
                                   "TextFileTools.WriteTextFile", "FileTools.CopyFile", "ZipArchive.NewZip"}) {
        EXPECT_EQ(FilesBelow("Temp"), Lines{}) << "before " << call;
        gate.Refuse(call, 1);
        Send();
        EXPECT_TRUE(WorkingFolderIsGone()) << call;
        EXPECT_EQ(FilesBelow("Sync"), Lines{}) << call;
    }
    EXPECT_EQ(gate.Count("FileTools.CopyFile"), 1) << "what was not packed is not sent";
    EXPECT_EQ(gate.Count("Database.ExecuteNonQuery"), 0);
    Send();
    EXPECT_EQ(Sent(), Lines{addressee + " 5"});
    EXPECT_EQ(TablesOfExport(engine->exported.size() - 1), "Terms ");
    const std::string noFolder = "Unable to send changes to " + Pick("a Roaming Workstation", "the main system") +
                                 " because a working folder cannot be created.";
    EXPECT_EQ(Events(), noFolder + "|Unable to perform a sync because the data could not be exported.");
    gate.Refuse("PathTools.CreateTemporaryFolder", 1);
    EXPECT_EQ(Send(), Lines{"Error: " + noFolder});
}

TEST_P(SendChangesTest, FailedUpdateIsReportedAndTheNextFileRepeatsTheSequence) {
    Audit("Terms", 1, 1);
    RefuseUpdates(Pick("ON RoamingWorkstations", "ON Company"));
    gate.Before("Database.ExecuteNonQuery", [&] { time.Advance(10'000); });
    const Lines lines = Send();
    EXPECT_EQ(
        (Lines{lines.end() - 3, lines.end()}),
        (Lines{"Error: There was a problem updating the " +
                   Pick("RoamingWorkstations table when sending changes to a Roaming Workstation.",
                        "Company table when sending changes from the main system.") +
                   " More information to follow.",
               Pick("UPDATE RoamingWorkstations SET LastAuditID = 2, NextSequenceToRoaming = "
                    "NextSequenceToRoaming + 1, LastSentTo = '20261122 19:09:06', SyncState = 4 WHERE ID = 1",
                    "UPDATE Company SET LastAuditID = 2, NextSequenceToMain = NextSequenceToMain + 1"),
               "in use"}));
    EXPECT_EQ(Numbers(), "1,5,4,");
    EXPECT_EQ(FilesBelow("Temp"), Lines{});
    AllowUpdates();
    Audit("Vendors", 1, 1);
    Send();
    EXPECT_EQ(TablesOfExport(1), "Terms Vendors ");
    EXPECT_EQ(Sent(), (Lines{addressee + " 5", addressee + " 5"}));
    EXPECT_EQ(Events(), "");
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
    EXPECT_EQ(Send().at(0), UpTo(0)) << "the full data goes out even when the log is empty";
    gate.Before("PathTools.CreateTemporaryFolder", [] {});
    EXPECT_EQ(Sent(), Lines{RoamingID + " 5 reset"});
    NotingEngine::Entries all;
    for (const ExportTable& table : ExportTables) {
        all.emplace_back(table.Name, ExportStatement(table));
    }
    EXPECT_EQ(engine->exported, std::vector<NotingEngine::Entries>{all});
    EXPECT_EQ(Numbers(), "0,1,4,20261122 19:08:56");
}

TEST_P(SendChangesToRoamingTest, RowStaysAtResetRequestedUntilTheFullDataIsOut) {
    Sql("UPDATE RoamingWorkstations SET SyncState = 5");
    gate.Refuse("Engine.DoExport", 1);
    const std::string problem = "There was a problem exporting data during a sync. (110)";
    EXPECT_EQ(Send(), (Lines{UpTo(1), "Error: " + problem}));
    EXPECT_EQ(Events(), problem);
    gate.Refuse("FileTools.CopyFile", 1);
    Send();
    gate.Refuse("Database.ExecuteScaler", 1);
    Send();
    EXPECT_EQ(Numbers(), "1,5,5,") << "a state that cannot be read is no reset, and there are no changes";
    gate.Before("Engine.DoExport", [&] { Audit("Terms", 1, 1); });
    Send();
    EXPECT_EQ(Numbers().substr(0, 6), "1,6,4,") << "the mark is the one from before the export";
}

} // namespace
} // namespace qndr::testing
