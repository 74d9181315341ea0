#include "suite/computer/message_loop.h"

#include "services/failure.h"

#include <algorithm>
#include <limits>

namespace qndr::suite {
namespace {

/// Due times are counted in units of 100 nanoseconds.
constexpr std::uint64_t kUnitsPerMillisecond = 10'000;

} // namespace

class HeadlessLoop::Timer : public services::WaitableTimer {
  public:
    Timer(HeadlessLoop& loop, std::shared_ptr<TimerState> state, bool existed)
        : loop_(loop), state_(std::move(state)), existed_(existed) {}

    bool AlreadyExists() const override { return existed_; }

    void Set(std::int32_t low, std::int32_t high) override {
        const auto units =
            static_cast<std::int64_t>(static_cast<std::uint64_t>(high) << 32 | static_cast<std::uint32_t>(low));
        if (units > 0) {
            throw services::Failure("a timer can only be set to a time from now on");
        }
        const std::uint64_t delay = 0 - static_cast<std::uint64_t>(units);
        const std::uint64_t milliseconds =
            delay / kUnitsPerMillisecond + (delay % kUnitsPerMillisecond != 0 ? 1 : 0);
        state_->due = loop_.ticks_.Now() + static_cast<std::int64_t>(milliseconds);
    }

    bool WaitForMessages() override { return loop_.WaitForTimer(*state_); }

  private:
    HeadlessLoop& loop_;
    std::shared_ptr<TimerState> state_;
    bool existed_;
};

void HeadlessLoop::AddTick(const std::string& name, std::int64_t interval, Handler handler) {
    if (interval <= 0) {
        throw services::Failure("a tick needs an interval");
    }
    RemoveTick(name);
    table_.push_back({name, interval, ticks_.Now() + interval, std::move(handler)});
}

void HeadlessLoop::RemoveTick(const std::string& name) {
    std::erase_if(table_, [&](const Tick& tick) { return tick.name == name; });
}

std::optional<std::int64_t> HeadlessLoop::NextTick() const {
    std::optional<std::int64_t> next;
    for (const Tick& tick : table_) {
        next = std::min(tick.due, next.value_or(tick.due));
    }
    return next;
}

HeadlessLoop::Tick* HeadlessLoop::MostOverdue(std::int64_t now) {
    const auto first =
        std::min_element(table_.begin(), table_.end(), [](const Tick& a, const Tick& b) { return a.due < b.due; });
    return first == table_.end() || first->due > now ? nullptr : &*first;
}

void HeadlessLoop::Run() {
    quit_ = false;
    while (!quit_) {
        if (!MessageIsPending()) {
            ticks_.SleepUntil(NextTick());
        }
        ProcessMessages();
    }
}

void HeadlessLoop::ProcessMessages() {
    if (EndIsRequested()) {
        endRequested_ = false;
        if (const Handler handler = endHandler_) {
            handler();
        } else {
            Quit();
        }
    }
    // One moment for the whole call, so that it returns although the handlers take their time.
    const std::int64_t now = ticks_.Now();
    while (Tick* tick = MostOverdue(now)) {
        // Moved on before the handler runs: the table may change in it, and its own ticks may come nested.
        tick->due += ((now - tick->due) / tick->interval + 1) * tick->interval;
        const Handler handler = tick->handler;
        handler();
    }
}

bool HeadlessLoop::EndIsRequested() {
    endRequested_ = ticks_.TakeEndRequest() || endRequested_;
    return endRequested_;
}

bool HeadlessLoop::MessageIsPending() {
    const std::optional<std::int64_t> next = NextTick();
    return EndIsRequested() || (next && *next <= ticks_.Now());
}

bool HeadlessLoop::WaitForTimer(const TimerState& timer) {
    for (;;) {
        const std::int64_t now = ticks_.Now();
        if (timer.due && *timer.due <= now) {
            return true;
        }
        if (MessageIsPending()) {
            return false;
        }
        std::optional<std::int64_t> due = NextTick();
        if (timer.due) {
            due = std::min(*timer.due, due.value_or(std::numeric_limits<std::int64_t>::max()));
        }
        ticks_.SleepUntil(due);
    }
}

std::unique_ptr<services::WaitableTimer> HeadlessLoop::Create(const std::string& name) {
    std::shared_ptr<TimerState> state = timers_[name].lock();
    const bool existed = state != nullptr;
    if (!existed) {
        state = std::make_shared<TimerState>();
        timers_[name] = state;
    }
    return std::make_unique<Timer>(*this, std::move(state), existed);
}

} // namespace qndr::suite
