#include "changes/changes_test.h"
#include "changes/order_number_sync.h"

namespace qndr::testing {
namespace {

class OrderNumberSyncTest : public ChangesTest {
  protected:
    OrderNumberSyncTest() {
        OpenCompany(2);
        Sql("UPDATE Company SET SyncState = 4");
    }

    void Add(const std::string& table, const std::string& uniqueId, const std::string& reference = "41") {
        Sql("INSERT INTO " + table + " (UniqueID, State, ReferenceNumber, " +
            (table == "Orders" ? "OrderNumber" : "PONumber") + ") VALUES ('" + uniqueId + "', 2, " + reference +
            ", 1001)");
    }
    std::string Queues() {
        return Value("SELECT group_concat(State || ' ' || OrderUniqueID || ' ' || ReferenceNumber || ' ' || "
                     "OrderNumber) FROM OrderNumberSync") +
               "|" +
               Value("SELECT group_concat(State || ' ' || PurchaseOrderUniqueID || ' ' || ReferenceNumber || ' ' "
                     "|| PONumber) FROM PurchaseOrderNumberSync");
    }
    std::string Flags() {
        return Value("SELECT 'o' || group_concat(SyncState, '') FROM Orders") +
               Value("SELECT 'p' || group_concat(SyncState, '') FROM PurchaseOrders");
    }
};

TEST_F(OrderNumberSyncTest, NumbersAreQueuedOnceAndOnlyInTheReadyState) {
    Add("Orders", "O1");
    Add("Orders", "O2");
    Add("PurchaseOrders", "P1");
    Sql("UPDATE Orders SET SyncState = 1 WHERE UniqueID = 'O2'");
    for (const int state : {0, 1, 2, 3, 5, 6, 4}) {
        EXPECT_EQ(Queues(), "|");
        Sql("UPDATE Company SET SyncState = " + std::to_string(state));
        EXPECT_EQ(Run(SendOrderNumberSyncs), Lines{});
    }
    SendOrderNumberSyncs(context, nullptr);
    EXPECT_EQ(Queues(), "2 O1 41 1001|2 P1 41 1001");
    EXPECT_EQ(Flags(), "o11p1");
    EXPECT_EQ(activity.texts.back(), "Sending order number syncs to main");
    EXPECT_EQ(Events(), "");
}

TEST_F(OrderNumberSyncTest, OneLaneOrNumberDoesNotHinderAnother) {
    Add("Orders", "O1", "NULL");
    Add("Orders", "O''2");
    Add("Orders", "O3");
    Add("PurchaseOrders", "P1");
    gate.Refuse("Database.ExecuteRead", 1);
    SendOrderNumberSyncs(context, nullptr);
    EXPECT_EQ(Queues(), "|2 P1 41 1001");
    EXPECT_EQ(Run(SendOrderNumberSyncs), Lines{});
    EXPECT_EQ(Queues(), "2 O3 41 1001|2 P1 41 1001");
    EXPECT_EQ(Flags(), "o111p1") << "a number that cannot be queued is flagged all the same";
}

} // namespace
} // namespace qndr::testing
