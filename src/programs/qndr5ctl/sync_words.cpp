#include "programs/qndr5ctl/sync_words.h"

#include "observation/computer_places.h"
#include "services/failure.h"
#include "shared/settings.h"
#include "suite/admin/company_creation.h"

namespace qndr::control {

std::string HeartbeatInWords(services::RegistryTools& registry) {
    const auto number = [&](const char* name, std::int32_t fallback) {
        return registry.GetLong(services::CurrentUserHive, settings::RootKey, name, fallback);
    };
    try {
        if (number(settings::EnableHeartbeat, 1) == 0) {
            return "N/A";
        }
        switch (number(settings::SyncHeartbeat, 0)) {
        case 0:
            return "pending";
        case 1:
            return "OK";
        case observation::HeartbeatNoResponse:
            return "no response from main";
        default:
            return "unknown";
        }
    } catch (const services::Failure&) {
        return "unknown";
    }
}

std::string WordsForCompanyType(std::int64_t type) {
    return type == suite::MainCompanyType      ? "main company"
           : type == suite::RoamingCompanyType ? "Roaming Workstation"
                                               : "unknown";
}

} // namespace qndr::control
