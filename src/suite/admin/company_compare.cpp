#include "suite/admin/company_compare.h"

#include "suite/schema/company_ddl.h"
#include "suite/schema/company_schema.h"
#include "suite/schema/vocabulary.h"
#include "text/letter_case.h"
#include "text/sql_name.h"

#include <algorithm>

namespace qndr::suite {

namespace {

bool HasColumn(const Table& table, std::string_view name) {
    return std::any_of(table.columns.begin(), table.columns.end(),
                       [&](const Column& column) { return column.name == name; });
}

/// Which of the table's rows a full export carries, with ?1 for the oldest activity that it does not carry.
std::string FullExportCondition(const Table& table) {
    if (!table.exported) {
        return "0";
    }
    if (HasColumn(table, "ActivityDate")) {
        return "ActivityDate > ?1";
    }
    if (HasColumn(table, "AttachmentType")) {
        return "AttachmentType <> 2 AND AttachmentType <> 3";
    }
    return "1";
}

/// The rows of one table in one database, in the order of their UniqueIDs, of which one row is in view.
class RowStream {
  public:
    RowStream(const sql::Connection& connection, const Table& table, Scope scope, const std::string& oldest)
        : table_(table),
          rows_(connection.Prepare("SELECT " + ExchangedColumnList(table) + ", " + FullExportCondition(table) +
                                   " FROM " + text::QuotedName("vwExporting_" + std::string(table.name)) +
                                   (scope == Scope::Exchanged ? " WHERE " + FullExportCondition(table) : "") +
                                   " ORDER BY UniqueID")) {
        if (rows_.ParameterCount() > 0) {
            rows_.Bind(1, oldest);
        }
        Next();
    }

    bool AtEnd() const { return atEnd_; }
    void Next() { atEnd_ = !rows_.Step(); }
    std::string UniqueID() const { return std::string(rows_.Text(0)); }
    bool IsFullyExported() const { return rows_.Integer(rows_.ColumnCount() - 1) != 0; }

    /// Below, at or above 0, in the order in which the rows come.
    int ComparePlace(const RowStream& other) const {
        const std::string mine = text::ToLowerCase(rows_.Text(0));
        return mine.compare(text::ToLowerCase(other.rows_.Text(0)));
    }

    std::vector<std::string> DifferingColumns(const RowStream& other) const {
        std::vector<std::string> names;
        int index = 0;
        for (const Column& column : table_.columns) {
            if (!column.local && !SameValue(other, ++index, column.type)) {
                names.emplace_back(column.name);
            }
        }
        return names;
    }

  private:
    /// Numbers compare by their text, as they travel.
    bool SameValue(const RowStream& other, int index, ColumnType type) const {
        if (rows_.Type(index) != other.rows_.Type(index)) {
            return false;
        }
        if (type == ColumnType::Reference) {
            return text::EqualsWithoutCase(rows_.Text(index), other.rows_.Text(index));
        }
        return rows_.Bytes(index) == other.rows_.Bytes(index);
    }

    const Table& table_;
    sql::Statement rows_;
    bool atEnd_ = false;
};

/// Counts the rows of one table and tells of those that are not alike.
class TableCounts {
  public:
    /// `mayLack` is the side that need not hold what full data does not carry; 0 for none.
    TableCounts(const Table& table, int mayLack, const DifferenceSink& tell) : mayLack_(mayLack), tell_(tell) {
        result_.table = table.name;
    }

    void Both(const RowStream& left, const RowStream& right) {
        std::vector<std::string> columns = left.DifferingColumns(right);
        if (columns.empty()) {
            ++result_.same;
        } else {
            Tell(result_.differing, left, RowDifference::Kind::Differing, std::move(columns));
        }
    }
    void OnlyLeft(const RowStream& row) {
        if (mayLack_ > 0 && !row.IsFullyExported()) {
            Tell(result_.leftOut, row, RowDifference::Kind::LeftOut);
        } else {
            Tell(result_.onlyLeft, row, RowDifference::Kind::OnlyLeft);
        }
    }
    void OnlyRight(const RowStream& row) {
        if (mayLack_ < 0 && !row.IsFullyExported()) {
            Tell(result_.leftOut, row, RowDifference::Kind::LeftOut);
        } else {
            Tell(result_.onlyRight, row, RowDifference::Kind::OnlyRight);
        }
    }
    const TableComparison& Result() const { return result_; }

  private:
    void Tell(std::int64_t& count, const RowStream& row, RowDifference::Kind kind,
              std::vector<std::string> columns = {}) {
        ++count;
        if (tell_) {
            tell_({result_.table, row.UniqueID(), kind, std::move(columns)});
        }
    }

    int mayLack_;
    const DifferenceSink& tell_;
    TableComparison result_;
};

void CompareTable(RowStream left, RowStream right, TableCounts& counts) {
    while (!left.AtEnd() || !right.AtEnd()) {
        const int place = left.AtEnd() ? 1 : right.AtEnd() ? -1 : left.ComparePlace(right);
        if (place == 0) {
            counts.Both(left, right);
        } else if (place < 0) {
            counts.OnlyLeft(left);
        } else {
            counts.OnlyRight(right);
        }
        if (place <= 0) {
            left.Next();
        }
        if (place >= 0) {
            right.Next();
        }
    }
}

/// Above 0 when the right company is a workstation beside a main company, below 0 the other way round.
int SideThatMayLack(const sql::Connection& left, const sql::Connection& right, Scope scope) {
    const std::string IsMain = "SELECT CompanyType = " + std::to_string(MainCompanyType) + " FROM Company";
    return scope == Scope::Held ? static_cast<int>(left.Number(IsMain) - right.Number(IsMain)) : 0;
}

} // namespace

std::vector<TableComparison> CompareCompanies(const sql::Connection& left, const sql::Connection& right,
                                              Scope scope, const DifferenceSink& tell) {
    const sql::Transaction leftReading(left, sql::Transaction::Kind::Read);
    const sql::Transaction rightReading(right, sql::Transaction::Kind::Read);
    const std::string oldest = left.Value("SELECT DATEADD(day,-30,GETUTCDATE())").value_or("");
    const int mayLack = SideThatMayLack(left, right, scope);
    std::vector<TableComparison> comparisons;
    for (const Table& table : AuditedTables()) {
        if (scope == Scope::Exchanged && !table.exported) {
            continue;
        }
        TableCounts counts(table, mayLack, tell);
        CompareTable({left, table, scope, oldest}, {right, table, scope, oldest}, counts);
        comparisons.push_back(counts.Result());
    }
    return comparisons;
}

} // namespace qndr::suite
