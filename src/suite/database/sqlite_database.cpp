#include "suite/database/sqlite_database.h"

#include "services/failure.h"
#include "suite/database/record_table.h"

#include <algorithm>
#include <limits>
#include <vector>

namespace qndr::suite {

using services::Failure;

namespace {

std::unique_ptr<RecordTable> ReadAll(SqliteStatement& statement) {
    const int count = statement.ColumnCount();
    std::vector<std::string> names;
    names.reserve(static_cast<std::size_t>(count));
    for (int column = 0; column < count; ++column) {
        names.push_back(statement.ColumnName(column));
    }
    auto table = std::make_unique<RecordTable>(std::move(names));
    std::vector<std::string_view> values(static_cast<std::size_t>(count));
    while (statement.Step()) {
        for (int column = 0; column < count; ++column) {
            values[static_cast<std::size_t>(column)] = statement.Text(column);
        }
        table->AddRow(values);
    }
    return table;
}

/// Numbers as numbers, all else as text.
Variant FirstValue(SqliteStatement& statement, const Variant& fallback) {
    if (!statement.Step() || statement.ColumnCount() == 0) {
        return fallback;
    }
    switch (sqlite3_column_type(statement.Handle(), 0)) {
    case SQLITE_NULL:
        return fallback;
    case SQLITE_INTEGER:
        return statement.Integer(0);
    case SQLITE_FLOAT:
        return sqlite3_column_double(statement.Handle(), 0);
    default:
        return statement.Text(0).empty() ? fallback : Variant(statement.Text(0));
    }
}

} // namespace

void SqliteDatabase::Use(const std::string& path) {
    Close();
    path_ = path;
}

void SqliteDatabase::Close() {
    connection_.reset();
    path_.clear();
    lastError_.clear();
}

void SqliteDatabase::DemandFile() const {
    if (!HasFile()) {
        throw Failure("no company database is open: there is no connection string");
    }
}

SqliteConnection& SqliteDatabase::Connection() {
    DemandFile();
    if (!connection_) {
        connection_ = std::make_unique<SqliteConnection>(path_, clock_, SqliteConnection::Missing::Refuse, wait_);
    }
    return *connection_;
}

void SqliteDatabase::Enter(const Failure& failure) {
    lastError_ = failure.what();
    const auto* const error = dynamic_cast<const DatabaseError*>(&failure);
    if (error != nullptr && error->IsOfThisComputer()) {
        trouble_.Note("The database could not be used, and what was to be done waits: " + lastError_);
    }
}

Variant SqliteDatabase::ExecuteScaler(const std::string& statement, const std::string&, const Variant& fallback) {
    lastError_.clear();
    DemandFile();
    try {
        SqliteStatement prepared = Connection().Prepare(statement);
        return FirstValue(prepared, fallback);
    } catch (const Failure& failure) {
        Enter(failure);
        throw;
    }
}

std::int32_t SqliteDatabase::ExecuteNonQuery(const std::string& statement) {
    lastError_.clear();
    DemandFile();
    if (trouble_.Refuses()) {
        lastError_ = trouble_.Text();
        return -1;
    }
    try {
        const SqliteConnection& connection = Connection();
        // The count of the last statement that changed rows stays where it is under one that changes none. Only
        // the total, which has the triggers' rows in it, tells the two apart.
        const sqlite3_int64 totalBefore = sqlite3_total_changes64(connection.Handle());
        connection.Execute(statement);
        trouble_.NoteStored();
        if (sqlite3_total_changes64(connection.Handle()) == totalBefore) {
            return 0;
        }
        const sqlite3_int64 rows = sqlite3_changes64(connection.Handle());
        return static_cast<std::int32_t>(std::min<sqlite3_int64>(rows, std::numeric_limits<std::int32_t>::max()));
    } catch (const Failure& failure) {
        Enter(failure);
        return -1;
    }
}

std::unique_ptr<services::RecordDocument> SqliteDatabase::ExecuteRead(const std::string& statement) {
    lastError_.clear();
    DemandFile();
    try {
        SqliteStatement prepared = Connection().Prepare(statement);
        return ReadAll(prepared);
    } catch (const Failure& failure) {
        Enter(failure);
        return nullptr;
    }
}

} // namespace qndr::suite
