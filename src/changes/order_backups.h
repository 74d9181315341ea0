#pragma once

#include "services/record_document.h"
#include "shared/agent_context.h"

#include <string>

namespace qndr {

/// Stores a copy of the order that the audit row names as an archive of its own in the month's folder below
/// "Sync Local\Orders". Every failure ends in the log and stops nothing. Uses the engine's pending list, which the
/// caller clears.
void BackupOrder(AgentContext& context, const services::Node* record);

/// Packs all files of the folder into a new temporary archive and returns its path, empty on any failure. The
/// caller deletes the archive.
std::string CreateOrderBackupFile(AgentContext& context, const std::string& folder);

} // namespace qndr
