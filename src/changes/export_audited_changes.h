#pragma once

#include "services/record_document.h"
#include "shared/agent_context.h"
#include "syncfiles/descriptor.h"

#include <cstdint>
#include <string>

namespace qndr {

/// Writes the audit rows above `fromId` up to and with `toId` to "data.xml" in the folder and enters the file in
/// `info`. True only when that was done. False, whether there was nothing to send or it could not be exported:
/// either way the range stays and is tried again. Orders of the range are backed up on the way when the setting
/// asks for it. Begins with a pause of one second.
bool ExportAuditedChanges(AgentContext& context, const std::string& folder, SyncFileInfo& info,
                          std::int32_t fromId, std::int32_t toId);

/// Adds what one audit row stands for to the engine's pending list: the row of `tableName` as it will stand when
/// the export runs, or its deletion. Any other kind of audit row adds nothing.
void ExportAuditRecord(AgentContext& context, const std::string& tableName, const services::Node* record);

} // namespace qndr
