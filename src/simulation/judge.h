#pragma once

#include "composition/computer_services.h"
#include "shared/agent_context.h"
#include "simulation/chronicle.h"
#include "simulation/fault_gate.h"
#include "simulation/simulated_computer.h"
#include "simulation/sync_folders.h"

#include <cstddef>
#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <vector>

namespace qndr::simulation {

/// A losing of step between main and a workstation that the protocol allows. The names stand in
/// docs/operations.md, where a person finds what to do about them.
namespace loss {
inline constexpr const char* LostFile = "file lost";
inline constexpr const char* SentTwice = "sent, but not noted as sent";
inline constexpr const char* RefusedUpdate = "update refused";
inline constexpr const char* NoAcknowledge = "initial sync not acknowledged";
inline constexpr const char* RefusedImport = "import refused";
inline constexpr const char* IncompleteFile = "file built incompletely";
inline constexpr const char* OldNumbering = "file of an old numbering";
inline constexpr const char* TakenAsChange = "file of the first exchange taken as a change";
inline constexpr const char* UnreadableAsFirst = "unreadable file taken as the first";
inline constexpr const char* Restored = "database restored";
} // namespace loss

/// What is known of the pairing of a workstation with main.
struct Pairing {
    std::set<std::string> losses; ///< that explain why the two ends may be out of step
    bool wasReset = false;        ///< what a reset leaves alone may differ from then on
    int laptopEpoch = 0;          ///< numberings that the workstation has begun
    int mainEpoch = 0;            ///< the one of them that main is in
};

/// Watches the agents while they work, between any two of their calls. Raises Violation for what must never be: a
/// state that no step leads to, a counter that goes back, a range of the audit log that no file has carried, a
/// file that is taken with effect a second time, something left behind, a statement abandoned for nothing.
class Judge {
  public:
    /// The first computer is main, the others are its workstations. All must outlive the judge.
    Judge(std::vector<SimulatedComputer*> computers, const SyncFolders& folders, Chronicle& chronicle);
    ~Judge();
    Judge(const Judge&) = delete;
    Judge& operator=(const Judge&) = delete;

    /// Computer and gate of the pass.
    void BeginPass(std::size_t computer, const FaultGate& gate);
    /// Between two calls of the pass.
    void AfterCall(std::string_view call);
    /// A user changed something in the pass.
    void NoteEdit() { editedInPass_ = true; }
    /// To be called before the Sync folder takes up what the pass has dropped. `abandoned` are the statements that
    /// were given up in it.
    void EndPass(const std::vector<std::string>& abandoned);

    /// Somebody other than an agent changed numbers or states; they hold from now on.
    void Accept(std::size_t computer) { known_[computer] = Read(computer); }
    void NoteLostFile(const std::string& name);
    void NoteRestored(std::size_t computer);

    /// Of the workstation with this place among the computers.
    Pairing& PairingOf(std::size_t workstation) { return pairings_[workstation]; }
    /// Names of the files of the pairing that lie in a folder.
    std::set<std::string> FilesOf(std::size_t workstation) const;
    bool IsInStep(std::size_t workstation) const;
    /// The workstation's state and that of its row on main.
    std::pair<std::int64_t, std::int64_t> States(std::size_t workstation) const;

  private:
    struct End { ///< one end of a pairing, as the database there has it
        std::int64_t state = 0;
        std::int64_t lastAudit = 0;
        std::int64_t nextOut = 0;
        std::int64_t nextIn = 0;
        bool operator==(const End&) const = default;
    };
    using Ends = std::map<std::size_t, End>; ///< by workstation; a workstation has its own alone
    struct Descriptor {
        std::string from;
        std::int64_t state = 0;
        std::int64_t sequence = 0;
        bool isReset = false;
    };
    struct Dropped {
        std::size_t sender = 0;
        std::size_t workstation = 0;
        Descriptor descriptor;
        int epoch = 0;
    };

    Ends Read(std::size_t computer) const;
    std::optional<Descriptor> ReadDescriptor(const std::string& path);
    void DemandContent(const std::string& path, std::int64_t from, std::int64_t to);
    std::size_t WorkstationOf(std::size_t sender, const std::string& name) const;
    void Compare(std::size_t workstation, const End& before, const End& now);
    void CompareStates(std::size_t workstation, std::int64_t before, std::int64_t now);
    void DemandFile(std::size_t workstation, const End& before, const End& now);
    void NoteDropped(const std::string& name);
    void NoteOldFiles();
    void NoteTakenAsFirst(std::size_t workstation);
    bool IsOld(const Dropped& file);
    void NoteSentTwice(const Dropped& file);
    void NoteRefusals();
    void NoteMissingAcknowledge();
    void Explain(std::size_t workstation, const char* name);
    void ExplainAll(const char* name);
    bool HasRefused(const std::set<std::string>& calls) const;
    [[noreturn]] void Accuse(const std::string& what) const;

    std::vector<SimulatedComputer*> computers_;
    const SyncFolders& folders_;
    Chronicle& chronicle_;
    std::map<std::size_t, Pairing> pairings_;
    std::vector<Ends> known_;
    std::map<std::string, Dropped> files_;                   ///< all that were ever dropped, by their names
    std::vector<std::unique_ptr<ComputerServices>> outside_; ///< to read files with, past all faults

    // The pass in work.
    std::size_t computer_ = 0;
    const FaultGate* gate_ = nullptr;
    std::set<std::string> present_; ///< in the folder when it began
    std::size_t temporaryFiles_ = 0;
    bool editedInPass_ = false;
    bool tookInitialSync_ = false;       ///< a workstation became ready by it
    std::set<std::size_t> initialSyncs_; ///< workstations whose initial sync was noted as sent
};

} // namespace qndr::simulation
