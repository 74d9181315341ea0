#include "suite/company/exchange_memory.h"

#include <string_view>

namespace qndr::suite {

namespace {

/// An initial sync counts as speaking of everything up to the newest audit row that there is once its file lies in
/// the Sync folder. What was changed while the file was made is in neither the file nor the changes behind that
/// number, unless it is audited anew. A reset's number is read before its export: nothing lies between the two.
constexpr std::string_view SnapshotScript = R"(
-- One row at most: the newest audit row of the last export of whole tables.
CREATE TABLE ExportSnapshot (AuditID INTEGER NOT NULL);
CREATE TRIGGER auditAnewSinceSnapshot AFTER UPDATE OF SyncState ON RoamingWorkstations
WHEN NEW.SyncState = 3
BEGIN
  INSERT INTO AuditLog (TableName, RecordID, AuditType, AddedOn, AuditUniqueID, AuditData, Origin, OriginID)
  SELECT TableName, RecordID, AuditType, AddedOn, AuditUniqueID, AuditData, Origin, OriginID FROM AuditLog
  WHERE ID > (SELECT AuditID FROM ExportSnapshot) AND ID <= NEW.LastAuditID ORDER BY ID;
  DELETE FROM ExportSnapshot;
END;
)";

} // namespace

std::string SnapshotMemoryScript() {
    return std::string(SnapshotScript);
}

} // namespace qndr::suite
