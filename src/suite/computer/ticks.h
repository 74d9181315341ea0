#pragma once

#include <cstdint>
#include <memory>
#include <optional>

namespace qndr::suite {

/// What a loop takes from the outside: a time that never goes back, sleep, and requests to end the program.
class Ticks {
  public:
    virtual ~Ticks() = default;

    /// Milliseconds from some start.
    virtual std::int64_t Now() const = 0;

    /// Returns at `due`, or when a request to end arrives; without `due` only then.
    virtual void SleepUntil(std::optional<std::int64_t> due) = 0;

    /// True once after a request to end the program, however many came.
    virtual bool TakeEndRequest() = 0;
};

/// The computer's own. From its construction on to its destruction, those of SIGTERM, SIGINT and SIGHUP that would
/// end the process wait here instead; the processes that it starts get theirs as ever. To be made before any
/// second thread. One implementation for each platform.
class SystemTicks : public Ticks {
  public:
    /// Raises services::Failure when the system cannot redirect the signals.
    SystemTicks();
    ~SystemTicks() override;
    SystemTicks(const SystemTicks&) = delete;
    SystemTicks& operator=(const SystemTicks&) = delete;

    std::int64_t Now() const override;
    void SleepUntil(std::optional<std::int64_t> due) override;
    bool TakeEndRequest() override;
    /// Can be read from as long as a request waits to be taken. For a loop that sleeps by other means.
    int EndRequestHandle() const;

  private:
    struct Signals;
    std::unique_ptr<Signals> signals_;
};

/// Whether a request to end waits for SystemTicks to take it; false where there are none. Does not take it.
bool EndRequestWaits();

} // namespace qndr::suite
