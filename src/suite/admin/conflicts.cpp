#include "suite/admin/conflicts.h"

#include "services/failure.h"
#include "suite/engine/row_json.h"
#include "text/sql_name.h"

namespace qndr::suite {

using services::Failure;

namespace {

/// What stood in the column: the storage class is the column's, as it is for a record that arrives.
StoredValue ValueFor(const Column& column, RowJsonValue&& value) {
    if (value.form == RowJsonValue::Form::Null) {
        return Null{};
    }
    if (value.form == RowJsonValue::Form::Base64) {
        return column.type == ColumnType::Bytes ? StoredValue(Bytes{std::move(value.content)})
                                                : StoredValue(std::move(value.content));
    }
    switch (column.type) {
    case ColumnType::Integer:
    case ColumnType::Boolean:
    case ColumnType::Decimal:
        return NumberOrText(value.content);
    default:
        return std::move(value.content);
    }
}

std::vector<ColumnValue> ReadVersion(const sql::Connection& connection, const Table& table,
                                     std::string_view json) {
    std::vector<ColumnValue> values;
    for (RowJsonValue& value : ReadRowJson(connection, json)) {
        if (const Column* column = FindExchangedColumn(table, value.column)) {
            values.push_back({column, ValueFor(*column, std::move(value))});
        }
    }
    return values;
}

void Mark(const sql::Connection& connection, std::int64_t id, ConflictState state) {
    sql::Statement statement = connection.Prepare("UPDATE ImportConflicts SET State = ?2 WHERE ID = ?1");
    statement.Bind(1, id);
    statement.Bind(2, static_cast<std::int64_t>(state));
    statement.Step();
}

/// Writes the audit row that sends what stands here already. The row of a deletion is gone, and with it its local
/// key, which no deletion needs on its way.
void SendAgain(const sql::Connection& connection, const Conflict& conflict) {
    const std::string table = text::QuotedName(conflict.table->name);
    const std::string data =
        conflict.table->auditData.empty() ? "NULL" : text::QuotedName(conflict.table->auditData);
    sql::Statement audit = connection.Prepare(
        "INSERT INTO AuditLog (TableName, RecordID, AuditType, AddedOn, AuditUniqueID, AuditData) " +
        (conflict.losing
             ? "SELECT ?1, ID, ?2, GETUTCDATE(), UniqueID, " + data + " FROM " + table + " WHERE UniqueID = ?3"
             : std::string("VALUES (?1, 0, ?2, GETUTCDATE(), ?3, NULL)")));
    audit.Bind(1, conflict.table->name);
    audit.Bind(2, conflict.losing ? AuditUpdate : AuditDeletion);
    audit.Bind(3, conflict.uniqueID);
    audit.Step();
}

Restoration StandsAlready(const sql::Connection& connection, const Conflict& conflict) {
    if (conflict.reason == ConflictReason::OtherVersion) {
        return Restoration::NothingToDo;
    }
    SendAgain(connection, conflict);
    return Restoration::SentAgain;
}

Restoration Restore(const sql::Connection& connection, const Conflict& conflict) {
    if (!conflict.losing) {
        const RowChange change = DeleteRow(connection, *conflict.table, conflict.uniqueID);
        return change == RowChange::Changed ? Restoration::Deleted : StandsAlready(connection, conflict);
    }
    switch (UpdateRow(connection, *conflict.table, conflict.uniqueID, *conflict.losing)) {
    case RowChange::Changed:
        return Restoration::Updated;
    case RowChange::Unchanged:
        return StandsAlready(connection, conflict);
    case RowChange::NoRow:
        break;
    }
    InsertQueuedRow(connection, *conflict.table, conflict.uniqueID, *conflict.losing);
    return Restoration::Inserted;
}

} // namespace

Conflict ReadConflict(const sql::Connection& connection, std::int64_t id) {
    sql::Statement row = connection.Prepare(
        "SELECT TableName, RowUniqueID, OccurredOn, LosingOrigin, WinningOrigin, State, LosingValues, Reason "
        "FROM ImportConflicts WHERE ID = ?1");
    row.Bind(1, id);
    if (!row.Step()) {
        throw Failure("there is no conflict " + std::to_string(id));
    }
    Conflict conflict;
    conflict.id = id;
    conflict.table = FindAuditedTable(row.Text(0));
    if (conflict.table == nullptr) {
        throw Failure("the conflict " + std::to_string(id) + " is about the unknown table '" +
                      std::string(row.Text(0)) + "'");
    }
    conflict.uniqueID = row.Text(1);
    conflict.occurredOn = row.Text(2);
    conflict.losingOrigin = row.Text(3);
    conflict.winningOrigin = row.Text(4);
    conflict.state = static_cast<ConflictState>(row.Integer(5));
    conflict.reason = static_cast<ConflictReason>(row.Integer(7));
    if (!row.IsNull(6)) {
        conflict.losing = ReadVersion(connection, *conflict.table, row.Text(6));
    }
    return conflict;
}

Restoration RestoreConflict(const sql::Connection& connection, std::int64_t id) {
    sql::Transaction transaction(connection, sql::Transaction::Kind::Write);
    const Restoration restoration = Restore(connection, ReadConflict(connection, id));
    Mark(connection, id, ConflictState::Restored);
    transaction.Commit();
    return restoration;
}

GivenUpConflicts FindGivenUpConflicts(const sql::Connection& connection) {
    sql::Statement row = connection.Prepare(
        "SELECT ID, EXISTS (SELECT 1 FROM AuditLog WHERE TableName = ImportConflicts.TableName AND AuditUniqueID "
        "= "
        "RowUniqueID AND ID > (SELECT AuditID FROM GivenUpMark)) FROM ImportConflicts WHERE Reason > 0 AND State "
        "= ?1 "
        "ORDER BY CASE TableName WHEN 'Orders' THEN 1 WHEN 'OrderItems' THEN 2 WHEN 'PurchaseOrders' THEN 3 "
        "WHEN 'PurchaseOrderItems' THEN 4 ELSE 5 END, ID");
    row.Bind(1, static_cast<std::int64_t>(ConflictState::Open));
    GivenUpConflicts found;
    while (row.Step()) {
        if (row.Integer(1) != 0) {
            ++found.changedSince;
        } else {
            found.restorable.push_back(row.Integer(0));
        }
    }
    return found;
}

void DismissConflict(const sql::Connection& connection, std::int64_t id) {
    sql::Statement statement =
        connection.Prepare("UPDATE ImportConflicts SET State = ?2 WHERE ID = ?1 AND State <> ?3");
    statement.Bind(1, id);
    statement.Bind(2, static_cast<std::int64_t>(ConflictState::Dismissed));
    statement.Bind(3, static_cast<std::int64_t>(ConflictState::Restored));
    statement.Step();
    if (statement.ChangedRows() == 0) {
        throw Failure("there is no conflict " + std::to_string(id) + " that waits for a decision");
    }
}

} // namespace qndr::suite
