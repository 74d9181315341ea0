#pragma once

#include "observation/opened_company.h"
#include "programs/qndr5ctl/control_context.h"
#include "text/json.h"

#include <optional>
#include <string>

namespace qndr::control {

using text::Json;

/// A company opened to be looked at or edited, beside an agent that may be at work on it. Never makes a database.
class OpenedCompany : public observation::OpenedCompany {
  public:
    /// Raises services::Failure when the file is no company file, names no database, or that cannot be opened.
    OpenedCompany(const ControlContext& context, const std::string& psdFile, Older older = Older::BringUpToDate)
        : observation::OpenedCompany(context.services, psdFile, older) {}

    /// A value of the one Company row; empty for NULL.
    std::string Text(const std::string& column) const;
    std::int64_t Number(const std::string& column) const;
    /// Raise services::Failure when the company is of another type.
    void DemandMain() const;
    void DemandRoaming() const;
    /// Enters a line in the company's events.
    void RecordEvent(const std::string& text) const { Library().RecordEvent(text, std::nullopt); }
    /// Raises services::Failure for a workstation that is not in normal running: before its first sync it must
    /// hold no changes, and a reset gives up those that were not sent.
    void DemandThatChangesTravel() const;
};

/// A stored date, which is UTC; any other text as it stands, null for the empty one.
Json StoredDate(const std::string& stored);

} // namespace qndr::control
