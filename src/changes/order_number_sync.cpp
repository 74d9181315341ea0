#include "changes/order_number_sync.h"

#include "services/company_numbers.h"
#include "services/record_document.h"
#include "shared/failure_rule.h"
#include "shared/formatting.h"
#include "shared/records.h"
#include "syncfiles/query_rows.h"

#include <string>

namespace qndr {
namespace {

/// What differs between orders and purchase orders. `SyncState` is a scale of its own in these tables: 0 still to
/// be queued, 1 queued. Stored: never change.
struct NumberLane {
    const char* Count;
    const char* Waiting;
    const char* Queue;
    const char* Flag;
    const char* NumberColumn;
};

constexpr NumberLane kLanes[] = {
    {"SELECT COUNT(*) AS MyCount FROM vwExporting_Orders_NumberSync WHERE SyncState = 0",
     "SELECT * FROM vwExporting_Orders_NumberSync WHERE SyncState = 0",
     "INSERT INTO OrderNumberSync (State, OrderUniqueID, ReferenceNumber, OrderNumber) VALUES({0}, '{1}', {2}, "
     "{3})",
     "UPDATE Orders SET SyncState = 1 WHERE ID = {0}", "OrderNumber"},
    {"SELECT COUNT(*) AS MyCount FROM vwExporting_PurchaseOrders_NumberSync WHERE SyncState = 0",
     "SELECT * FROM vwExporting_PurchaseOrders_NumberSync WHERE SyncState = 0",
     "INSERT INTO PurchaseOrderNumberSync (State, PurchaseOrderUniqueID, ReferenceNumber, PONumber) VALUES({0}, "
     "'{1}', {2}, {3})",
     "UPDATE PurchaseOrders SET SyncState = 1 WHERE ID = {0}", "PONumber"},
};

void QueueNumber(AgentContext& context, const NumberLane& lane, const services::Node* record) {
    Attempt([&] {
        context.Database().ExecuteNonQuery(FormatStatement(
            lane.Queue, GetNodeString("State", record, ""), GetNodeString("UniqueID", record, ""),
            GetNodeString("ReferenceNumber", record, ""), GetNodeString(lane.NumberColumn, record, "")));
    });
    Attempt(
        [&] { context.Database().ExecuteNonQuery(FormatStatement(lane.Flag, GetNodeText("ID", record, ""))); });
}

void QueueNumbers(AgentContext& context, const NumberLane& lane) {
    std::int32_t count = 0;
    Attempt([&] { count = context.Database().ExecuteScaler(lane.Count, "", "0").ToLong(); });
    if (count <= 0) {
        return;
    }
    const QueryRows rows(context, lane.Waiting);
    for (long index = 0; index < rows.Count(); ++index) {
        QueueNumber(context, lane, rows.Row(index).get());
    }
}

} // namespace

void SendOrderNumberSyncs(AgentContext& context, ActivityTarget* activity) {
    Attempt([&] { SetActivity(context, "Sending order number syncs to main", activity); });
    std::int16_t state = 0;
    Attempt([&] { state = context.Database().ExecuteScaler("SELECT SyncState FROM Company").ToInteger(); });
    if (state != SyncStateReady) {
        return;
    }
    for (const NumberLane& lane : kLanes) {
        QueueNumbers(context, lane);
    }
}

} // namespace qndr
