#pragma once

#include "shared/agent_context.h"
#include "syncfiles/descriptor.h"

#include <memory>
#include <string>

namespace qndr {

/// The prefix of every working folder and the call that makes one. Empty on failure.
std::string CreateWorkingFolder(AgentContext& context);

/// Packs the folder into a new temporary archive and returns its path, empty on any failure. The caller deletes
/// the archive; after a failure an unfinished one may stay in the temporary folder until it ages out.
std::string CreateSyncFile(AgentContext& context, const std::string& folder);

/// Adds the descriptor and the list of data files to the folder and packs it, each only if the one before
/// succeeded. The result is CreateSyncFile's; empty also when it was not reached.
std::string CreateDescribedSyncFile(AgentContext& context, const std::string& folder, const SyncFileInfo& info);

/// Fills the entry from the descriptor of the archive at its `FilePath`. After a failure, which only the log
/// tells, the descriptor's fields stay as they were; steps then see a `From` that matches nobody.
void ReadSyncFile(AgentContext& context, FoundSyncFile& entry);

/// The object, or a raised failure when it could not be created.
template <typename Object> Object& Present(const std::unique_ptr<Object>& object) {
    if (!object) {
        throw services::Failure("the object does not exist");
    }
    return *object;
}

} // namespace qndr
