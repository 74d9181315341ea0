#include "suite/sql/sqlite/sqlite_statement.h"

namespace qndr::sql {

bool SqliteStatement::Step() {
    if (!isUnderWay_) {
        isUnderWay_ = true;
        changesBefore_ = sqlite3_total_changes64(connection_);
    }
    const int result = sqlite3_step(Handle());
    if (result == SQLITE_ROW) {
        return true;
    }
    if (result == SQLITE_DONE) {
        isUnderWay_ = false; // another Step would begin anew
        return false;
    }
    try {
        lock_.Raise();
    } catch (...) {
        Reset();
        throw;
    }
}

void SqliteStatement::Reset() {
    // The result repeats the failure of the last Step, which that call has raised already.
    sqlite3_reset(Handle());
    isUnderWay_ = false;
}

std::int64_t SqliteStatement::ChangedRows() const {
    // The count of the last statement that changed rows stays where it is under one that changes none. Only the
    // total, which has the triggers' rows in it, tells the two apart.
    return sqlite3_total_changes64(connection_) == changesBefore_ ? 0 : sqlite3_changes64(connection_);
}

void SqliteStatement::Check(int result) const {
    if (result != SQLITE_OK) {
        lock_.Raise();
    }
}

void SqliteStatement::BindText(int parameter, std::string_view text, bool stays) {
    // A null pointer would bind NULL, so an empty text needs one of its own.
    Check(sqlite3_bind_text64(Handle(), parameter, text.empty() ? "" : text.data(), text.size(),
                              stays ? SQLITE_STATIC : SQLITE_TRANSIENT, SQLITE_UTF8));
}

void SqliteStatement::BindBytes(int parameter, std::string_view bytes, bool stays) {
    Check(sqlite3_bind_blob64(Handle(), parameter, bytes.empty() ? "" : bytes.data(), bytes.size(),
                              stays ? SQLITE_STATIC : SQLITE_TRANSIENT));
}

std::string SqliteStatement::ColumnName(int column) const {
    const char* name = sqlite3_column_name(Handle(), column);
    return name == nullptr ? "" : name;
}

ValueType SqliteStatement::Type(int column) const {
    switch (sqlite3_column_type(Handle(), column)) {
    case SQLITE_INTEGER:
        return ValueType::Integer;
    case SQLITE_FLOAT:
        return ValueType::Real;
    case SQLITE_TEXT:
        return ValueType::Text;
    case SQLITE_BLOB:
        return ValueType::Bytes;
    default:
        return ValueType::Null;
    }
}

std::string_view SqliteStatement::Text(int column) const {
    const unsigned char* text = sqlite3_column_text(Handle(), column);
    if (text == nullptr) {
        return {};
    }
    return {reinterpret_cast<const char*>(text), static_cast<std::size_t>(sqlite3_column_bytes(Handle(), column))};
}

std::string_view SqliteStatement::Bytes(int column) const {
    const void* bytes = sqlite3_column_blob(Handle(), column);
    if (bytes == nullptr) {
        return {};
    }
    return {static_cast<const char*>(bytes), static_cast<std::size_t>(sqlite3_column_bytes(Handle(), column))};
}

} // namespace qndr::sql
