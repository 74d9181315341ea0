#pragma once

#include "simulation/chronicle.h"
#include "simulation/dropped_files.h"

#include <cstddef>
#include <cstdint>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <vector>

namespace qndr::simulation {

/// What the protocol gives up. The names stand in docs/operations.md, where a person finds what to do about them.
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

/// Something that was given up, and all that it can be the reason for.
struct KnownLoss {
    const char* name = "";
    std::size_t workstation = 0; ///< whose pairing it is
    int epoch = 0;               ///< the numbering that it has damaged; the next one is sound again
    /// The two ends may disagree on a number or a state.
    bool breaksStep = false;
    /// A number of this sender's under which more than one file went out, or a file that was none of the
    /// numbering: what any file of that number carries may be missing.
    std::optional<FileNumber> number;
    bool laterNumberings = false; ///< the files of that sequence in later numberings too
    std::string file;             ///< that it is about; empty when there is none
    bool losesValues = true;      ///< and not only the step: what the files carry is kept nowhere else
    bool wholeNumbering = false;  ///< whatever any file of the numbering carries may be missing
    std::set<std::string> rows;   ///< identities, beside those in the files
    std::set<std::string> values; ///< beside those in the files
};

/// All that was given up in a run. A difference that is found is excused by nothing but a loss of what differs.
class KnownLosses {
  public:
    /// Both must outlive the object.
    KnownLosses(const DroppedFiles& files, Chronicle& chronicle) : files_(files), chronicle_(chronicle) {}

    /// Takes it up; once, if it comes again.
    void Note(KnownLoss loss, const std::string& computer);
    /// The row is another that the open losses of whole numberings of that workstation have cost it.
    void AddToNumbering(std::size_t workstation, const std::string& id);
    /// The workstation has full data of that numbering: what was lost before differs no more.
    void NoteMended(std::size_t workstation, int epoch) { sound_[workstation] = epoch; }

    /// The name of a loss that explains why the ends disagree on a number or a state; null when none does.
    const char* ExplainStep(std::size_t workstation) const;
    /// Why the row differs between main and the workstation.
    const char* ExplainRow(std::size_t workstation, const std::string& id) const;
    /// Why the value of that row stands nowhere any more. What was lost before a reset is lost behind it too. A
    /// workstation passes a value over in favour of its own version that it has sent, so that one is lost as well
    /// when that version is.
    const char* ExplainValue(const std::string& value, const std::string& id) const;
    /// Whether main may have taken a version of the row twice.
    bool ExplainsTwice(const std::string& id) const;

  private:
    bool IsOpen(const KnownLoss& loss) const;
    bool Carried(const KnownLoss& loss, const std::string& text) const;
    bool CarriedToMain(const KnownLoss& loss, const std::string& id) const;

    const DroppedFiles& files_;
    Chronicle& chronicle_;
    std::vector<KnownLoss> losses_;
    std::map<std::size_t, int> sound_;
};

} // namespace qndr::simulation
