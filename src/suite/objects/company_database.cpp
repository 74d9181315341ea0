#include "suite/objects/company_database.h"

#include "services/failure.h"
#include "suite/objects/record_table.h"
#include "suite/sql/fenced_statement.h"

#include <algorithm>
#include <limits>
#include <vector>

namespace qndr::suite {

using services::Failure;

namespace {

std::unique_ptr<RecordTable> ReadAll(sql::Statement& statement) {
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
Variant FirstValue(sql::Statement& statement, const Variant& fallback) {
    if (!statement.Step() || statement.ColumnCount() == 0) {
        return fallback;
    }
    switch (statement.Type(0)) {
    case sql::ValueType::Null:
        return fallback;
    case sql::ValueType::Integer:
        return statement.Integer(0);
    case sql::ValueType::Real:
        return statement.Real(0);
    default:
        return statement.Text(0).empty() ? fallback : Variant(statement.Text(0));
    }
}

} // namespace

void CompanyDatabase::Use(const std::string& path) {
    Close();
    path_ = path;
}

void CompanyDatabase::Close() {
    connection_.reset();
    path_.clear();
    lastError_.clear();
}

void CompanyDatabase::DemandFile() const {
    if (!HasFile()) {
        throw Failure("no company database is open: there is no connection string");
    }
}

sql::Connection& CompanyDatabase::Connection() {
    DemandFile();
    if (!connection_) {
        connection_ = sql::Open(path_, clock_, sql::Missing::Refuse, wait_);
    }
    return *connection_;
}

void CompanyDatabase::Enter(const Failure& failure) {
    lastError_ = failure.what();
    const auto* const error = dynamic_cast<const sql::Error*>(&failure);
    if (error != nullptr && error->IsOfThisComputer()) {
        trouble_.Note("The database could not be used, and what was to be done waits: " + lastError_);
    }
}

Variant CompanyDatabase::ExecuteScaler(const services::Statement& statement, const std::string&,
                                       const Variant& fallback) {
    lastError_.clear();
    DemandFile();
    try {
        Variant value;
        sql::RunFenced(Connection(), statement, limits_,
                       [&](sql::Statement& prepared) { value = FirstValue(prepared, fallback); });
        return value;
    } catch (const Failure& failure) {
        Enter(failure);
        throw;
    }
}

std::int32_t CompanyDatabase::ExecuteNonQuery(const services::Statement& statement) {
    lastError_.clear();
    DemandFile();
    if (trouble_.Refuses()) {
        lastError_ = trouble_.Text();
        return -1;
    }
    try {
        std::int64_t rows = 0;
        sql::RunFenced(Connection(), statement, limits_, [&](sql::Statement& prepared) {
            while (prepared.Step()) {
            }
            rows = prepared.ChangedRows();
        });
        trouble_.NoteStored();
        return static_cast<std::int32_t>(std::min<std::int64_t>(rows, std::numeric_limits<std::int32_t>::max()));
    } catch (const Failure& failure) {
        Enter(failure);
        return -1;
    }
}

std::unique_ptr<services::RecordDocument> CompanyDatabase::ExecuteRead(const services::Statement& statement) {
    lastError_.clear();
    DemandFile();
    try {
        std::unique_ptr<RecordTable> rows;
        sql::RunFenced(Connection(), statement, limits_,
                       [&](sql::Statement& prepared) { rows = ReadAll(prepared); });
        return rows;
    } catch (const Failure& failure) {
        Enter(failure);
        return nullptr;
    }
}

} // namespace qndr::suite
