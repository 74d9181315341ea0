#pragma once

#include "services/platform.h"
#include "services/registry_tools.h"
#include "suite/sql/lock_wait.h"

#include <functional>
#include <string>

namespace qndr {

/// Waits for a database on the agent's one thread, so that its window stays alive: messages keep flowing, and in a
/// virtual time waiting costs nothing. An import stops waiting when the agent is asked to stop, and tells what it
/// waits for; a statement does neither, for it is soon over, and what was sent must be noted as sent.
class LockPauses : public sql::LockWait {
  public:
    /// All of them must outlive the object.
    LockPauses(services::MessagePump& messages, services::WaitableTimers& timers,
               services::RegistryTools& registryTools, const std::string& programName)
        : messages_(messages), timers_(timers), registryTools_(registryTools),
          timerName_(programName + "LockTimer") {}

    /// The teller gets the text for the activity line, and an empty one when the wait is over.
    void TellTo(std::function<void(const std::string&)> teller) { teller_ = std::move(teller); }

    std::int32_t Pause(const std::string& database, Patience patience, std::int32_t waited) override;
    void Over() override;

  private:
    void Tell(const std::string& text);
    bool IsAskedToStop();

    services::MessagePump& messages_;
    services::WaitableTimers& timers_;
    services::RegistryTools& registryTools_;
    std::string timerName_;
    std::function<void(const std::string&)> teller_;
    bool isTold_ = false;
};

} // namespace qndr
