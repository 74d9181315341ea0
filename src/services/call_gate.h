#pragma once

#include "services/failure.h"

#include <string>
#include <string_view>

namespace qndr::services {

/// Stands in front of every call that passes through a forwarding wrapper of the seam, so that a test or the
/// simulator can count, delay or fail any call in one place.
class CallGate {
  public:
    virtual ~CallGate() = default;

    /// `call` is "Interface.Operation", for instance "FileTools.CopyFile". True lets the call through. False
    /// makes the wrapper answer with the failing result of that operation, or raise Failure where the
    /// operation has none. May raise itself (Failure for a raised fault, anything else to end the agent).
    virtual bool Admits(std::string_view call) = 0;
};

/// What every forwarding wrapper does with its gate; a null gate admits all.
class Gated {
  protected:
    explicit Gated(CallGate* gate) : gate_(gate) {}

    CallGate* Gate() const { return gate_; }
    bool Admits(std::string_view call) const { return gate_ == nullptr || gate_->Admits(call); }
    void Demand(std::string_view call) const {
        if (!Admits(call)) {
            throw Failure("refused: " + std::string(call));
        }
    }

  private:
    CallGate* gate_;
};

} // namespace qndr::services
