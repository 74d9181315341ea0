#pragma once

#include "simulation/chronicle.h"
#include "simulation/doctor.h"
#include "simulation/dropped_files.h"
#include "simulation/fault_gate.h"
#include "simulation/import_watch.h"
#include "simulation/known_losses.h"
#include "simulation/simulated_computer.h"
#include "simulation/sync_folders.h"

#include <cstddef>
#include <cstdint>
#include <map>
#include <set>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace qndr::simulation {

/// What is known of the pairing of a workstation with main.
struct Pairing {
    bool wasReset = false;            ///< what full data leaves alone may differ from then on
    int laptopEpoch = 0;              ///< numberings that the workstation has begun
    int mainEpoch = 0;                ///< the one of them that main is in
    std::int64_t fullDataAuditId = 0; ///< what main's log holds above it has to travel in change files
};

/// Watches the agents while they work, between any two of their calls. Raises Violation for what must never be: a
/// state that no step leads to, a counter that goes back, a range of the audit log that no file has carried, a
/// file that counts although its data is not in, or that goes although it does not count, something left behind, a
/// statement abandoned for nothing. What the protocol gives up it enters among the known losses.
class Judge {
  public:
    /// The first computer is main, the others are its workstations. All must outlive the judge.
    Judge(std::vector<SimulatedComputer*> computers, const SyncFolders& folders, Chronicle& chronicle);

    /// Computer and gate of the pass.
    void BeginPass(std::size_t computer, const FaultGate& gate);
    /// To be shown to the agents' objects.
    ImportWatch& Watch() { return watch_; }
    /// Between two calls of the pass.
    void AfterCall(Call call);
    /// A user changed something in the pass.
    void NoteEdit() { editedInPass_ = true; }
    /// To be called before the Sync folder takes up what the pass has dropped. `abandoned` are the statements that
    /// were given up in it; it ran through when no step was left out.
    void EndPass(const std::vector<std::string>& abandoned, bool ranThrough);
    /// In a run in which nothing goes wrong, between two passes: the doctor at that computer may name nothing but
    /// these troubles.
    void DemandNoTrouble(std::size_t computer, const std::set<std::string_view>& real) const;

    /// Somebody other than an agent changed numbers or states; they hold from now on.
    void Accept(std::size_t computer) { known_[computer] = Read(computer); }
    void NoteLostFile(const std::string& name);
    /// `gone` are the values that the database held before.
    void NoteRestored(std::size_t computer, const std::set<std::string>& gone);

    const KnownLosses& Losses() const { return losses_; }
    /// Of the workstation with this place among the computers.
    Pairing& PairingOf(std::size_t workstation) { return pairings_[workstation]; }
    /// Names of the files of the pairing that lie in a folder.
    std::set<std::string> FilesOf(std::size_t workstation) const;
    bool IsInStep(std::size_t workstation) const;
    /// The workstation's state and that of its row on main.
    std::pair<std::int64_t, std::int64_t> States(std::size_t workstation) const;
    /// Identities of rows that somebody changed while a pass went on.
    const std::set<std::string>& EditedInPasses() const { return editedInPasses_; }

  private:
    struct End { ///< one end of a pairing, as the database there has it
        std::int64_t state = 0;
        std::int64_t lastAudit = 0;
        std::int64_t nextOut = 0;
        std::int64_t nextIn = 0;
        bool operator==(const End&) const = default;
    };
    using Ends = std::map<std::size_t, End>; ///< by workstation; a workstation has its own alone

    Ends Read(std::size_t computer) const;
    void AcceptMending();
    bool AtMain() const { return computer_ == 0; }
    int EpochOf(std::size_t workstation) const;
    std::size_t WorkstationOf(std::size_t sender, const std::string& name) const;
    std::string PathOf(const std::string& name) const { return folders_.Folder(computer_) + "/" + name; }

    // judge.cpp: numbers and states
    void Compare(std::size_t workstation, const End& before, const End& now);
    void CompareStates(std::size_t workstation, const End& before, const End& now);

    // judge_sending.cpp: files that go out, and what they must hold
    void DemandFile(std::size_t workstation, const End& before, const End& now);
    void DemandChanges(const std::string& name, std::int64_t from, std::int64_t to);
    void DemandFullData(const std::string& name, std::int64_t lastAudit);
    void NoteDropped(const std::string& name);
    void NoteIncomplete(const std::string& name);
    void NoteAstray(const std::string& name);
    void DemandNoted(const std::string& name);
    bool IsNewer(const std::string& id, std::int64_t audit) const;
    bool Lacks(const DroppedFile& file, const std::string& table, const std::string& id) const;
    std::set<std::string> ValuesOf(const std::string& table, const std::string& id) const;
    void NoteMissing(const std::string& name, const std::string& table, const std::string& id);
    void NotePassedOver(std::size_t workstation, std::int64_t from, std::int64_t to);

    // judge_receiving.cpp: files that come in, and what becomes of them
    void DemandTaken(std::size_t workstation, const End& before, const End& now);
    void DemandNumber(const std::string& name, const DroppedFile& file, const End& before, const End& now);
    void DemandData(const std::string& name, const DroppedFile& file);
    void FollowRequest(std::size_t workstation, std::int64_t state);
    void DemandRetired(const std::string& name, const DroppedFile& file);
    bool ThrowsAllAway(std::size_t workstation) const;
    bool IsWhole(const std::string& name, const DroppedFile& file) const;
    bool CouldNotBeRead() const;

    // judge_fates.cpp: what the doctor said of the files, and what has become of them
    void DemandFates(const std::set<std::string>& names, bool ranThrough) const;
    void DemandPlace(const std::string& name, const Prophecy& said) const;
    bool MayStay(const std::string& name, const Prophecy& said, bool ranThrough) const;
    bool MayGo(const Prophecy& said) const;
    bool HasTaken(const Prophecy& said, std::int64_t sequence) const;
    [[noreturn]] void Contradict(const std::string& name, const Prophecy& said, const std::string& what) const;

    KnownLoss Loss(const char* name, std::size_t workstation, const std::string& file = "") const;
    void Note(KnownLoss loss);
    bool HasRefused(const std::set<Call>& calls) const;
    [[noreturn]] void Accuse(const std::string& what) const;

    std::vector<SimulatedComputer*> computers_;
    const SyncFolders& folders_;
    Chronicle& chronicle_;
    std::map<std::size_t, Pairing> pairings_;
    std::vector<Ends> known_;
    DroppedFiles files_;
    KnownLosses losses_;
    ImportWatch watch_;
    Doctor doctor_;
    std::set<std::string> editedInPasses_;

    // The pass in work.
    std::size_t computer_ = 0;
    const FaultGate* gate_ = nullptr;
    std::set<std::string> present_;                        ///< in the folder when it began
    std::map<std::string, Prophecy> foreseen_;             ///< what was said of them then
    std::set<std::string> taken_;                          ///< files whose number counts since
    std::set<std::string> sent_;                           ///< files that count as sent since
    std::map<std::size_t, std::set<std::int64_t>> states_; ///< in which each pairing has been
    std::set<std::size_t> initialSyncs_;                   ///< workstations whose initial sync was noted as sent
    std::size_t temporaryFiles_ = 0;
    std::int64_t firstAuditId_ = 0; ///< highest one when it began
    bool editedInPass_ = false;
};

} // namespace qndr::simulation
