#include "agent/open_company.h"

#include "shared/failure_rule.h"
#include "shared/sync_log.h"

namespace qndr {

bool OpenCompany(AgentContext& context, services::SharedCodeLibrary& library, const std::string& path) {
    std::unique_ptr<services::CompanyManager> manager;
    Attempt([&] { manager = context.services.objects.CreateCompanyManager(); });
    if (!manager) {
        WriteLog(context, "Error: Unable to access the QNDR 5 Company Manager library.");
        return false;
    }

    bool result = false;
    if (Holds([&] { return !manager->PSD().Load(path); })) {
        WriteLog(context, "Error: The .psd file '" + path + "' cannot be loaded.");
    } else if (Holds([&] { return !manager->CanOpenCompany(path); })) {
        WriteLog(context, "Error: The company database referenced in .psd '" + path + "' cannot be opened.");
    } else {
        Attempt([&] { library.SetConnectionString(manager->PSD().ConnectionString()); });
        Attempt([&] { library.SetPSDFile(path); });
        result = true;
    }
    Attempt([&] { manager->PreTerminate(); });
    return result;
}

bool IsMainCompany(AgentContext& context) {
    return ReadCompanyType(context) == 1;
}

std::int16_t ReadCompanyType(AgentContext& context) {
    return context.Database().ExecuteScaler("SELECT CompanyType FROM Company", "", "0").ToInteger();
}

void ReleaseCompany(AgentContext& context) {
    if (context.Engine) {
        Attempt([&] { context.Engine->PreTerminate(); });
        context.Engine.reset();
    }
    if (context.Library) {
        Attempt([&] { context.Library->PreTerminate(); });
        context.Library.reset();
    }
}

} // namespace qndr
