#include "suite/computer/ticks.h"

#include "services/failure.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <limits>
#include <poll.h>
#include <sys/signalfd.h>
#include <unistd.h>

namespace qndr::suite {
namespace {

constexpr std::array<int, 3> kEndSignals{SIGTERM, SIGINT, SIGHUP};

/// In a process that is started from here, such as a file manager: it would keep them blocked for good, and the
/// user's session could not end it.
void UnblockEndSignals() {
    sigset_t ends;
    sigemptyset(&ends);
    for (const int signal : kEndSignals) {
        sigaddset(&ends, signal);
    }
    pthread_sigmask(SIG_UNBLOCK, &ends, nullptr);
}

} // namespace

/// The signals are blocked and read as data, so that nothing of the agent runs in a signal handler.
struct SystemTicks::Signals {
    sigset_t before{};
    int handle = -1;
};

SystemTicks::SystemTicks() : signals_(std::make_unique<Signals>()) {
    sigset_t ends;
    sigemptyset(&ends);
    for (const int signal : kEndSignals) {
        // Whoever started the program may have had it ignore one, as nohup does; blocked it would arrive all the
        // same.
        struct sigaction present {};
        if (sigaction(signal, nullptr, &present) == 0 && present.sa_handler != SIG_IGN) {
            sigaddset(&ends, signal);
        }
    }
    signals_->handle = signalfd(-1, &ends, SFD_NONBLOCK | SFD_CLOEXEC);
    if (signals_->handle < 0 || pthread_atfork(nullptr, nullptr, &UnblockEndSignals) != 0 ||
        pthread_sigmask(SIG_BLOCK, &ends, &signals_->before) != 0) {
        throw services::Failure("the signals that end the program cannot be received");
    }
}

SystemTicks::~SystemTicks() {
    close(signals_->handle);
    pthread_sigmask(SIG_SETMASK, &signals_->before, nullptr);
}

std::int64_t SystemTicks::Now() const {
    const auto now = std::chrono::steady_clock::now().time_since_epoch();
    return std::chrono::duration_cast<std::chrono::milliseconds>(now).count();
}

void SystemTicks::SleepUntil(std::optional<std::int64_t> due) {
    pollfd wake{signals_->handle, POLLIN, 0};
    for (;;) {
        const std::int64_t left = due ? std::max<std::int64_t>(*due - Now(), 0) : -1;
        const auto wait = static_cast<int>(std::min<std::int64_t>(left, std::numeric_limits<int>::max()));
        const int ready = poll(&wake, 1, wait);
        if (ready > 0 || (ready == 0 && Now() >= *due) || (ready < 0 && errno != EINTR)) {
            return;
        }
    }
}

int SystemTicks::EndRequestHandle() const {
    return signals_->handle;
}

bool SystemTicks::TakeEndRequest() {
    bool any = false;
    signalfd_siginfo signal{};
    while (read(signals_->handle, &signal, sizeof signal) == static_cast<ssize_t>(sizeof signal)) {
        any = true;
    }
    return any;
}

bool EndRequestWaits() {
    sigset_t waiting;
    sigemptyset(&waiting);
    return sigpending(&waiting) == 0 &&
           std::ranges::any_of(kEndSignals, [&](int signal) { return sigismember(&waiting, signal) == 1; });
}

} // namespace qndr::suite
