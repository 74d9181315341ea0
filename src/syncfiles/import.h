#pragma once

#include "shared/agent_context.h"
#include "syncfiles/descriptor.h"

#include <vector>

namespace qndr {

/// Gives the "data.xml" of a sync file to the engine. True means that the caller may treat the file as done, not
/// that the data arrived: a file that the archive reader or the engine refuses must not block the sequences behind
/// it and is never asked for again. False is trouble of this computer; the file is to be tried again.
bool ImportSyncFileData(AgentContext& context, const FoundSyncFile& entry);

/// Whether an entry with a path has not been marked `Processed` yet.
bool UnprocessedSyncFilesRemain(const std::vector<FoundSyncFile>& files);

} // namespace qndr
