#pragma once

#include "shared/activity.h"
#include "shared/agent_context.h"

#include <cstdint>
#include <string>
#include <vector>

namespace qndr {

// The ageing out of what the agent keeps on its own disk. Nothing here reports, and nothing touches the Sync
// folder. Ages are calendar days: the time of day plays no part, and a limit's own day still stays.

/// The temporary folder: files over 5 days, folders over 3. Not while the main application runs on this computer.
void CleanupTempFiles(AgentContext& context, ActivityTarget* target);
/// "Sync Local\History": files over 30 days, folders over 3.
void CleanupSyncBackups(AgentContext& context, ActivityTarget* target);
/// "Sync Local\Orders": files over 90 days, folders over 3.
void CleanupOrderBackups(AgentContext& context, ActivityTarget* target);
/// "Sync Local\Deleted": files over 3 days, folders over 3.
void CleanupDeletedSyncFiles(AgentContext& context, ActivityTarget* target);

/// The temporary folder and all folders below; protected ones are blank.
std::vector<std::string> GetTemporaryCleanupFolders(AgentContext& context);

/// Appends each element of `source` to `target`.
void AddFolders(AgentContext& context, const std::vector<std::string>& source, std::vector<std::string>& target);

/// Blanks the elements of a list that are not the agent's to clean up.
void ExcludeProtectedFolders(AgentContext& context, std::vector<std::string>& list);

/// Deletes the files lying directly in the folders of the list that are over `days` days old: all in the temporary
/// tree or with `allFiles`, elsewhere only "*.tmp". Messages are let through after each file.
void DeleteOldFiles(AgentContext& context, const std::vector<std::string>& list, bool allFiles, std::int16_t days);

/// Deletes the folders of the list that have no files of their own and were not changed for over `days` days, with
/// all that lies below them, however young.
void DeleteOldEmptyFolders(AgentContext& context, const std::vector<std::string>& list, std::int16_t days);

/// Whether a process of that name runs on this computer, letter case aside.
bool IsProcessRunning(AgentContext& context, const std::string& fileName);

} // namespace qndr
