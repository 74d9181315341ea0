#include "agent/run_sync.h"

#include "agent/open_company.h"
#include "agent/pipelines.h"
#include "agent/stop_request.h"
#include "shared/failure_rule.h"
#include "shared/formatting.h"
#include "shared/sync_log.h"
#include "text/editing.h"
#include "text/letter_case.h"

namespace qndr {
namespace {

/// Sets the mode of this computer, as the context and the library hold it.
void SetMode(AgentContext& context) {
    services::SharedCodeLibrary& library = *context.Library;
    if (Holds([&] { return library.Security().IsRoamingWorkstation(); })) {
        context.OperatingMode = 2;
    } else {
        context.OperatingMode = 1;
    }
    Attempt([&] { library.SetOperatingMode(context.OperatingMode); });
    Attempt([&] { WriteLog(context, FormatString("OperatingMode set to {0}", library.OperatingMode())); });
}

/// Sets `process` when this computer may process the open company, and never clears it: behind one company that
/// qualified every later company of the same pass is processed too.
void Qualify(AgentContext& context, bool& process) {
    services::SharedCodeLibrary& library = *context.Library;
    if (Holds([&] { return library.Security().IsRoamingWorkstation(); })) {
        process = true;
        WriteLog(context, "This company will be processed because this is a Roaming Workstation.");
        return;
    }

    std::int16_t enabled = 0;
    Attempt([&] {
        enabled = library.Options().GetCompanyOption("Roaming Workstations", "EnableSync", "0").ToInteger();
    });
    if (enabled == 0) {
        WriteLog(context, "This file will not be processed becuase Syncing is not enabled for this company.");
        return;
    }

    std::string designated;
    std::string computer;
    if (Holds([&] {
            designated = text::ToLowerCaseName(text::Trimmed(
                library.Options().GetCompanyOption("Roaming Workstations", "SyncComputerName").ToText()));
            computer = text::ToLowerCaseName(text::Trimmed(context.services.systemTools.GetComputerName()));
            return designated == computer;
        })) {
        process = true;
        return;
    }
    WriteLog(context, "This file will not be processed because this computer, '" + computer +
                          "', is not the one designated for syncing this company - '" + designated + "'.");
    Attempt([&] { RequestStopSync(context); });
}

/// Runs the pipeline of the open company's role.
void SyncWithEngine(AgentContext& context, ActivityTarget* activity) {
    services::SharedCodeLibrary& library = *context.Library;
    Attempt([&] { context.Engine->Initialize(library); });
    Attempt([&] { context.Engine->SetVerbose(false); });
    Attempt([&] { context.Engine->SetIgnoreUnknownTables(true); });
    Attempt([&] { context.SyncFolder = library.Options().UserFileLocation("Sync"); });
    if (Holds([&] { return IsMainCompany(context); })) {
        WriteLog(context, "Begin syncing as main");
        SyncAsMain(context, activity);
        WriteLog(context, "Finish syncing as main");
    } else {
        WriteLog(context, "Start syncing as roaming");
        SyncAsRoaming(context, activity);
        WriteLog(context, "Finish syncing as roaming");
    }
}

/// What happens with a company between the making of its library and the library's release.
void SyncWithLibrary(AgentContext& context, const std::string& path, bool& process, ActivityTarget* activity) {
    if (!context.Profile.empty()) {
        Attempt([&] { context.Library->Profiles().SetProfile(context.Profile); });
        WriteLog(context, "Profile '" + context.Profile + "' will be used.");
    }
    SetMode(context);
    if (!OpenCompany(context, *context.Library, path)) {
        WriteLog(context, "Error: Unable to open the company referenced in '" + path + "'.");
        return;
    }
    Qualify(context, process);
    if (!process) {
        return;
    }
    Attempt([&] { context.Engine = context.services.objects.CreateEngine(); });
    if (!context.Engine) {
        WriteLog(context, "Error: Unable to access the QNDR 5 Import/Export engine.");
        return;
    }
    SyncWithEngine(context, activity);
}

void SyncCompany(AgentContext& context, const std::string& path, bool& process, ActivityTarget* activity) {
    WriteLog(context, "Processing file " + path);
    Attempt([&] { context.Library = context.services.objects.CreateSharedCodeLibrary(); });
    if (!context.Library) {
        return;
    }
    SyncWithLibrary(context, path, process, activity);
    ReleaseCompany(context);
}

void WalkCompanies(AgentContext& context, ActivityTarget* activity) {
    services::PathTools& pathTools = context.services.pathTools;
    if (context.CompaniesFolder.empty()) {
        WriteLog(context, "Error: Syncing will not be performed becuase no Companies folder has been specified.");
        return;
    }
    if (Holds([&] { return !pathTools.FolderExists(context.CompaniesFolder); })) {
        WriteLog(context, "Error: Syncing will not be performed because the companies folder '" +
                              context.CompaniesFolder + "' does not exist.");
        return;
    }
    std::vector<std::string> files;
    Attempt([&] { files = pathTools.FindFiles(context.CompaniesFolder, "*.psd", false); });
    bool process = false;
    for (const std::string& path : files) {
        if (!path.empty()) {
            SyncCompany(context, path, process, activity);
        }
    }
}

} // namespace

void RunSync(AgentContext& context, ActivityTarget* activity) {
    ReadDebugSetting(context);
    WriteLog(context, "Starting Sync");
    Attempt([&] { SetActivity(context, "Starting sync", activity); });
    WalkCompanies(context, activity);
    Attempt([&] { SetActivity(context, "Stopping sync", activity); });
    WriteLog(context, "Stopping Sync");
}

} // namespace qndr
