#include "initial/export_reset_data.h"

#include "initial/export_tables.h"
#include "shared/failure_rule.h"
#include "shared/sync_log.h"
#include "syncfiles/wait.h"

namespace qndr {

bool ExportResetData(AgentContext& context, const std::string& folder, SyncFileInfo& info) {
    Wait(context, 1);
    Attempt([&] { context.CurrentEngine().ClearExports(); });
    std::string path;
    Attempt([&] { path = context.services.pathTools.FixPath(folder, true) + "data.xml"; });
    for (const ExportTable& table : ExportTables) {
        Attempt([&] { context.CurrentEngine().AddToExport(table.Name, ExportStatement(table)); });
    }
    if (Holds([&] { return context.CurrentEngine().DoExport(path); })) {
        AddFileToSyncFileInfo(path, info);
        return true;
    }
    Attempt(
        [&] { context.CurrentLibrary().RecordEvent("There was a problem exporting data during a sync. (110)"); });
    WriteLog(context, "Error: There was a problem exporting data during a sync. (110)");
    return false;
}

} // namespace qndr
