#pragma once

#include "shared/agent_context.h"
#include "syncfiles/descriptor.h"

namespace qndr {

/// Empties the tables whose rows a reset must not merely overlay, and the audit log. No statement's result is
/// examined, and without a database object nothing is cleared: the import follows all the same. Does not look at
/// the entry.
void ClearTablesBeforeReset(AgentContext& context, const FoundSyncFile& entry);

} // namespace qndr
