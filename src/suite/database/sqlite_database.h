#pragma once

#include "services/company_library.h"
#include "services/platform.h"
#include "suite/computer/computer_trouble.h"
#include "suite/database/sqlite_connection.h"

#include <memory>
#include <string>

namespace qndr::suite {

/// A company's database in an SQLite file. The file is opened by the first use, never made; a file that cannot be
/// opened is a database error of each statement. Without a file every operation raises services::Failure. A fault
/// of this computer is noted as its trouble, and nothing is stored while such a trouble stands.
class SqliteDatabase : public services::Database {
  public:
    /// All of them must outlive the database; `wait` as for a connection.
    SqliteDatabase(const services::Clock& clock, ComputerTrouble& trouble, LockWait* wait)
        : clock_(clock), trouble_(trouble), wait_(wait) {}

    /// Closes the file in use, if any, and names the one to be used from now on.
    void Use(const std::string& path);
    /// Closes the file in use; there is none from now on.
    void Close();
    bool HasFile() const { return !path_.empty(); }
    const std::string& Path() const { return path_; }

    /// Raises when the file cannot be opened.
    SqliteConnection& Connection();

    Variant ExecuteScaler(const std::string& statement, const std::string& second,
                          const Variant& fallback) override;
    std::int32_t ExecuteNonQuery(const std::string& statement) override;
    std::unique_ptr<services::RecordDocument> ExecuteRead(const std::string& statement) override;
    std::string LastSQLErrorDescription() const override { return lastError_; }

  private:
    void DemandFile() const;
    void Enter(const services::Failure& failure);

    const services::Clock& clock_;
    ComputerTrouble& trouble_;
    LockWait* wait_;
    std::string path_;
    std::unique_ptr<SqliteConnection> connection_;
    std::string lastError_;
};

} // namespace qndr::suite
