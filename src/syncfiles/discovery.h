#pragma once

#include "services/date.h"
#include "shared/agent_context.h"
#include "syncfiles/descriptor.h"

#include <string>
#include <vector>

namespace qndr {

/// Appends one entry for every ".zip" file of the Sync folder whose name has three tokens, whoever it is for. The
/// order means nothing. Messages are let through on the way.
void FindSyncFiles(AgentContext& context, std::vector<FoundSyncFile>& list);

/// Appends an entry. A last entry with an empty `To` is overwritten, so a file without an addressee leaves the
/// list with the next one that comes.
void AddFoundSyncFile(const std::string& path, const std::string& token, const Date& nameDate,
                      const Date& fileDate, std::vector<FoundSyncFile>& list);

/// Reads a stamp such as 20070315T102233; the default for any other text.
Date ParseFileStamp(const std::string& text, const Date& fallback);

/// Retires the entries whose `Delete` is True. Messages are let through on the way.
void DeleteMarkedSyncFiles(AgentContext& context, const std::vector<FoundSyncFile>& list);

/// Moves a file into the Deleted folder of the month, over a namesake; deletes it when managed deleting is off or
/// cannot work. True when the file is gone from the Sync folder.
bool ManageDeletedSyncFile(AgentContext& context, const std::string& path);

} // namespace qndr
