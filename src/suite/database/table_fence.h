#pragma once

#include "suite/database/sqlite_connection.h"

#include <set>
#include <string>
#include <string_view>

namespace qndr::suite {

/// Prepares statements that are held to the tables, views and functions that are named for them. One connection
/// has one fence at a time; what is prepared beside it is not held to anything.
class TableFence {
  public:
    explicit TableFence(const SqliteConnection& connection);
    ~TableFence();
    TableFence(const TableFence&) = delete;
    TableFence& operator=(const TableFence&) = delete;

    /// As SqliteConnection::Prepare. The statement reads, writes and calls nothing but these names, given in lower
    /// case, and what views and triggers of the database do at its behest; it changes no schema, attaches nothing,
    /// sets no PRAGMA and has no WITH, and leaves Company's CompanyType and UniqueID, which say what the company
    /// is, as they are. Anything else is refused.
    SqliteStatement Prepare(std::string_view sql, std::set<std::string> names);

  private:
    static int Judge(void* fence, int action, const char* first, const char* second, const char* database,
                     const char* inside);

    const SqliteConnection& connection_;
    std::set<std::string> names_;
    bool isPreparing_ = false;
};

} // namespace qndr::suite
