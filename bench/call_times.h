#pragma once

#include "services/gated/call_gate.h"

#include <chrono>
#include <functional>
#include <iosfwd>
#include <map>
#include <string>
#include <string_view>

namespace qndr::bench {

/// Tells where an agent's time goes, by the calls of the seam. The gate sees where a call begins and not where it
/// ends: what the agent itself does behind a call counts for that call.
class CallTimes : public services::CallGate {
  public:
    struct Sum {
        double seconds = 0;
        long calls = 0;
    };

    /// Takes the time from here on; what comes before the first call stands under "start".
    void Start();
    void Stop();
    bool Admits(Call call) override;

    double Seconds() const;
    /// The sums as one JSON object, from call to [seconds, calls].
    void Print(std::ostream& out) const;

  private:
    using Moment = std::chrono::steady_clock::time_point;

    /// Ends the call in work and begins another one.
    void Turn(std::string_view call);

    std::map<std::string, Sum, std::less<>> sums_;
    Sum* current_ = nullptr;
    Moment began_;
};

} // namespace qndr::bench
