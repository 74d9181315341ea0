#pragma once

#include "shared/agent_context.h"
#include "syncfiles/descriptor.h"

#include <string>

namespace qndr {

/// Writes the full data that answers a sync reset to "data.xml" in the folder and enters the file in `info`.
/// False, an event and a log line when the engine could not write it. Unlike the export at first contact it begins
/// with a pause of one second and an empty pending list.
bool ExportResetData(AgentContext& context, const std::string& folder, SyncFileInfo& info);

} // namespace qndr
