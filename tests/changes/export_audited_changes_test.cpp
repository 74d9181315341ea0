#include "changes/export_audited_changes.h"
#include "support/agent_bench.h"

namespace qndr::testing {
namespace {

class ExportAuditedChangesTest : public AgentBench {
  protected:
    ExportAuditedChangesTest() { OpenCompany(2); }

    bool Export(int fromId, int toId) {
        info = {};
        return ExportAuditedChanges(context, folder.Path(), info, fromId, toId);
    }
    SyncFileInfo info;
};

TEST_F(ExportAuditedChangesTest, EachAuditRowOfTheRangeIsOneEntryInItsOrder) {
    Audit("Terms", 1, 1);
    Audit("Customers", 7, 2);
    Audit("ROAMINGWorkstations", 1, 2);
    Audit("tErms", 1, 1);
    Audit("Customers", 8, 3);
    Audit("Terms", 1, 4);
    Audit("Terms", 1, 0);
    Audit("Customers", 7, 2);
    Audit("Terms", 1, 1);
    engine->exports = {{"left", "over"}};
    gate.Before(calls::Database::ExecuteRead,
                [&] { EXPECT_EQ(FormatGeneralDate(time.Now()), "2026-11-22 14:08:53") << "a pause comes first"; });
    EXPECT_TRUE(Export(1, 8));
    const NotingEngine::Entries expected{
        {"Customers", "SELECT * FROM vwExporting_Customers WHERE ID = 7"},
        {"tErms", "SELECT * FROM vwExporting_tErms WHERE ID = 1"},
        {"Customers deleted", "SELECT AddedOn AS DeletedOn, AuditUniqueID AS UniqueID FROM AuditLog WHERE ID = 5"},
        {"Customers", "SELECT * FROM vwExporting_Customers WHERE ID = 7"}};
    EXPECT_EQ(engine->exported, std::vector<NotingEngine::Entries>{expected});
    EXPECT_EQ(info.Files, Lines{Path("data.xml")});
    EXPECT_EQ(TakeLog(), Lines{});
    for (const auto& entry : expected) {
        EXPECT_NE(Company().ExecuteRead(services::Statement(entry.second)), nullptr) << entry.second;
    }
}

TEST_F(ExportAuditedChangesTest, NothingToSendIsNoFailure) {
    Audit("RoamingWorkstations", 1, 2);
    Audit("Terms", 1, 4);
    EXPECT_FALSE(Export(0, 1)) << "rows about workstations only";
    gate.Refuse(calls::Database::ExecuteRead, 1);
    EXPECT_FALSE(Export(0, 2)) << "rows that cannot be read";
    EXPECT_EQ(engine->exported.size(), 0U);
    EXPECT_EQ(TakeLog(), Lines{});
    EXPECT_EQ(Events(), "");
    EXPECT_TRUE(Export(0, 2)) << "a row of an unknown kind counts as a change";
    EXPECT_EQ(engine->exported, std::vector<NotingEngine::Entries>(1));
}

TEST_F(ExportAuditedChangesTest, OrdersAreBackedUpOnceForEachExport) {
    for (const char* table : {"Orders", "ORDERS", "OrderItems", "orders"}) {
        Audit(table, 5, 2, "1001");
    }
    Audit("Orders", 6, 3);
    EXPECT_TRUE(Export(0, 5));
    EXPECT_EQ(engine->orders, (std::vector{5, 6}));
    EXPECT_EQ(engine->exported.back().size(), 5U) << "each row travels, and nothing of the backups";
    SetNumber(settings::BackupOrderData, 0);
    EXPECT_TRUE(Export(0, 5));
    EXPECT_EQ(engine->orders.size(), 2U);
}

TEST_F(ExportAuditedChangesTest, BackupThatWouldLeadElsewhereStopsNothing) {
    time.SetNow(*ParseDate("2026-11-30 23:00:00"));
    Audit("Orders", 5, 2, "/../../../../../Sync/x");
    Audit("Orders", 4, 2, "1001");
    EXPECT_TRUE(Export(0, 2));
    EXPECT_EQ(FilesBelow("Local"),
              Lines{"Local/Acme/Sync Local/Orders/2026/11/ODR1001~TOKEN~20261201T040001.zip"});
    EXPECT_EQ(FilesBelow("Sync"), Lines{});
    EXPECT_EQ(FilesBelow("Temp"), Lines{});
}

} // namespace
} // namespace qndr::testing
