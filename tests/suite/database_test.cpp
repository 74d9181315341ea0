#include "services/failure.h"
#include "suite/company_fixture.h"
#include "suite/database/record_table.h"
#include "suite/database/sqlite_database.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

namespace qndr::suite {
namespace {

using Missing = SqliteConnection::Missing;
using services::Failure;

class DatabaseTest : public testing::Test {
  protected:
    DatabaseTest() {
        SqliteConnection(path_, clock_, Missing::Create)
            .ExecuteScript("CREATE TABLE Item (ID INTEGER PRIMARY KEY, UniqueID TEXT, Note TEXT);"
                           "CREATE TABLE Trace (ID INTEGER PRIMARY KEY, AddedOn TEXT);"
                           "CREATE TRIGGER tr AFTER UPDATE ON Item BEGIN INSERT INTO Trace (AddedOn) VALUES "
                           "(GETUTCDATE()), (GETUTCDATE()); END;"
                           "INSERT INTO Item VALUES (1, 'A', 'one'), (2, 'B', ''), (3, 'C', NULL);");
        database_.Use(path_);
    }

    std::string Scalar(const std::string& sql) { return database_.ExecuteScaler(sql, "", "default").ToText(); }

    TestFolder folder_;
    StandingClock clock_;
    std::string path_ = folder_.Path("Größe 会社.db");
    ComputerTrouble trouble_;
    SqliteDatabase database_{clock_, trouble_, nullptr};
};

std::string Refusal(const std::string& path, const StandingClock& clock, Missing missing) {
    try {
        SqliteConnection connection(path, clock, missing);
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

    const SqliteConnection connection(path_, clock_, Missing::Refuse);
    EXPECT_EQ(connection.Number("PRAGMA synchronous"), 2);
}

TEST_F(DatabaseTest, SwitchesOnlyACompanyAndWhatItMakesToWriteAheadLogging) {
    const auto modeAfterOpening = [&] {
        return SqliteConnection(path_, clock_, Missing::Refuse).Value("PRAGMA journal_mode");
    };
    EXPECT_EQ(modeAfterOpening(), "wal");
    database_.Close();
    SqliteConnection(path_, clock_, Missing::Refuse)
        .ExecuteScript("PRAGMA journal_mode = DELETE; CREATE TABLE Company (UniqueID TEXT)");
    EXPECT_EQ(modeAfterOpening(), "delete") << "another program's database";
    SqliteConnection(path_, clock_, Missing::Refuse).ExecuteScript("ALTER TABLE Company ADD CompanyType INTEGER");
    EXPECT_EQ(modeAfterOpening(), "wal");
}

TEST_F(DatabaseTest, RunsOneStatementACall) {
    for (const char* sql :
         {"DELETE FROM Item; DELETE FROM Trace", "DELETE FROM Item;;", "DELETE FROM Item; x", "", " -- nothing"}) {
        EXPECT_EQ(database_.ExecuteNonQuery(sql), -1) << sql;
        EXPECT_NE(database_.LastSQLErrorDescription(), "") << sql;
    }
    EXPECT_EQ(database_.ExecuteNonQuery(std::string("DELETE FROM Item\0; x", 20)), -1);
    EXPECT_EQ(database_.ExecuteRead("SELECT 1; DELETE FROM Item"), nullptr);
    EXPECT_THROW(database_.ExecuteScaler("SELECT 1; DELETE FROM Item", "", ""), Failure);
    EXPECT_EQ(Scalar("SELECT COUNT(*) FROM Item ; /* counted; */ -- all;\n "), "3");
}

TEST_F(DatabaseTest, GivesTheDefaultForNoRowNullAndEmptyText) {
    EXPECT_EQ(Scalar("SELECT Note FROM Item WHERE ID = 9"), "default");
    EXPECT_EQ(Scalar("SELECT Note FROM Item WHERE ID = 3"), "default");
    EXPECT_EQ(Scalar("SELECT Note FROM Item WHERE ID = 2"), "default");
    EXPECT_EQ(Scalar("UPDATE Item SET Note = 'x' WHERE ID = 1"), "default");
    EXPECT_TRUE(database_.ExecuteScaler("SELECT MAX(ID) FROM Trace WHERE ID > 99", "", {}).IsEmpty());
    EXPECT_EQ(database_.ExecuteScaler("SELECT 0", "", "7"), Variant(0));
    EXPECT_EQ(database_.ExecuteScaler("SELECT 2.5", "", {}), Variant(2.5));
    EXPECT_THROW(database_.ExecuteScaler("SELECT Absent FROM Item", "", "0"), Failure);
    EXPECT_EQ(database_.LastSQLErrorDescription(), "no such column: Absent");
    EXPECT_EQ(Scalar("SELECT UniqueID FROM Item ORDER BY ID"), "A");
    EXPECT_EQ(database_.LastSQLErrorDescription(), "");
}

TEST_F(DatabaseTest, CountsTheRowsOfTheStatementAlone) {
    EXPECT_EQ(database_.ExecuteNonQuery("UPDATE Item SET Note = Note"), 3);
    EXPECT_EQ(Scalar("SELECT COUNT(*) FROM Trace"), "6");
    EXPECT_EQ(database_.ExecuteNonQuery("SELECT * FROM Item"), 0);
    EXPECT_EQ(database_.ExecuteNonQuery("CREATE TABLE Copy AS SELECT * FROM Item"), 0);
    EXPECT_EQ(database_.ExecuteNonQuery("ALTER TABLE Copy DROP COLUMN Note"), 0);
    EXPECT_EQ(database_.ExecuteNonQuery("UPDATE Item SET Note = 'x' WHERE ID = 9"), 0);
    EXPECT_EQ(database_.ExecuteNonQuery("UPDATE Item SET Note = 'x' WHERE ID = 1"), 1);
    EXPECT_EQ(database_.ExecuteNonQuery("DELETE FROM Trace"), 8);
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
    EXPECT_EQ(rows->item(-1), nullptr);
    EXPECT_EQ(rows->item(3), nullptr);
    const auto row = rows->item(2);
    EXPECT_EQ(row->selectSingleNode("UniqueID")->text(), "C");
    EXPECT_EQ(row->selectSingleNode("Note")->text(), "a&#13;&#10;b");
    EXPECT_EQ(row->selectSingleNode("theCount")->text(), "3");
    EXPECT_EQ(row->selectSingleNode("uniqueid"), nullptr);
    EXPECT_EQ(row->text(), "3Ca&#13;&#10;b3");
    EXPECT_EQ(document->selectNodes("//Records")->length(), 0);

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

    database_.Close();
    EXPECT_THROW(database_.ExecuteNonQuery("DELETE FROM Item"), Failure);
    EXPECT_THROW(database_.ExecuteRead("SELECT * FROM Item"), Failure);
    EXPECT_THROW(database_.ExecuteScaler("SELECT 1", "", "0"), Failure);
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
        {"DATEADD(hh,25,'20251231 23:00:00')", "20260102 00:00:00"},
        {"DATEADD(s,-1,'20260101')", "20251231 23:59:59"},
        {"DATEADD(day,NULL,GETUTCDATE())", "default"},
        {"DATEADD(day,1,NULL)", "default"},
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
    SqliteStatement now = database_.Connection().Prepare("SELECT GETUTCDATE()");
    ASSERT_TRUE(now.Step());
    EXPECT_EQ(now.Text(0), "20261122 19:08:52");
    clock_.zone.state = 2;
    now.Reset();
    ASSERT_TRUE(now.Step());
    EXPECT_EQ(now.Text(0), "20261122 18:08:52");
    clock_.now = clock_.now.AddDays(1);
    EXPECT_EQ(database_.ExecuteNonQuery("UPDATE Item SET Note = 'x' WHERE ID = 1"), 1);
    EXPECT_EQ(Scalar("SELECT MAX(AddedOn) FROM Trace"), "20261123 18:08:52");
}

TEST_F(DatabaseTest, KeepsTransactionsApart) {
    const SqliteConnection reader(path_, clock_, Missing::Refuse);
    {
        SqliteTransaction view(reader, SqliteTransaction::Kind::Read);
        EXPECT_EQ(database_.ExecuteNonQuery("DELETE FROM Item WHERE ID = 1"), 1);
        EXPECT_EQ(reader.Number("SELECT COUNT(*) FROM Item"), 3)
            << "the view is taken when the transaction begins";
    }
    EXPECT_EQ(reader.Number("SELECT COUNT(*) FROM Item"), 2);
    {
        SqliteTransaction dropped(reader, SqliteTransaction::Kind::Write);
        reader.Execute("DELETE FROM Item");
        database_.Connection().SetBusyTimeout(1);
        EXPECT_EQ(database_.ExecuteNonQuery("DELETE FROM Item"), -1);
        EXPECT_EQ(database_.LastSQLErrorDescription(), "database is locked");
    }
    EXPECT_EQ(Scalar("SELECT COUNT(*) FROM Item"), "2");
    {
        SqliteTransaction kept(reader, SqliteTransaction::Kind::Write);
        SqliteStatement insert = reader.Prepare("INSERT INTO Item VALUES (?1, ?2, ?3)");
        insert.Bind(1, std::int64_t{7});
        insert.Bind(2, std::string_view{});
        insert.BindNull(3);
        EXPECT_FALSE(insert.Step());
        kept.Commit();
    }
    EXPECT_EQ(Scalar("SELECT UniqueID = '' AND Note IS NULL FROM Item WHERE ID = 7"), "1");
}

} // namespace
} // namespace qndr::suite
