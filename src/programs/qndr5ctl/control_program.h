#pragma once

#include "programs/qndr5ctl/control_context.h"

#include <ostream>
#include <string>
#include <vector>

namespace qndr::control {

/// Runs one command line, given without the program's name. 0 when it was done; 1 when it failed, with one line on
/// `errors` that begins "qndr5ctl: "; 2 when the command line cannot be understood, which `errors` then tells.
int RunControlProgram(const std::vector<std::string>& arguments, const ControlContext& context,
                      std::ostream& errors);

} // namespace qndr::control
