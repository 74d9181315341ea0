#include "services/failure.h"
#include "suite/company_fixture.h"
#include "suite/schema/company_schema.h"
#include "suite/sql/sqlite/sqlite_connection.h"

#include <gtest/gtest.h>

namespace qndr::suite {
namespace {

using services::Failure;

class CompanySchema : public testing::Test {
  protected:
    CompanySchema() {
        database.ExecuteScript("PRAGMA synchronous = OFF; BEGIN;" + CompanySchemaScript() + "COMMIT");
    }

    /// The newest audit row as "table|record|type|unique id|data|origin|origin id".
    std::string LastAudit() const {
        return database
            .Value("SELECT TableName || '|' || RecordID || '|' || AuditType || '|' || AuditUniqueID || '|' ||"
                   " ifnull(AuditData, '-') || '|' || ifnull(Origin, '-') || '|' || ifnull(OriginID, '-')"
                   " FROM AuditLog ORDER BY ID DESC LIMIT 1")
            .value_or("");
    }
    std::int64_t Audits() const { return database.Number("SELECT COUNT(*) FROM AuditLog"); }

    TestFolder folder;
    StandingClock clock;
    sql::SqliteConnection database{folder.Path("company.db"), clock, sql::Missing::Create};
};

TEST_F(CompanySchema, EveryColumnOfEveryTableIsAuditedUnlessItIsLocal) {
    for (const Table& table : AuditedTables()) {
        const std::string name(table.name);
        SCOPED_TRACE(name);
        database.Execute("INSERT INTO \"" + name + "\" (ID, UniqueID) VALUES (7, 'abc')");
        EXPECT_EQ(LastAudit(), name + "|7|1|abc|-|-|-");
        for (const Column& column : table.columns) {
            const std::int64_t before = Audits();
            database.Execute("UPDATE \"" + name + "\" SET \"" + std::string(column.name) + "\" = 5");
            EXPECT_EQ(Audits() - before, column.local ? 0 : 1) << column.name;
            EXPECT_TRUE(column.references.empty() || FindAuditedTable(column.references) != nullptr)
                << column.name;
        }
        const std::string data = table.auditData.empty() ? "-" : "5";
        EXPECT_EQ(LastAudit(), name + "|7|2|abc|" + data + "|-|-");
        database.Execute("DELETE FROM \"" + name + "\"");
        EXPECT_EQ(LastAudit(), name + "|7|3|abc|" + data + "|-|-");
    }
    EXPECT_EQ(database.Value("SELECT AddedOn FROM AuditLog LIMIT 1"), "20261122 19:08:52");
}

TEST_F(CompanySchema, AnUpdateThatChangesNothingIsNotAudited) {
    database.Execute("INSERT INTO Vendors (UniqueID, Name, Notes) VALUES ('v', 'Lumber', NULL)");
    database.Execute("UPDATE Vendors SET UniqueID = 'V', Name = 'Lumber', Notes = NULL");
    EXPECT_EQ(Audits(), 1);
    database.Execute("UPDATE Vendors SET Name = 'Lumber', Notes = ''");
    database.Execute("UPDATE Vendors SET Notes = NULL");
    database.Execute("UPDATE Vendors SET Name = 'lumber'");
    EXPECT_EQ(Audits(), 4);
}

TEST_F(CompanySchema, UniqueIDsAreUniqueWithoutCaseAndNeverEmpty) {
    for (const std::string name : {"Orders", "RoamingWorkstations"}) {
        database.Execute("INSERT INTO " + name + " (UniqueID) VALUES ('ab-1')");
        for (const char* const refused : {"'AB-1'", "''", "NULL"}) {
            EXPECT_THROW(database.Execute("INSERT INTO " + name + " (UniqueID) VALUES (" + refused + ")"), Failure)
                << name << refused;
        }
        EXPECT_EQ(database.Number("SELECT COUNT(*) FROM " + name + " WHERE UniqueID = 'aB-1'"), 1);
    }
    database.Execute("INSERT INTO Company (UniqueID, DatabaseVersion) VALUES ('c', '1')");
    EXPECT_THROW(database.Execute("INSERT INTO Company (UniqueID, DatabaseVersion) VALUES ('d', '1')"), Failure);
}

TEST_F(CompanySchema, KeysAreNotUsedTwice) {
    database.Execute("INSERT INTO Orders (UniqueID) VALUES ('a')");
    const std::int64_t audit = database.Number("SELECT MAX(ID) FROM AuditLog");
    const std::int64_t order = database.Number("SELECT MAX(ID) FROM Orders");
    database.Execute("DELETE FROM Orders");
    database.Execute("DELETE FROM AuditLog");
    database.Execute("INSERT INTO Orders (UniqueID) VALUES ('b')");
    EXPECT_EQ(database.Number("SELECT MIN(ID) FROM AuditLog"), audit + 2);
    EXPECT_EQ(database.Number("SELECT ID FROM Orders"), order + 1);
}

TEST_F(CompanySchema, NumberSyncViewsShowWhatWasEnteredHere) {
    for (const std::string table : {"Orders", "PurchaseOrders"}) {
        database.Execute("INSERT INTO " + table + " (UniqueID) VALUES ('own')");
        for (const std::string audited : {"0", "1"}) {
            database.Execute("INSERT INTO ImportMark (Audited) VALUES (" + audited + ")");
            database.Execute("INSERT INTO " + table + " (UniqueID) VALUES ('other" + audited + "')");
            database.Execute("UPDATE " + table + " SET State = 3 WHERE UniqueID = 'own'");
            database.Execute("DELETE FROM ImportMark");
        }
        EXPECT_EQ(database.Value("SELECT group_concat(UniqueID) FROM vwExporting_" + table + "_NumberSync"),
                  "own");
    }
    // As the agent queues a number, without a UniqueID.
    database.Execute("INSERT INTO OrderNumberSync (OrderUniqueID, OrderNumber) VALUES ('own', 400)");
    const std::string unique = database.Value("SELECT UniqueID FROM OrderNumberSync").value_or("");
    EXPECT_EQ(LastAudit(), "OrderNumberSync|1|1|" + unique + "|400|-|-");
    EXPECT_EQ(unique.size(), 36U);
}

} // namespace
} // namespace qndr::suite
