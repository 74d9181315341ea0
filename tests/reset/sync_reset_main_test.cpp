#include "changes/changes_test.h"
#include "reset/sync_reset_main.h"

namespace qndr::testing {
namespace {

class SyncResetMainTest : public ChangesTest {
  protected:
    SyncResetMainTest() {
        OpenCompany(1);
        AddWorkstation(RoamingID, 4);
        Sql("UPDATE RoamingWorkstations SET LastAuditID = 3, NextSequenceToRoaming = 5, NextSequenceFromRoaming = "
            "6");
    }
    void SetState(int state) { Sql("UPDATE RoamingWorkstations SET SyncState = " + std::to_string(state)); }
    /// When something last came from the workstations, UTC.
    void SetReceived(const std::string& date) {
        Sql("UPDATE RoamingWorkstations SET LastReceivedFrom = '" + date + "'");
    }
    /// State, the two sequences, LastAuditID and when something last came, row by row.
    std::string Rows() {
        return Value(
            "SELECT group_concat(SyncState || ',' || NextSequenceToRoaming || ',' || "
            "NextSequenceFromRoaming || ',' || LastAuditID || ',' || coalesce(LastReceivedFrom, ''), ' ') "
            "FROM RoamingWorkstations");
    }
    /// A file for main; its name begins with the addressee.
    void Drop(const std::string& token, int sequence, const std::string& from = RoamingID,
              const std::string& to = MainID) {
        DropSyncFile(to + "~" + token + "~x.zip",
                     "Sequence=" + std::to_string(sequence) + "\r\nFrom=" + from + "\r\n");
    }
    static std::string Name(const std::string& token) { return "Sync/" + MainID + "~" + token + "~x.zip"; }
    /// A log line about a file for main.
    static std::string Line(const std::string& token, const std::string& rest) {
        return "The sync file '" + MainID + "~" + token + "~x.zip' " + rest;
    }
    /// What a step logs for one workstation, between its first and its last line and behind the number of files.
    Lines RunBetween(Step step, const std::string& what, const std::string& found) {
        Lines lines = Run(step);
        EXPECT_EQ((Lines{lines.at(0), lines.at(1), lines.back()}),
                  (Lines{"Start " + what + " from 'Laptop'.", found + " sync files were found for processing.",
                         "Finish " + what + " from 'Laptop'."}));
        return {lines.begin() + 2, lines.end() - 1};
    }
    Lines Check(const std::string& found) {
        return RunBetween(CheckForSyncResets, "checking for sync reset", found);
    }
    Lines Drain(const std::string& found) {
        return RunBetween(ProcessPendingSyncResets, "processing pending sync resets", found);
    }

    const std::string processed = "will be processed.";
    const std::string marked = "has been marked to delete.";
    const std::string swept = "& will be marked marked for deletion.";
    const std::string allGo = "All files sent from '" + RoamingID + "' will be deleted because of the sync reset.";
    const std::string other =
        "will be ignored because it is for a different Roaming Workstation, '" + OtherID + "'.";
    const std::string draining =
        "will be deleted because it's from a roaming workstation in a pending reset state.";
    const std::string quiet =
        "The sync state will be changed to Reset Requested because it's been more than 5 minutes "
        "since anything was received from this roaming workstation.";
    const std::string event = "A sync reset was received from Roaming Workstation Laptop/2";
};

TEST_F(SyncResetMainTest, RequestSweepsAllThatWasReadOfItsSender) {
    Drop("a", 6);
    Drop("b", -1, "bbbbbbbb-0000-4000-8000-000000000002");
    Drop("c", -1, OtherID);
    Drop("d", 8, RoamingID, OtherID);
    Drop("e", -1, RoamingID, "MAIN");
    Lines expected{
        "All files sent from 'bbbbbbbb-0000-4000-8000-000000000002' will be deleted because of the sync "
        "reset.",
        Line("a", "will be ignored because its sequence, 6, does not indicate a reset."), Line("c", processed),
        Line("c", other)};
    for (const char* token : {"a", "b"}) {
        for (const std::string& rest : {processed, swept, marked}) {
            expected.push_back(Line(token, rest));
        }
    }
    // The listing of a folder has no order.
    Lines lines = Check("5");
    std::ranges::sort(lines);
    std::ranges::sort(expected);
    EXPECT_EQ(lines, expected);
    EXPECT_EQ(Rows(), "6,0,0,3,20261122 19:08:52");
    EXPECT_EQ(Events(), event);
    EXPECT_EQ(FilesBelow("Sync"), (Lines{Name("c"), "Sync/" + OtherID + "~d~x.zip", "Sync/MAIN~e~x.zip"}));
    EXPECT_EQ(activity.texts, Lines{"Checking for sync reset from 'Laptop'."});

    // The file of the other one is taken up in that one's turn; braces in the own identity do no harm.
    AddWorkstation(OtherID, 5);
    Sql("UPDATE Company SET UniqueID = '{" + MainID + "}'");
    Check("3");
    EXPECT_EQ(Rows(), "6,0,0,3,20261122 19:08:52 6,0,0,0,20261122 19:08:52");
}

TEST_F(SyncResetMainTest, TwoRequestsAreTwoEventsAndOneLineAboutTheirSender) {
    Drop("a", -1);
    Drop("b", -1);
    SetState(5);
    const Lines lines = Check("2");
    EXPECT_EQ(lines.at(1), allGo) << "with the first of them";
    EXPECT_EQ(std::ranges::count(lines, allGo), 1);
    EXPECT_EQ(std::ranges::count(lines, Line("a", swept)) + std::ranges::count(lines, Line("b", swept)), 2);
    EXPECT_EQ(Events(), event + "|" + event);
    EXPECT_EQ(gate.Count("Database.ExecuteNonQuery"), 2);
    EXPECT_EQ(Rows(), "6,0,0,3,20261122 19:08:52") << "the drain starts anew";
    EXPECT_EQ(FilesBelow("Sync"), Lines{});
}

TEST_F(SyncResetMainTest, NothingButTheSequenceAsksAndOnlyInTheRightStates) {
    Drop("unread", -1, RoamingID, OtherID);
    DropSyncFile(MainID + "~a~x.zip", "IsSyncReset=1\r\nResetDate=2026-11-01 00:00:00\r\nFrom=" + RoamingID);
    EXPECT_EQ(Check("2"),
              (Lines{Line("a", processed),
                     Line("a", "will be ignored because its sequence, 0, does not indicate a reset.")}));
    Drop("a", -1);
    for (const int state : {0, 1, 2, 3, 6}) {
        SetState(state);
        EXPECT_EQ(Run(CheckForSyncResets), Lines{}) << state;
    }
    SetState(4);
    gate.Refuse("Database.ExecuteScaler", 1);
    EXPECT_EQ(Run(CheckForSyncResets).at(1),
              "Error: Unable to process sync reset requests becuase the Unique ID of "
              "the main company could not be read.");
    EXPECT_EQ(Rows(), "4,5,6,3,");
    EXPECT_EQ(FilesBelow("Sync").size(), 2U);
}

TEST_F(SyncResetMainTest, RowThatCannotBeChangedLosesTheRequest) {
    Drop("a", -1);
    RefuseUpdates("ON RoamingWorkstations");
    gate.Before("Database.ExecuteNonQuery", [&] { time.Advance(10'000); });
    EXPECT_EQ(
        Check("1"),
        (Lines{Line("a", processed),
               "Error: There was a problem updating the RoamingWorkstations table when processing a sync reset. "
               "More information to follow.",
               "UPDATE RoamingWorkstations SET NextSequenceToRoaming = 0, NextSequenceFromRoaming = 0, "
               "LastReceivedFrom = '20261122 19:09:02', SyncState = 6 WHERE ID = 1",
               "in use", allGo, Line("a", swept), Line("a", marked)}));
    EXPECT_EQ(Rows(), "4,5,6,3,");
    EXPECT_EQ(Events(), event);
    EXPECT_EQ(FilesBelow("Sync"), Lines{});
    AllowUpdates();
    // Neither the event nor the list of senders keeps the row from its reset.
    Drop("a", -1);
    gate.Refuse("SharedCodeLibrary.RecordEvent", 1);
    gate.Refuse("StringArrayTools.AddString", 1);
    EXPECT_EQ(Check("1"), (Lines{Line("a", processed), allGo, Line("a", marked)})) << "no sender, no sweep";
    EXPECT_EQ(Rows(), "6,0,0,3,20261122 19:09:02");
}

TEST_F(SyncResetMainTest, DrainThrowsAwayWhateverComesAndBeginsTheWaitAnew) {
    SetState(6);
    // A workstation that keeps sending holds its row.
    for (const int sequence : {9, 0, -1}) {
        Drop("a", sequence);
        EXPECT_EQ(Drain("1"), (Lines{Line("a", draining), Line("a", marked)}));
        time.Advance(360'000);
    }
    EXPECT_EQ(Rows(), "6,5,6,3,20261122 19:20:52");
    EXPECT_EQ(Events(), "") << "a request is a file like any other now";
    EXPECT_EQ(activity.texts, Lines(3, "Processing pending sync resets from 'Laptop'."));

    // The file goes also when its time cannot be stored, and the wait is not prolonged.
    RefuseUpdates("OF LastReceivedFrom ON RoamingWorkstations");
    Drop("a", 9);
    Drop("b", -1, RoamingID, "MAIN");
    EXPECT_EQ(
        Drain("2"),
        (Lines{Line("a", draining),
               "Error: There was a problem updating the RoamingWorkstations table when processing a pending sync "
               "reset. More information to follow.",
               "in use", Line("a", marked), quiet}));
    EXPECT_EQ(Rows().substr(0, 2), "5,");
    SetState(6);
    Drop("a", -1, OtherID);
    EXPECT_EQ(Drain("2"), (Lines{Line("a", other), quiet}));
    EXPECT_EQ(FilesBelow("Sync"), (Lines{Name("a"), "Sync/MAIN~b~x.zip"}));
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
        SetReceived("20261122 23:58:00");
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

TEST_F(SyncResetMainTest, RuleRunsWithoutAnIdentityAndAgainAfterAFailure) {
    SetState(6);
    SetReceived("20261122 19:00:00");
    Drop("a", 9);
    const auto drainWithoutScalers = [&](int count) {
        gate.Refuse("Database.ExecuteScaler", count);
        const Lines lines = Run(ProcessPendingSyncResets);
        EXPECT_EQ(lines.at(1),
                  "Error: Unable to process pending sync reset requests becuase the Unique ID of the main "
                  "company could not be read.");
        return Lines(lines.begin() + 2, lines.end() - 1);
    };
    RefuseUpdates("ON RoamingWorkstations");
    EXPECT_EQ(
        drainWithoutScalers(1),
        (Lines{quiet,
               "Error: There was a problem updating the RoamingWorkstations table when setting the system state "
               "to Reset Requested. More information to follow.",
               "in use"}));
    AllowUpdates();
    EXPECT_EQ(drainWithoutScalers(2), Lines{}) << "a count that cannot be read";
    EXPECT_EQ(Rows(), "6,5,6,3,20261122 19:00:00");
    EXPECT_EQ(drainWithoutScalers(1), Lines{quiet});
    EXPECT_EQ(Rows(), "5,5,6,3,20261122 19:00:00");
    EXPECT_EQ(FilesBelow("Sync").size(), 1U);
    EXPECT_EQ(Run(ProcessPendingSyncResets), Lines{});
}

} // namespace
} // namespace qndr::testing
