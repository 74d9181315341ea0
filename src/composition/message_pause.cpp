#include "composition/message_pause.h"

#include "shared/failure_rule.h"

namespace qndr {

bool LetPass(services::MessagePump& messages, services::WaitableTimers& timers, const std::string& timerName,
             std::int64_t milliseconds) {
    constexpr std::int64_t unitsPerMillisecond = 10'000; // of a timer's due time
    std::unique_ptr<services::WaitableTimer> timer;
    Attempt([&] { timer = timers.Create(timerName); });
    if (!timer) {
        return false;
    }
    const std::int64_t due = -unitsPerMillisecond * milliseconds;
    Attempt([&] { timer->Set(static_cast<std::int32_t>(due), static_cast<std::int32_t>(due >> 32)); });
    for (bool isDue = false; !isDue;) {
        isDue = true; // a timer that fails must not hold the pass for ever
        Attempt([&] { isDue = timer->WaitForMessages(); });
        Attempt([&] { messages.ProcessMessages(); });
    }
    return true;
}

} // namespace qndr
