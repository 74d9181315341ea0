#pragma once

#include "services/platform.h"
#include "suite/computer/patience.h"

#include <cstdint>
#include <string>

namespace qndr {

/// Lets so many milliseconds pass on the agent's one thread. Messages, and with them timer ticks and clicks, go on
/// being delivered; in a virtual time waiting costs nothing. Never raises, and returns at once where there is no
/// timer to be had: then it gives false.
bool LetPass(services::MessagePump& messages, services::WaitableTimers& timers, const std::string& timerName,
             std::int64_t milliseconds);

/// Waits for files of the Sync folder in that way.
class MessagePatience : public suite::Patience {
  public:
    /// Both must outlive the object.
    MessagePatience(services::MessagePump& messages, services::WaitableTimers& timers,
                    const std::string& programName)
        : messages_(messages), timers_(timers), timerName_(programName + "FileTimer") {}

    bool Wait(std::int32_t seconds) override {
        return LetPass(messages_, timers_, timerName_, seconds * std::int64_t{1000});
    }

  private:
    services::MessagePump& messages_;
    services::WaitableTimers& timers_;
    std::string timerName_;
};

} // namespace qndr
