#include "agent/stop_request.h"

#include "shared/settings.h"

namespace qndr {

void RequestStopSync(AgentContext& context) {
    context.services.registryTools.SetLong(services::CurrentUserHive, settings::RootKey, settings::StopSync, 1);
}

} // namespace qndr
