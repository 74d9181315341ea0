#pragma once

#include "simulation/seeded_random.h"

#include <array>
#include <cstddef>
#include <set>
#include <string>
#include <string_view>
#include <vector>

namespace qndr::simulation {

/// What can go wrong, each with a rate of its own. After each of them, and after all of them together, the
/// companies must come to agree again, with nothing lost but what the protocol gives up by name.
enum class Fault {
    RefuseCall,     ///< one call of the seam says no, or raises where it has no result
    Die,            ///< the process ends at a call of the seam
    PowerCut,       ///< the computer stops behind a pass or with a process; what was not made durable is gone
    DiskFull,       ///< for a while a company database can grow by little, and few files can be written
    LockDatabase,   ///< another program holds a company database for longer than a statement or an import waits
    ShareFails,     ///< for a while archives in the Sync folder cannot be read
    StopAgent,      ///< somebody asks the agent to stop; it is started again later
    EditInPass,     ///< users change rows while a pass runs
    LoseFile,       ///< the Sync folder loses a file
    DelayFile,      ///< a file reaches another computer hours or days later, each computer at its own time
    DoubleFile,     ///< the Sync folder makes a second copy of a file, under a name of its own
    TruncateFile,   ///< half a file is all that ever arrives
    EmptyFile,      ///< a file shows as empty at first and is filled later
    BringBackFile,  ///< a deleted file comes back
    RefuseDeletion, ///< a file of the Sync folder cannot be deleted at this moment
    ShuffleListing, ///< folders are listed in any order
    JumpClock,      ///< a clock is set hours or days forwards or backwards, and right again later
    DriftClock,     ///< a clock goes minutes wrong
    Sleep,          ///< a workstation sleeps for weeks
    Reset,          ///< somebody asks for a reset of a pairing
    RestoreBackup,  ///< a company database is restored from an older copy of itself
};
inline constexpr std::size_t FaultCount = 21;

/// The name on the command line and in reports.
std::string_view FaultName(Fault fault);

/// Which faults a run has, and how often each comes.
class FaultPlan {
  public:
    /// "none" for a run in which nothing goes wrong. Without names each seed takes a subset of all faults, some of
    /// them more often than usual. Raises services::Failure for a name that there is not.
    FaultPlan(const std::vector<std::string>& names, SeededRandom& random);

    /// The chance that the fault comes at an occasion for it; 0 for one that is not in the plan.
    double Rate(Fault fault) const { return rates_[static_cast<std::size_t>(fault)]; }
    bool Has(Fault fault) const { return Rate(fault) > 0; }
    /// From now on nothing goes wrong.
    void EndFaults() { rates_.fill(0); }
    /// The names of those that are in the plan, with commas.
    std::string Names() const;

  private:
    std::array<double, FaultCount> rates_{};
};

} // namespace qndr::simulation
