#include "agent/schedule_guard.h"

#include "shared/failure_rule.h"
#include "shared/settings.h"

#include <algorithm>

namespace qndr {
namespace {

/// Minutes: what the window's slider goes up to. A frequency that was made smaller leaves the present schedule.
constexpr std::int32_t LongestFrequency = 60;

} // namespace

void RecoverSchedule(AgentContext& context, AgentScheduler& scheduler) {
    if (!scheduler.MayClose()) {
        return;
    }
    const std::int64_t longest = std::max(LongestFrequency, scheduler.SyncFrequency()) + 1;
    bool isWrong = false;
    Attempt([&] {
        const auto next = ParseDate(context.services.registryTools.GetString(
            services::CurrentUserHive, settings::RootKey, settings::NextSync, ""));
        isWrong = next && *next > context.services.clock.Now().AddMinutes(longest);
    });
    if (isWrong) {
        scheduler.SyncNow();
    }
}

} // namespace qndr
