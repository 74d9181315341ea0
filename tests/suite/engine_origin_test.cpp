#include "suite/engine_fixture.h"

#include <gtest/gtest.h>

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
    int type = 2;              ///< of the company that imports
    std::string local;         ///< what happened here before
    std::int64_t known = 0;    ///< the audit rows up to here were known to the sender; all on main are sent
    std::string origin;        ///< the attributes of the arriving record; none in a full export
    std::string arriving;      ///< its name; empty for a deletion
    std::string expected;      ///< the name that the row has at the end; "gone" for no row
    std::string conflict;      ///< "loser>winner values" of the one conflict
    std::int64_t onItsWay = 0; ///< on a workstation: more audit rows that are sent
};

void PrintTo(const OriginCase& aCase, std::ostream* out) {
    *out << aCase.name;
}

std::string Of(const std::string& origin, int id = 5) {
    return " Origin=\"" + origin + "\" OriginID=\"" + std::to_string(id) + "\"";
}

const std::string Again = EditRow + "UPDATE PhoneLabels SET Name = 'new';";
const std::string MadeAgain = DeleteRow + "INSERT INTO PhoneLabels (UniqueID, Name) VALUES ('U1', 'new');";
const std::string TakenAway = EditRow + "INSERT INTO ImportMark (Audited) VALUES (0); DELETE FROM PhoneLabels; "
                                        "DELETE FROM ImportMark;";
const std::string Own = Of(LaptopID, 1);
const std::string OwnInOtherCase = Of("bbbbbbbb-0000-4000-8000-000000000002", 1);
const std::string EditOfTheSender = EditRow + CameFrom("bbbbbbbb-0000-4000-8000-000000000002");
const std::string Mine = ">" + LaptopID + R"( {"UniqueID":"U1","Name":"mine","SortOrder":"1"})";
const std::string Theirs = ">" + LaptopID + R"( {"UniqueID":"U1","Name":"theirs","SortOrder":"1"})";
const std::string Deleted = ">" + LaptopID + " deleted";
const std::string TheirsAlone = ">" + LaptopID + R"( {"UniqueID":"U1","Name":"theirs","SortOrder":null})";

const OriginCase Cases[] = {
    // A workstation
    {"UntouchedRow", 2, "", 0, Of(MainID), "theirs", "theirs", ""},
    {"FullExport", 2, "", 0, "", "theirs", "theirs", ""},
    {"SentChange", 2, EditRow, 1, Of(MainID), "theirs", "theirs", ""},
    {"ChangeOnItsWay", 2, EditRow, 0, Of(MainID), "theirs", "mine", "", 1},
    {"DeletionOnItsWay", 2, DeleteRow, 0, Of(OtherLaptopID), "theirs", "gone", "", 1},
    {"UnsentChangeBehindOneOnItsWay", 2, Again, 0, Of(MainID), "theirs", "new", MainID + Theirs, 1},
    {"UnsentChange", 2, EditRow, 0, Of(MainID), "theirs", "mine", MainID + Theirs},
    {"UnsentChangeAgainstOtherLaptop", 2, EditRow, 0, Of(OtherLaptopID), "theirs", "mine", OtherLaptopID + Theirs},
    {"UnsentChangeAgainstFullExport", 2, EditRow, 0, "", "theirs", "mine", MainID + Theirs},
    {"UnsentChangeAlike", 2, EditRow, 0, Of(MainID), "mine", "mine", ""},
    {"UnsentChangeAgainstDeletion", 2, EditRow, 0, Of(MainID), "", "mine", MainID + Deleted},
    {"UnsentChangeOfARowThatAnImportTookAway", 2, TakenAway, 0, Of(MainID), "theirs", "theirs", ""},
    {"UnsentDeletion", 2, DeleteRow, 0, Of(MainID), "theirs", "gone", MainID + TheirsAlone},
    {"UnsentDeletionOnBothSides", 2, DeleteRow, 0, Of(MainID), "", "gone", ""},
    {"OwnVersionComesBack", 2, EditRow, 1, Own, "theirs", "theirs", ""},
    {"OwnVersionComesBackAfterANewerOne", 2, EditRow + Again, 1, Own, "mine", "new", ""},
    {"OwnDeletionComesBackAfterTheRowWasMadeAgain", 2, MadeAgain, 1, OwnInOtherCase, "", "new", ""},
    // Main, from the laptop
    {"MainUntouchedRow", 1, "", 0, Of(LaptopID), "theirs", "theirs", ""},
    {"MainChangeThatTheLaptopKnew", 1, EditRow, 1, Of(LaptopID), "theirs", "theirs", ""},
    {"MainChangeUnknownToTheLaptop", 1, EditRow, 0, Of(LaptopID), "theirs", "theirs", MainID + Mine},
    {"MainChangeAlike", 1, EditRow, 0, Of(LaptopID), "mine", "mine", ""},
    {"MainHoldsAnotherLaptopsVersion", 1, EditRow + CameFrom(OtherLaptopID), 0, Of(LaptopID), "theirs", "theirs",
     OtherLaptopID + Mine},
    {"MainHoldsTheSendersVersion", 1, EditOfTheSender, 0, Of(LaptopID), "theirs", "theirs", ""},
    {"MainDeletionUnknownToTheLaptop", 1, DeleteRow, 0, Of(LaptopID), "theirs", "theirs", MainID + Deleted},
    {"DeletionAgainstMainChange", 1, EditRow, 0, Of(LaptopID), "", "gone", MainID + Mine},
    {"DeletionOnBothSidesOfMain", 1, DeleteRow, 0, Of(LaptopID), "", "gone", ""},
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
    const std::string file = folder.Path("data.xml");
    const bool deletion = given.arriving.empty();
    WriteFile(file,
              Exchange("<Table Name=\"PhoneLabels\"" + std::string(deletion ? " Deleted=\"1\"" : "") + "><Record" +
                           given.origin + "><UniqueID>U1</UniqueID>" +
                           (deletion ? "" : "<Name>" + given.arriving + "</Name>") + "</Record></Table>",
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

TEST(EngineSeenTest, AFileThatDoesNotTellItLeavesANewerVersionOfThisCompany) {
    const TestFolder folder;
    EngineCompany laptop(folder, LaptopID, 2);
    laptop.Run(
        "INSERT INTO PhoneLabels (UniqueID, Name) VALUES ('U1', 'old'); UPDATE PhoneLabels SET Name = 'new'; "
        "UPDATE Company SET LastAuditID = 2, NextSequenceToMain = 2; UPDATE AuditLog SET TableName = "
        "'phonelabels'");
    const std::string file = folder.Path("data.xml");
    for (const int version : {1, 2}) {
        WriteFile(file, Exchange("<Table Name=\"PhoneLabels\"><Record" +
                                 Of("bbbbbbbb-0000-4000-8000-000000000002", version) +
                                 "><UniqueID>U1</UniqueID><Name>came back</Name></Record></Table>"));
        EXPECT_TRUE(laptop.engine.ImportFile(file));
        EXPECT_EQ(laptop.Value("SELECT Name FROM PhoneLabels"), version == 1 ? "new" : "came back");
    }
}

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
    void Receive(const std::string& tables, int accepted, const std::string& sender = LaptopID,
                 const std::string& refused = "") {
        const std::string file = folder.Path("data.xml");
        WriteFile(file, Exchange(tables, sender, MainID + ":" + std::to_string(accepted), refused));
        ASSERT_TRUE(main.engine.ImportFile(file));
    }
    void Change(const std::string& to) {
        main.Run("INSERT INTO PhoneLabels (UniqueID, Name) VALUES ('L', '" + to +
                 "') ON CONFLICT (UniqueID) DO UPDATE SET Name = excluded.Name;"
                 "INSERT INTO Orders (UniqueID, Notes) VALUES ('O', '" +
                 to + "') ON CONFLICT (UniqueID) DO UPDATE SET Notes = excluded.Notes");
    }
    /// A laptop's version of the same two rows. Gives the tables in which main's was kept because of it.
    std::string Arrives(const std::string& value, int accepted, const std::string& sender = LaptopID,
                        const std::string& refused = "") {
        main.Run("DELETE FROM ImportConflicts");
        const std::string origin = "><Record Origin=\"" + sender + "\" OriginID=\"5\"><UniqueID>";
        Receive("<Table Name=\"PhoneLabels\"" + origin + "L</UniqueID><Name>" + value +
                    "</Name></Record></Table><Table Name=\"Orders\"" + origin + "O</UniqueID><Notes>" + value +
                    "</Notes></Record></Table>",
                accepted, sender, refused);
        return main.Value("SELECT group_concat(TableName) FROM ImportConflicts");
    }
    std::int64_t Newest() { return main.Number("SELECT MAX(ID) FROM AuditLog"); }
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
    Change("seen");
    Set("LastAuditID = 2, NextSequenceToRoaming = 1");
    Change("skipped");
    Reset(4);
    Reset(4);
    EXPECT_EQ(Arrives("edited", 1), "Orders");
    Change("sent");
    Set("NextSequenceToRoaming = 2, LastAuditID = (SELECT MAX(ID) FROM AuditLog)");
    EXPECT_EQ(Arrives("edited with sight of it", 2), "");

    Change("skipped again");
    Reset(Newest());
    main.Run(
        "UPDATE RoamingWorkstations SET LastAuditID = (SELECT MAX(ID) FROM AuditLog), NextSequenceToRoaming = 1 "
        "WHERE UniqueID = '" +
        OtherLaptopID + "'");
    EXPECT_EQ(Arrives("edited by the other", 1, OtherLaptopID), "") << "it has all of it";
}

TEST_F(EngineSkippedTest, WhatTheLaptopCouldNotTakeInIsUnknownToItAlsoBehindTheResetThatMendsIt) {
    Set("LastAuditID = 0, NextSequenceToRoaming = 1");
    Change("refused");
    Set("LastAuditID = 2, NextSequenceToRoaming = 2");
    Receive("", 2, OtherLaptopID, MainID + ":1");
    EXPECT_EQ(
        Arrives("edited", 2, LaptopID, OtherLaptopID + ":0 x " + MainID + ":-2 " + MainID + ":2 " + MainID + ":y"),
        "")
        << "it speaks of others, or of nothing that was sent";
    Change("refused");
    Set("LastAuditID = 6, NextSequenceToRoaming = 3");
    EXPECT_EQ(Arrives("edited", 3, LaptopID, "x " + MainID + ":2"), "PhoneLabels,Orders");
    EXPECT_EQ(main.Value("SELECT group_concat(EventText || EventNumber) FROM CompanyEvents"),
              "The file 2 for " + LaptopID + " could not be imported there.3");
    Change("taken");
    Set("LastAuditID = 10, NextSequenceToRoaming = 4");
    EXPECT_EQ(Arrives("edited", 4, LaptopID, MainID + ":2"), "");
    Reset(10);
    EXPECT_EQ(Ranges(), "B10-10 B2-6");
    EXPECT_EQ(main.Number("SELECT COUNT(*) FROM NotTakenFiles"), 0);
    Change("in the full data");
    Set("SyncState = 1");
    Set("SyncState = 3, LastAuditID = 14, NextSequenceToRoaming = 0");
    EXPECT_EQ(Arrives("edited", 0, LaptopID, MainID + ":-1"), "PhoneLabels,Orders")
        << "the full data is not there";
}

} // namespace
} // namespace qndr::suite
