#include "suite/company/company_compare.h"

#include "suite/company/company_ddl.h"
#include "suite/company/company_schema.h"
#include "suite/files/ascii_case.h"

#include <algorithm>

namespace qndr::suite {

namespace {

bool HasColumn(const Table& table, std::string_view name) {
    return std::any_of(table.columns.begin(), table.columns.end(),
                       [&](const Column& column) { return column.name == name; });
}

/// The condition that a full export puts on the table's rows, with ?1 for the oldest activity that it does not
/// carry.
std::string FullExportCondition(const Table& table) {
    if (HasColumn(table, "ActivityDate")) {
        return " WHERE ActivityDate > ?1";
    }
    if (HasColumn(table, "AttachmentType")) {
        return " WHERE AttachmentType <> 2 AND AttachmentType <> 3";
    }
    return "";
}

/// The rows of one table in one database, in the order of their UniqueIDs, of which one row is in view.
class RowStream {
  public:
    RowStream(const SqliteConnection& connection, const Table& table, const std::string& condition,
              const std::string& oldest)
        : table_(table),
          rows_(connection.Prepare("SELECT " + ExchangedColumnList(table) + " FROM \"vwExporting_" +
                                   std::string(table.name) + "\"" + condition + " ORDER BY UniqueID")) {
        if (condition.find("?1") != std::string::npos) {
            rows_.Bind(1, oldest);
        }
        Next();
    }

    bool AtEnd() const { return atEnd_; }
    void Next() { atEnd_ = !rows_.Step(); }

    /// Below, at or above 0, in the order in which the rows come.
    int ComparePlace(const RowStream& other) const {
        const std::string_view mine = rows_.Text(0);
        const std::string_view theirs = other.rows_.Text(0);
        const int common =
            sqlite3_strnicmp(mine.data(), theirs.data(), static_cast<int>(std::min(mine.size(), theirs.size())));
        return common != 0 ? common : static_cast<int>(mine.size()) - static_cast<int>(theirs.size());
    }

    bool HasSameValues(const RowStream& other) const {
        int index = 0;
        for (const Column& column : table_.columns) {
            if (!column.local && !SameValue(other, ++index, column.type)) {
                return false;
            }
        }
        return true;
    }

  private:
    /// Numbers compare by their text, as they travel.
    bool SameValue(const RowStream& other, int index, ColumnType type) const {
        if (sqlite3_column_type(rows_.Handle(), index) != sqlite3_column_type(other.rows_.Handle(), index)) {
            return false;
        }
        if (type == ColumnType::Reference) {
            return EqualsWithoutCase(rows_.Text(index), other.rows_.Text(index));
        }
        return rows_.Bytes(index) == other.rows_.Bytes(index);
    }

    const Table& table_;
    SqliteStatement rows_;
    bool atEnd_ = false;
};

TableComparison CompareTable(RowStream left, RowStream right) {
    TableComparison result;
    while (!left.AtEnd() || !right.AtEnd()) {
        const int place = left.AtEnd() ? 1 : right.AtEnd() ? -1 : left.ComparePlace(right);
        if (place == 0) {
            ++(left.HasSameValues(right) ? result.same : result.differing);
        } else {
            ++(place < 0 ? result.onlyLeft : result.onlyRight);
        }
        if (place <= 0) {
            left.Next();
        }
        if (place >= 0) {
            right.Next();
        }
    }
    return result;
}

} // namespace

std::vector<TableComparison> CompareCompanies(const SqliteConnection& left, const SqliteConnection& right,
                                              Scope scope) {
    const SqliteTransaction leftReading(left, SqliteTransaction::Kind::Read);
    const SqliteTransaction rightReading(right, SqliteTransaction::Kind::Read);
    const std::string oldest = left.Value("SELECT DATEADD(day,-30,GETUTCDATE())").value_or("");
    std::vector<TableComparison> comparisons;
    for (const Table& table : AuditedTables()) {
        if (scope == Scope::Exchanged && !table.exported) {
            continue;
        }
        const std::string condition = scope == Scope::Exchanged ? FullExportCondition(table) : "";
        comparisons.push_back(CompareTable({left, table, condition, oldest}, {right, table, condition, oldest}));
        comparisons.back().table = table.name;
    }
    return comparisons;
}

} // namespace qndr::suite
