#pragma once

#include "shared/agent_context.h"
#include "syncfiles/descriptor.h"

#include <string>

namespace qndr {

/// Lets the engine write the full export to "data.xml" in the folder and enters the file in `Files`. True only
/// when that was done. Leaves what is pending in the engine from before in the export.
bool ExportInitialSyncData(AgentContext& context, const std::string& folder, SyncFileInfo& info);

} // namespace qndr
