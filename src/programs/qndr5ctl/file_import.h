#pragma once

#include "programs/qndr5ctl/opened_company.h"
#include "suite/engine/import.h"

#include <string>

namespace qndr::control {

/// Takes a change file into a company by hand, out of any sequence: one that came late, or that was retired. What
/// is there already stays, and what loses is kept among the conflicts. Raises services::Failure, with nothing
/// changed, for anything but a change file of a partner of this company.
suite::ImportResult ImportByHand(const ControlContext& context, const OpenedCompany& company,
                                 const std::string& archive);

} // namespace qndr::control
