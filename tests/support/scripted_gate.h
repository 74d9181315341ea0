#pragma once

#include "services/call_gate.h"

#include <algorithm>
#include <functional>
#include <map>
#include <string>
#include <vector>

namespace qndr::testing {

/// Notes every call of the seam, refuses chosen ones and does something else in front of others.
class ScriptedGate : public services::CallGate {
  public:
    bool Admits(std::string_view call) override {
        const std::string name(call);
        calls_.push_back(name);
        if (const auto action = actions_.find(name); action != actions_.end()) {
            action->second();
        }
        const auto refused = refused_.find(name);
        return refused == refused_.end() || --refused->second < 0;
    }

    /// Refuses the next `times` calls of this name.
    void Refuse(const std::string& call, int times = 1'000'000) { refused_[call] = times; }
    /// Refuses only the call of this name that is the `nth` from now on. Takes the place of an action.
    void RefuseOnly(const std::string& call, int nth) {
        Before(call, [this, call, left = nth]() mutable { Refuse(call, --left == 0 ? 1 : 0); });
    }
    /// Runs `action` in front of every call of this name.
    void Before(const std::string& call, std::function<void()> action) { actions_[call] = std::move(action); }

    std::ptrdiff_t Count(const std::string& call) const { return std::ranges::count(calls_, call); }
    /// The noted calls that are among `names`, in their order.
    std::vector<std::string> CallsOf(const std::vector<std::string>& names) const {
        std::vector<std::string> found;
        std::ranges::copy_if(calls_, std::back_inserter(found), [&](const std::string& call) {
            return std::ranges::find(names, call) != names.end();
        });
        return found;
    }

  private:
    std::vector<std::string> calls_;
    std::map<std::string, int> refused_;
    std::map<std::string, std::function<void()>> actions_;
};

} // namespace qndr::testing
