#pragma once

#include <cstdint>
#include <string>

namespace qndr::sql {

/// What is done while another program holds the database that is wanted here.
class LockWait {
  public:
    /// How long the lock is waited for. What a statement could not store the next pass mostly does again; an
    /// import is waited for longer.
    enum class Patience { Statement, Import };
    static constexpr std::int32_t Limit(Patience patience) { ///< in milliseconds
        return patience == Patience::Import ? 600'000 : 60'000;
    }

    virtual ~LockWait() = default;

    /// Lets a little time pass, in which message handlers may run; what they raise reaches whoever waits.
    /// `database` is the path and `waited` how long this wait has lasted. Gives how much time has passed, in
    /// milliseconds as all here, and 0 when the waiting is to end.
    virtual std::int32_t Pause(const std::string& database, Patience patience, std::int32_t waited) = 0;

    /// The import that waited has its lock, or has given up.
    virtual void Over() = 0;
};

} // namespace qndr::sql
