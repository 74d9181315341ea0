#pragma once

#include <cstdint>

namespace qndr::suite {

/// Lets a service sit out a trouble of this computer that may pass by itself: a share that does not answer, a file
/// that another program holds.
class Patience {
  public:
    virtual ~Patience() = default;

    /// True after that many seconds, in which the program's messages were delivered; false, at once, where nobody
    /// waits.
    virtual bool Wait(std::int32_t seconds) = 0;
};

} // namespace qndr::suite
