#pragma once

#include "services/record_document.h"
#include "shared/agent_context.h"

#include <string>

namespace qndr {

// A file in the Sync folder has no address but its name: "<first token>~<NewFileToken>~<UTC stamp>" and an
// extension. The first token of a sync file (".zip") is the addressee, that of a heartbeat file (".rhb") the
// sender. The receivers parse the names: never change the form.

/// The Sync folder of the open company; empty when it is not identified.
std::string GetSyncFolder(AgentContext& context);

/// The folder under which "Sync Local" lies, by the file manager. Empty when that cannot be created. The flag goes
/// to the file manager; all callers of this system pass false.
std::string GetRootFolderPath(AgentContext& context, bool flag);

/// Root folder + `below` (a path with "\" between its folders, whatever the platform's separator), ending in a
/// separator. Makes nothing. Raises when a path cannot be had.
std::string GetLocalFolder(AgentContext& context, const std::string& below);

/// The same + year and month of the local date. Raises also when the clock cannot be had.
std::string GetDatedFolder(AgentContext& context, const std::string& below);

/// A new text that a file name can carry, without "~". Empty on failure.
std::string NewFileToken(AgentContext& context);

/// CopyFile to a new target whose name holds this text of a database. False also when the text has a separator in
/// it and would lead the file into another folder: it may have come with a file of somebody else.
bool CopyUnderName(AgentContext& context, const std::string& source, const std::string& target,
                   const std::string& textInName);

/// Pauses three seconds and copies the archive into the Sync folder for the workstation of that row. The pause
/// keeps two files of one agent from bearing the same stamp. False, and a log line, when it did not get there.
bool CopySyncFileToRoaming(AgentContext& context, const std::string& source, const services::Node* workstation);

/// The same for the main company, addressed to "MAIN" as long as this company does not know its identity.
bool CopySyncFileToMain(AgentContext& context, const std::string& source);

/// Copies a heartbeat file into the agent's `SyncFolder`, without a pause. `heartbeatFile` receives the target's
/// path on success and is left alone on failure.
bool CopyHeartbeatFileToMain(AgentContext& context, const std::string& source, std::string& heartbeatFile);

/// Keeps a copy of the archive in the History folder, under the name of `target`, when the setting asks for it.
/// Says nothing on any path.
void KeepSyncFile(AgentContext& context, const std::string& source, const std::string& target);

} // namespace qndr
