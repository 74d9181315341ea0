#include "diagnosis/pair_look.h"
#include "services/company_numbers.h"
#include "shared/records.h"

#include <algorithm>

namespace qndr::diagnosis {

namespace {

constexpr std::int64_t Day = 24 * 60 * 60;
/// Clocks of two computers are seldom closer.
constexpr std::int64_t ClockSeconds = 120;
/// So many are told by name.
constexpr std::size_t MostNamed = 10;

class PairSection {
  public:
    PairSection(PairLook& look, BeginAnew& anew) : look_(look), anew_(anew) {}

    void Run() {
        LookAtRegistration();
        if (look_.pair.row != nullptr) {
            LookAtSilence();
            LookAtDrain();
        }
        if (!look_.seen.KnowsFiles() || look_.traffic.HasUncertain()) {
            return;
        }
        LookAtInitialSync();
        LookAtReset();
        DiagnoseSequences(look_);
        DiagnoseConfirmations(look_);
    }

  private:
    void TellToBeginAnew(const TroubleKind& kind, const std::string& text) {
        look_.Tell(kind, text);
        anew_.push_back(look_.pair.row != nullptr ? look_.pair.row->uniqueID : look_.pair.laptop->facts.uniqueID);
    }

    void LookAtRegistration() {
        if (look_.pair.row == nullptr && look_.pair.main != nullptr) {
            look_.Tell(troubles::NotRegistered, look_.MainName() + " has no workstation of this unique id.");
        } else if (look_.LaptopState() == SyncStateNone) {
            look_.Tell(look_.pair.row == nullptr ? troubles::NotRegistered : troubles::NeverAsked,
                       "The workstation's state is 0 (none): it asks for nothing and takes nothing.");
        }
    }

    void LookAtSilence() {
        const auto received = ParseDate(look_.pair.row->lastReceivedFrom);
        const std::int64_t seconds = received ? look_.seen.nowUtc.SecondsSince(*received) : 0;
        if (seconds > look_.seen.days * Day) {
            look_.Tell(troubles::SilentWorkstation, "Nothing has come from it for " +
                                                        Counted(seconds / Day, "day") +
                                                        ". Its agent does not run, or nothing was changed there.");
        }
    }

    /// Main counts the five quiet minutes of a reset from the moment that it noted last.
    void LookAtDrain() {
        if (look_.pair.row->syncState != SyncStateResetPending || !look_.seen.KnowsFiles() ||
            look_.traffic.HasResetRequest()) {
            return;
        }
        const auto received = ParseDate(look_.pair.row->lastReceivedFrom);
        if (!received) {
            look_.Tell(troubles::ResetStuck,
                       "Main does not know since when it waits, and so waits for ever for the five "
                       "quiet minutes of the reset.");
        } else if (received->SecondsSince(look_.seen.nowUtc) > ClockSeconds) {
            look_.Tell(troubles::ResetStuck, "Main waits for five quiet minutes from " +
                                                 FormatGeneralDate(*received) +
                                                 " UTC, which is still to come: its clock was put back.");
        }
    }

    void LookAtInitialSync() {
        const bool isDataOnItsWay = look_.traffic.HasInitialRequest() || look_.traffic.HasInitialData();
        if (look_.LaptopState() == SyncStateInitialSyncRequested && look_.pair.row != nullptr && !isDataOnItsWay &&
            look_.RowState() != SyncStateInitialSyncRequired && look_.RowState() != SyncStateInitialSyncSent) {
            TellToBeginAnew(troubles::LostInitialSync,
                            "It awaits its initial sync, no file of it is on its way, and " + look_.MainName() +
                                " has it at " + RowInWords() + ": the request or the data was lost.");
        }
        const bool isBeyond = look_.LaptopState() == SyncStateReady ||
                              look_.LaptopState() == SyncStateResetRequested ||
                              look_.LaptopState() == SyncStateResetPending;
        // A row at 0 hears neither changes nor reset requests.
        if (isBeyond && look_.RowState() == SyncStateNone && !look_.traffic.HasInitialRequest() &&
            !look_.traffic.HasAcknowledge()) {
            TellToBeginAnew(troubles::LostInitialSync, "It has had its initial sync, but " + look_.MainName() +
                                                           " has it at " + RowInWords() +
                                                           " and takes nothing else from it.");
        }
        // Nor does one at 1 or 3, and what it sends is for a workstation that still awaits its initial sync.
        const bool isOwed =
            look_.RowState() == SyncStateInitialSyncRequired || look_.RowState() == SyncStateInitialSyncSent;
        if (isBeyond && isOwed && !look_.traffic.HasAcknowledge()) {
            TellToBeginAnew(troubles::LostAcknowledge,
                            "It has had its initial sync, but " + look_.MainName() + " has it at " + RowInWords() +
                                ", as after a second request, and takes neither changes nor a reset from it.");
        } else if (look_.RowState() == SyncStateInitialSyncSent &&
                   look_.LaptopState() != SyncStateInitialSyncRequired && !isDataOnItsWay &&
                   !look_.traffic.HasAcknowledge()) {
            TellToBeginAnew(troubles::LostAcknowledge,
                            look_.MainName() + " has sent the initial sync and waits for the acknowledge, "
                                               "but neither of them is on its way.");
        }
    }

    void LookAtReset() {
        if (look_.LaptopState() != SyncStateResetPending || look_.traffic.HasResetRequest() ||
            look_.RowState().value_or(SyncStateReady) != SyncStateReady) {
            return;
        }
        const auto lying = look_.traffic.SequencesToLaptop();
        const std::int64_t expected = look_.pair.laptop->facts.nextSequenceFromMain;
        if (look_.traffic.HasResetData() && !lying.contains(expected)) {
            look_.Tell(troubles::LostReset, "It awaits the full data of a reset and the number " +
                                                std::to_string(expected) +
                                                ", and what lies there for it begins with " +
                                                std::to_string(lying.begin()->first) + ".");
        } else if (look_.pair.row != nullptr && !look_.traffic.HasResetData()) {
            look_.Tell(troubles::LostReset,
                       "It awaits the full data of a reset, no file of it is on its way, and " + look_.MainName() +
                           " has it at " + RowInWords() + ": the request or the data was lost.");
        }
    }

    std::string RowInWords() const {
        return NumberInWords(look_.pair.row->syncState, WordsForWorkstationState(look_.pair.row->syncState));
    }

    PairLook& look_;
    BeginAnew& anew_;
};

/// What each end alone knows of its pairings, to be held against what the other end says.
void TellOneSided(const std::vector<Pair>& pairs, Findings& findings) {
    std::string known;
    std::size_t named = 0;
    for (const Pair& pair : pairs) {
        if ((pair.laptop != nullptr) == (pair.main != nullptr)) {
            continue;
        }
        const bool hasMain = pair.main != nullptr;
        const std::int64_t to = hasMain ? pair.row->nextSequenceToRoaming : pair.laptop->facts.nextSequenceToMain;
        const std::int64_t from =
            hasMain ? pair.row->nextSequenceFromRoaming : pair.laptop->facts.nextSequenceFromMain;
        if (++named <= MostNamed) {
            known += (known.empty() ? "" : "; ") + pair.name + (hasMain ? " (main's end): " : " (its own end): ") +
                     "sends " + std::to_string(to) + " next, expects " + std::to_string(from);
        }
    }
    if (named > 0) {
        findings.Add(
            troubles::OneSideOnly, named == 1 ? "1 pairing" : std::to_string(named) + " pairings",
            "Only one end is at hand: " + known + (named > MostNamed ? "; …" : "") +
                ". The other end must expect no more than this one sends next, and send at least what this "
                "one expects.");
    }
}

} // namespace

BeginAnew DiagnosePairs(const Observations& observations, Findings& findings) {
    const std::vector<Pair> pairs = PairsOf(observations);
    BeginAnew anew;
    for (const Pair& pair : pairs) {
        PairLook look(observations, pair, findings);
        PairSection(look, anew).Run();
    }
    TellOneSided(pairs, findings);
    return anew;
}

} // namespace qndr::diagnosis
