#include "syncfiles/wait.h"

#include "services/variant.h"
#include "shared/failure_rule.h"

#include <cmath>

namespace qndr {
namespace {

constexpr double Units = 4294967296.0;
constexpr double LowestLong = -2147483648.0;

/// Arms the timer for that many seconds from now on, in units of 100 nanoseconds.
void Arm(services::WaitableTimer& timer, std::int32_t seconds) {
    const double delay = static_cast<double>(seconds) * 1000.0 * 10000.0;
    const double turns = delay / Units;
    const std::int32_t high = -1 - Variant(turns).ToLong();
    double low = -Units * (turns - std::trunc(turns));
    if (low < LowestLong) {
        low += Units;
    }
    timer.Set(Variant(low).ToLong(), high);
}

} // namespace

void Wait(AgentContext& context, std::int32_t seconds) {
    std::unique_ptr<services::WaitableTimer> timer;
    Attempt([&] { timer = context.services.timers.Create(context.services.program.ExecutableName() + "Timer"); });
    if (!timer) {
        return;
    }
    if (Holds([&] { return !timer->AlreadyExists(); })) {
        Attempt([&] { timer->Set(-1, -1); });
    }
    Attempt([&] { Arm(*timer, seconds); });
    for (;;) {
        // A timer that fails must not hold the pass for ever.
        bool due = true;
        Attempt([&] { due = timer->WaitForMessages(); });
        Attempt([&] { context.services.messages.ProcessMessages(); });
        if (due) {
            return;
        }
    }
}

} // namespace qndr
