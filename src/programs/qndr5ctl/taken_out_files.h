#pragma once

#include "programs/qndr5ctl/control_context.h"

#include <string>

namespace qndr::control {

/// Where files go that a person takes out of the Sync folder. Nothing is ever deleted there.
std::string TakenOutFolder(const ControlContext& context);

/// Moves a file there, over a namesake, and gives its new path. Raises services::Failure when it is not there or
/// cannot be moved.
std::string TakeOut(const ControlContext& context, const std::string& path);

/// Takes out what lies in a Sync folder from or for a workstation, whose exchange with main begins anew; what was
/// written before would be taken for a part of that. Gives the number of files; raises as TakeOut.
std::size_t TakeOutFilesOf(const ControlContext& context, const std::string& syncFolder,
                           const std::string& workstationUniqueID);

} // namespace qndr::control
