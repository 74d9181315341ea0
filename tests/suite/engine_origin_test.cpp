#include "suite/engine_fixture.h"

#include <gtest/gtest.h>
#include <rapidcheck.h>

#include <array>
#include <deque>

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
    std::int64_t known = 0; ///< the audit rows up to here are known at the other end
    std::string origin;     ///< of the arriving record; empty for a full export
    std::int64_t originID = 0;
    bool deletion = false;
    std::string arriving = "theirs";
    std::string expected; ///< the name that the row has at the end; "gone" for no row
    std::string conflict; ///< "loser>winner values" of the one conflict
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
    company.Run(atMain ? "INSERT INTO RoamingWorkstations (UniqueID, LastAuditID) VALUES ('" + LaptopID + "', " +
                             std::to_string(given.known) + ")"
                       : "UPDATE Company SET LastAuditID = " + std::to_string(given.known));
    const std::string origin = given.origin.empty() ? ""
                                                    : " Origin=\"" + given.origin + "\" OriginID=\"" +
                                                          std::to_string(given.originID) + "\"";
    const std::string file = folder.Path("data.xml");
    WriteFile(file,
              Exchange("<Table Name=\"PhoneLabels\"" + std::string(given.deletion ? " Deleted=\"1\"" : "") +
                           "><Record" + origin + "><UniqueID>U1</UniqueID>" +
                           (given.deletion ? "" : "<Name>" + given.arriving + "</Name>") + "</Record></Table>",
                       atMain ? LaptopID : MainID));
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

TEST(EngineConfirmationTest, MainSendsAnUnchangedRowOutAgainWhenItsSenderWaitsForIt) {
    const TestFolder folder;
    EngineCompany main(folder, MainID, 1);
    const std::string file = folder.Path("data.xml");
    const auto arrive = [&](const std::string& table, const std::string& id) {
        WriteFile(file, Exchange("<Table Name=\"PhoneLabels\"" + table + "><Record Origin=\"" + LaptopID +
                                     "\" OriginID=\"" + id + "\"><UniqueID>U1</UniqueID></Record></Table>",
                                 LaptopID));
        EXPECT_TRUE(main.engine.ImportFile(file));
        return main.Value("SELECT group_concat(AuditType || ':' || OriginID) FROM AuditLog");
    };
    EXPECT_EQ(arrive("", "3"), "1:3");
    EXPECT_EQ(arrive("", "5"), "1:3,1:5");
    EXPECT_EQ(arrive("", "5"), "1:3,1:5");
    EXPECT_EQ(arrive(" Deleted=\"1\"", "6"), "1:3,1:5,3:6");
    EXPECT_EQ(arrive(" Deleted=\"1\"", "8"), "1:3,1:5,3:6,3:8");
    EXPECT_EQ(arrive(" Deleted=\"1\"", "6"), "1:3,1:5,3:6,3:8");
}

/// Main and two laptops that exchange audited changes through queues of files, as late as they like.
class Exchanging {
  public:
    enum { ToMain, ToLaptop };

    explicit Exchanging(const TestFolder& folder)
        : folder_(folder), main(folder, MainID, 1), laptops{{{folder, LaptopID, 2}, {folder, OtherLaptopID, 2}}} {
        for (const std::string& id : {LaptopID, OtherLaptopID}) {
            main.Run("INSERT INTO RoamingWorkstations (UniqueID) VALUES ('" + id + "')");
        }
    }

    void Send(std::size_t laptop, int direction) {
        const bool up = direction == ToMain;
        EngineCompany& sender = up ? laptops[laptop] : main;
        const std::string sent = up ? "Company" : "RoamingWorkstations WHERE ID = " + std::to_string(laptop + 1);
        const std::int64_t newest = sender.Number("SELECT MAX(ID) FROM AuditLog");
        const std::int64_t above = sender.Number("SELECT LastAuditID FROM " + sent);
        if (newest <= above) {
            return;
        }
        const std::string file = folder_.Path("sync" + std::to_string(++files_) + ".xml");
        RC_ASSERT(sender.ExportAudited(above, file));
        sender.Run((up ? "UPDATE Company SET LastAuditID = " : "UPDATE RoamingWorkstations SET LastAuditID = ") +
                   std::to_string(newest) + (up ? "" : " WHERE ID = " + std::to_string(laptop + 1)));
        queues_[laptop][static_cast<std::size_t>(direction)].push_back(file);
    }

    bool Receive(std::size_t laptop, int direction) {
        std::deque<std::string>& queue = queues_[laptop][static_cast<std::size_t>(direction)];
        if (queue.empty()) {
            return false;
        }
        RC_ASSERT((direction == ToMain ? main : laptops[laptop]).engine.ImportFile(queue.front()));
        queue.pop_front();
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

  private:
    const TestFolder& folder_;
    int files_ = 0;
    std::array<std::array<std::deque<std::string>, 2>, 2> queues_;

  public:
    EngineCompany main;
    std::array<EngineCompany, 2> laptops;
};

TEST(EngineConvergenceTest, AfterAnyExchangeAllCompaniesHoldTheSameRows) {
    const TestFolder folder;
    // Each run begins where the last one came to rest.
    Exchanging sync(folder);
    EXPECT_TRUE(rc::check("companies converge", [&] {
        const int steps = *rc::gen::inRange(0, 40);
        for (int step = 0; step < steps; ++step) {
            const auto laptop = *rc::gen::inRange<std::size_t>(0, 2);
            const int direction = *rc::gen::element(Exchanging::ToMain + 0, Exchanging::ToLaptop + 0);
            const int action = *rc::gen::inRange(0, 6);
            if (action == 0) {
                sync.Send(laptop, direction);
            } else if (action == 1) {
                sync.Receive(laptop, direction);
            } else {
                EngineCompany& editor = action < 4 ? sync.laptops[laptop] : sync.main;
                const std::string row = *rc::gen::element<std::string>("A", "B");
                if (*rc::gen::inRange(0, 4) == 0) {
                    editor.Run("DELETE FROM PhoneLabels WHERE UniqueID = '" + row + "'");
                } else {
                    editor.Run("INSERT INTO PhoneLabels (UniqueID, Name) VALUES ('" + row + "', " +
                               std::to_string(step) +
                               ") ON CONFLICT (UniqueID) DO UPDATE SET Name = excluded.Name");
                }
            }
        }
        RC_ASSERT(sync.ComeToRest());
        for (EngineCompany& laptop : sync.laptops) {
            RC_ASSERT(laptop.Rows("PhoneLabels") == sync.main.Rows("PhoneLabels"));
        }
    }));
}

} // namespace
} // namespace qndr::suite
