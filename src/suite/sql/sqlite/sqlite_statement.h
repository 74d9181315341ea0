#pragma once

#include "suite/sql/sqlite/sqlite_lock.h"
#include "suite/sql/statement.h"

#include <sqlite3.h>

namespace qndr::sql {

/// A prepared statement of SQLite. Lock and connection must outlive it.
class SqliteStatement : public PreparedStatement {
  public:
    SqliteStatement(sqlite3* connection, sqlite3_stmt* statement, SqliteLock& lock)
        : connection_(connection), statement_(statement, &sqlite3_finalize), lock_(lock) {}

    bool Step() override;
    void Reset() override;
    std::int64_t ChangedRows() const override;

    int ParameterCount() const override { return sqlite3_bind_parameter_count(Handle()); }
    void BindNull(int parameter) override { Check(sqlite3_bind_null(Handle(), parameter)); }
    void BindInteger(int parameter, std::int64_t number) override {
        Check(sqlite3_bind_int64(Handle(), parameter, number));
    }
    void BindReal(int parameter, double number) override {
        Check(sqlite3_bind_double(Handle(), parameter, number));
    }
    void BindText(int parameter, std::string_view text, bool stays) override;
    void BindBytes(int parameter, std::string_view bytes, bool stays) override;

    int ColumnCount() const override { return sqlite3_column_count(Handle()); }
    std::string ColumnName(int column) const override;
    ValueType Type(int column) const override;
    std::int64_t Integer(int column) const override { return sqlite3_column_int64(Handle(), column); }
    double Real(int column) const override { return sqlite3_column_double(Handle(), column); }
    std::string_view Text(int column) const override;
    std::string_view Bytes(int column) const override;

  private:
    sqlite3_stmt* Handle() const { return statement_.get(); }
    void Check(int result) const;

    sqlite3* connection_;
    std::unique_ptr<sqlite3_stmt, int (*)(sqlite3_stmt*)> statement_;
    SqliteLock& lock_;
    bool isUnderWay_ = false;
    sqlite3_int64 changesBefore_ = 0; ///< of the whole connection, when it began
};

} // namespace qndr::sql
