#include "suite/admin/conflicts.h"
#include "suite/engine_fixture.h"

#include <gtest/gtest.h>

namespace qndr::suite {
namespace {

/// A laptop in normal running, and what the agent does to it in a reset.
class EngineGivenUpTest : public testing::Test {
  protected:
    EngineGivenUpTest() {
        laptop_.Run("UPDATE Company SET SyncState = 4, MainUniqueID = '" + MainID + "'");
        Unaudited("INSERT INTO PhoneLabels (UniqueID, Name) VALUES ('P1', 'base'), ('P2', 'base'), ('P3', 'base');"
                  "INSERT INTO Terms (UniqueID, Name) VALUES ('T1', 'base')");
    }

    void Unaudited(const std::string& script) {
        laptop_.Run("INSERT INTO ImportMark (Audited) VALUES (0);" + script + ";DELETE FROM ImportMark");
    }
    /// As SendChangesToMain counts a file that went out.
    void Sent() {
        laptop_.Run("UPDATE Company SET LastAuditID = (SELECT MAX(ID) FROM AuditLog), NextSequenceToMain = "
                    "NextSequenceToMain + 1");
    }
    void RequestGoesOut() {
        laptop_.Run("UPDATE Company SET SyncState = 5; UPDATE Company SET SyncState = 6, LastAuditID = "
                    "ifnull((SELECT MAX(ID) FROM AuditLog), 0), NextSequenceToMain = 0, NextSequenceFromMain = 0");
    }
    /// Some of the tables that a reset clears. The log's clearing may fail.
    bool Clear(bool alsoLog = true) {
        services::SqlConnection* sql = laptop_.library.QNDRSQL();
        return sql != nullptr && sql->ExecuteNonQuery("DELETE FROM PhoneLabels") >= 0 &&
               (!alsoLog || sql->ExecuteNonQuery("DELETE FROM AuditLog") >= 0);
    }
    bool Import(const std::string& tables, const std::string& seen = "") {
        WriteFile(folder_.Path("data.xml"), Exchange(tables, MainID, seen));
        return laptop_.engine.ImportFile(folder_.Path("data.xml"));
    }
    bool ImportFullData() {
        return Import("<Table Name=\"PhoneLabels\">" + Record("P1", "theirs") + Record("P2", "same") +
                      Record("P3", "base") + "</Table><Table Name=\"Terms\">" + Record("T1", "theirs") +
                      "</Table>");
    }
    static std::string Record(const std::string& uniqueID, const std::string& name) {
        return "<Record><UniqueID>" + uniqueID + "</UniqueID><Name>" + name + "</Name></Record>";
    }
    void ResetEnds() {
        laptop_.Run("UPDATE Company SET SyncState = 4, LastAuditID = ifnull((SELECT MAX(ID) FROM AuditLog), 0)");
    }
    /// Row, name or number, reason and state of what is kept.
    std::string Kept() {
        return laptop_.Value(
            "SELECT group_concat(line, ' ') FROM (SELECT RowUniqueID || ':' || "
            "ifnull(ifnull(json_extract(LosingValues, '$.Name'), json_extract(LosingValues, "
            "'$.OrderNumber')), CASE Deleted WHEN 1 THEN 'gone' ELSE '-' END) || ':' || Reason || "
            "State AS line FROM ImportConflicts ORDER BY RowUniqueID, ID)");
    }

    TestFolder folder_;
    EngineCompany laptop_{folder_, LaptopID, 2};
};

TEST_F(EngineGivenUpTest, KeepsOnceWhatMainIsNotKnownToHaveAndSettlesWhatItHas) {
    laptop_.Run("INSERT INTO Orders (UniqueID, OrderNumber) VALUES ('O1', 1)"); // confirmed below
    Sent();
    laptop_.Run("INSERT INTO Orders (UniqueID, OrderNumber) VALUES ('O2', 2)"); // sent, and nothing heard
    Sent();
    ASSERT_TRUE(Import("", LaptopID + ":1"));
    laptop_.Run("INSERT INTO Orders (UniqueID, OrderNumber) VALUES ('O3', 3); INSERT INTO OrderItems (UniqueID, "
                "OrderUniqueID) VALUES ('I3', 'O3');"
                "INSERT INTO Terms (UniqueID, Name) VALUES ('T2', 'mine'), ('T3', 'never');"
                "DELETE FROM Terms WHERE UniqueID = 'T3'; DELETE FROM PhoneLabels WHERE UniqueID = 'P3';"
                "UPDATE PhoneLabels SET Name = 'mine' WHERE UniqueID = 'P1';"
                "UPDATE PhoneLabels SET Name = 'same' WHERE UniqueID = 'P2'");
    RequestGoesOut();
    laptop_.Run("INSERT INTO Orders (UniqueID, OrderNumber) VALUES ('O4', 4)");
    // The first try breaks off before the log is cleared, the second behind it.
    ASSERT_TRUE(Clear(false));
    const std::string kept = "I3:-:10 O2:2:20 O3:3:10 O4:4:10 P1:mine:10 P2:same:10 P3:gone:10 T2:mine:10";
    EXPECT_EQ(Kept(), kept);
    laptop_.Run("INSERT INTO Orders (UniqueID, OrderNumber) VALUES ('O5', 5)");
    ASSERT_TRUE(Clear());
    laptop_.Run("UPDATE Terms SET Name = 'late' WHERE UniqueID = 'T1'");
    ASSERT_TRUE(Clear());
    laptop_.Run("UPDATE Terms SET Name = 'later' WHERE UniqueID = 'T1'");
    ASSERT_TRUE(ImportFullData());
    const std::string after =
        "I3:-:10 O2:2:20 O3:3:10 O4:4:10 O5:5:10 P1:mine:10 P2:same:12 P3:gone:10 T1:late:10 "
        "T1:later:10 T2:mine:10";
    EXPECT_EQ(Kept(), after);
    EXPECT_EQ(laptop_.Value("SELECT Name FROM Terms WHERE UniqueID = 'T1'"), "theirs");
    EXPECT_EQ(laptop_.Value("SELECT EventText FROM CompanyEvents"),
              "10 changes that were given up by a reset are kept.");
    ASSERT_TRUE(ImportFullData());
    laptop_.Run("UPDATE Terms SET Name = 'last' WHERE UniqueID = 'T1'");
    ResetEnds();
    EXPECT_EQ(Kept(), after);
    ASSERT_TRUE(
        Import("<Table Name=\"Orders\"><Record Origin=\"" + LaptopID +
               "\" OriginID=\"2\"><UniqueID>o2</UniqueID><OrderNumber>2</OrderNumber></Record></Table>"
               "<Table Name=\"PhoneLabels\" Deleted=\"1\"><Record><UniqueID>P3</UniqueID></Record></Table>"));
    EXPECT_EQ(Kept(), "I3:-:10 O2:2:22 O3:3:10 O4:4:10 O5:5:10 P1:mine:10 P2:same:12 P3:gone:12 T1:late:10 "
                      "T1:later:10 T1:last:10 T2:mine:10")
        << "main has an order and a deletion, and what was edited behind the import counted as sent";
}

TEST_F(EngineGivenUpTest, ResetOfAResetAndOneThatNobodyAskedFor) {
    laptop_.Run("INSERT INTO Orders (UniqueID, OrderNumber) VALUES ('O1', 1)");
    RequestGoesOut();
    laptop_.Run("UPDATE Orders SET OrderNumber = 2; INSERT INTO Orders (UniqueID, OrderNumber) VALUES ('O2', 1)");
    RequestGoesOut();
    laptop_.Run("DELETE FROM Orders WHERE UniqueID = 'O2'");
    ASSERT_TRUE(Clear());
    EXPECT_EQ(Kept(), "O1:2:10");
    ASSERT_TRUE(ImportFullData());
    ResetEnds();
    Unaudited("UPDATE Orders SET OrderNumber = 9");
    laptop_.Run("UPDATE Terms SET Name = 'mine'");
    ASSERT_TRUE(Clear());
    ResetEnds();
    EXPECT_EQ(Kept(), "O1:2:10 T1:mine:10");

    laptop_.Run("UPDATE Terms SET Name = 'sent'");
    Sent();
    laptop_.Run("UPDATE Company SET SyncState = 4; UPDATE Company SET NextSequenceFromMain = 5");
    ASSERT_TRUE(Import("", LaptopID + ":1"));
    RequestGoesOut();
    ASSERT_TRUE(Clear());
    EXPECT_EQ(Kept(), "O1:2:10 T1:mine:10") << "main has confirmed all";
}

TEST_F(EngineGivenUpTest, NothingIsReplacedThatCouldNotBeKept) {
    laptop_.Run("UPDATE PhoneLabels SET Name = 'mine' WHERE UniqueID = 'P1'; UPDATE Terms SET Name = 'mine'");
    RequestGoesOut();
    laptop_.Run("CREATE UNIQUE INDEX full ON ImportConflicts (State)"); // the second of two is refused
    const std::string before = laptop_.Everything();
    EXPECT_FALSE(Clear());
    EXPECT_FALSE(ImportFullData());
    EXPECT_EQ(laptop_.library.Database().ExecuteNonQuery("UPDATE Company SET SyncState = 4"), -1)
        << "the reset must not end";
    EXPECT_EQ(laptop_.Everything(), before);
    EXPECT_EQ(laptop_.trouble.Text(), "The tables could not be cleared for a reset, which waits: UNIQUE "
                                      "constraint failed: ImportConflicts.State");
    laptop_.trouble.Clear();
    ResetEnds();
    laptop_.Run("DROP INDEX full");
    ASSERT_TRUE(ImportFullData());
    EXPECT_EQ(Kept(), "P1:mine:10 T1:mine:10") << "kept behind the end of the reset, before anything replaced it";

    services::SqlConnection* sql = laptop_.library.QNDRSQL();
    ASSERT_NE(sql, nullptr);
    laptop_.Run("INSERT INTO Orders (UniqueID) VALUES ('O1');"
                "CREATE TRIGGER full BEFORE INSERT ON ImportConflicts BEGIN SELECT RAISE(ABORT, 'full'); END");
    EXPECT_EQ(sql->ExecuteNonQuery("DELETE FROM AuditLog"), -1);
    EXPECT_EQ(laptop_.Number("SELECT COUNT(*) FROM AuditLog WHERE AuditUniqueID = 'O1'"), 1);
}

TEST_F(EngineGivenUpTest, WhatAFileHeldThatMainRefusedIsNotConfirmed) {
    EngineCompany main(folder_, MainID, 1);
    main.Run("INSERT INTO RoamingWorkstations (UniqueID, Name) VALUES ('" + LaptopID + "', 'one'), ('" +
             OtherLaptopID + "', 'other')");
    const std::string file = folder_.Path("changes.xml");
    const std::string others = folder_.Path("others.xml");
    WriteFile(others, Exchange("", OtherLaptopID));
    const std::string step =
        "UPDATE RoamingWorkstations SET NextSequenceFromRoaming = NextSequenceFromRoaming + 1";
    for (const std::string row : {"P1", "P2", "P3"}) {
        laptop_.Run("UPDATE Terms SET Name = '" + row +
                    "'; UPDATE PhoneLabels SET Name = 'mine' WHERE UniqueID = '" + row + "'");
        ASSERT_TRUE(laptop_.ExportAudited(laptop_.Number("SELECT LastAuditID FROM Company"), file));
        Sent();
        if (row == "P2") {
            WriteFile(file, ReadFile(file).substr(0, 300));
        } else {
            // Its number could not be stored at first.
            ASSERT_TRUE(main.engine.ImportFile(file) && main.engine.ImportFile(others));
            main.Run(step + " WHERE ID = 2");
        }
        EXPECT_EQ(main.engine.ImportFile(file), row != "P2");
        main.Run(step + " WHERE ID = 1");
    }
    const std::int64_t newest = main.Number("SELECT MAX(ID) FROM AuditLog");
    main.Run("INSERT INTO PhoneLabels (UniqueID) VALUES ('P2'); UPDATE PhoneLabels SET Name = 'theirs'");
    ASSERT_TRUE(main.ExportAudited(newest, file));
    EXPECT_NE(ReadFile(file).find(" Refused=\"" + LaptopID + ":1\""), std::string::npos) << ReadFile(file);
    for (int i = 0; i < 2; ++i) {
        ASSERT_TRUE(laptop_.engine.ImportFile(file));
        EXPECT_EQ(laptop_.Value("SELECT group_concat(Name) FROM PhoneLabels"), "theirs,mine,theirs");
    }
    const std::string event =
        "SELECT group_concat(EventText || EventNumber) FROM CompanyEvents WHERE EventText LIKE 'The file%'";
    EXPECT_EQ(main.Value(event), "The file 1 of one could not be imported, and will not come again.3");
    EXPECT_EQ(laptop_.Value(event), "The file 1 for main could not be imported there.3");
    RequestGoesOut();
    ASSERT_TRUE(Clear());
    EXPECT_EQ(Kept(), "P2:theirs:00 P2:mine:20");
    main.Run("UPDATE RoamingWorkstations SET NextSequenceFromRoaming = 0");
    EXPECT_EQ(laptop_.Number("SELECT COUNT(*) FROM NotTakenFiles") +
                  main.Number("SELECT COUNT(*) FROM RefusedFiles"),
              0);

    // Full data that did not come in, and more files than are told.
    ResetEnds();
    for (int i = 0; i < 9; ++i) {
        laptop_.Run("UPDATE Company SET NextSequenceFromMain = NextSequenceFromMain + 1");
    }
    ASSERT_TRUE(laptop_.engine.DoExport(file));
    EXPECT_NE(ReadFile(file).find("Seen=\"" + MainID + ":7\""), std::string::npos) << ReadFile(file);
    EXPECT_NE(ReadFile(file).find(MainID + ":6\""), std::string::npos);
    EXPECT_NE(ReadFile(file).find("Refused=\"" + MainID + ":-1 "), std::string::npos);
}

TEST_F(EngineGivenUpTest, RestoredChangesReachMainEvenWhereTheRowStandsLikeThat) {
    Unaudited("INSERT INTO Orders (UniqueID, OrderNumber) VALUES ('O2', 2)");
    laptop_.Run("UPDATE PhoneLabels SET Name = 'mine' WHERE UniqueID = 'P1';"
                "INSERT INTO OrderItems (UniqueID, LineNumber) VALUES ('I1', 1); DELETE FROM Orders;"
                "INSERT INTO PurchaseOrderItems (UniqueID) VALUES ('J1'); INSERT INTO PurchaseOrders (UniqueID) "
                "VALUES ('B1');"
                "INSERT INTO Orders (UniqueID, OrderNumber) VALUES ('O1', 1), ('O3', 3)");
    RequestGoesOut();
    ASSERT_TRUE(Clear());
    ASSERT_TRUE(ImportFullData());
    ResetEnds();
    laptop_.Run("UPDATE Orders SET OrderNumber = 33 WHERE UniqueID = 'O3'");

    const GivenUpConflicts found = FindGivenUpConflicts(laptop_.Connection());
    EXPECT_EQ(found.changedSince, 1) << "the row has gone on from what was kept";
    std::string order;
    for (const std::int64_t id : found.restorable) {
        const Conflict conflict = ReadConflict(laptop_.Connection(), id);
        order += conflict.uniqueID + " ";
        const Restoration done = RestoreConflict(laptop_.Connection(), id);
        EXPECT_EQ(done, conflict.uniqueID == "P1" ? Restoration::Updated : Restoration::SentAgain);
    }
    EXPECT_EQ(order, "O1 O2 I1 B1 J1 P1 ");
    EXPECT_EQ(laptop_.Value("SELECT group_concat(AuditUniqueID || AuditType || ifnull(AuditData, ''), ' ') FROM "
                            "AuditLog WHERE ID > (SELECT LastAuditID FROM Company)"),
              "O3233 O121 O23 I121 B12 J12 P12mine");
}

} // namespace
} // namespace qndr::suite
