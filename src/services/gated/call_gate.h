#pragma once

#include "services/gated/call_names.h"

namespace qndr::services {

/// Stands in front of every call that passes through a forwarding wrapper of the seam, so that a test or the
/// simulator can count, delay or fail any call in one place.
class CallGate {
  public:
    virtual ~CallGate() = default;

    /// True lets the call through. False makes the wrapper answer with the failing result of that operation, or
    /// raise Failure where the operation has none. May raise itself (Failure for a raised fault, anything else to
    /// end the agent).
    virtual bool Admits(Call call) = 0;
};

} // namespace qndr::services
