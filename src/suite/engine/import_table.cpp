#include "suite/engine/import_table.h"

#include "suite/engine/row_json.h"
#include "text/letter_case.h"
#include "text/sql_name.h"

namespace qndr::suite {

namespace {

/// Files of one make use one or two sets of columns a table; the limit keeps a strange file from filling the
/// memory.
constexpr std::size_t MostUpserts = 16;

/// Parameter 1 is the UniqueID, the table's columns follow.
int ParameterOf(std::size_t column) {
    return static_cast<int>(column) + 2;
}

/// Errors that come from what stands in the record; all others come from the disk or the database.
bool IsRecordsFault(sql::ErrorKind kind) {
    return kind == sql::ErrorKind::Constraint || kind == sql::ErrorKind::Other;
}

} // namespace

ImportTable::ImportTable(const sql::Connection& connection, const Table& table)
    : connection_(connection), table_(table) {
    for (const std::string& name : connection_.ColumnsOf(table_.name)) {
        exists_ = true;
        for (std::size_t i = 0; i < table_.columns.size(); ++i) {
            if (!table_.columns[i].local && text::EqualsWithoutCase(table_.columns[i].name, name)) {
                known_ |= std::uint64_t{1} << i;
            }
        }
    }
}

ImportTable::Outcome ImportTable::Apply(const ImportBatch& batch, const ImportRecord& record) {
    sql::Statement& statement = record.deletion ? DeleteStatement() : UpsertFor(record.columns & known_);
    statement.BindInPlace(1, batch.Text(record, record.uniqueID));
    for (std::size_t i = 0; i < record.valueCount; ++i) {
        const ImportValue& value = batch.values[record.firstValue + i];
        if ((known_ >> value.column & 1U) != 0) {
            BindValue(statement, batch, record, value);
        }
    }
    return Run(statement);
}

void ImportTable::BindValue(sql::Statement& statement, const ImportBatch& batch, const ImportRecord& record,
                            const ImportValue& value) const {
    const int parameter = ParameterOf(value.column);
    const std::string_view text = batch.Text(record, value.text);
    switch (value.kind) {
    case ImportValue::Kind::Null:
        statement.BindNull(parameter);
        break;
    case ImportValue::Kind::Integer:
        statement.Bind(parameter, value.integer);
        break;
    case ImportValue::Kind::Real:
        statement.BindReal(parameter, value.real);
        break;
    case ImportValue::Kind::Text:
        statement.BindInPlace(parameter, text);
        break;
    case ImportValue::Kind::Bytes:
        statement.BindBytesInPlace(parameter, text);
        break;
    }
}

ImportTable::Outcome ImportTable::Run(sql::Statement& statement) const {
    try {
        statement.Step();
        const bool changed = statement.ChangedRows() > 0;
        statement.Reset();
        return {.changed = changed, .refusal = {}};
    } catch (const sql::Error& error) {
        // A refused statement undoes itself alone; where the whole transaction went with it, nothing may follow.
        if (!IsRecordsFault(error.Kind()) || !connection_.IsInTransaction()) {
            throw;
        }
        return {.changed = false, .refusal = error.what()};
    }
}

sql::Statement& ImportTable::UpsertFor(std::uint64_t columns) {
    if (lastUpsert_ < upserts_.size() && upserts_[lastUpsert_].first == columns) {
        return upserts_[lastUpsert_].second;
    }
    for (lastUpsert_ = 0; lastUpsert_ < upserts_.size(); ++lastUpsert_) {
        if (upserts_[lastUpsert_].first == columns) {
            return upserts_[lastUpsert_].second;
        }
    }
    if (upserts_.size() >= MostUpserts) {
        upserts_.clear();
    }
    upserts_.emplace_back(columns, connection_.Prepare(UpsertSql(columns)));
    lastUpsert_ = upserts_.size() - 1;
    return upserts_.back().second;
}

std::string ImportTable::UpsertSql(std::uint64_t columns) const {
    std::vector<std::pair<std::string_view, int>> chosen;
    for (std::size_t i = 0; i < table_.columns.size(); ++i) {
        if ((columns >> i & 1U) != 0) {
            chosen.emplace_back(table_.columns[i].name, ParameterOf(i));
        }
    }
    return connection_.UpsertText(table_.name, "UniqueID", chosen);
}

sql::Statement& ImportTable::DeleteStatement() {
    if (!delete_) {
        delete_.emplace(
            connection_.Prepare("DELETE FROM " + text::QuotedName(table_.name) + " WHERE UniqueID = ?1"));
    }
    return *delete_;
}

std::optional<std::string> ImportTable::RowJson(std::string_view uniqueID) {
    if (!row_) {
        std::string names = "UniqueID";
        for (std::size_t i = 0; i < table_.columns.size(); ++i) {
            if ((known_ >> i & 1U) != 0) {
                names += ", " + text::QuotedName(table_.columns[i].name);
            }
        }
        row_.emplace(connection_.Prepare("SELECT " + names + " FROM " + text::QuotedName(table_.name) +
                                         " WHERE UniqueID = ?1"));
    }
    row_->Bind(1, uniqueID);
    std::optional<std::string> json;
    if (row_->Step()) {
        json = RowAsJson(*row_);
    }
    row_->Reset();
    return json;
}

} // namespace qndr::suite
