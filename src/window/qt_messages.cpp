#include "window/qt_messages.h"

#include "services/failure.h"

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QEventLoop>
#include <QTimer>

#include <algorithm>
#include <cstdint>
#include <limits>
#include <utility>

namespace qndr {
namespace {

/// Due times are counted in units of 100 nanoseconds.
constexpr std::int64_t kUnitsPerMillisecond = 10'000;

} // namespace

struct QtMessages::TimerState {
    QDeadlineTimer due{QDeadlineTimer::Forever}; ///< for ever until it is armed
};

class QtMessages::Timer : public services::WaitableTimer {
  public:
    Timer(std::shared_ptr<TimerState> state, bool existed) : state_(std::move(state)), existed_(existed) {}

    bool AlreadyExists() const override { return existed_; }

    void Set(std::int32_t low, std::int32_t high) override {
        const auto units =
            static_cast<std::int64_t>(static_cast<std::uint64_t>(high) << 32 | static_cast<std::uint32_t>(low));
        if (units > 0) {
            throw services::Failure("a timer can only be set to a time from now on");
        }
        const std::int64_t milliseconds = units / -kUnitsPerMillisecond + (units % kUnitsPerMillisecond != 0);
        state_->due.setRemainingTime(milliseconds, Qt::PreciseTimer);
    }

    /// No nested event loop: of two that wait inside each other, the outer one could only end behind the inner.
    bool WaitForMessages() override {
        if (!state_->due.hasExpired()) {
            QTimer wake;
            if (!state_->due.isForever()) {
                wake.setSingleShot(true);
                wake.setTimerType(Qt::PreciseTimer);
                wake.start(static_cast<int>(
                    std::min<std::int64_t>(state_->due.remainingTime(), std::numeric_limits<int>::max())));
            }
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
        }
        return state_->due.hasExpired();
    }

  private:
    std::shared_ptr<TimerState> state_;
    bool existed_;
};

void QtMessages::ProcessMessages() {
    QCoreApplication::processEvents();
    QCoreApplication::sendPostedEvents();
}

std::unique_ptr<services::WaitableTimer> QtMessages::Create(const std::string& name) {
    std::shared_ptr<TimerState> state = timers_[name].lock();
    const bool existed = state != nullptr;
    if (!existed) {
        state = std::make_shared<TimerState>();
        timers_[name] = state;
    }
    return std::make_unique<Timer>(std::move(state), existed);
}

} // namespace qndr
