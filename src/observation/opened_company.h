#pragma once

#include "services/agent_services.h"
#include "services/failure.h"
#include "suite/sql/connection.h"

#include <memory>
#include <string>

namespace qndr::observation {

/// What is raised for a company of an older version that was to be left as it is.
class OlderCompany : public services::Failure {
  public:
    using services::Failure::Failure;
};

/// A company opened to be looked at, beside an agent that may be at work on it. Never makes a database.
class OpenedCompany {
  public:
    enum class Older {
        BringUpToDate,
        Leave ///< raises OlderCompany
    };

    /// Raises services::Failure when the file is no company file, names no database, or that cannot be opened.
    OpenedCompany(const services::AgentServices& services, const std::string& psdFile, Older older);
    ~OpenedCompany();
    OpenedCompany(const OpenedCompany&) = delete;
    OpenedCompany& operator=(const OpenedCompany&) = delete;

    const std::string& File() const { return psdFile_; }
    const sql::Connection& Database() const { return *connection_; }
    services::SharedCodeLibrary& Library() const { return *library_; }

    bool IsMain() const;
    bool IsRoaming() const;

  private:
    std::string psdFile_;
    std::unique_ptr<services::SharedCodeLibrary> library_;
    sql::Connection* connection_ = nullptr;
};

} // namespace qndr::observation
