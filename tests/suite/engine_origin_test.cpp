#include "suite/engine_fixture.h"

#include <gtest/gtest.h>
#include <rapidcheck.h>

#include <algorithm>
#include <array>
#include <deque>
#include <set>

namespace qndr::suite {
namespace {

// Every case is about one row of PhoneLabels, 'U1', which is there as 'base' without a trace in the audit log.
const std::string EditRow = "UPDATE PhoneLabels SET Name = 'mine' WHERE UniqueID = 'U1';";
const std::string DeleteRow = "DELETE FROM PhoneLabels WHERE UniqueID = 'U1';";
/// Turns the newest audit row into an import of this company's version.
std::string CameFrom(const std::string& origin) {
    return "UPDATE AuditLog SET Origin = '" + origin +
           "', OriginID = 3 WHERE ID = (SELECT MAX(ID) FROM AuditLog);";
}

struct OriginCase {
    std::string name;
    int type = 2;           ///< of the company that imports
    std::string local;      ///< what happened here before
    std::int64_t known = 0; ///< the audit rows up to here were known to the sender; all on main are sent
    std::string origin;     ///< of the arriving record; empty for a full export
    std::int64_t originID = 0;
    bool deletion = false;
    std::string arriving = "theirs";
    std::string expected;      ///< the name that the row has at the end; "gone" for no row
    std::string conflict;      ///< "loser>winner values" of the one conflict
    std::int64_t onItsWay = 0; ///< on a workstation: more audit rows that are sent
};

void PrintTo(const OriginCase& aCase, std::ostream* out) {
    *out << aCase.name;
}

const std::string Mine = R"({"UniqueID":"U1","Name":"mine","SortOrder":"1"})";
const std::string Theirs = R"({"UniqueID":"U1","Name":"theirs","SortOrder":"1"})";

const std::array Cases = {
    // A workstation
    OriginCase{"UntouchedRow", 2, "", 0, MainID, 5, false, "theirs", "theirs", ""},
    OriginCase{"FullExport", 2, "", 0, "", 0, false, "theirs", "theirs", ""},
    OriginCase{"SentChange", 2, EditRow, 1, MainID, 5, false, "theirs", "theirs", ""},
    OriginCase{"ChangeOnItsWay", 2, EditRow, 0, MainID, 5, false, "theirs", "mine", "", 1},
    OriginCase{"DeletionOnItsWay", 2, DeleteRow, 0, OtherLaptopID, 5, false, "theirs", "gone", "", 1},
    OriginCase{"UnsentChangeBehindOneOnItsWay", 2, EditRow + "UPDATE PhoneLabels SET Name = 'new';", 0, MainID, 5,
               false, "theirs", "new", MainID + ">" + LaptopID + " " + Theirs, 1},
    OriginCase{"UnsentChange", 2, EditRow, 0, MainID, 5, false, "theirs", "mine",
               MainID + ">" + LaptopID + " " + Theirs},
    OriginCase{"UnsentChangeAgainstOtherLaptop", 2, EditRow, 0, OtherLaptopID, 5, false, "theirs", "mine",
               OtherLaptopID + ">" + LaptopID + " " + Theirs},
    OriginCase{"UnsentChangeAgainstFullExport", 2, EditRow, 0, "", 0, false, "theirs", "mine",
               MainID + ">" + LaptopID + " " + Theirs},
    OriginCase{"UnsentChangeAlike", 2, EditRow, 0, MainID, 5, false, "mine", "mine", ""},
    OriginCase{"UnsentChangeAgainstDeletion", 2, EditRow, 0, MainID, 5, true, "", "mine",
               MainID + ">" + LaptopID + " deleted"},
    OriginCase{"UnsentDeletion", 2, DeleteRow, 0, MainID, 5, false, "theirs", "gone",
               MainID + ">" + LaptopID + R"( {"UniqueID":"U1","Name":"theirs","SortOrder":null})"},
    OriginCase{"UnsentDeletionOnBothSides", 2, DeleteRow, 0, MainID, 5, true, "", "gone", ""},
    OriginCase{"OwnVersionComesBack", 2, EditRow, 1, LaptopID, 1, false, "theirs", "theirs", ""},
    OriginCase{"OwnVersionComesBackAfterANewerOne", 2, EditRow + EditRow + "UPDATE PhoneLabels SET Name = 'new';",
               1, LaptopID, 1, false, "mine", "new", ""},
    OriginCase{"OwnDeletionComesBackAfterTheRowWasMadeAgain", 2,
               DeleteRow + "INSERT INTO PhoneLabels (UniqueID, Name) VALUES ('U1', 'new');", 1,
               "bbbbbbbb-0000-4000-"
               "8000-000000000002",
               1, true, "", "new", ""},
    // Main, from the laptop
    OriginCase{"MainUntouchedRow", 1, "", 0, LaptopID, 5, false, "theirs", "theirs", ""},
    OriginCase{"MainChangeThatTheLaptopKnew", 1, EditRow, 1, LaptopID, 5, false, "theirs", "theirs", ""},
    OriginCase{"MainChangeUnknownToTheLaptop", 1, EditRow, 0, LaptopID, 5, false, "theirs", "theirs",
               MainID + ">" + LaptopID + " " + Mine},
    OriginCase{"MainChangeAlike", 1, EditRow, 0, LaptopID, 5, false, "mine", "mine", ""},
    OriginCase{"MainHoldsAnotherLaptopsVersion", 1, EditRow + CameFrom(OtherLaptopID), 0, LaptopID, 5, false,
               "theirs", "theirs", OtherLaptopID + ">" + LaptopID + " " + Mine},
    OriginCase{"MainHoldsTheSendersVersion", 1, EditRow + CameFrom(LaptopID), 0, LaptopID, 5, false, "theirs",
               "theirs", ""},
    OriginCase{"MainDeletionUnknownToTheLaptop", 1, DeleteRow, 0, LaptopID, 5, false, "theirs", "theirs",
               MainID + ">" + LaptopID + " deleted"},
    OriginCase{"DeletionAgainstMainChange", 1, EditRow, 0, LaptopID, 5, true, "", "gone",
               MainID + ">" + LaptopID + " " + Mine},
    OriginCase{"DeletionOnBothSidesOfMain", 1, DeleteRow, 0, LaptopID, 5, true, "", "gone", ""},
};

class EngineOriginTest : public testing::TestWithParam<OriginCase> {};

TEST_P(EngineOriginTest, TheRightVersionStaysAndTheLoserIsKept) {
    const OriginCase& given = GetParam();
    const bool atMain = given.type == 1;
    const TestFolder folder;
    EngineCompany company(folder, atMain ? MainID : LaptopID, given.type);
    company.Run("INSERT INTO ImportMark (Audited) VALUES (0); INSERT INTO PhoneLabels (UniqueID, Name, SortOrder) "
                "VALUES ('U1', 'base', 1); DELETE FROM ImportMark;" +
                given.local);
    const std::string known = std::to_string(given.known);
    company.Run(atMain ? "INSERT INTO RoamingWorkstations (UniqueID) VALUES ('" + LaptopID +
                             "'); UPDATE RoamingWorkstations SET NextSequenceToRoaming = 1, LastAuditID = " +
                             known + "; UPDATE RoamingWorkstations SET NextSequenceToRoaming = 2, LastAuditID = 99"
                       : "UPDATE Company SET NextSequenceToMain = 1, LastAuditID = " + known +
                             "; UPDATE Company SET NextSequenceToMain = 2, LastAuditID = LastAuditID + " +
                             std::to_string(given.onItsWay));
    const std::string origin = given.origin.empty() ? ""
                                                    : " Origin=\"" + given.origin + "\" OriginID=\"" +
                                                          std::to_string(given.originID) + "\"";
    const std::string file = folder.Path("data.xml");
    WriteFile(file,
              Exchange("<Table Name=\"PhoneLabels\"" + std::string(given.deletion ? " Deleted=\"1\"" : "") +
                           "><Record" + origin + "><UniqueID>U1</UniqueID>" +
                           (given.deletion ? "" : "<Name>" + given.arriving + "</Name>") + "</Record></Table>",
                       atMain ? LaptopID : MainID, OtherLaptopID + ":2 " + (atMain ? MainID : LaptopID) + ":1"));
    const std::int64_t audited = company.Number("SELECT MAX(ID) FROM AuditLog");
    const std::string before = company.Rows("PhoneLabels");
    for (int i = 0; i < 2; ++i) {
        ASSERT_TRUE(company.engine.ImportFile(file));
        EXPECT_EQ(company.Value("SELECT ifnull((SELECT Name FROM PhoneLabels), 'gone')"), given.expected);
        EXPECT_EQ(company.Value("SELECT group_concat(LosingOrigin || '>' || WinningOrigin || ' ' || "
                                "CASE Deleted WHEN 1 THEN 'deleted' ELSE LosingValues END, char(10)) "
                                "FROM ImportConflicts"),
                  given.conflict);
    }
    const bool changed = company.Rows("PhoneLabels") != before;
    EXPECT_EQ(company.Value("SELECT group_concat(Origin || ' ' || OriginID) FROM AuditLog WHERE ID > " +
                            std::to_string(audited)),
              atMain && changed ? LaptopID + " 5" : "");
}

INSTANTIATE_TEST_SUITE_P(Engine, EngineOriginTest, testing::ValuesIn(Cases),
                         [](const auto& test) { return test.param.name; });

TEST(EngineSeenTest, AFileTellsWhatItsSenderHadAcceptedAndTheReceiverForgetsTheRest) {
    const TestFolder folder;
    EngineCompany laptop(folder, LaptopID, 2);
    EngineCompany main(folder, MainID, 1);
    const std::string file = folder.Path("data.xml");
    main.Run("INSERT INTO RoamingWorkstations (UniqueID, NextSequenceFromRoaming) VALUES ('" + LaptopID +
             "', 0), ('" + OtherLaptopID + "', 3)");
    ASSERT_TRUE(main.engine.DoExport(file));
    EXPECT_NE(ReadFile(file).find(" Seen=\"" + LaptopID + ":0 " + OtherLaptopID + ":3\""), std::string::npos);

    laptop.Run("UPDATE Company SET MainUniqueID = lower('" + MainID + "'), NextSequenceFromMain = 3");
    ASSERT_TRUE(laptop.engine.DoExport(file));
    main.Run("UPDATE RoamingWorkstations SET NextSequenceToRoaming = 2, LastAuditID = 20 WHERE ID = 1;"
             "UPDATE RoamingWorkstations SET NextSequenceToRoaming = 3, LastAuditID = 30 WHERE ID = 1;"
             "UPDATE RoamingWorkstations SET NextSequenceToRoaming = 4, LastAuditID = 40 WHERE ID = 1;");
    const auto ranges = [&] {
        return main.Value("SELECT group_concat(NextSequence || '>' || LastAuditID, ' ') FROM (SELECT * FROM "
                          "SentRanges WHERE Receiver = '" +
                          LaptopID + "' ORDER BY NextSequence)");
    };
    for (int i = 0; i < 2; ++i) {
        ASSERT_TRUE(main.engine.ImportFile(file));
        EXPECT_EQ(ranges(), "3>30 4>40");
    }
    main.Run("UPDATE RoamingWorkstations SET NextSequenceToRoaming = 0");
    EXPECT_EQ(ranges(), "0>40") << "a reset makes the old numbers void";
    main.Run("UPDATE RoamingWorkstations SET LastAuditID = 50, NextSequenceToRoaming = 1");
    EXPECT_EQ(ranges(), "0>40 1>50");
}

/// Main as it stands towards one of its laptops, whose numbers the agent would move.
class EngineSkippedTest : public testing::Test {
  protected:
    EngineSkippedTest() {
        main.Run("INSERT INTO RoamingWorkstations (UniqueID, SyncState) VALUES ('" + LaptopID + "', 4), ('" +
                 OtherLaptopID + "', 4)");
    }

    void Set(const std::string& values) {
        main.Run("UPDATE RoamingWorkstations SET " + values + " WHERE UniqueID = '" + LaptopID + "'");
    }
    void Reset(std::int64_t lastAuditID) {
        Set("SyncState = 6, NextSequenceToRoaming = 0, NextSequenceFromRoaming = 0");
        Set("SyncState = 5");
        Set("SyncState = 4, NextSequenceToRoaming = 1, LastAuditID = " + std::to_string(lastAuditID));
    }
    /// A file of the laptop, which had accepted so many of main's.
    void Receive(const std::string& tables, int accepted) {
        const std::string file = folder.Path("data.xml");
        WriteFile(file, Exchange(tables, LaptopID, MainID + ":" + std::to_string(accepted)));
        ASSERT_TRUE(main.engine.ImportFile(file));
    }
    std::string Ranges() {
        return main.Value("SELECT group_concat(substr(Receiver, 1, 1) || FromID || '-' || ifnull(ToID, ''), ' ') "
                          "FROM (SELECT * FROM SkippedRanges ORDER BY ID)");
    }

    const TestFolder folder;
    EngineCompany main{folder, MainID, 1};
};

TEST_F(EngineSkippedTest, ARangeBeginsBehindWhatTheLaptopHasAndEndsWithTheFullData) {
    Set("SyncState = 1");
    EXPECT_EQ(Ranges(), "B0-");
    Set("SyncState = 3, LastAuditID = 10");
    EXPECT_EQ(Ranges(), "B0-10");
    Set("SyncState = 4");
    Set("LastAuditID = 20, NextSequenceToRoaming = 1");
    Set("LastAuditID = 30, NextSequenceToRoaming = 2");
    Receive("", 1);
    Set("SyncState = 6, NextSequenceToRoaming = 0");
    EXPECT_EQ(Ranges(), "B0-10 B20-") << "the second file may be thrown away unread";
    Set("SyncState = 6");
    Set("SyncState = 5");
    EXPECT_EQ(Ranges(), "B0-10 B20-") << "asked for again";
    Set("SyncState = 4, LastAuditID = 40, NextSequenceToRoaming = 1");
    EXPECT_EQ(Ranges(), "B0-10 B20-40");
}

TEST_F(EngineSkippedTest, OnlyWhatFullDataLeavesOutIsUnknownToTheLaptopBehindIt) {
    const auto change = [&](const std::string& to) {
        main.Run("INSERT INTO PhoneLabels (UniqueID, Name) VALUES ('L', '" + to +
                 "') ON CONFLICT (UniqueID) DO UPDATE SET Name = excluded.Name;"
                 "INSERT INTO Orders (UniqueID, Notes) VALUES ('O', '" +
                 to + "') ON CONFLICT (UniqueID) DO UPDATE SET Notes = excluded.Notes");
    };
    const auto arrives = [&](const std::string& value, int accepted) {
        const std::string origin = "><Record Origin=\"" + LaptopID + "\" OriginID=\"5\"><UniqueID>";
        Receive("<Table Name=\"PhoneLabels\"" + origin + "L</UniqueID><Name>" + value +
                    "</Name></Record></Table><Table Name=\"Orders\"" + origin + "O</UniqueID><Notes>" + value +
                    "</Notes></Record></Table>",
                accepted);
    };
    const auto conflicts = [&] { return main.Value("SELECT group_concat(TableName) FROM ImportConflicts"); };
    change("seen");
    Set("LastAuditID = 2, NextSequenceToRoaming = 1");
    change("skipped");
    Reset(4);
    Reset(4);
    arrives("edited", 1);
    EXPECT_EQ(conflicts(), "Orders");

    main.Run("DELETE FROM ImportConflicts");
    change("sent");
    Set("NextSequenceToRoaming = 2, LastAuditID = (SELECT MAX(ID) FROM AuditLog)");
    arrives("edited with sight of it", 2);
    EXPECT_EQ(conflicts(), "");
}

/// Main and two laptops that exchange audited changes of two rows through queues of files, as late as they like.
/// Every edit writes a name that no other edit writes.
class Exchanging {
  public:
    enum { ToMain, ToLaptop };
    enum class Counter { Moves, Fails };

    explicit Exchanging(const TestFolder& folder)
        : folder_(folder), main(folder, MainID, 1), laptops{{{folder, LaptopID, 2}, {folder, OtherLaptopID, 2}}} {
        for (const std::string& id : {LaptopID, OtherLaptopID}) {
            main.Run("INSERT INTO RoamingWorkstations (UniqueID) VALUES ('" + id + "')");
        }
        for (EngineCompany& laptop : laptops) {
            laptop.Run("UPDATE Company SET MainUniqueID = '" + MainID + "'");
        }
    }

    /// An edit by somebody who sees the row: what stood there before is no longer missed. Gives the new name.
    std::string Edit(EngineCompany& editor, const std::string& row) {
        Delete(editor, row, "");
        const std::string name = "edit" + std::to_string(++edits_);
        editor.Run("INSERT INTO PhoneLabels (UniqueID, Name) VALUES ('" + row + "', '" + name +
                   "') ON CONFLICT (UniqueID) DO UPDATE SET Name = excluded.Name");
        written_.insert(name);
        return name;
    }
    void Delete(EngineCompany& editor, const std::string& row) {
        Delete(editor, row, "DELETE FROM PhoneLabels WHERE UniqueID = '" + row + "'");
    }

    /// `meanwhile` runs between the moment that the file's range is settled and the moment that its rows are read.
    template <class Meanwhile> void Send(std::size_t laptop, int direction, Meanwhile meanwhile) {
        const bool up = direction == ToMain;
        EngineCompany& sender = up ? laptops[laptop] : main;
        const std::string table = up ? "Company" : "RoamingWorkstations";
        const std::string row = up ? "" : " WHERE ID = " + std::to_string(laptop + 1);
        const std::int64_t newest = sender.Number("SELECT MAX(ID) FROM AuditLog");
        const std::int64_t above = sender.Number("SELECT LastAuditID FROM " + table + row);
        if (newest <= above) {
            return;
        }
        meanwhile();
        const std::string file = folder_.Path("sync" + std::to_string(++files_) + ".xml");
        RC_ASSERT(sender.ExportAudited(above, file, newest));
        const std::string counter = up ? "NextSequenceToMain" : "NextSequenceToRoaming";
        sender.Run("UPDATE " + table + " SET LastAuditID = " + std::to_string(newest) + ", " + counter + " = " +
                   counter + " + 1" + row);
        queues_[laptop][static_cast<std::size_t>(direction)].push_back(file);
    }
    void Send(std::size_t laptop, int direction) {
        Send(laptop, direction, [] {});
    }

    /// A file whose counter could not be moved is taken a second time.
    bool Receive(std::size_t laptop, int direction, Counter counter = Counter::Moves) {
        std::deque<std::string>& queue = queues_[laptop][static_cast<std::size_t>(direction)];
        if (queue.empty()) {
            return false;
        }
        const bool up = direction == ToMain;
        EngineCompany& receiver = up ? main : laptops[laptop];
        RC_ASSERT(receiver.engine.ImportFile(queue.front()));
        if (counter == Counter::Moves) {
            receiver.Run(
                up ? "UPDATE RoamingWorkstations SET NextSequenceFromRoaming = NextSequenceFromRoaming + 1 "
                     "WHERE ID = " +
                         std::to_string(laptop + 1)
                   : "UPDATE Company SET NextSequenceFromMain = NextSequenceFromMain + 1");
            queue.pop_front();
        }
        return true;
    }

    /// Runs until nothing is on its way; false when that never comes.
    bool ComeToRest() {
        for (int round = 0; round < 20; ++round) {
            bool busy = false;
            for (std::size_t laptop = 0; laptop < laptops.size(); ++laptop) {
                for (const int direction : {ToMain, ToLaptop}) {
                    Send(laptop, direction);
                    while (Receive(laptop, direction)) {
                        busy = true;
                    }
                }
            }
            if (!busy) {
                return true;
            }
        }
        return false;
    }

    bool IsAlike() {
        return std::all_of(laptops.begin(), laptops.end(), [&](EngineCompany& laptop) {
            return laptop.Rows("PhoneLabels") == main.Rows("PhoneLabels");
        });
    }
    std::int64_t Conflicts() {
        std::int64_t count = 0;
        for (EngineCompany* company : Companies()) {
            count += company->Number("SELECT COUNT(*) FROM ImportConflicts");
        }
        return count;
    }
    /// The names that stand in no row and in no conflict, and that nobody overwrote who saw them.
    std::string Lost() {
        std::string lost;
        for (const std::string& name : written_) {
            const auto holds = [&](EngineCompany* company) {
                return company->Number("SELECT EXISTS (SELECT 1 FROM PhoneLabels WHERE Name = '" + name +
                                       "') OR EXISTS (SELECT 1 FROM ImportConflicts WHERE LosingValues LIKE "
                                       "'%\"Name\":\"" +
                                       name + "\"%')") != 0;
            };
            const auto companies = Companies();
            if (std::none_of(companies.begin(), companies.end(), holds)) {
                lost += name + " ";
            }
        }
        return lost;
    }

  private:
    std::array<EngineCompany*, 3> Companies() { return {&main, &laptops[0], &laptops[1]}; }
    void Delete(EngineCompany& editor, const std::string& row, const std::string& statement) {
        written_.erase(editor.Value("SELECT Name FROM PhoneLabels WHERE UniqueID = '" + row + "'"));
        editor.Run(statement);
    }

    const TestFolder& folder_;
    int files_ = 0;
    int edits_ = 0;
    std::set<std::string> written_;
    std::array<std::array<std::deque<std::string>, 2>, 2> queues_;

  public:
    EngineCompany main;
    std::array<EngineCompany, 2> laptops;
};

TEST(EngineConvergenceTest, AVersionOfMainsThatWasStillOnItsWayIsKept) {
    const TestFolder folder;
    Exchanging sync(folder);
    sync.Edit(sync.main, "A");
    ASSERT_TRUE(sync.ComeToRest());
    const std::string mains = sync.Edit(sync.main, "A");
    sync.Send(0, Exchanging::ToLaptop);
    sync.Edit(sync.laptops[0], "A");
    sync.Send(0, Exchanging::ToMain);
    sync.Receive(0, Exchanging::ToMain);
    EXPECT_EQ(sync.main.Value("SELECT LosingOrigin || WinningOrigin || LosingValues FROM ImportConflicts"),
              MainID + LaptopID + R"({"UniqueID":"A","Name":")" + mains + R"(","SortOrder":null})");
    ASSERT_TRUE(sync.ComeToRest());
    EXPECT_TRUE(sync.IsAlike());
    EXPECT_EQ(sync.Conflicts(), 1);
}

TEST(EngineConvergenceTest, AfterAnyExchangeAllCompaniesHoldTheSameRowsAndNoVersionIsLost) {
    const TestFolder folder;
    // Each run begins where the last one came to rest.
    Exchanging sync(folder);
    EXPECT_TRUE(rc::check("companies converge", [&] {
        const int steps = *rc::gen::inRange(0, 40);
        for (int step = 0; step < steps; ++step) {
            const auto laptop = *rc::gen::inRange<std::size_t>(0, 2);
            const int direction = *rc::gen::element(Exchanging::ToMain + 0, Exchanging::ToLaptop + 0);
            const int action = *rc::gen::inRange(0, 7);
            const std::string row = *rc::gen::element<std::string>("A", "B");
            EngineCompany& editor = action < 4 ? sync.laptops[laptop] : sync.main;
            const bool rarely = *rc::gen::inRange(0, 4) == 0;
            if (action == 0) {
                sync.Send(laptop, direction, [&] {
                    if (rarely) {
                        sync.Edit(direction == Exchanging::ToMain ? sync.laptops[laptop] : sync.main, row);
                    }
                });
            } else if (action < 3) {
                sync.Receive(laptop, direction, rarely ? Exchanging::Counter::Fails : Exchanging::Counter::Moves);
            } else if (rarely) {
                sync.Delete(editor, row);
            } else {
                sync.Edit(editor, row);
            }
        }
        RC_ASSERT(sync.ComeToRest());
        RC_ASSERT(sync.IsAlike());
        RC_ASSERT(sync.Lost() == "");
    }));
}

TEST(EngineConvergenceTest, ChangesOneAfterTheOtherAreNoConflicts) {
    const TestFolder folder;
    Exchanging sync(folder);
    EXPECT_TRUE(rc::check("no conflicts", [&] {
        const int steps = *rc::gen::inRange(0, 6);
        for (int step = 0; step < steps; ++step) {
            const int editor = *rc::gen::inRange(0, 6);
            EngineCompany& company =
                editor % 3 == 2 ? sync.main : sync.laptops[static_cast<std::size_t>(editor % 3)];
            editor < 3 ? static_cast<void>(sync.Edit(company, "A")) : sync.Delete(company, "A");
            RC_ASSERT(sync.ComeToRest());
            RC_ASSERT(sync.IsAlike());
        }
        RC_ASSERT(sync.Conflicts() == 0);
    }));
}

} // namespace
} // namespace qndr::suite
