#pragma once

#include "diagnosis/folder_files.h"
#include "services/agent_services.h"

#include <string>
#include <vector>

namespace qndr::observation {

/// Reads what lies in the folder itself, by name; changes nothing there. A file that vanishes meanwhile is left
/// out. Raises services::Failure when there is no such folder, or no temporary folder can be had.
std::vector<diagnosis::ListedFile> ReadSyncFolder(const services::AgentServices& services,
                                                  const std::string& folder);

/// The same of one file there. Raises services::Failure when it is gone.
diagnosis::ListedFile ReadFileOfSyncFolder(const services::AgentServices& services, const std::string& path);

} // namespace qndr::observation
