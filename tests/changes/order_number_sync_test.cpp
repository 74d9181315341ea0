#include "changes/order_number_sync.h"
#include "support/agent_bench.h"

namespace qndr::testing {
namespace {

using OrderNumberSyncTest = AgentBench;

TEST_F(OrderNumberSyncTest, NumbersAreQueuedOnceAndOnlyInTheReadyState) {
    OpenCompany(2);
    Sql("INSERT INTO Orders (UniqueID, State, ReferenceNumber, OrderNumber) VALUES ('O1', 2, 41, 1001), "
        "('O''2', 2, 41, 1001)");
    for (const int state : {0, 1, 2, 3, 5, 6, 4, 4}) {
        EXPECT_EQ(Value("SELECT sum(SyncState) FROM Orders"),
                  gate.Count(calls::Database::ExecuteRead) == 0 ? "0" : "2");
        Sql("UPDATE Company SET SyncState = " + std::to_string(state));
        EXPECT_EQ(Run(SendOrderNumberSyncs), Lines{});
    }
    EXPECT_EQ(Value("SELECT group_concat(OrderUniqueID) FROM OrderNumberSync"), "O1")
        << "a number that cannot be queued is flagged all the same";
}

} // namespace
} // namespace qndr::testing
