#include "services/failure.h"
#include "suite/company_fixture.h"
#include "suite/objects/company_database.h"
#include "suite/objects/record_table.h"
#include "suite/sql/sqlite/sqlite_connection.h"

#include <gtest/gtest.h>

#include <chrono>
#include <filesystem>
#include <fstream>

namespace qndr::suite {
namespace {

using services::Failure;
using services::Statement;
using sql::Missing;

class DatabaseTest : public testing::Test {
  protected:
    DatabaseTest() {
        sql::SqliteConnection(path_, clock_, Missing::Create)
            .ExecuteScript("CREATE TABLE Item (ID INTEGER PRIMARY KEY, UniqueID TEXT, Note TEXT);"
                           "CREATE TABLE Trace (ID INTEGER PRIMARY KEY, AddedOn TEXT);"
                           "CREATE TRIGGER tr AFTER UPDATE ON Item BEGIN INSERT INTO Trace (AddedOn) VALUES "
                           "(GETUTCDATE()), (GETUTCDATE()); END;"
                           "INSERT INTO Item VALUES (1, 'A', 'one'), (2, 'B', ''), (3, 'C', NULL);");
        database_.Use(path_);
    }

    std::string Scalar(const std::string& sql) {
        return database_.ExecuteScaler(Statement(sql), "", "default").ToText();
    }

    TestFolder folder_;
    StandingClock clock_;
    std::string path_ = folder_.Path("Größe 会社.db");
    ComputerTrouble trouble_;
    CompanyDatabase database_{clock_, trouble_, nullptr};
};

std::string Refusal(const std::string& path, const StandingClock& clock, Missing missing) {
    try {
        sql::SqliteConnection connection(path, clock, missing);
        return "";
    } catch (const Failure& failure) {
        return failure.what();
    }
}

TEST_F(DatabaseTest, OpensNothingThatIsNoDatabaseAndMakesNoneUnasked) {
    const std::string absent = folder_.Path("absent.db");
    EXPECT_EQ(Refusal(absent, clock_, Missing::Refuse),
              "the database '" + absent + "' cannot be opened: unable to open database file");
    EXPECT_FALSE(std::filesystem::exists(absent));

    const std::string empty = folder_.Path("empty.db");
    WriteFile(empty, "");
    EXPECT_NE(Refusal(empty, clock_, Missing::Refuse), "");
    EXPECT_EQ(std::filesystem::file_size(empty), 0U);

    const std::string text = folder_.Path("text.db");
    WriteFile(text, std::string(5000, 'x'));
    for (const Missing missing : {Missing::Refuse, Missing::Create}) {
        EXPECT_EQ(Refusal(text, clock_, missing),
                  "the database '" + text + "' cannot be opened: file is not a database");
    }
    for (const std::string& path : {folder_.Path(""), std::string(), std::string(":memory:"), "file:" + path_}) {
        EXPECT_NE(Refusal(path, clock_, Missing::Create), "") << path;
    }

    const sql::SqliteConnection connection(path_, clock_, Missing::Refuse);
    EXPECT_EQ(connection.Number("PRAGMA synchronous"), 2);
}

TEST_F(DatabaseTest, SwitchesOnlyACompanyAndWhatItMakesToWriteAheadLogging) {
    const auto modeAfterOpening = [&] {
        return sql::SqliteConnection(path_, clock_, Missing::Refuse).Value("PRAGMA journal_mode");
    };
    EXPECT_EQ(modeAfterOpening(), "wal");
    database_.Close();
    sql::SqliteConnection(path_, clock_, Missing::Refuse)
        .ExecuteScript("PRAGMA journal_mode = DELETE; CREATE TABLE Company (UniqueID TEXT)");
    EXPECT_EQ(modeAfterOpening(), "delete") << "another program's database";
    sql::SqliteConnection(path_, clock_, Missing::Refuse)
        .ExecuteScript("ALTER TABLE Company ADD CompanyType INTEGER");
    EXPECT_EQ(modeAfterOpening(), "wal");
}

TEST_F(DatabaseTest, RunsOneStatementACall) {
    for (const char* sql :
         {"DELETE FROM Item; DELETE FROM Trace", "DELETE FROM Item;;", "DELETE FROM Item; x", "", " -- nothing"}) {
        EXPECT_EQ(database_.ExecuteNonQuery(sql), -1) << sql;
        EXPECT_NE(database_.LastSQLErrorDescription(), "") << sql;
    }
    EXPECT_EQ(database_.ExecuteNonQuery(Statement(std::string("DELETE FROM Item\0; x", 20))), -1);
    EXPECT_EQ(database_.ExecuteRead("SELECT 1; DELETE FROM Item"), nullptr);
    EXPECT_THROW(database_.ExecuteScaler("SELECT 1; DELETE FROM Item", "", ""), Failure);
    EXPECT_EQ(Scalar("SELECT COUNT(*) FROM Item ; /* counted; */ -- all;\n "), "3");
}

TEST_F(DatabaseTest, TakesWhatIsFilledInForAValueOrNotAtAll) {
    const auto refusal = [&](const std::string& pattern, const std::string& value) {
        database_.ExecuteNonQuery({"UPDATE Item SET Note = 'y'", pattern, {value}});
        return database_.LastSQLErrorDescription();
    };
    const std::string start = "the statement is refused: a value ";
    for (const std::string& value : {std::string("it's"), std::string("a\0b", 3)}) {
        EXPECT_EQ(refusal("UPDATE Item SET Note = '{0}'", value),
                  start + "in it holds a quote or a null character");
    }
    for (const char* value : {"1 OR 1", "ID", "", "0x1", "1;"}) {
        EXPECT_EQ(refusal("UPDATE Item SET Note = '{0}' WHERE ID = {0}", value),
                  start + "that stands in it without quotes is no number");
    }
    EXPECT_EQ(Scalar("SELECT COUNT(*) FROM Trace"), "0");
    EXPECT_EQ(refusal("UPDATE Item SET Note = '{0}'", "back\\slash -- \"x\" {1}"), "");
    EXPECT_EQ(refusal("UPDATE Item SET Note = {0}", " -1.5e3"), "");
}

TEST_F(DatabaseTest, HoldsAStatementToTheTablesThatItsPatternNames) {
    const std::string pattern = "UPDATE Item SET Note = '{0}'";
    for (const std::string text :
         {"UPDATE Item SET Note = 'x' OR 1=1 --'", "DELETE FROM Item",
          "UPDATE Item SET Note = (SELECT AddedOn FROM \"Trace\")", "UPDATE \"Trace\" SET AddedOn = ''",
          "WITH Item AS (SELECT AddedOn FROM Trace) SELECT * FROM Item"}) {
        EXPECT_EQ(database_.ExecuteNonQuery({text, pattern, {}}), -1) << text;
    }
    for (const char* text :
         {"UPDATE Item SET Note = 'x' WHERE EXISTS (SELECT AddedOn FROM \"Trace\")",
          "UPDATE Item SET Note = 'x' RETURNING (SELECT MAX(ID) FROM \"Trace\")", "UPDATE \"Trace\" SET ID = 9",
          "DELETE FROM \"Trace\"", "INSERT INTO [Trace] VALUES (9, '')", "UPDATE Item SET Note = \"upper\"('x')",
          "SELECT name FROM \"pragma_table_info\"('Item')", "SELECT name FROM \"sqlite_schema\"",
          "PRAGMA user_version = 5", "ATTACH ':memory:' AS other", "CREATE TABLE Other (ID)", "DROP TABLE Trace",
          "ALTER TABLE Item ADD Other",
          "WITH RECURSIVE r (n) AS (SELECT 1 UNION ALL SELECT n FROM r) SELECT n "
          "FROM r"}) {
        EXPECT_EQ(database_.ExecuteNonQuery(text), -1) << text;
        EXPECT_EQ(database_.ExecuteRead(text), nullptr) << text;
    }
    EXPECT_EQ(Scalar("SELECT COUNT(*) FROM Trace"), "0");
    EXPECT_EQ(Scalar("SELECT Note FROM Item WHERE ID = 1"), "one");
    database_.Connection().Execute("PRAGMA user_version = 5"); // the fence is gone with its statement
}

TEST_F(DatabaseTest, EndsAStatementThatPassesItsLimit) {
    const Statement endless(
        "SELECT COUNT(*) FROM Item a, Item b, Item c, Item d, Item e, Item f, Item g, Item h, "
        "Item i, Item j, Item k, Item l, Item m, Item n, Item o, Item p, Item q, Item r, Item s, "
        "Item t, Item u, Item v, Item w, Item x, Item y");
    database_.SetLimits({.longest = std::chrono::milliseconds(50), .isStopping = {}});
    EXPECT_EQ(database_.ExecuteRead(endless), nullptr);
    EXPECT_EQ(database_.LastSQLErrorDescription(), "the statement worked for too long and was ended");
    database_.SetLimits({.longestWhenStopping = std::chrono::milliseconds(50), .isStopping = [] { return true; }});
    EXPECT_EQ(database_.ExecuteNonQuery(endless), -1);
    EXPECT_EQ(database_.LastSQLErrorDescription(), "the statement was ended, for the agent is asked to stop");
    EXPECT_EQ(Scalar("SELECT COUNT(*) FROM Item"), "3") << "what is quickly done is done";
}

TEST_F(DatabaseTest, GivesTheFirstValueOrTheDefaultAndCountsTheRowsOfTheStatementAlone) {
    for (const char* without : {"ID = 9", "ID = 3", "ID = 2"}) {
        EXPECT_EQ(Scalar(std::string("SELECT Note FROM Item WHERE ") + without), "default")
            << "no row, NULL, empty";
    }
    EXPECT_EQ(Scalar("SELECT UniqueID FROM Item ORDER BY ID"), "A");
    EXPECT_EQ(database_.ExecuteScaler("SELECT 0", "", "7"), Variant(0));
    EXPECT_EQ(database_.ExecuteScaler("SELECT 2.5", "", {}), Variant(2.5));
    EXPECT_THROW(database_.ExecuteScaler("SELECT Absent FROM Item", "", "0"), Failure);
    EXPECT_EQ(database_.LastSQLErrorDescription(), "no such column: Absent");
    EXPECT_EQ(database_.ExecuteNonQuery("UPDATE Item SET Note = Note"), 3);
    EXPECT_EQ(database_.LastSQLErrorDescription(), "");
    EXPECT_EQ(database_.ExecuteNonQuery("SELECT * FROM Item"), 0);
    EXPECT_EQ(database_.ExecuteNonQuery("DELETE FROM Trace"), 6);
    EXPECT_EQ(database_.ExecuteNonQuery("INSERT INTO Item (ID) VALUES (1)"), -1);
    EXPECT_EQ(database_.LastSQLErrorDescription(), "UNIQUE constraint failed: Item.ID");
}

TEST_F(DatabaseTest, ReadsRowsAsNodesWithEscapedLineBreaks) {
    ASSERT_EQ(database_.ExecuteNonQuery("UPDATE Item SET Note = 'a' || char(13,10) || 'b' WHERE ID = 3"), 1);
    const auto document =
        database_.ExecuteRead("SELECT id, uniqueid, Note, COUNT(*) OVER () AS theCount FROM Item");
    ASSERT_NE(document, nullptr);
    ASSERT_EQ(database_.ExecuteNonQuery("DELETE FROM Item"), 3);

    const auto rows = document->selectNodes("//Records/Record");
    ASSERT_EQ(rows->length(), 3);
    EXPECT_TRUE(rows->item(-1) == nullptr && rows->item(3) == nullptr);
    const auto row = rows->item(2);
    EXPECT_EQ(row->selectSingleNode("UniqueID")->text(), "C");
    EXPECT_EQ(row->selectSingleNode("uniqueid"), nullptr);
    EXPECT_EQ(row->text(), "3Ca&#13;&#10;b3");
    EXPECT_EQ(database_.ExecuteRead("SELECT * FROM Item")->selectNodes("//Records/Record")->length(), 0);
}

TEST(RecordTableTest, KeepsValuesOfEveryLength) {
    RecordTable table({"Short", "Long"});
    const std::vector<std::size_t> lengths{0, 127, 128, 16'383, 16'384, 700'000, 700'000, 3'000'000, 1};
    for (const std::size_t length : lengths) {
        table.AddRow({"s" + std::to_string(length), std::string(length, 'l')});
    }
    for (std::size_t row = 0; row < lengths.size(); ++row) {
        EXPECT_EQ(table.Value(row, 0), "s" + std::to_string(lengths[row]));
        EXPECT_EQ(table.Value(row, 1), std::string(lengths[row], 'l'));
    }
}

TEST_F(DatabaseTest, ReportsADatabaseThatCannotBeReadInItsResults) {
    const auto expectErrors = [&] {
        EXPECT_EQ(database_.ExecuteNonQuery("UPDATE Item SET Note = 'x'"), -1);
        EXPECT_NE(database_.LastSQLErrorDescription(), "");
        EXPECT_EQ(database_.ExecuteRead("SELECT * FROM Item"), nullptr);
        EXPECT_NE(database_.LastSQLErrorDescription(), "");
        EXPECT_THROW(database_.ExecuteScaler("SELECT Note FROM Item", "", "0"), Failure);
        EXPECT_NE(database_.LastSQLErrorDescription(), "");
    };
    // The pages of the tables overwritten, the schema on the first one left.
    std::fstream(path_, std::ios::binary | std::ios::in | std::ios::out)
        .seekp(4096)
        .write(std::string(8192, '\xA5').data(), 8192);
    expectErrors();
    database_.Use(folder_.Path("absent.db"));
    expectErrors();
}

TEST_F(DatabaseTest, AddsToDatesAsTheCalendarGoes) {
    const std::vector<std::pair<std::string, std::string>> sums{
        {"DATEADD(day,-30,GETUTCDATE())", "20261023 19:08:52"},
        {"DATEADD(minute,-5,'20260101 00:02:00')", "20251231 23:57:00"},
        {"DATEADD(MONTH,1,'20240131 10:00:00')", "20240229 10:00:00"},
        {"DATEADD(mm,-12,'20240229 00:00:00')", "20230228 00:00:00"},
        {"DATEADD(yyyy,-26,'2026-03-01 01:02:03')", "20000301 01:02:03"},
        {"DATEADD(q,1,'20251101')", "20260201 00:00:00"},
        {"DATEADD(wk,1,'20251228')", "20260104 00:00:00"},
        {"DATEADD(s,-1,'20260101')", "20251231 23:59:59"},
        {"DATEADD(day,NULL,GETUTCDATE())", "default"},
    };
    for (const auto& [sum, result] : sums) {
        EXPECT_EQ(Scalar("SELECT " + sum), result) << sum;
    }
    for (const char* wrong :
         {"DATEADD(fortnight,1,GETUTCDATE())", "DATEADD(day,1,'20260231')", "DATEADD(year,8000,GETUTCDATE())",
          "DATEADD(s,9223372036854775807,GETUTCDATE())", "DATEADD(month,-9223372036854775807,GETUTCDATE())",
          "DATEADD(d,-800000,GETUTCDATE())"}) {
        EXPECT_THROW(Scalar(std::string("SELECT ") + wrong), Failure) << wrong;
    }
}

TEST_F(DatabaseTest, TakesTheMomentOfEachRunFromTheClock) {
    sql::Statement now = database_.Connection().Prepare("SELECT GETUTCDATE()");
    for (const auto& [state, moment] : {std::pair(1, "20261122 19:08:52"), {2, "20261122 18:08:52"}}) {
        clock_.zone.state = state;
        now.Reset();
        ASSERT_TRUE(now.Step());
        EXPECT_EQ(now.Text(0), moment);
    }
}

TEST_F(DatabaseTest, KeepsTransactionsApart) {
    const sql::SqliteConnection reader(path_, clock_, Missing::Refuse);
    {
        sql::Transaction view(reader, sql::Transaction::Kind::Read);
        EXPECT_EQ(database_.ExecuteNonQuery("DELETE FROM Item WHERE ID = 1"), 1);
        EXPECT_EQ(reader.Number("SELECT COUNT(*) FROM Item"), 3)
            << "the view is taken when the transaction begins";
    }
    EXPECT_EQ(reader.Number("SELECT COUNT(*) FROM Item"), 2);
    {
        sql::Transaction dropped(reader, sql::Transaction::Kind::Write);
        reader.Execute("DELETE FROM Item");
        database_.Connection().SetBusyTimeout(1);
        EXPECT_EQ(database_.ExecuteNonQuery("DELETE FROM Item"), -1);
        EXPECT_EQ(database_.LastSQLErrorDescription(), "database is locked");
    }
    EXPECT_EQ(Scalar("SELECT COUNT(*) FROM Item"), "2");
}

} // namespace
} // namespace qndr::suite
