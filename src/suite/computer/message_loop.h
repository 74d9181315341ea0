#pragma once

#include "services/platform.h"
#include "suite/computer/ticks.h"

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace qndr::suite {

/// The message loop of a program without a window. Periodic ticks stand in a table of due times that every
/// ProcessMessages looks at, so a tick that falls into a handler is delivered inside it as soon as that handler
/// lets messages through, the handler's own next tick included: handlers guard themselves. Ticks that were missed
/// come as one. What a handler raises reaches whoever let the messages through.
class HeadlessLoop : public services::MessagePump, public services::WaitableTimers {
  public:
    using Handler = std::function<void()>;

    explicit HeadlessLoop(Ticks& ticks) : ticks_(ticks) {}

    /// First due one interval (milliseconds, above 0) from now on. A tick of the same name is replaced.
    void AddTick(const std::string& name, std::int64_t interval, Handler handler);
    /// Nothing of it is delivered afterwards.
    void RemoveTick(const std::string& name);
    /// What to do when the program is asked from outside to end; without it Run ends.
    void OnEndRequest(Handler handler) { endHandler_ = std::move(handler); }

    /// When the next tick is due, in the time of the Ticks; nothing when there is none.
    std::optional<std::int64_t> NextTick() const;

    /// Delivers messages until Quit.
    void Run();
    /// Run returns when the handlers that are running have.
    void Quit() { quit_ = true; }

    void ProcessMessages() override;
    /// Timers of one name are one timer, as long as one of them is open.
    std::unique_ptr<services::WaitableTimer> Create(const std::string& name) override;

  private:
    class Timer;
    struct TimerState {
        std::optional<std::int64_t> due; ///< nothing until it is armed
    };
    struct Tick {
        std::string name;
        std::int64_t interval;
        std::int64_t due;
        Handler handler;
    };
    Tick* MostOverdue(std::int64_t now);
    bool EndIsRequested();
    bool MessageIsPending();
    bool WaitForTimer(const TimerState& timer);

    Ticks& ticks_;
    std::vector<Tick> table_;
    std::map<std::string, std::weak_ptr<TimerState>> timers_;
    Handler endHandler_;
    bool endRequested_ = false;
    bool quit_ = false;
};

} // namespace qndr::suite
