#include "suite/computer/virtual_time.h"

#include "services/failure.h"

#include <algorithm>

namespace qndr::suite {

void VirtualTime::JumpingTicks::SleepUntil(std::optional<std::int64_t> due) {
    if (endRequested) {
        return;
    }
    if (!due) {
        throw services::Failure("the virtual time would sleep for ever");
    }
    now = std::max(now, *due);
}

VirtualTime::VirtualTime(Date now) : loop_(ticks_), start_(now) {
}

Date VirtualTime::Now() const {
    return start_.AddSeconds(ticks_.now / 1000);
}

void VirtualTime::SetNow(Date now) {
    start_ = now.AddSeconds(-(ticks_.now / 1000));
}

void VirtualTime::Advance(std::int64_t milliseconds) {
    const std::int64_t goal = ticks_.now + milliseconds;
    for (;;) {
        const std::optional<std::int64_t> next = loop_.NextTick();
        if (!next || *next > goal) {
            break;
        }
        ticks_.now = std::max(ticks_.now, *next);
        loop_.ProcessMessages();
    }
    ticks_.now = std::max(ticks_.now, goal);
}

} // namespace qndr::suite
