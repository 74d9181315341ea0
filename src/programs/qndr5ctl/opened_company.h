#pragma once

#include "programs/qndr5ctl/control_context.h"
#include "services/failure.h"
#include "suite/sql/connection.h"
#include "text/json.h"

#include <memory>
#include <string>

namespace qndr::control {

using text::Json;

/// What is raised for a company of an older version that was to be left as it is.
class OlderCompany : public services::Failure {
  public:
    using services::Failure::Failure;
};

/// A company opened to be looked at or edited, beside an agent that may be at work on it. Never makes a database.
class OpenedCompany {
  public:
    enum class Older {
        BringUpToDate,
        Leave ///< raises OlderCompany
    };

    /// Raises services::Failure when the file is no company file, names no database, or that cannot be opened.
    OpenedCompany(const ControlContext& context, const std::string& psdFile, Older older = Older::BringUpToDate);
    ~OpenedCompany();
    OpenedCompany(const OpenedCompany&) = delete;
    OpenedCompany& operator=(const OpenedCompany&) = delete;

    const std::string& File() const { return psdFile_; }
    const sql::Connection& Database() const { return *connection_; }

    /// A value of the one Company row; empty for NULL.
    std::string Text(const std::string& column) const;
    std::int64_t Number(const std::string& column) const;
    bool IsMain() const;
    bool IsRoaming() const;
    /// Raise services::Failure when the company is of another type.
    void DemandMain() const;
    void DemandRoaming() const;
    /// Enters a line in the company's events.
    void RecordEvent(const std::string& text) const { library_->RecordEvent(text, std::nullopt); }
    /// Raises services::Failure for a workstation that is not in normal running: before its first sync it must
    /// hold no changes, and a reset gives up those that were not sent.
    void DemandThatChangesTravel() const;

  private:
    std::string psdFile_;
    std::unique_ptr<services::SharedCodeLibrary> library_;
    sql::Connection* connection_ = nullptr;
};

/// A stored date, which is UTC; any other text as it stands, null for the empty one.
Json StoredDate(const std::string& stored);

} // namespace qndr::control
