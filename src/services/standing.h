#pragma once

#include "services/company_library.h"

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace qndr::services {

/// What the agent's settings say of standing.
struct StandingSettings {
    std::string syncFolder;
    std::string program;          ///< version of the agent
    std::int32_t frequency = 0;   ///< minutes between passes
    std::int32_t proofHours = 0;  ///< between two proofs that a pairing holds the same; 0 for none
    std::int32_t mendMinutes = 0; ///< that a pairing is out of step before it is mended; 0 for never
};

/// Tells the partners of one company how it stands and hears how they stand; proves that both hold the same, and
/// mends what is out of step. A suite may have no such thing: its partners then go on as they always did.
class Standing {
  public:
    virtual ~Standing() = default;

    /// Must be called first. The library stays the caller's and must outlive the object.
    virtual void Initialize(SharedCodeLibrary& library) = 0;

    /// To be called at the end of a company's steps. Lines for the log: what was repaired or mended. Nothing that
    /// fails here fails the pass.
    virtual std::vector<std::string> Exchange(const StandingSettings& settings) = 0;
    virtual void PreTerminate() = 0;
};

} // namespace qndr::services
