#include "services/failure.h"
#include "suite/company_fixture.h"
#include "suite/files/ini_files.h"
#include "suite/full_disk.h"
#include "suite/objects/company_manager.h"
#include "suite/schema/company_schema.h"
#include "suite/schema/company_versions.h"
#include "suite/sql/sqlite/sqlite_connection.h"

#include <gtest/gtest.h>

#include <iterator>
#include <map>

namespace qndr::suite {
namespace {

class CompanyVersionsTest : public ::testing::Test {
  protected:
    static std::string Fixture(const std::string& name) {
        std::ifstream file(QNDR_SCHEMAS "/" + name + ".sql", std::ios::binary);
        return {std::istreambuf_iterator<char>(file), {}};
    }

    /// A workstation's company as that version made it, with a row, a conflict and changes that were sent.
    sql::Connection& Make(std::int64_t version) {
        connection.emplace(File(), clock, sql::Missing::Create);
        connection->ExecuteScript("BEGIN;" + Fixture("exchange_" + std::to_string(version)) + Fixture("audited") +
                                  R"(
            INSERT INTO Company (ID, UniqueID, CompanyType, SyncState, DatabaseVersion) VALUES (1, 'L', 2, 4, '5');
            INSERT INTO RoamingWorkstations (UniqueID, NextSequenceToRoaming, LastAuditID) VALUES ('W', 2, 9);
            INSERT INTO Customers (UniqueID, LastName) VALUES ('c', 'Hara');
            INSERT INTO ImportConflicts (TableName, RowUniqueID) VALUES ('Customers', 'c');
            UPDATE Company SET LastAuditID = 1, NextSequenceToMain = 1;
            COMMIT;)");
        return *connection;
    }

    /// What the database is made of: the columns of each table, and the words of all else.
    static std::map<std::string, std::string> Structure(const sql::Connection& company) {
        std::map<std::string, std::string> structure;
        sql::Statement all = company.Prepare(
            "SELECT type || ' ' || name, CASE type WHEN 'table' THEN (SELECT group_concat(name || type || "
            "\"notnull\" "
            "|| ifnull(dflt_value, '') || pk, char(10)) FROM pragma_table_info(s.name)) ELSE sql END "
            "FROM sqlite_schema AS s WHERE name NOT LIKE 'sqlite_%'");
        while (all.Step()) {
            structure.emplace(all.Text(0), all.Text(1));
        }
        return structure;
    }

    std::string File() const { return folder.Path("dealer.db"); }

    TestFolder folder{test::QuickPlace()};
    StandingClock clock;
    std::optional<sql::SqliteConnection> connection;
};

TEST_F(CompanyVersionsTest, EachEarlierVersionBecomesWhatANewCompanyIs) {
    sql::SqliteConnection fresh(folder.Path("fresh.db"), clock, sql::Missing::Create);
    fresh.ExecuteScript("BEGIN;" + CompanySchemaScript() + "COMMIT;");
    const auto expected = Structure(fresh);
    EXPECT_EQ(ReadSchemaVersion(fresh), CompanySchemaVersion);
    for (std::int64_t version = 1; version < CompanySchemaVersion; ++version) {
        SCOPED_TRACE(version);
        sql::Connection& company = Make(version);
        EXPECT_EQ(ReadSchemaVersion(company), version);
        BringUpToDate(company, clock);
        BringUpToDate(company, clock);
        EXPECT_EQ(Structure(company), expected);
        EXPECT_EQ(ReadSchemaVersion(company), CompanySchemaVersion);
        EXPECT_EQ(company.Value("SELECT LastName || LastAuditID FROM Customers, Company"), "Hara1");
        // What was sent before counts from here on, whether or not that version noted it.
        EXPECT_EQ(company.Value(
                      "SELECT group_concat(Receiver || NextSequence || ':' || LastAuditID, ' ') FROM (SELECT * "
                      "FROM SentRanges WHERE NextSequence > 0 ORDER BY Receiver)"),
                  "1:1 W2:9");
        company.Execute("UPDATE Customers SET LastName = 'Mori'");
        EXPECT_EQ(company.Number("SELECT COUNT(*) FROM AuditLog"), 2);
        {
            const sql::SqliteConnection copy(CopyOfOlderSchema(File(), version), clock, sql::Missing::Refuse);
            EXPECT_EQ(ReadSchemaVersion(copy), version);
            EXPECT_EQ(copy.Value("SELECT LastName FROM Customers"), "Hara");
        }
        ForgetOlderSchemas(File());
        connection.reset();
        std::filesystem::remove(File());
        EXPECT_EQ(std::distance(std::filesystem::directory_iterator(folder.Path("")), {}), 3)
            << "the fresh one's files";
    }
}

TEST_F(CompanyVersionsTest, WhatCannotBeMadeOfTheCompanyLeavesItAsItWas) {
    sql::Connection& company = Make(2);
    const auto before = Structure(company);
    {
        const test::FullDisk full(200'000);
        EXPECT_THROW(BringUpToDate(company, clock), services::Failure);
    }
    EXPECT_EQ(Structure(company), before);
    BringUpToDate(company, clock);

    DiskIniTools iniTools;
    WriteFile(folder.Path("dealer.psd"),
              "[COMPANY]\nName=Dealer\nConnectionString=Provider=SQLite;Data Source=dealer.db\n");
    CompanyMarks marks("main");
    CompanyManager manager(iniTools, clock, marks);
    EXPECT_TRUE(manager.CanOpenCompany(folder.Path("dealer.psd")));
    company.Execute("UPDATE SchemaVersion SET Version = Version + 1");
    EXPECT_FALSE(manager.CanOpenCompany(folder.Path("dealer.psd")));
    EXPECT_FALSE(manager.CanOpenCompany(folder.Path("dealer.psd")));
    EXPECT_EQ(company.Number("SELECT COUNT(*) FROM CompanyEvents WHERE EventText LIKE '%newer version%'"), 1);
    EXPECT_THROW(BringUpToDate(company, clock), services::Failure);
}

} // namespace
} // namespace qndr::suite
