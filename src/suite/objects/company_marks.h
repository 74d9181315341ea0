#pragma once

#include "suite/computer/instance_lock.h"
#include "suite/sql/connection.h"

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <utility>

namespace qndr::suite {

/// The marks of one agent on the companies that it works on. A mark stands beside the company's database
/// ("<database>.agent"), for all who may write that, so one agent at a time works on a company, of whatever user.
class CompanyMarks {
  public:
    /// A company is marked as long as one of the mark's holders lives.
    using Mark = std::shared_ptr<InstanceLock>;

    /// The computer's name tells in an event whose agent this is.
    explicit CompanyMarks(std::string computerName) : computerName_(std::move(computerName)) {}

    /// Gets a line when a company is left to another agent, and no second one before it was had again.
    void OnLeftAlone(std::function<void(const std::string&)> tell) { tell_ = std::move(tell); }

    /// Marks the open company. Null when another agent works on it: then that is recorded in its events. On a file
    /// system that knows no such marks all agents get one, of no effect.
    Mark Take(sql::Connection& company);
    /// The mark that this object took for the database and that somebody still holds; null when there is none.
    Mark Find(const std::string& database) const;

  private:
    void Tell(sql::Connection& company, const std::string& database, const std::string& reason);

    std::string computerName_;
    std::function<void(const std::string&)> tell_;
    std::map<std::string, std::weak_ptr<InstanceLock>> marks_; ///< by database, links resolved
    std::set<std::string> leftAlone_;
};

} // namespace qndr::suite
