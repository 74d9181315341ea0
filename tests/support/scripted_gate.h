#pragma once

#include "services/failure.h"
#include "services/gated/call_gate.h"

#include <algorithm>
#include <functional>
#include <map>
#include <ostream>
#include <vector>

namespace qndr {

inline void PrintTo(Call call, std::ostream* out) {
    *out << call.Name();
}

} // namespace qndr

namespace qndr::testing {

/// Leaves the agent as a killed process does: from then on nothing that unwinds reaches the outside.
struct ProcessDied {};

using CallList = std::vector<Call>;

/// Notes every call of the seam, lets chosen ones fail and does something else in front of others.
class ScriptedGate : public services::CallGate {
  public:
    /// What becomes of a call.
    enum class Way { Admit, Refuse, Raise, Die };

    bool Admits(Call call) override {
        if (isOpen || isDead_) {
            return isOpen;
        }
        calls_.push_back(call);
        const bool isFailing = calls_.size() == failing_;
        if (const auto action = actions_.find(call); action != actions_.end()) {
            action->second();
        }
        if (isFailing) {
            return Fail();
        }
        const auto refused = refused_.find(call);
        return refused == refused_.end() || --refused->second < 0;
    }

    /// The call of that number fails; the first is 1.
    void FailAt(std::size_t number, Way way) {
        failing_ = number;
        way_ = way;
    }
    /// Refuses the next `times` such calls.
    void Refuse(Call call, int times = 1'000'000) { refused_[call] = times; }
    /// Runs `action` in front of every such call.
    void Before(Call call, std::function<void()> action) { actions_[call] = std::move(action); }

    const CallList& Calls() const { return calls_; }
    std::ptrdiff_t Count(Call call) const { return std::ranges::count(calls_, call); }
    /// The noted calls that are among `names`, in their order.
    CallList CallsOf(const CallList& names) const {
        CallList found;
        std::ranges::copy_if(calls_, std::back_inserter(found),
                             [&](Call call) { return std::ranges::find(names, call) != names.end(); });
        return found;
    }

    bool isOpen = false; ///< lets everything through and notes nothing

  private:
    bool Fail() {
        if (way_ == Way::Raise) {
            throw services::Failure("broken");
        }
        if (way_ == Way::Die) {
            isDead_ = true;
            throw ProcessDied();
        }
        return way_ == Way::Admit;
    }

    bool isDead_ = false;
    CallList calls_;
    std::size_t failing_ = 0;
    Way way_ = Way::Admit;
    std::map<Call, int> refused_;
    std::map<Call, std::function<void()>> actions_;
};

} // namespace qndr::testing
