#include "syncfiles/failed_update.h"

#include "shared/failure_rule.h"
#include "shared/sync_log.h"

#include <optional>

namespace qndr {

void LogFailedUpdate(AgentContext& context, const std::string& errorText,
                     const std::function<services::Statement()>& statement) {
    // Before the statement's line: making that one may ask the database, which forgets the failure then.
    std::optional<std::string> description;
    Attempt([&] { description = context.Database().LastSQLErrorDescription(); });
    WriteLog(context, errorText);
    Attempt([&] { WriteLog(context, statement().Text()); });
    if (description) {
        WriteLog(context, *description);
    }
}

} // namespace qndr
