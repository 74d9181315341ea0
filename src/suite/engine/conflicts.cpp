#include "suite/engine/conflicts.h"

#include "services/failure.h"
#include "suite/engine/row_json.h"

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

std::vector<ColumnValue> ReadVersion(const SqliteConnection& connection, const Table& table,
                                     std::string_view json) {
    std::vector<ColumnValue> values;
    for (RowJsonValue& value : ReadRowJson(connection, json)) {
        if (const Column* column = FindExchangedColumn(table, value.column)) {
            values.push_back({column, ValueFor(*column, std::move(value))});
        }
    }
    return values;
}

void Mark(const SqliteConnection& connection, std::int64_t id, ConflictState state) {
    SqliteStatement statement = connection.Prepare("UPDATE ImportConflicts SET State = ?2 WHERE ID = ?1");
    statement.Bind(1, id);
    statement.Bind(2, static_cast<std::int64_t>(state));
    statement.Step();
}

/// Makes a row anew. An order's number was queued for main when the order was made; it must not be queued again.
void InsertQueuedRow(const SqliteConnection& connection, const Conflict& conflict) {
    InsertRow(connection, *conflict.table, conflict.uniqueID, *conflict.losing);
    for (const Column& column : conflict.table->columns) {
        if (column.local && column.name == SyncStateColumn) {
            SqliteStatement statement = connection.Prepare("UPDATE \"" + std::string(conflict.table->name) +
                                                           "\" SET SyncState = 1 WHERE UniqueID = ?1");
            statement.Bind(1, conflict.uniqueID);
            statement.Step();
        }
    }
}

Restoration Restore(const SqliteConnection& connection, const Conflict& conflict) {
    if (!conflict.losing) {
        const RowChange change = DeleteRow(connection, *conflict.table, conflict.uniqueID);
        return change == RowChange::Changed ? Restoration::Deleted : Restoration::NothingToDo;
    }
    switch (UpdateRow(connection, *conflict.table, conflict.uniqueID, *conflict.losing)) {
    case RowChange::Changed:
        return Restoration::Updated;
    case RowChange::Unchanged:
        return Restoration::NothingToDo;
    case RowChange::NoRow:
        break;
    }
    InsertQueuedRow(connection, conflict);
    return Restoration::Inserted;
}

} // namespace

Conflict ReadConflict(const SqliteConnection& connection, std::int64_t id) {
    SqliteStatement row = connection.Prepare(
        "SELECT TableName, RowUniqueID, OccurredOn, LosingOrigin, WinningOrigin, State, LosingValues "
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
    if (!row.IsNull(6)) {
        conflict.losing = ReadVersion(connection, *conflict.table, row.Text(6));
    }
    return conflict;
}

Restoration RestoreConflict(const SqliteConnection& connection, std::int64_t id) {
    SqliteTransaction transaction(connection, SqliteTransaction::Kind::Write);
    const Restoration restoration = Restore(connection, ReadConflict(connection, id));
    Mark(connection, id, ConflictState::Restored);
    transaction.Commit();
    return restoration;
}

void DismissConflict(const SqliteConnection& connection, std::int64_t id) {
    SqliteStatement statement =
        connection.Prepare("UPDATE ImportConflicts SET State = ?2 WHERE ID = ?1 AND State <> ?3");
    statement.Bind(1, id);
    statement.Bind(2, static_cast<std::int64_t>(ConflictState::Dismissed));
    statement.Bind(3, static_cast<std::int64_t>(ConflictState::Restored));
    statement.Step();
    if (sqlite3_changes(connection.Handle()) == 0) {
        throw Failure("there is no conflict " + std::to_string(id) + " that waits for a decision");
    }
}

} // namespace qndr::suite
