#include "programs/qndr5ctl/diagnosis_sections.h"
#include "programs/qndr5ctl/sync_words.h"
#include "services/company_numbers.h"
#include "shared/records.h"

#include <algorithm>
#include <map>

namespace qndr::control {

namespace {

constexpr std::int64_t Day = 24 * 60 * 60;
/// Main's next pass and the way through a cloud's folder are over by then.
constexpr std::int64_t AnswerSeconds = 60 * 60;
/// Clocks of two computers are seldom closer.
constexpr std::int64_t ClockSeconds = 120;
/// So many are told by name.
constexpr std::size_t MostNamed = 10;

/// A workstation and its main company, of which one side may not be at hand.
struct Pair {
    const ObservedCompany* main = nullptr;
    const WorkstationFacts* row = nullptr; ///< main's, when main is at hand and knows the workstation
    const ObservedCompany* laptop = nullptr;
    std::string name; ///< the workstation's
};

/// What the Sync folder holds between the two.
class Traffic {
  public:
    Traffic(const Observations& seen, const Pair& pair)
        : files_(seen.files), former_(seen.formerFiles),
          laptop_(pair.laptop != nullptr ? pair.laptop->facts.uniqueID : pair.row->uniqueID),
          main_(pair.main != nullptr ? pair.main->facts.uniqueID : pair.laptop->facts.mainUniqueID) {}

    bool HasInitialRequest() const {
        return Any([&](const FoundSyncFile& file) {
            return EqualIdentities(file.From, laptop_) && file.SyncState == SyncFileInitialSyncRequest;
        });
    }
    bool HasInitialData() const {
        return Any(
            [&](const FoundSyncFile& file) { return IsForLaptop(file) && file.SyncState == SyncFileInitialSync; });
    }
    bool HasAcknowledge() const {
        return Any([&](const FoundSyncFile& file) { return IsToMain(file) && file.SyncState == SyncFileReady; });
    }
    bool HasResetRequest() const {
        return Any(
            [&](const FoundSyncFile& file) { return IsToMain(file) && file.Sequence == SyncResetSequence; });
    }
    bool HasResetData() const {
        return Any([&](const FoundSyncFile& file) { return IsForLaptop(file) && file.IsSyncReset == FieldTrue; });
    }
    /// Change files, by sequence.
    std::multimap<std::int64_t, FoundSyncFile> SequencesToMain() const {
        return Sequences([&](const FoundSyncFile& file) { return IsToMain(file); });
    }
    std::multimap<std::int64_t, FoundSyncFile> SequencesToLaptop() const {
        return Sequences([&](const FoundSyncFile& file) { return IsForLaptop(file); });
    }
    /// Where something lies that cannot be read, or under a wrong name or in a wrong folder, nothing can be said
    /// to be missing; it is told by itself.
    bool HasUncertain() const {
        const auto isBetween = [&](const FoundSyncFile& file) {
            return IsForLaptop(file) || EqualIdentities(file.From, laptop_) ||
                   (file.To.empty() && EqualIdentities(file.From, main_));
        };
        return std::any_of(former_.begin(), former_.end(),
                           [&](const ListedFile& listed) { return isBetween(listed.file.entry); }) ||
               std::any_of(files_.begin(), files_.end(), [&](const ListedFile& listed) {
                   const FoundSyncFile& file = listed.file.entry;
                   const bool isUnread =
                       listed.file.kind == FileKind::UnreadableSyncFile &&
                       (IsForLaptop(file) || IsForMain(file) || EqualIdentities(file.To, "main"));
                   return isUnread || (listed.file.kind == FileKind::Misnamed && isBetween(file));
               });
    }

  private:
    bool IsForLaptop(const FoundSyncFile& file) const {
        return EqualIdentities(file.To, NormalizeUniqueID(laptop_));
    }
    bool IsForMain(const FoundSyncFile& file) const { return EqualIdentities(file.To, NormalizeUniqueID(main_)); }
    bool IsToMain(const FoundSyncFile& file) const {
        return IsForMain(file) && EqualIdentities(file.From, laptop_);
    }

    template <typename Test> bool Any(const Test& test) const {
        return std::any_of(files_.begin(), files_.end(), [&](const ListedFile& listed) {
            return listed.file.kind == FileKind::SyncFile && test(listed.file.entry);
        });
    }
    template <typename Test> std::multimap<std::int64_t, FoundSyncFile> Sequences(const Test& test) const {
        std::multimap<std::int64_t, FoundSyncFile> sequences;
        for (const ListedFile& listed : files_) {
            const FoundSyncFile& file = listed.file.entry;
            if (listed.file.kind == FileKind::SyncFile && test(file) && file.SyncState == 0 &&
                file.Sequence >= 0) {
                sequences.emplace(file.Sequence, file);
            }
        }
        return sequences;
    }

    const std::vector<ListedFile>& files_;
    const std::vector<ListedFile>& former_;
    std::string laptop_;
    std::string main_;
};

/// One direction of a pair in normal running.
struct Line {
    std::string sender;
    std::string receiver;
    std::int64_t expected = 0;        ///< by the receiver
    std::optional<std::int64_t> next; ///< what the sender's next file carries, when it is at hand
    std::multimap<std::int64_t, FoundSyncFile> lying;
};

class PairSection {
  public:
    PairSection(const Observations& seen, Findings& findings, const Pair& pair, BeginAnew& anew)
        : seen_(seen), findings_(findings), anew_(anew), pair_(pair), traffic_(seen, pair) {}

    void Run() {
        LookAtRegistration();
        if (pair_.row != nullptr) {
            LookAtSilence();
            LookAtDrain();
        }
        if (!seen_.KnowsFiles() || traffic_.HasUncertain()) {
            return;
        }
        LookAtInitialSync();
        LookAtReset();
        LookAtSequences();
        LookAtConfirmations();
    }

  private:
    std::optional<std::int64_t> LaptopState() const {
        return pair_.laptop != nullptr ? std::optional(pair_.laptop->facts.syncState) : std::nullopt;
    }
    std::optional<std::int64_t> RowState() const {
        return pair_.row != nullptr ? std::optional(pair_.row->syncState) : std::nullopt;
    }
    std::string MainName() const { return pair_.main != nullptr ? pair_.main->facts.name : "main"; }

    void Tell(const TroubleKind& kind, const std::string& text) {
        findings_.Add(kind, pair_.name, text, pair_.laptop != nullptr ? pair_.laptop->file : "ROAMING.psd",
                      pair_.main != nullptr ? pair_.main->file : "MAIN.psd", seen_.syncFolder);
    }
    void TellToBeginAnew(const TroubleKind& kind, const std::string& text) {
        Tell(kind, text);
        anew_.push_back(pair_.row != nullptr ? pair_.row->uniqueID : pair_.laptop->facts.uniqueID);
    }

    void LookAtRegistration() {
        if (pair_.row == nullptr && pair_.main != nullptr) {
            Tell(troubles::NotRegistered, MainName() + " has no workstation of this unique id.");
        } else if (LaptopState() == SyncStateNone) {
            Tell(pair_.row == nullptr ? troubles::NotRegistered : troubles::NeverAsked,
                 "The workstation's state is 0 (none): it asks for nothing and takes nothing.");
        }
    }

    void LookAtSilence() {
        const auto received = ParseDate(pair_.row->lastReceivedFrom);
        const std::int64_t seconds = received ? seen_.nowUtc.SecondsSince(*received) : 0;
        if (seconds > seen_.days * Day) {
            Tell(troubles::SilentWorkstation, "Nothing has come from it for " + Counted(seconds / Day, "day") +
                                                  ". Its agent does not run, or nothing was changed there.");
        }
    }

    /// Main counts the five quiet minutes of a reset from the moment that it noted last.
    void LookAtDrain() {
        if (pair_.row->syncState != SyncStateResetPending || !seen_.KnowsFiles() || traffic_.HasResetRequest()) {
            return;
        }
        const auto received = ParseDate(pair_.row->lastReceivedFrom);
        if (!received) {
            Tell(troubles::ResetStuck,
                 "Main does not know since when it waits, and so waits for ever for the five "
                 "quiet minutes of the reset.");
        } else if (received->SecondsSince(seen_.nowUtc) > ClockSeconds) {
            Tell(troubles::ResetStuck, "Main waits for five quiet minutes from " + FormatGeneralDate(*received) +
                                           " UTC, which is still to come: its clock was put back.");
        }
    }

    void LookAtInitialSync() {
        const bool isDataOnItsWay = traffic_.HasInitialRequest() || traffic_.HasInitialData();
        if (LaptopState() == SyncStateInitialSyncRequested && pair_.row != nullptr && !isDataOnItsWay &&
            RowState() != SyncStateInitialSyncRequired && RowState() != SyncStateInitialSyncSent) {
            TellToBeginAnew(troubles::LostInitialSync,
                            "It awaits its initial sync, no file of it is on its way, and " + MainName() +
                                " has it at " + RowInWords() + ": the request or the data was lost.");
        }
        const bool isBeyond = LaptopState() == SyncStateReady || LaptopState() == SyncStateResetRequested ||
                              LaptopState() == SyncStateResetPending;
        // A row at 0 hears neither changes nor reset requests.
        if (isBeyond && RowState() == SyncStateNone && !traffic_.HasInitialRequest() &&
            !traffic_.HasAcknowledge()) {
            TellToBeginAnew(troubles::LostInitialSync, "It has had its initial sync, but " + MainName() +
                                                           " has it at " + RowInWords() +
                                                           " and takes nothing else from it.");
        }
        // Nor does one at 1 or 3, and what it sends is for a workstation that still awaits its initial sync.
        const bool isOwed = RowState() == SyncStateInitialSyncRequired || RowState() == SyncStateInitialSyncSent;
        if (isBeyond && isOwed && !traffic_.HasAcknowledge()) {
            TellToBeginAnew(troubles::LostAcknowledge,
                            "It has had its initial sync, but " + MainName() + " has it at " + RowInWords() +
                                ", as after a second request, and takes neither changes nor a reset from it.");
        } else if (RowState() == SyncStateInitialSyncSent && LaptopState() != SyncStateInitialSyncRequired &&
                   !isDataOnItsWay && !traffic_.HasAcknowledge()) {
            TellToBeginAnew(troubles::LostAcknowledge,
                            MainName() + " has sent the initial sync and waits for the acknowledge, "
                                         "but neither of them is on its way.");
        }
    }

    void LookAtReset() {
        if (LaptopState() != SyncStateResetPending || traffic_.HasResetRequest() ||
            RowState().value_or(SyncStateReady) != SyncStateReady) {
            return;
        }
        const auto lying = traffic_.SequencesToLaptop();
        const std::int64_t expected = pair_.laptop->facts.nextSequenceFromMain;
        if (traffic_.HasResetData() && !lying.contains(expected)) {
            Tell(troubles::LostReset, "It awaits the full data of a reset and the number " +
                                          std::to_string(expected) + ", and what lies there for it begins with " +
                                          std::to_string(lying.begin()->first) + ".");
        } else if (pair_.row != nullptr && !traffic_.HasResetData()) {
            Tell(troubles::LostReset, "It awaits the full data of a reset, no file of it is on its way, and " +
                                          MainName() + " has it at " + RowInWords() +
                                          ": the request or the data was lost.");
        }
    }

    std::string RowInWords() const {
        return NumberInWords(pair_.row->syncState, WordsForWorkstationState(pair_.row->syncState));
    }

    /// Only while both sides that are at hand run normally and nothing is on its way that would begin anew.
    void LookAtSequences() {
        const bool isRunning = LaptopState().value_or(SyncStateReady) == SyncStateReady &&
                               RowState().value_or(SyncStateReady) == SyncStateReady;
        if (!isRunning || traffic_.HasInitialRequest() || traffic_.HasInitialData() || traffic_.HasAcknowledge() ||
            traffic_.HasResetRequest()) {
            return;
        }
        if (pair_.row != nullptr) {
            Line line{pair_.name, MainName(), pair_.row->nextSequenceFromRoaming, {}, traffic_.SequencesToMain()};
            if (pair_.laptop != nullptr) {
                line.next = pair_.laptop->facts.nextSequenceToMain;
            }
            LookAtLine(line);
        }
        if (pair_.laptop != nullptr) {
            Line line{MainName(),
                      pair_.name,
                      pair_.laptop->facts.nextSequenceFromMain,
                      {},
                      traffic_.SequencesToLaptop()};
            if (pair_.row != nullptr) {
                line.next = pair_.row->nextSequenceToRoaming;
            }
            LookAtLine(line);
        }
    }

    void LookAtLine(const Line& line) {
        if (line.next && line.expected > *line.next) {
            Tell(troubles::SequenceAhead,
                 line.receiver + " expects the sequence " + std::to_string(line.expected) + " of " + line.sender +
                     ", whose next file carries " + std::to_string(*line.next) + " and will be ignored for ever.");
            return;
        }
        LookForDuplicates(line);
        LookForStrays(line);
        const std::int64_t last = line.lying.empty() ? -1 : line.lying.rbegin()->first;
        const std::int64_t end = line.next.value_or(last + 1);
        std::int64_t missing = line.expected;
        while (missing < end && line.lying.contains(missing)) {
            ++missing;
        }
        if (missing < end) {
            Tell(troubles::SequenceLost,
                 line.receiver + " expects the sequence " + std::to_string(line.expected) + " of " + line.sender +
                     ", and the file " + std::to_string(missing) + " is not in the Sync folder" +
                     (line.next ? ", though " + line.sender + " is at " + std::to_string(*line.next) + " already"
                                : "") +
                     (last > missing ? "; the file " + std::to_string(last) + " waits behind it" : "") + ".");
        }
    }

    /// Main answers what it takes in the same pass, so a workstation alone can tell that a file has got lost.
    void LookAtConfirmations() {
        if (pair_.laptop == nullptr || pair_.main != nullptr || LaptopState() != SyncStateReady) {
            return;
        }
        const CompanyFacts& facts = pair_.laptop->facts;
        const auto sent = ParseDate(pair_.laptop->sentOn);
        const auto lying = traffic_.SequencesToMain();
        std::int64_t missing = facts.confirmed.value_or(facts.nextSequenceToMain);
        while (lying.contains(missing)) {
            ++missing;
        }
        if (missing < facts.nextSequenceToMain && sent && seen_.nowUtc.SecondsSince(*sent) > AnswerSeconds &&
            traffic_.SequencesToLaptop().empty()) {
            Tell(troubles::UnconfirmedFiles, "The file " + std::to_string(missing) +
                                                 " to main was sent and is not in the Sync folder, and main, "
                                                 "which answers at once, has not told that it took it: it was "
                                                 "lost, or dropped into another folder.");
        }
    }

    /// A sender that could not count on behind its copy sends the number again, with more in it.
    void LookForDuplicates(const Line& line) {
        for (auto first = line.lying.begin(); first != line.lying.end();
             first = line.lying.upper_bound(first->first)) {
            if (line.lying.count(first->first) > 1) {
                Tell(troubles::DuplicateSequence,
                     Counted(static_cast<std::int64_t>(line.lying.count(first->first)), "file") + " of " +
                         line.sender + " carry the sequence " + std::to_string(first->first) +
                         ": one of them is taken, and what "
                         "only the others hold never arrives.");
            }
        }
    }

    /// The sender counts on behind its copy, so its next number may lie there already, but none above it.
    void LookForStrays(const Line& line) {
        if (!line.next) {
            return;
        }
        for (auto stray = line.lying.upper_bound(*line.next); stray != line.lying.end(); ++stray) {
            findings_.Add(troubles::StrayFile, pair_.name,
                          "A file of " + line.sender + " carries the sequence " + std::to_string(stray->first) +
                              ", but " + line.sender + " is only at " + std::to_string(*line.next) +
                              ": it is left from before a reset, and would be taken once its number comes up.",
                          stray->second.FilePath);
        }
    }

    const Observations& seen_;
    Findings& findings_;
    BeginAnew& anew_;
    const Pair& pair_;
    const Traffic traffic_;
};

const ObservedCompany* FindCompany(const Observations& seen, bool isMain, const std::string& uniqueID) {
    const auto found =
        std::find_if(seen.companies.begin(), seen.companies.end(), [&](const ObservedCompany& company) {
            return company.facts.isMain == isMain && EqualIdentities(company.facts.uniqueID, uniqueID);
        });
    return found == seen.companies.end() ? nullptr : &*found;
}

std::vector<Pair> PairsOf(const Observations& seen) {
    std::vector<Pair> pairs;
    for (const ObservedCompany& main : seen.companies) {
        for (const WorkstationFacts& row : main.facts.workstations) {
            const ObservedCompany* laptop = FindCompany(seen, false, row.uniqueID);
            pairs.push_back({&main, &row, laptop, row.name.empty() ? row.uniqueID : row.name});
        }
    }
    for (const ObservedCompany& laptop : seen.companies) {
        const bool isPaired =
            std::any_of(pairs.begin(), pairs.end(), [&](const Pair& pair) { return pair.laptop == &laptop; });
        if (!laptop.facts.isMain && !isPaired) {
            pairs.push_back(
                {FindCompany(seen, true, laptop.facts.mainUniqueID), nullptr, &laptop, laptop.facts.name});
        }
    }
    return pairs;
}

} // namespace

namespace {

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
        PairSection(observations, findings, pair, anew).Run();
    }
    TellOneSided(pairs, findings);
    return anew;
}

} // namespace qndr::control
