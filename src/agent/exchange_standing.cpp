#include "agent/exchange_standing.h"

#include "shared/failure_rule.h"
#include "shared/settings.h"
#include "shared/sync_log.h"

namespace qndr {

void ExchangeStanding(AgentContext& context) {
    std::unique_ptr<services::Standing> standing;
    Attempt([&] { standing = context.services.objects.CreateStanding(); });
    if (!standing) {
        return;
    }
    Attempt([&] {
        services::RegistryTools& registry = context.services.registryTools;
        const auto number = [&](const char* name, std::int32_t fallback) {
            return registry.GetLong(services::CurrentUserHive, settings::RootKey, name, fallback);
        };
        standing->Initialize(context.CurrentLibrary());
        const std::vector<std::string> lines =
            standing->Exchange({.syncFolder = context.CurrentLibrary().Options().UserFileLocation("Sync"),
                                .program = context.services.program.Version(),
                                .frequency = number(settings::SyncFrequency, 5),
                                .proofHours = number(settings::ProofHours, 24),
                                .mendMinutes = number(settings::MendMinutes, 60)});
        for (const std::string& line : lines) {
            WriteLog(context, line);
        }
    });
    Attempt([&] { standing->PreTerminate(); });
}

} // namespace qndr
