#include "programs/qndr5ctl/order_restore.h"

#include "text/letter_case.h"

#include <algorithm>
#include <limits>

namespace qndr::control {

namespace {

using suite::RowChange;

const suite::Table& TableOf(std::string_view name) {
    return *suite::FindAuditedTable(name);
}

RestoreResult::Order WriteOrder(const sql::Connection& company, const suite::Row& order) {
    const suite::Table& table = TableOf("Orders");
    switch (suite::UpdateRow(company, table, order.uniqueID, order.values)) {
    case RowChange::Unchanged:
        return RestoreResult::Order::Unchanged;
    case RowChange::Changed:
        return RestoreResult::Order::Changed;
    case RowChange::NoRow:
        break;
    }
    suite::InsertQueuedRow(company, table, order.uniqueID, order.values);
    return RestoreResult::Order::MadeAnew;
}

void WriteItem(const sql::Connection& company, const suite::Row& item, RestoreResult& result) {
    const suite::Table& table = TableOf("OrderItems");
    switch (suite::UpdateRow(company, table, item.uniqueID, item.values)) {
    case RowChange::Unchanged:
        return;
    case RowChange::Changed:
        ++result.itemsChanged;
        return;
    case RowChange::NoRow:
        suite::InsertRow(company, table, item.uniqueID, item.values);
        ++result.itemsMadeAnew;
        return;
    }
}

int RemoveOtherItems(const sql::Connection& company, const OrderBackup& backup) {
    const suite::Table& table = TableOf("OrderItems");
    const suite::Column* ofOrder = suite::FindExchangedColumn(table, "OrderUniqueID");
    int removed = 0;
    for (const suite::Row& item : suite::FindRows(company, table, {{ofOrder, backup.order.uniqueID}},
                                                  std::numeric_limits<std::int64_t>::max())) {
        const bool isKept = std::any_of(backup.items.begin(), backup.items.end(), [&](const suite::Row& kept) {
            return text::EqualsWithoutCase(kept.uniqueID, item.uniqueID);
        });
        if (!isKept && suite::DeleteRow(company, table, item.uniqueID) == RowChange::Changed) {
            ++removed;
        }
    }
    return removed;
}

} // namespace

RestoreResult RestoreOrder(const OpenedCompany& company, const OrderBackup& backup) {
    const sql::Connection& database = company.Database();
    sql::Transaction transaction(database, sql::Transaction::Kind::Write);
    company.DemandThatChangesTravel();
    RestoreResult result;
    result.order = WriteOrder(database, backup.order);
    for (const suite::Row& item : backup.items) {
        WriteItem(database, item, result);
    }
    result.itemsRemoved = RemoveOtherItems(database, backup);
    transaction.Commit();
    return result;
}

} // namespace qndr::control
