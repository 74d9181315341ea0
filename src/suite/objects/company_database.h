#pragma once

#include "services/company_library.h"
#include "services/platform.h"
#include "suite/computer/computer_trouble.h"
#include "suite/sql/connection.h"
#include "suite/sql/statement_limits.h"

#include <memory>
#include <string>
#include <utility>

namespace qndr::suite {

/// A company's database. The file is opened by the first use, never made; a file that cannot be
/// opened is a database error of each statement. Without a file every operation raises services::Failure. A fault
/// of this computer is noted as its trouble, and nothing is stored while such a trouble stands. A
/// statement is held to what it is for; see RunFenced.
class CompanyDatabase : public services::Database {
  public:
    /// All of them must outlive the database; `wait` as for a connection.
    CompanyDatabase(const services::Clock& clock, ComputerTrouble& trouble, sql::LockWait* wait)
        : clock_(clock), trouble_(trouble), wait_(wait) {}

    /// Closes the file in use, if any, and names the one to be used from now on.
    void Use(const std::string& path);
    /// Closes the file in use; there is none from now on.
    void Close();
    bool HasFile() const { return !path_.empty(); }
    const std::string& Path() const { return path_; }

    void SetLimits(sql::StatementLimits limits) { limits_ = std::move(limits); }

    /// Raises when the file cannot be opened. What is run there passes the fences by.
    sql::Connection& Connection();

    Variant ExecuteScaler(const services::Statement& statement, const std::string& second,
                          const Variant& fallback) override;
    std::int32_t ExecuteNonQuery(const services::Statement& statement) override;
    std::unique_ptr<services::RecordDocument> ExecuteRead(const services::Statement& statement) override;
    std::string LastSQLErrorDescription() const override { return lastError_; }

  private:
    void DemandFile() const;
    void Enter(const services::Failure& failure);

    const services::Clock& clock_;
    ComputerTrouble& trouble_;
    sql::LockWait* wait_;
    sql::StatementLimits limits_;
    std::string path_;
    std::unique_ptr<sql::Connection> connection_;
    std::string lastError_;
};

} // namespace qndr::suite
