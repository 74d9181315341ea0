#pragma once

#include "suite/sql/connection.h"

#include <sqlite3.h>

namespace qndr::sql {

/// The fence of SQLite's authorizer.
class SqliteFence : public Fence {
  public:
    SqliteFence(const Connection& connection, sqlite3* handle);
    ~SqliteFence() override;
    SqliteFence(const SqliteFence&) = delete;
    SqliteFence& operator=(const SqliteFence&) = delete;

    Statement Prepare(std::string_view sql, std::set<std::string> names) override;

  private:
    static int Judge(void* fence, int action, const char* first, const char* second, const char* database,
                     const char* inside);

    const Connection& connection_;
    sqlite3* handle_;
    std::set<std::string> names_;
    bool isPreparing_ = false;
};

} // namespace qndr::sql
