#pragma once

#include "services/variant.h"
#include "suite/schema/company_schema.h"
#include "suite/sql/connection.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace qndr::suite {

struct Bytes {
    std::string content;
    bool operator==(const Bytes&) const = default;
};

/// A value as the database holds it, after its storage class.
using StoredValue = std::variant<Null, std::int64_t, double, std::string, Bytes>;

struct ColumnValue {
    const Column* column = nullptr; ///< one of the table's
    StoredValue value;
};

/// A row without its local key and the local columns, in the table's order.
struct Row {
    std::string uniqueID;
    std::vector<ColumnValue> values;
};

/// The text as the number that it is, a whole one if it can be; the text itself when it is none.
StoredValue NumberOrText(std::string_view text);

/// The column that is exchanged under this name, without regard to letter case; null when there is none.
const Column* FindExchangedColumn(const Table& table, std::string_view name);

/// Nothing when there is no such row. Raises services::Failure when the database does not work, as all below.
std::optional<Row> ReadRow(const sql::Connection& connection, const Table& table, std::string_view uniqueID);

/// The first `limit` rows, in the order in which they were made here, that hold all these values. Text is compared
/// without letter case; NULL and the empty text stand for each other.
std::vector<Row> FindRows(const sql::Connection& connection, const Table& table,
                          const std::vector<ColumnValue>& conditions, std::int64_t limit);

/// How many there are of them.
std::int64_t CountRows(const sql::Connection& connection, const Table& table,
                       const std::vector<ColumnValue>& conditions);

// Changes as the application around the database makes them: the triggers audit them as this company's own, and so
// they travel. Each is one statement; the caller keeps it in a transaction with what belongs to it.

enum class RowChange { Changed, Unchanged, NoRow };

/// A row that holds the values already is not written, and so not audited.
RowChange UpdateRow(const sql::Connection& connection, const Table& table, std::string_view uniqueID,
                    const std::vector<ColumnValue>& values);
/// Raises services::Failure when there is a row with this UniqueID.
void InsertRow(const sql::Connection& connection, const Table& table, std::string_view uniqueID,
               const std::vector<ColumnValue>& values);
/// InsertRow for a row that was there before. An order's number was queued for main when the order was made first;
/// it is not queued again.
void InsertQueuedRow(const sql::Connection& connection, const Table& table, std::string_view uniqueID,
                     const std::vector<ColumnValue>& values);
/// Changed or NoRow.
RowChange DeleteRow(const sql::Connection& connection, const Table& table, std::string_view uniqueID);

} // namespace qndr::suite
