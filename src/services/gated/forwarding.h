#pragma once

#include "services/failure.h"
#include "services/gated/call_gate.h"

#include <functional>
#include <memory>
#include <string>
#include <type_traits>
#include <utility>

namespace qndr::services {

/// In the place of a refused call's result, where the operation has none that could say no.
struct RaisesFailure {};
inline constexpr RaisesFailure Raises;
/// The refused call just returns.
struct ReturnsNothing {};
inline constexpr ReturnsNothing DoesNothing;

/// What a forwarding wrapper is made of: it hands every call on to an object of the same interface, when the gate
/// admits it. A null gate admits all.
template <typename Service> class Forwarding : public Service {
  public:
    /// The target stays the caller's.
    Forwarding(Service& target, CallGate* gate) : gate_(gate), target_(&target) {}
    Forwarding(std::unique_ptr<Service> target, CallGate* gate)
        : gate_(gate), owned_(std::move(target)), target_(owned_.get()) {}

  protected:
    CallGate* Gate() const { return gate_; }

    /// What `f` gives for the target, or `refusal` when the gate does not admit the call.
    template <typename Refusal, typename Function>
    std::invoke_result_t<Function, Service&> Ask(Call call, Refusal&& refusal, Function f) const {
        if (gate_ == nullptr || gate_->Admits(call)) {
            return f(*target_);
        }
        if constexpr (std::is_same_v<std::decay_t<Refusal>, RaisesFailure>) {
            throw Failure("refused: " + std::string(call.Name()));
        } else if constexpr (!std::is_same_v<std::decay_t<Refusal>, ReturnsNothing>) {
            return std::forward<Refusal>(refusal);
        }
    }

    /// What `f` gives for the target, whatever the gate.
    template <typename Function> std::invoke_result_t<Function, Service&> Pass(Function f) const {
        return f(*target_);
    }

  private:
    CallGate* gate_;
    std::unique_ptr<Service> owned_;
    Service* target_;
};

/// The object behind its wrapper; nothing stays nothing.
template <typename Wrapper, typename Service>
std::unique_ptr<Service> Behind(std::unique_ptr<Service> object, CallGate* gate) {
    return object == nullptr ? nullptr : std::make_unique<Wrapper>(std::move(object), gate);
}

} // namespace qndr::services
