#pragma once

#include "simulation/agent_process.h"
#include "simulation/chronicle.h"
#include "simulation/fault_gate.h"
#include "simulation/faults.h"
#include "simulation/judge.h"
#include "simulation/sync_folders.h"
#include "simulation/unflushed_files.h"
#include "simulation/users.h"

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace qndr::simulation {

struct SimulationOptions {
    std::uint64_t seed = 1;
    int workstations = 2;
    int days = 2;
    std::vector<std::string> faults; ///< names; each seed takes some of all when there are none
    std::string folder;              ///< an empty one, in which the computers live
    bool standing = false; ///< the agents tell each other how they stand, and everything has to mend by itself
};

struct SimulationResult {
    std::string violation; ///< what must never be; empty when all went well
    std::string faultsInPlan;
    std::int64_t passes = 0;
    std::int64_t files = 0;
    std::int64_t bytes = 0;
    std::int64_t edits = 0;
    std::int64_t conflicts = 0;
    std::int64_t resets = 0; ///< that mended a pairing that was out of step
    /// Pairings out of step and rows that differed in the quiet time, by the name of the loss that explains it.
    std::map<std::string, std::int64_t> excused;
    /// What somebody entered and is gone, by the name of the loss that explains it.
    std::map<std::string, std::int64_t> lostValues;
    std::map<std::string, std::int64_t> faults;
    std::map<std::string, std::int64_t> losses;
    std::uint64_t fingerprint = 0; ///< of all events; the same for the same options
    std::vector<std::string> lastEvents;
};

/// A dealer's days: a main computer and workstations, each with the agent as it is, people who work, and all that
/// can go wrong, in virtual time and from one seed. When the days are over the faults end, and the companies must
/// come to agree. Raises services::Failure for options that cannot be used; std::filesystem errors mean that the
/// folder does not work.
class Simulation {
  public:
    explicit Simulation(const SimulationOptions& options);

    SimulationResult Run();

  private:
    struct Station { ///< a computer with its agent
        std::unique_ptr<SimulatedComputer> computer;
        std::unique_ptr<ComputerFaults> below;
        std::unique_ptr<FaultGate> gate;
        std::unique_ptr<AgentProcess> agent; ///< null while none runs
        std::int64_t nextWake = 0;           ///< minutes since the start
        std::int64_t clockWrongUntil = 0;
        std::int64_t minutesWithoutMain = 0; ///< since main's last pass, when this computer had its own last one
    };

    void SetUp();
    void LiveThrough(std::int64_t minutes);
    void ComeToRest();
    std::size_t NextToWake() const;
    void ActAround(std::size_t place);
    void SetClock(std::size_t place);
    void LosePower(std::size_t place, UnflushedFiles& files);
    void RestoreBackup(std::size_t place);
    void RunPass(std::size_t place);
    void AskTheDoctors();
    void ScheduleNextWake(std::size_t place);
    bool Exchange(int rounds);
    std::string Position() const;
    void Mend(std::size_t place);
    bool Agrees(std::size_t place);
    bool AllAgree();
    void DemandNothingTwice() const;
    void DemandValues();
    std::vector<SimulatedComputer*> Computers() const;

    SimulationOptions options_;
    SeededRandom random_;
    Chronicle chronicle_;
    FaultPlan plan_;
    SeededRandom identifiers_;
    std::vector<Station> stations_;
    std::unique_ptr<SyncFolders> folders_;
    std::unique_ptr<Users> users_;
    std::unique_ptr<Judge> judge_;
    std::int64_t minute_ = 0;
    std::int64_t mainPassed_ = 0; ///< minute of its last pass
    bool quiet_ = false;
    SimulationResult result_;
};

} // namespace qndr::simulation
