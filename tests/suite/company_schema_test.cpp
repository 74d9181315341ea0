#include "services/failure.h"
#include "suite/company/company_schema.h"
#include "suite/company_fixture.h"
#include "suite/database/sqlite_connection.h"

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
    SqliteConnection database{folder.Path("company.db"), clock, SqliteConnection::Missing::Create};
};

TEST_F(CompanySchema, AuditedTablesAreFoundWithoutCase) {
    EXPECT_EQ(FindAuditedTable("oRDERITEMS")->name, "OrderItems");
    for (const char* const notAudited :
         {"Company", "RoamingWorkstations", "AuditLog", "CompanyOptions", "Order", ""}) {
        EXPECT_EQ(FindAuditedTable(notAudited), nullptr) << notAudited;
    }
}

TEST_F(CompanySchema, EveryColumnOfEveryTableIsAuditedUnlessItIsLocal) {
    for (const Table& table : AuditedTables()) {
        const std::string name(table.name);
        SCOPED_TRACE(name);
        database.Execute("INSERT INTO \"" + name + "\" (ID, UniqueID) VALUES (7, 'abc')");
        EXPECT_EQ(LastAudit(), name + "|7|1|abc|-|-|-");

        SqliteStatement view = database.Prepare("SELECT * FROM vwExporting_" + name + " WHERE ID = 7");
        ASSERT_TRUE(view.Step());
        std::string viewColumns;
        for (int i = 0; i < view.ColumnCount(); ++i) {
            viewColumns += view.ColumnName(i) + " ";
        }
        view.Reset();
        std::string expectedColumns = "ID UniqueID ";
        for (const Column& column : table.columns) {
            const std::int64_t before = Audits();
            database.Execute("UPDATE \"" + name + "\" SET \"" + std::string(column.name) + "\" = 5");
            EXPECT_EQ(Audits() - before, column.local ? 0 : 1) << column.name;
            expectedColumns += column.local ? "" : std::string(column.name) + " ";
            EXPECT_TRUE(column.references.empty() || FindAuditedTable(column.references) != nullptr)
                << column.name;
        }
        EXPECT_EQ(viewColumns, expectedColumns);

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

TEST_F(CompanySchema, AnImportIsAuditedAsItsMarkSays) {
    database.Execute("INSERT INTO ImportMark (Audited, Origin, OriginID) VALUES (0, 'A', 1)");
    database.Execute("INSERT INTO Terms (ID, UniqueID, Name) VALUES (1, 't', 'Net')");
    database.Execute("UPDATE Terms SET Name = 'Net 10'");
    database.Execute("DELETE FROM Terms");
    EXPECT_EQ(Audits(), 0);

    database.Execute("UPDATE ImportMark SET Audited = 1, OriginID = 77");
    database.Execute("INSERT INTO Terms (ID, UniqueID, Name) VALUES (1, 't', 'Net')");
    EXPECT_EQ(LastAudit(), "Terms|1|1|t|Net|A|77");
    database.Execute("UPDATE Terms SET Name = 'Net 10'");
    EXPECT_EQ(LastAudit(), "Terms|1|2|t|Net 10|A|77");
    database.Execute("DELETE FROM ImportMark");
    database.Execute("DELETE FROM Terms");
    EXPECT_EQ(LastAudit(), "Terms|1|3|t|Net 10|-|-");
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
    EXPECT_NO_THROW(database.Execute("DELETE FROM cacheProductStyles")) << "a reset clears it by this name";
}

TEST_F(CompanySchema, NumberSyncViewsShowWhatWasEnteredHere) {
    const struct {
        std::string table, number, queue, reference;
    } lanes[] = {{"Orders", "OrderNumber", "OrderNumberSync", "OrderUniqueID"},
                 {"PurchaseOrders", "PONumber", "PurchaseOrderNumberSync", "PurchaseOrderUniqueID"}};
    for (const auto& lane : lanes) {
        SCOPED_TRACE(lane.table);
        const std::string insert =
            "INSERT INTO " + lane.table + " (UniqueID, State, ReferenceNumber, " + lane.number + ") VALUES ('";
        database.Execute(insert + "own', 2, 30, 400)");
        for (const char* const audited : {"0", "1"}) {
            database.Execute(std::string("INSERT INTO ImportMark (Audited) VALUES (") + audited + ")");
            database.Execute(insert + "other" + audited + "', 2, 31, 401)");
            database.Execute("UPDATE " + lane.table + " SET State = 3 WHERE UniqueID = 'own'");
            database.Execute("DELETE FROM ImportMark");
        }
        const std::string view = "vwExporting_" + lane.table + "_NumberSync";
        SqliteStatement rows = database.Prepare("SELECT * FROM " + view + " WHERE SyncState = 0");
        ASSERT_TRUE(rows.Step());
        std::string row;
        for (int i = 0; i < rows.ColumnCount(); ++i) {
            row += rows.ColumnName(i) + "=" + std::string(rows.Text(i)) + " ";
        }
        EXPECT_EQ(row, "ID=1 State=3 UniqueID=own ReferenceNumber=30 " + lane.number + "=400 SyncState=0 ");
        EXPECT_FALSE(rows.Step());

        // As the agent writes it, without a UniqueID.
        const std::int64_t audits = Audits();
        database.Execute("INSERT INTO " + lane.queue + " (State, " + lane.reference + ", ReferenceNumber, " +
                         lane.number + ") VALUES(3, 'own', 30, 400)");
        database.Execute("UPDATE " + lane.table + " SET SyncState = 1 WHERE ID = 1");
        EXPECT_EQ(Audits(), audits + 1);
        EXPECT_EQ(database.Number("SELECT COUNT(*) FROM " + view + " WHERE SyncState = 0"), 0);
        const std::string unique = database.Value("SELECT UniqueID FROM " + lane.queue).value_or("");
        EXPECT_EQ(LastAudit(), lane.queue + "|1|1|" + unique + "|400|-|-");
        EXPECT_EQ(unique.size(), 36U);
        EXPECT_EQ(unique.find_first_not_of("0123456789ABCDEF-"), std::string::npos) << unique;
    }
}

} // namespace
} // namespace qndr::suite
