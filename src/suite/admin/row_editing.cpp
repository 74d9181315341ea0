#include "suite/admin/row_editing.h"

#include "suite/schema/company_ddl.h"
#include "suite/schema/vocabulary.h"
#include "text/letter_case.h"
#include "text/sql_name.h"

#include <charconv>

namespace qndr::suite {

namespace {

struct Binder {
    sql::Statement& statement;
    int parameter;

    void operator()(Null) const { statement.BindNull(parameter); }
    void operator()(std::int64_t number) const { statement.Bind(parameter, number); }
    void operator()(double number) const { statement.BindReal(parameter, number); }
    void operator()(const std::string& text) const { statement.Bind(parameter, text); }
    void operator()(const Bytes& bytes) const { statement.BindBytes(parameter, bytes.content); }
};

/// Binds the values to the parameters behind ?1.
void BindValues(sql::Statement& statement, const std::vector<ColumnValue>& values) {
    int parameter = 1;
    for (const ColumnValue& value : values) {
        std::visit(Binder{statement, ++parameter}, value.value);
    }
}

StoredValue ReadValue(const sql::Statement& row, int column) {
    switch (row.Type(column)) {
    case sql::ValueType::Integer:
        return row.Integer(column);
    case sql::ValueType::Real:
        return row.Real(column);
    case sql::ValueType::Text:
        return std::string(row.Text(column));
    case sql::ValueType::Bytes:
        return Bytes{std::string(row.Bytes(column))};
    default:
        return Null{};
    }
}

/// Of a statement that selects the ExchangedColumnList.
Row RowOf(const sql::Statement& statement, const Table& table) {
    Row row{std::string(statement.Text(0)), {}};
    int index = 0;
    for (const Column& column : table.columns) {
        if (!column.local) {
            row.values.push_back({&column, ReadValue(statement, ++index)});
        }
    }
    return row;
}

std::string SelectStatement(const Table& table) {
    return "SELECT " + ExchangedColumnList(table) + " FROM " + text::QuotedName(table.name);
}

bool StandsForNothing(const StoredValue& value) {
    const auto* text = std::get_if<std::string>(&value);
    return std::holds_alternative<Null>(value) || (text != nullptr && text->empty());
}

std::string Condition(const ColumnValue& condition, const std::string& parameter) {
    const std::string name = text::QuotedName(condition.column->name);
    return StandsForNothing(condition.value) ? "ifnull(" + name + ", '') = ''"
                                             : name + " COLLATE NOCASE = " + parameter;
}

RowChange OutcomeOfStep(sql::Statement& statement) {
    statement.Step();
    return statement.ChangedRows() > 0 ? RowChange::Changed : RowChange::NoRow;
}

} // namespace

StoredValue NumberOrText(std::string_view text) {
    std::int64_t whole = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), whole);
    if (error == std::errc() && end == text.data() + text.size()) {
        return whole;
    }
    const auto number = ParseNumber(text);
    return number ? StoredValue(*number) : StoredValue(std::string(text));
}

const Column* FindExchangedColumn(const Table& table, std::string_view name) {
    for (const Column& column : table.columns) {
        if (!column.local && text::EqualsWithoutCase(column.name, name)) {
            return &column;
        }
    }
    return nullptr;
}

std::optional<Row> ReadRow(const sql::Connection& connection, const Table& table, std::string_view uniqueID) {
    sql::Statement statement = connection.Prepare(SelectStatement(table) + " WHERE UniqueID = ?1");
    statement.Bind(1, uniqueID);
    return statement.Step() ? std::optional(RowOf(statement, table)) : std::nullopt;
}

namespace {

/// The statement with the conditions behind it, their parameters from ?2 on.
sql::Statement PrepareWhere(const sql::Connection& connection, const std::string& select,
                            const std::vector<ColumnValue>& conditions, const std::string& rest) {
    std::string sql = select;
    for (std::size_t i = 0; i < conditions.size(); ++i) {
        sql += (i == 0 ? " WHERE " : " AND ") + Condition(conditions[i], "?" + std::to_string(i + 2));
    }
    sql::Statement statement = connection.Prepare(sql + rest);
    for (std::size_t i = 0; i < conditions.size(); ++i) {
        if (!StandsForNothing(conditions[i].value)) { // such a condition has no parameter
            std::visit(Binder{statement, static_cast<int>(i) + 2}, conditions[i].value);
        }
    }
    return statement;
}

} // namespace

std::vector<Row> FindRows(const sql::Connection& connection, const Table& table,
                          const std::vector<ColumnValue>& conditions, std::int64_t limit) {
    sql::Statement statement =
        PrepareWhere(connection, SelectStatement(table), conditions, " ORDER BY ID LIMIT ?1");
    statement.Bind(1, limit);
    std::vector<Row> rows;
    while (statement.Step()) {
        rows.push_back(RowOf(statement, table));
    }
    return rows;
}

std::int64_t CountRows(const sql::Connection& connection, const Table& table,
                       const std::vector<ColumnValue>& conditions) {
    sql::Statement statement =
        PrepareWhere(connection, "SELECT COUNT(*) FROM " + text::QuotedName(table.name), conditions, "");
    return statement.Step() ? statement.Integer(0) : 0;
}

RowChange UpdateRow(const sql::Connection& connection, const Table& table, std::string_view uniqueID,
                    const std::vector<ColumnValue>& values) {
    std::string changes;
    std::string differs;
    for (std::size_t i = 0; i < values.size(); ++i) {
        const std::string name = text::QuotedName(values[i].column->name);
        const std::string parameter = "?" + std::to_string(i + 2);
        changes.append(i == 0 ? "" : ", ").append(name).append(" = ").append(parameter);
        // A column may be compared without case by default; a value that differs in case alone is a change.
        differs.append(i == 0 ? "" : " OR ").append(name).append(" COLLATE BINARY IS NOT ").append(parameter);
    }
    if (!values.empty()) {
        sql::Statement statement = connection.Prepare("UPDATE " + text::QuotedName(table.name) + " SET " +
                                                      changes + " WHERE UniqueID = ?1 AND (" + differs + ")");
        statement.Bind(1, uniqueID);
        BindValues(statement, values);
        if (OutcomeOfStep(statement) == RowChange::Changed) {
            return RowChange::Changed;
        }
    }
    return ReadRow(connection, table, uniqueID) ? RowChange::Unchanged : RowChange::NoRow;
}

void InsertRow(const sql::Connection& connection, const Table& table, std::string_view uniqueID,
               const std::vector<ColumnValue>& values) {
    std::string names = "UniqueID";
    std::string parameters = "?1";
    for (std::size_t i = 0; i < values.size(); ++i) {
        names += ", " + text::QuotedName(values[i].column->name);
        parameters += ", ?" + std::to_string(i + 2);
    }
    sql::Statement statement = connection.Prepare("INSERT INTO " + text::QuotedName(table.name) + " (" + names +
                                                  ") VALUES (" + parameters + ")");
    statement.Bind(1, uniqueID);
    BindValues(statement, values);
    statement.Step();
}

void InsertQueuedRow(const sql::Connection& connection, const Table& table, std::string_view uniqueID,
                     const std::vector<ColumnValue>& values) {
    InsertRow(connection, table, uniqueID, values);
    for (const Column& column : table.columns) {
        if (column.local && column.name == SyncStateColumn) {
            sql::Statement statement =
                connection.Prepare("UPDATE " + text::QuotedName(table.name) + " SET " +
                                   text::QuotedName(column.name) + " = ?2 WHERE UniqueID = ?1");
            statement.Bind(1, uniqueID);
            statement.Bind(2, NumberQueued);
            statement.Step();
        }
    }
}

RowChange DeleteRow(const sql::Connection& connection, const Table& table, std::string_view uniqueID) {
    sql::Statement statement =
        connection.Prepare("DELETE FROM " + text::QuotedName(table.name) + " WHERE UniqueID = ?1");
    statement.Bind(1, uniqueID);
    return OutcomeOfStep(statement);
}

} // namespace qndr::suite
