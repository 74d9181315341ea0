#include "agent/start_up.h"

#include "agent/open_company.h"
#include "agent/pipelines.h"
#include "shared/failure_rule.h"
#include "shared/settings.h"
#include "shared/sync_log.h"

namespace qndr {
namespace {

void ReadSetting(AgentContext& context, std::string& value, const char* key, const char* name) {
    Attempt([&] { value = context.services.registryTools.GetString(services::CurrentUserHive, key, name, ""); });
}

void RunDeveloperCompany(AgentContext& context, const char* profileName, const char* companyName,
                         std::int16_t mode) {
    std::string path;
    ReadSetting(context, context.Profile, settings::DeveloperKey, profileName);
    ReadSetting(context, path, settings::DeveloperKey, companyName);
    RunDeveloperSync(context, path, mode);
}

} // namespace

StartUp StartAgent(AgentContext& context, const std::string& commandLine) {
    services::CommandLineTools& tools = context.services.commandLineTools;
    Attempt([&] { tools.SetCommandLine(commandLine); });
    if (Holds([&] {
            // Asked in every case: with the question this copy counts as running for those that start later.
            const bool anotherCopyRuns = context.services.program.AnotherCopyIsRunning();
            return !tools.SwitchExists("AllowMany") && anotherCopyRuns;
        })) {
        return StartUp::AnotherCopyRuns;
    }
    if (Holds([&] { return tools.SwitchExists("DVLP"); })) {
        RunDeveloperCompany(context, "MainProfile", "MainCompany", 1);
        RunDeveloperCompany(context, "RoamingProfile", "RoamingCompany", 2);
        return StartUp::DeveloperRunDone;
    }
    Attempt([&] { context.Profile = tools.GetSwitchValue("Profile", ""); });
    Attempt([&] { context.CompaniesFolder = tools.GetSwitchValue("Companies", ""); });
    if (context.CompaniesFolder.empty()) {
        ReadSetting(context, context.CompaniesFolder, settings::DefaultProfileKey, settings::CompaniesLocation);
    }
    return StartUp::LoadAgent;
}

void RunDeveloperSync(AgentContext& context, const std::string& path, std::int16_t mode) {
    ReadDebugSetting(context);
    Attempt([&] { context.Library = context.services.objects.CreateSharedCodeLibrary(); });
    if (!context.Library) {
        return;
    }
    services::SharedCodeLibrary& library = *context.Library;
    if (!context.Profile.empty()) {
        Attempt([&] { library.Profiles().SetProfile(context.Profile); });
    }
    if (!OpenCompany(context, library, path)) {
        ReleaseCompany(context);
        return;
    }
    Attempt([&] { library.SetOperatingMode(mode); });
    Attempt([&] { context.Engine = context.services.objects.CreateEngine(); });
    if (!context.Engine) {
        ReleaseCompany(context);
        return;
    }
    Attempt([&] { context.Engine->Initialize(library); });
    Attempt([&] { context.Engine->SetVerbose(false); });
    Attempt([&] { context.Engine->SetIgnoreUnknownTables(true); });
    if (Holds([&] { return IsMainCompany(context); })) {
        SyncAsMain(context, nullptr);
    } else {
        SyncAsRoaming(context, nullptr);
    }
    ReleaseCompany(context);
}

} // namespace qndr
