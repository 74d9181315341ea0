#pragma once

#include "services/platform.h"
#include "suite/computer/message_loop.h"

#include <cstdint>
#include <utility>

namespace qndr::suite {

/// A time in which waiting costs nothing: every sleep moves the clock on to the moment it was for. Serves a whole
/// agent as clock, message pump and timers, with the same loop that the agent without a window runs on.
class VirtualTime : public services::Clock, public services::MessagePump, public services::WaitableTimers {
  public:
    /// Local time; a zone without daylight time and without a bias until SetTimeZone.
    explicit VirtualTime(Date now);

    Date Now() const override;
    services::TimeZoneInformation GetTimeZoneInformation() const override { return zone_; }
    void ProcessMessages() override { loop_.ProcessMessages(); }
    std::unique_ptr<services::WaitableTimer> Create(const std::string& name) override {
        return loop_.Create(name);
    }

    /// Sets the clock as a person sets it: ticks and timers that are on their way are not moved.
    void SetNow(Date now);
    void SetTimeZone(const services::TimeZoneInformation& zone) { zone_ = zone; }
    /// Moves on by that many milliseconds, delivering the ticks on the way in the order of their times. A handler
    /// that itself waits may take the time beyond the goal.
    void Advance(std::int64_t milliseconds);
    /// Asks the agent from outside to end; delivered by the next ProcessMessages.
    void RequestEnd() { ticks_.endRequested = true; }

    /// Where ticks are added. Its Run raises services::Failure when nothing is left that could ever happen.
    HeadlessLoop& Loop() { return loop_; }

  private:
    struct JumpingTicks : Ticks {
        std::int64_t Now() const override { return now; }
        void SleepUntil(std::optional<std::int64_t> due) override;
        bool TakeEndRequest() override { return std::exchange(endRequested, false); }

        std::int64_t now = 0;
        bool endRequested = false;
    };

    JumpingTicks ticks_;
    HeadlessLoop loop_;
    Date start_; ///< local time at which the ticks were 0
    services::TimeZoneInformation zone_{1, 0, 0, 0};
};

} // namespace qndr::suite
