#pragma once

#include "services/agent_services.h"

#include <iosfwd>
#include <set>
#include <string>

namespace qndr {

/// What a person or a script at a terminal learns of the passes: the errors and warnings that the agent reports,
/// also while its log is off, and whether any company was worked on at all.
class PassReport : public services::ReportListener {
  public:
    /// `program` stands in front of each line. The stream must outlive the object.
    PassReport(std::string program, std::ostream& out) : program_(std::move(program)), out_(out) {}

    /// An error, a warning and what keeps a company from being worked on are shown once: again only when a whole
    /// pass was without them.
    void LineReported(const std::string& message) override;

    /// 0 when all passes so far went without an error; otherwise one of the two below, after a line that says why
    /// when no company was worked on.
    int Status() const;
    static constexpr int NoPassMade = 3; ///< no company was reached
    static constexpr int WithErrors = 4; ///< a pass was made, and something in it was reported as an error

  private:
    std::string program_;
    std::ostream& out_;
    bool companyReached_ = false;
    bool errors_ = false;
    std::set<std::string> inPass_; ///< shown of this pass, without what is made anew for each
    std::set<std::string> inLastPass_;
};

} // namespace qndr
