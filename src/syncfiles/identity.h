#pragma once

#include "shared/agent_context.h"

#include <string>

namespace qndr {

/// The `UniqueID` of the open company through NormalizeUniqueID, read afresh. Empty when it cannot be read.
std::string ReadOwnUniqueID(AgentContext& context);

} // namespace qndr
