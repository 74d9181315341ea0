#pragma once

#include "shared/activity.h"

namespace qndr {

/// One whole pass over the companies of the Companies folder; `activity` may be nothing. Reports to the log alone
/// and never raises. Does not guard against a second pass inside it: that is the scheduler's part.
void RunSync(AgentContext& context, ActivityTarget* activity);

} // namespace qndr
