#pragma once

#include "services/agent_services.h"
#include "suite/computer/computer.h"

#include <ostream>

namespace qndr::control {

/// What the commands work on. All of it outlives them.
struct ControlContext {
    const suite::Computer& computer;
    const services::AgentServices& services;
    std::ostream& out;
};

} // namespace qndr::control
