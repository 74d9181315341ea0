#include "suite/engine/import_table.h"

#include "suite/engine/row_json.h"
#include "suite/files/ascii_case.h"

namespace qndr::suite {

namespace {

/// Files of one make use one or two sets of columns a table; the limit keeps a strange file from filling the
/// memory.
constexpr std::size_t MostUpserts = 16;

std::string Quoted(std::string_view name) {
    return "\"" + std::string(name) + "\"";
}

/// Parameter 1 is the UniqueID, the table's columns follow.
int ParameterOf(std::size_t column) {
    return static_cast<int>(column) + 2;
}

/// Errors that come from what stands in the record; all others come from the disk or the database.
bool IsRecordsFault(int result) {
    switch (result & 0xFF) {
    case SQLITE_CONSTRAINT:
    case SQLITE_MISMATCH:
    case SQLITE_TOOBIG:
    case SQLITE_ERROR:
        return true;
    default:
        return false;
    }
}

/// Binds without a copy: the batch outlives the step.
int BindText(sqlite3_stmt* statement, int parameter, std::string_view text) {
    return sqlite3_bind_text64(statement, parameter, text.empty() ? "" : text.data(), text.size(), SQLITE_STATIC,
                               SQLITE_UTF8);
}

} // namespace

ImportTable::ImportTable(const SqliteConnection& connection, const Table& table)
    : connection_(connection), table_(table) {
    SqliteStatement columns = connection_.Prepare("SELECT name FROM pragma_table_info(?1)");
    columns.Bind(1, table_.name);
    while (columns.Step()) {
        exists_ = true;
        for (std::size_t i = 0; i < table_.columns.size(); ++i) {
            if (!table_.columns[i].local && EqualsWithoutCase(table_.columns[i].name, columns.Text(0))) {
                known_ |= std::uint64_t{1} << i;
            }
        }
    }
}

ImportTable::Outcome ImportTable::Apply(const ImportBatch& batch, const ImportRecord& record) {
    SqliteStatement& statement = record.deletion ? DeleteStatement() : UpsertFor(record.columns & known_);
    const int bound = BindText(statement.Handle(), 1, batch.Text(record, record.uniqueID));
    if (bound != SQLITE_OK) {
        return {.refusal = sqlite3_errstr(bound)};
    }
    for (std::size_t i = 0; i < record.valueCount; ++i) {
        const ImportValue& value = batch.values[record.firstValue + i];
        if ((known_ >> value.column & 1U) != 0) {
            BindValue(statement, batch, record, value);
        }
    }
    return Run(statement);
}

void ImportTable::BindValue(SqliteStatement& statement, const ImportBatch& batch, const ImportRecord& record,
                            const ImportValue& value) const {
    const int parameter = ParameterOf(value.column);
    const std::string_view text = batch.Text(record, value.text);
    int result = SQLITE_OK;
    switch (value.kind) {
    case ImportValue::Kind::Null:
        result = sqlite3_bind_null(statement.Handle(), parameter);
        break;
    case ImportValue::Kind::Integer:
        result = sqlite3_bind_int64(statement.Handle(), parameter, value.integer);
        break;
    case ImportValue::Kind::Real:
        result = sqlite3_bind_double(statement.Handle(), parameter, value.real);
        break;
    case ImportValue::Kind::Text:
        result = BindText(statement.Handle(), parameter, text);
        break;
    case ImportValue::Kind::Bytes:
        result = sqlite3_bind_blob64(statement.Handle(), parameter, text.empty() ? "" : text.data(), text.size(),
                                     SQLITE_STATIC);
        break;
    }
    if (result != SQLITE_OK) {
        throw DatabaseError(KindOf(result), sqlite3_errstr(result));
    }
}

ImportTable::Outcome ImportTable::Run(SqliteStatement& statement) const {
    const int result = sqlite3_step(statement.Handle());
    if (result == SQLITE_DONE) {
        const bool changed = sqlite3_changes(connection_.Handle()) > 0;
        sqlite3_reset(statement.Handle());
        return {.changed = changed, .refusal = {}};
    }
    const DatabaseError error = LastErrorOf(connection_.Handle());
    sqlite3_reset(statement.Handle());
    // A refused statement undoes itself alone; where the whole transaction went with it, nothing may follow.
    if (!IsRecordsFault(result) || sqlite3_get_autocommit(connection_.Handle()) != 0) {
        throw error;
    }
    return {.changed = false, .refusal = error.what()};
}

SqliteStatement& ImportTable::UpsertFor(std::uint64_t columns) {
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
    std::string names = "UniqueID";
    std::string values = "?1";
    std::string changes;
    std::string differs;
    for (std::size_t i = 0; i < table_.columns.size(); ++i) {
        if ((columns >> i & 1U) == 0) {
            continue;
        }
        const std::string name = Quoted(table_.columns[i].name);
        names += ", " + name;
        values += ", ?" + std::to_string(ParameterOf(i));
        changes.append(changes.empty() ? "" : ", ").append(name).append(" = excluded.").append(name);
        // A column may be compared without case by default; a version that differs in case alone is a change.
        differs.append(differs.empty() ? "" : " OR ").append(Quoted(table_.name)).append(".").append(name);
        differs.append(" COLLATE BINARY IS NOT excluded.").append(name);
    }
    return "INSERT INTO " + Quoted(table_.name) + " (" + names + ") VALUES (" + values +
           ") ON CONFLICT (UniqueID) DO " +
           (changes.empty() ? "NOTHING" : "UPDATE SET " + changes + " WHERE " + differs);
}

SqliteStatement& ImportTable::DeleteStatement() {
    if (!delete_) {
        delete_.emplace(connection_.Prepare("DELETE FROM " + Quoted(table_.name) + " WHERE UniqueID = ?1"));
    }
    return *delete_;
}

std::optional<std::string> ImportTable::RowJson(std::string_view uniqueID) {
    if (!row_) {
        std::string names = "UniqueID";
        for (std::size_t i = 0; i < table_.columns.size(); ++i) {
            if ((known_ >> i & 1U) != 0) {
                names += ", " + Quoted(table_.columns[i].name);
            }
        }
        row_.emplace(
            connection_.Prepare("SELECT " + names + " FROM " + Quoted(table_.name) + " WHERE UniqueID = ?1"));
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
