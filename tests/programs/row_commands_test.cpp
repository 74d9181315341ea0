#include "programs/qndr5ctl_fixture.h"
#include "suite/sql/sqlite/sqlite_connection.h"

namespace qndr::control {
namespace {

/// The commands on the rows of one main company.
class Qndr5ctlRows : public Qndr5ctl {
  protected:
    std::string AuditRows() {
        const sql::SqliteConnection database(File("Main.db"), time_, sql::Missing::Refuse);
        return database
            .Value("SELECT group_concat(TableName || AuditType || ifnull(Origin, ''), ' ') FROM AuditLog")
            .value_or("");
    }
    /// A value as the database holds it.
    std::string Stored(const std::string& expression, const std::string& table) {
        const sql::SqliteConnection database(File("Main.db"), time_, sql::Missing::Refuse);
        return database.Value("SELECT quote(" + expression + ") FROM " + table).value_or("");
    }
    std::string Added(std::vector<std::string> arguments) {
        arguments.insert(arguments.begin(), {"add", main_});
        const std::string printed = MustRun(arguments);
        return printed.substr(0, printed.find('\n'));
    }

    const std::string main_ = NewCompany("Main", "main");
};

TEST_F(Qndr5ctlRows, EditsRowsAsTheApplicationDoes) {
    const std::string terms = Added({"Terms", "Name=Net 30"});
    const std::string customer =
        Added({"customers", "LASTNAME=O'Hara; --", "CustomerNumber=7", "CreditLimit=12.50", "createdon=11/22/2026",
               "Inactive=No", "TermsUniqueID={" + std::string(terms) + "}"});
    EXPECT_EQ(
        Stored("LastName || '|' || typeof(CustomerNumber) || CreditLimit || '|' || CreatedOn || '|' || Inactive",
               "Customers"),
        "'O''Hara; --|integer12.5|20261122 00:00:00|0'");
    EXPECT_EQ(Stored("TermsUniqueID", "Customers"), "'" + terms + "'");

    MustRun({"edit", main_, "Customers", "{" + customer + "}", "Notes=a=b", "CreditLimit="});
    EXPECT_EQ(Stored("Notes", "Customers"), "'a=b'");
    EXPECT_EQ(Stored("CreditLimit", "Customers"), "NULL");
    EXPECT_NE(MustRun({"edit", main_, "Customers", customer, "Notes=a=b"}).find("already"), std::string::npos);
    MustRun({"edit", main_, "Customers", customer, "Notes=", "CreatedOn=2026-11-22 19:08:52"});
    EXPECT_EQ(Stored("Notes || CreatedOn", "Customers"), "'20261122 19:08:52'");

    const std::string shown = MustRun({"show", main_, "Customers", customer, "--json"});
    EXPECT_EQ(JsonAt(shown, "$.LastName"), "O'Hara; --");
    EXPECT_EQ(JsonAt(shown, "$.CreatedOn"), "2026-11-22T19:08:52Z");
    EXPECT_EQ(AuditRows(), "Terms1 Customers1 Customers2 Customers2");

    MustRun({"delete", main_, "Customers", customer});
    EXPECT_EQ(AuditRows(), "Terms1 Customers1 Customers2 Customers2 Customers3");
    MustFail({"show", main_, "Customers", customer}, "has no row");
}

TEST_F(Qndr5ctlRows, TakesBytesFromAFile) {
    const std::string bytes("\0\xFF\n", 3);
    Write("photo.bin", bytes);
    const std::string id = "0AAAAAAA-0000-4000-8000-00000000000f";
    EXPECT_EQ(Added({"Attachments", "uniqueid={" + id + "}", "Content=@" + File("photo.bin"), "FileName=@x"}),
              "0AAAAAAA-0000-4000-8000-00000000000F");
    EXPECT_EQ(Stored("Content", "Attachments"), "X'00FF0A'");
    EXPECT_EQ(JsonAt(MustRun({"show", main_, "Attachments", id, "--json"}), "$.Content"), "AP8K");
    EXPECT_NE(MustRun({"show", main_, "Attachments", id}).find("(3 bytes)"), std::string::npos);
    MustFail({"add", main_, "Attachments", "UniqueID=" + id}, "already");
    MustFail({"edit", main_, "Attachments", id, "Content=@" + File("absent")}, "there is no file");
    MustFail({"edit", main_, "Attachments", id, "Content=AP8K"}, "@FILE");
}

TEST_F(Qndr5ctlRows, FindsRowsByTheirValues) {
    for (const std::string name : {"One", "Two", "Three"}) {
        Added({"Terms", "Name=" + name, name == "Two" ? "DueDays=2" : "DueDays="});
    }
    const auto names = [&](std::vector<std::string> arguments) {
        arguments.insert(arguments.begin(), {"show", main_, "Terms", "--json"});
        const std::string shown = MustRun(arguments);
        return JsonAt(shown, "$[0].Name") + "," + JsonAt(shown, "$[1].Name") + "," + JsonAt(shown, "$[2].Name");
    };
    EXPECT_EQ(names({}), "One,Two,Three");
    EXPECT_EQ(names({"--limit", "1"}), "One,,");
    EXPECT_EQ(names({"--where", "name=TWO"}), "Two,,");
    EXPECT_EQ(names({"--where", "DueDays="}), "One,Three,");
    EXPECT_EQ(names({"--where", "DueDays=", "--where", "Name=three"}), "Three,,");
    EXPECT_EQ(MustRun({"show", main_, "Terms", "--where", "Name=x"}), "There are no such rows.\n");
}

TEST_F(Qndr5ctlRows, RefusesWhatDoesNotFitAndChangesNothing) {
    const std::string customer = Added({"Customers", "LastName=Hara"});
    const std::string audited = AuditRows();
    const auto refused = [&](const std::string& value, const std::string& reason) {
        MustFail({"edit", main_, "Customers", customer, "LastName=Other", value}, reason);
        MustFail({"add", main_, "Customers", "LastName=Other", value}, reason);
    };
    refused("CustomerNumber=7.5", "a whole number");
    refused("CustomerNumber=99999999999999999999", "a whole number");
    refused("CreditLimit=12,50", "a number");
    refused("CreditLimit=inf", "a number");
    refused("CreatedOn=2026-02-30", "a date");
    refused("Inactive=maybe", "yes");
    refused("TermsUniqueID=" + customer, "the table Terms has no row");
    refused("Notes=\xFF", "no UTF-8");
    refused("Wrong=1", "no column 'Wrong'");
    refused("ID=1", "no column 'ID'");
    refused("lastname=Again", "given twice");
    refused("Notes", "COLUMN=VALUE");
    refused("=1", "COLUMN=VALUE");
    MustFail({"edit", main_, "Customers", customer, "UniqueID=" + customer}, "no column 'UniqueID'");
    MustFail({"add", main_, "Customers", "UniqueID=7"}, "no GUID");
    MustFail({"add", main_, "Orders", "SyncState=1"}, "no column 'SyncState'");
    for (const std::string table : {"Company", "AuditLog", "ImportMark", "sqlite_master", "Customers; --"}) {
        MustFail({"show", main_, table}, "there is no table");
        MustFail({"add", main_, table, "Name=x"}, "there is no table");
    }
    MustFail({"edit", main_, "Customers", "' OR 1 --", "LastName=x"}, "has no row");
    MustFail({"delete", main_, "Customers", "' OR 1 --"}, "has no row");
    EXPECT_EQ(AuditRows(), audited);
    EXPECT_EQ(Run({"edit", main_, "Customers", customer}).status, 2);
    EXPECT_EQ(Run({"show", main_, "Customers", customer, "--where", "LastName=x"}).status, 2);
    EXPECT_NE(MustRun({"add", "--help"}).find("NULL"), std::string::npos);
}

TEST_F(Qndr5ctlRows, ChangesAWorkstationInNormalRunningOnly) {
    const std::string laptop = NewCompany("Laptop", "roaming");
    for (const std::string state : {"0", "2", "5", "6"}) {
        OnDatabase("Laptop", "UPDATE Company SET SyncState = " + state);
        MustFail({"add", laptop, "Terms", "Name=x"}, "state is " + state);
        MustFail({"edit", laptop, "Terms", "x", "Name=x"}, "state is " + state);
        MustFail({"delete", laptop, "Terms", "x"}, "state is " + state);
        MustFail({"conflicts", "restore", laptop, "1"}, "state is " + state);
    }
    OnDatabase("Laptop", "UPDATE Company SET SyncState = 4");
    MustRun({"add", laptop, "Terms", "Name=x"});
    EXPECT_EQ(JsonAt(MustRun({"company", "show", laptop, "--json"}), "$.waitingChanges"), "1");
}

TEST_F(Qndr5ctlRows, ShowsAndSettlesConflicts) {
    const std::string customer = Added({"Customers", "LastName=Hara", "CustomerNumber=7"});
    const auto lose = [&](const std::string& values) {
        OnDatabase("Main",
                   "INSERT INTO ImportConflicts (TableName, RowUniqueID, OccurredOn, LosingOrigin, WinningOrigin, "
                   "LosingValues) VALUES ('Customers', '" +
                       customer + "', '20261122 19:08:52', (SELECT lower(UniqueID) FROM Company), 'W1', " +
                       values + ")");
    };
    OnDatabase("Main", "INSERT INTO RoamingWorkstations (UniqueID, Name) VALUES ('w1', 'Ann''s laptop')");
    lose(R"('{"UniqueID":"x","CustomerNumber":"7","LastName":"O''Hara","Notes":null}')");
    lose("NULL");
    const std::string listed = MustRun({"conflicts", "list", main_, "--json"});
    EXPECT_EQ(JsonAt(listed, "$[0].losingCompany"), "this company");
    EXPECT_EQ(JsonAt(listed, "$[0].winningCompany"), "Ann's laptop");
    EXPECT_EQ(JsonAt(listed, "$[0].rowName"), "Hara");
    EXPECT_EQ(JsonAt(listed, "$[1].losingVersion"), "deletion");

    const std::string shown = MustRun({"conflicts", "show", main_, "1", "--json"});
    const auto inColumns = [&](const std::string& key) {
        return Ask("SELECT group_concat(json_extract(value, ?2)) FROM json_each(?1, '$.columns')",
                   {shown, "$." + key});
    };
    EXPECT_EQ(inColumns("column"), "CustomerNumber,LastName,Notes");
    EXPECT_EQ(inColumns("losing"), "7,O'Hara");
    EXPECT_EQ(inColumns("present"), "7,Hara");
    EXPECT_EQ(inColumns("differs"), "0,1,0");
    EXPECT_NE(MustRun({"conflicts", "show", main_, "1"}).find("*\n"), std::string::npos);

    MustRun({"conflicts", "restore", main_, "1"});
    EXPECT_EQ(Stored("LastName", "Customers"), "'O''Hara'");
    EXPECT_EQ(JsonAt(MustRun({"conflicts", "list", main_, "--json"}), "$[0].id"), "2");
    MustRun({"conflicts", "dismiss", main_, "2"});
    EXPECT_EQ(MustRun({"conflicts", "list", main_}), "This company has no open conflicts.\n");
    EXPECT_EQ(JsonAt(MustRun({"conflicts", "list", main_, "--all", "--json"}), "$[1].state"), "dismissed");
    EXPECT_EQ(AuditRows(), "Customers1 Customers2");
    MustRun({"conflicts", "restore", main_, "2"});
    EXPECT_EQ(AuditRows(), "Customers1 Customers2 Customers3");
    EXPECT_EQ(JsonAt(MustRun({"conflicts", "show", main_, "1", "--json"}), "$.rowIsThere"), "0");
    MustFail({"conflicts", "show", main_, "3"}, "no conflict 3");
    MustFail({"conflicts", "restore", main_, "3"}, "no conflict 3");
    MustFail({"conflicts", "dismiss", main_, "1"}, "no conflict 1");
    EXPECT_EQ(Run({"conflicts", "restore", main_, "one"}).status, 2);
}

TEST_F(Qndr5ctlRows, ShowsTheRecordsThatWerePutAside) {
    OnDatabase("Main",
               "INSERT INTO ImportProblems (TableName, RowUniqueID, OccurredOn, Reason, RecordXml) VALUES"
               " ('Terms', NULL, '20261122 19:08:52', 'no' || char(27) || '[2J', '<Record>a&#13;\n</Record>')");
    EXPECT_EQ(JsonAt(MustRun({"problems", "list", main_, "--json"}), "$[0].occurredOn"), "2026-11-22T19:08:52Z");
    EXPECT_EQ(JsonAt(MustRun({"problems", "show", main_, "1", "--json"}), "$.recordXml"),
              "<Record>a&#13;\n</Record>");
    EXPECT_EQ(MustRun({"problems", "show", main_, "1"}).find('\x1B'), std::string::npos);
    MustFail({"problems", "show", main_, "2"}, "no problem 2");
}

} // namespace
} // namespace qndr::control
