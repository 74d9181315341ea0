#pragma once

#include "services/platform.h"

#include <map>
#include <memory>
#include <string>

namespace qndr {

/// The messages and timers of an agent with a window, on the toolkit's event loop. To be used on the thread of the
/// application and during its life.
class QtMessages : public services::MessagePump, public services::WaitableTimers {
  public:
    /// Also runs what the timers that tick here post: the toolkit never delivers a timer's tick inside that
    /// timer's own handler, so long work belongs into a posted call, in which further ticks do arrive.
    void ProcessMessages() override;

    /// Timers of one name are one timer, as long as one of them is open. WaitForMessages delivers the messages
    /// that it wakes up for itself, before it returns.
    std::unique_ptr<services::WaitableTimer> Create(const std::string& name) override;

  private:
    class Timer;
    struct TimerState;
    std::map<std::string, std::weak_ptr<TimerState>> timers_;
};

} // namespace qndr
