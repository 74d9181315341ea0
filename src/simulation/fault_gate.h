#pragma once

#include "services/gated/call_gate.h"
#include "simulation/chronicle.h"
#include "simulation/computer_faults.h"
#include "simulation/faults.h"

#include <functional>
#include <map>
#include <optional>
#include <set>
#include <string>

namespace qndr::simulation {

/// The end of a process in the middle of its work. Not a failure, so that no guard of the agent holds it up; while
/// it unwinds, every further call is refused.
struct AgentDied {};

/// Stands before all that one computer's agent asks of the outside, and injects what can go wrong there. What it
/// refuses is told to the judge, and a pairing comes back from all of it by waiting or by a reset.
class FaultGate : public services::CallGate {
  public:
    /// What is given by reference must outlive the gate.
    FaultGate(std::string computer, const FaultPlan& plan, SeededRandom random, Chronicle& chronicle,
              ComputerFaults& below)
        : computer_(std::move(computer)), plan_(plan), random_(random), chronicle_(chronicle), below_(below) {}

    /// Called between two calls, with the one that was made.
    void AfterCall(std::function<void(Call)> handler) { afterCall_ = std::move(handler); }
    void OnEdit(std::function<void()> handler) { edit_ = std::move(handler); }
    void OnStop(std::function<void()> handler) { stop_ = std::move(handler); }

    /// Lets the agent tell its partners how it stands, and mend what it can. Without it is an agent of a suite
    /// that knows no such thing.
    void AllowStanding() { allowsStanding_ = true; }

    bool Admits(Call call) override;

    /// A timer's tick of the agent. While it waits within a call, say for the lock of its database, further ticks
    /// come: what they ask for is not judged, and nobody edits, because the call is not at its end.
    class Tick {
      public:
        explicit Tick(FaultGate& gate) : gate_(gate) { ++gate_.depth_; }
        ~Tick() { --gate_.depth_; }
        Tick(const Tick&) = delete;
        Tick& operator=(const Tick&) = delete;

      private:
        FaultGate& gate_;
    };

    /// Forgets what the last pass suffered.
    void BeginPass();
    /// The calls that were refused in this pass.
    const std::set<Call>& Refused() const { return refused_; }
    bool Died() const { return dying_; }
    bool WasFeltBelow() const { return below_.WasFelt(); }
    /// Whether nothing at all has gone wrong in this pass, in front of the seam or below it.
    bool WasQuiet() const { return !dying_ && refused_.empty() && !below_.WasFelt(); }

  private:
    bool Strikes(Fault fault) { return random_.Chance(plan_.Rate(fault)); }
    bool IsRefused(Call call);

    std::string computer_;
    const FaultPlan& plan_;
    SeededRandom random_;
    Chronicle& chronicle_;
    std::function<void(Call)> afterCall_;
    std::function<void()> edit_;
    std::function<void()> stop_;
    std::optional<Call> previous_;
    std::set<Call> refused_;
    bool dying_ = false;
    bool allowsStanding_ = false;
    int depth_ = 0; ///< ticks within each other
    ComputerFaults& below_;
    std::map<Call, bool> weak_; ///< calls that fail often in this run
};

} // namespace qndr::simulation
