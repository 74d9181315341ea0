#pragma once

#include "programs/qndr5ctl/control_context.h"
#include "programs/qndr5ctl/diagnosis.h"

#include <string>
#include <vector>

namespace qndr::control {

struct WhatToObserve {
    std::vector<std::string> companiesFolders; ///< none for this computer's Companies location
    std::string syncFolder;                    ///< empty for this computer's Sync location
    std::int64_t days = 14;
};

/// Looks at this computer, the companies and the Sync folder. Nothing is changed but that a small file is made in
/// the Sync folder and taken out again. Whatever cannot be had becomes an observation; raises services::Failure
/// only when the suite itself does not work.
Observations Observe(const ControlContext& context, const WhatToObserve& what);

} // namespace qndr::control
