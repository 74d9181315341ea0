#pragma once

#include "services/call_gate.h"

#include <algorithm>
#include <functional>
#include <map>
#include <string>
#include <vector>

namespace qndr::testing {

/// Leaves the agent as a killed process does: from then on nothing that unwinds reaches the outside.
struct ProcessDied {};

/// Notes every call of the seam, lets chosen ones fail and does something else in front of others.
class ScriptedGate : public services::CallGate {
  public:
    /// What becomes of a call.
    enum class Way { Admit, Refuse, Raise, Die };

    bool Admits(std::string_view call) override {
        if (isOpen || isDead_) {
            return isOpen;
        }
        const std::string name(call);
        calls_.push_back(name);
        const bool isFailing = calls_.size() == failing_;
        if (const auto action = actions_.find(name); action != actions_.end()) {
            action->second();
        }
        if (isFailing) {
            return Fail();
        }
        const auto refused = refused_.find(name);
        return refused == refused_.end() || --refused->second < 0;
    }

    /// The call of that number fails; the first is 1.
    void FailAt(std::size_t number, Way way) {
        failing_ = number;
        way_ = way;
    }
    /// Refuses the next `times` calls of this name.
    void Refuse(const std::string& call, int times = 1'000'000) { refused_[call] = times; }
    /// Runs `action` in front of every call of this name.
    void Before(const std::string& call, std::function<void()> action) { actions_[call] = std::move(action); }

    const std::vector<std::string>& Calls() const { return calls_; }
    std::ptrdiff_t Count(const std::string& call) const { return std::ranges::count(calls_, call); }
    /// The noted calls that are among `names`, in their order.
    std::vector<std::string> CallsOf(const std::vector<std::string>& names) const {
        std::vector<std::string> found;
        std::ranges::copy_if(calls_, std::back_inserter(found), [&](const std::string& call) {
            return std::ranges::find(names, call) != names.end();
        });
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
    std::vector<std::string> calls_;
    std::size_t failing_ = 0;
    Way way_ = Way::Admit;
    std::map<std::string, int> refused_;
    std::map<std::string, std::function<void()>> actions_;
};

} // namespace qndr::testing
