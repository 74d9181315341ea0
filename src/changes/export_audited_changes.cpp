#include "changes/export_audited_changes.h"

#include "changes/order_backups.h"
#include "services/company_numbers.h"
#include "services/exchange_statements.h"
#include "shared/failure_rule.h"
#include "shared/formatting.h"
#include "shared/records.h"
#include "shared/settings.h"
#include "shared/sync_log.h"
#include "syncfiles/query_rows.h"
#include "syncfiles/wait.h"
#include "text/letter_case.h"

#include <vector>

namespace qndr {
namespace {

/// Backs every order of the range up once, whatever happened to it. The backups use the engine's pending list,
/// which is empty afterwards.
void BackupOrders(AgentContext& context, const QueryRows& rows) {
    std::vector<std::int32_t> backedUp;
    for (long index = 0; index < rows.Count(); ++index) {
        const auto record = rows.Row(index);
        if (text::ToLowerCase(GetNodeString("TableName", record.get(), "")) != "orders") {
            continue;
        }
        const std::int32_t orderId = GetNodeLong("RecordID", record.get(), 0);
        if (Holds([&] { return context.services.arrayTools.FindLong(orderId, backedUp) < 0; })) {
            BackupOrder(context, record.get());
            Attempt([&] { context.services.arrayTools.AddLong(orderId, backedUp, false); });
        }
    }
    Attempt([&] { context.CurrentEngine().ClearExports(); });
}

/// The number of audit rows that travel. The rows about workstations never do, in either direction.
long AddRowsToExport(AgentContext& context, const QueryRows& rows) {
    long count = 0;
    for (long index = 0; index < rows.Count(); ++index) {
        const auto record = rows.Row(index);
        const std::string tableName = GetNodeString("TableName", record.get(), "");
        if (text::ToLowerCase(tableName) != "roamingworkstations") {
            ++count;
            ExportAuditRecord(context, tableName, record.get());
        }
    }
    return count;
}

} // namespace

bool ExportAuditedChanges(AgentContext& context, const std::string& folder, SyncFileInfo& info,
                          std::int32_t fromId, std::int32_t toId) {
    Wait(context, 1);
    Attempt([&] { context.CurrentEngine().ClearExports(); });
    const QueryRows rows(
        context, FormatStatement("SELECT * FROM AuditLog WHERE ID > {0} AND ID <= {1} ORDER BY ID", fromId, toId));
    if (rows.Count() == 0) {
        return false;
    }
    std::int32_t backupOrderData = 0;
    Attempt([&] {
        backupOrderData = context.services.registryTools.GetLong(services::CurrentUserHive, settings::RootKey,
                                                                 settings::BackupOrderData, 1);
    });
    if (backupOrderData != 0) {
        BackupOrders(context, rows);
    }
    std::string path;
    Attempt([&] { path = context.services.pathTools.FixPath(folder, true) + "data.xml"; });
    if (AddRowsToExport(context, rows) == 0) {
        return false;
    }
    if (Holds([&] { return context.CurrentEngine().DoExport(path); })) {
        AddFileToSyncFileInfo(path, info);
        return true;
    }
    Attempt([&] {
        context.CurrentLibrary().RecordEvent("Unable to perform a sync because the data could not be exported.");
    });
    WriteLog(context, "Error: Unable to export data.");
    return false;
}

void ExportAuditRecord(AgentContext& context, const std::string& tableName, const services::Node* record) {
    switch (GetNodeInteger("AuditType", record, 0)) {
    case AuditInsertion:
    case AuditUpdate:
        Attempt([&] {
            context.CurrentEngine().AddToExport(
                tableName, services::ExportOfRow(tableName, GetNodeLong("RecordID", record, 0)));
        });
        break;
    case AuditDeletion:
        Attempt([&] {
            context.CurrentEngine().AddToExport(tableName,
                                                services::ExportOfDeletion(GetNodeLong("ID", record, 0)), true);
        });
        break;
    default:
        break;
    }
}

} // namespace qndr
