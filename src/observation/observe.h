#pragma once

#include "diagnosis/observations.h"
#include "services/agent_services.h"
#include "suite/computer/computer.h"

#include <cstdint>
#include <string>
#include <vector>

namespace qndr::observation {

struct WhatToObserve {
    std::vector<std::string> companiesFolders; ///< none for this computer's Companies location
    std::string syncFolder;                    ///< empty for this computer's Sync location
    std::int64_t days = 14;
};

/// Looks at this computer, the companies and the Sync folder, and changes nothing; what a probe of the Sync folder
/// tells is left open. Whatever cannot be had becomes an observation; raises services::Failure only when the suite
/// itself does not work.
diagnosis::Observations Observe(const suite::Computer& computer, const services::AgentServices& services,
                                const WhatToObserve& what);

} // namespace qndr::observation
