#include "programs/qndr5ctl/diagnosis_sections.h"
#include "programs/qndr5ctl/sync_words.h"
#include "shared/records.h"
#include "syncfiles/sync_state.h"

#include <algorithm>
#include <map>

namespace qndr::control {

namespace {

constexpr std::int64_t Day = 24 * 60 * 60;

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
        : files_(seen.files), laptop_(pair.laptop != nullptr ? pair.laptop->facts.uniqueID : pair.row->uniqueID),
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
    /// Change files, by sequence, with their names.
    std::multimap<std::int64_t, std::string> SequencesToMain() const {
        return Sequences([&](const FoundSyncFile& file) { return IsToMain(file); });
    }
    std::multimap<std::int64_t, std::string> SequencesToLaptop() const {
        return Sequences([&](const FoundSyncFile& file) { return IsForLaptop(file); });
    }
    /// Where something lies that cannot be read, nothing can be said to be missing.
    bool HasUnreadable() const {
        return std::any_of(files_.begin(), files_.end(), [&](const ListedFile& listed) {
            const FoundSyncFile& file = listed.file.entry;
            return listed.file.kind == FileKind::UnreadableSyncFile &&
                   (IsForLaptop(file) || IsForMain(file) || EqualIdentities(file.To, "main"));
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
    template <typename Test> std::multimap<std::int64_t, std::string> Sequences(const Test& test) const {
        std::multimap<std::int64_t, std::string> sequences;
        for (const ListedFile& listed : files_) {
            const FoundSyncFile& file = listed.file.entry;
            if (listed.file.kind == FileKind::SyncFile && test(file) && file.SyncState == 0 &&
                file.Sequence >= 0) {
                sequences.emplace(file.Sequence, listed.name);
            }
        }
        return sequences;
    }

    const std::vector<ListedFile>& files_;
    std::string laptop_;
    std::string main_;
};

/// One direction of a pair in normal running.
struct Line {
    std::string sender;
    std::string receiver;
    std::int64_t expected = 0;        ///< by the receiver
    std::optional<std::int64_t> next; ///< what the sender's next file carries, when it is at hand
    std::multimap<std::int64_t, std::string> lying;
};

class PairSection {
  public:
    PairSection(const Observations& seen, Findings& findings, const Pair& pair)
        : seen_(seen), findings_(findings), pair_(pair), traffic_(seen, pair) {}

    void Run() {
        LookAtRegistration();
        if (pair_.row != nullptr) {
            LookAtSilence();
            if (pair_.row->syncState == SyncStateResetPending && pair_.row->lastReceivedFrom.empty() &&
                seen_.KnowsFiles() && !traffic_.HasResetRequest()) {
                Tell(troubles::ResetStuck, "Main does not know since when it waits, and so waits for ever for the "
                                           "five quiet minutes of the reset.");
            }
        }
        if (!seen_.KnowsFiles() || traffic_.HasUnreadable()) {
            return;
        }
        LookAtInitialSync();
        LookAtReset();
        LookAtSequences();
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
                      pair_.main != nullptr ? pair_.main->file : "MAIN.psd");
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

    void LookAtInitialSync() {
        const bool isDataOnItsWay = traffic_.HasInitialRequest() || traffic_.HasInitialData();
        if (LaptopState() == SyncStateInitialSyncRequested && pair_.row != nullptr && !isDataOnItsWay &&
            RowState() != SyncStateInitialSyncRequired && RowState() != SyncStateInitialSyncSent) {
            Tell(troubles::LostInitialSync, "It awaits its initial sync, no file of it is on its way, and " +
                                                MainName() + " has it at " + RowInWords() +
                                                ": the request or the data was lost.");
        }
        // A row at 0 hears neither changes nor reset requests.
        const bool isBeyond = LaptopState() == SyncStateReady || LaptopState() == SyncStateResetPending;
        if (isBeyond && RowState() == SyncStateNone && !traffic_.HasInitialRequest() &&
            !traffic_.HasAcknowledge()) {
            Tell(troubles::LostInitialSync, "It has had its initial sync, but " + MainName() + " has it at " +
                                                RowInWords() + " and takes nothing else from it.");
        }
        if (RowState() == SyncStateInitialSyncSent && LaptopState() != SyncStateInitialSyncRequired &&
            !isDataOnItsWay && !traffic_.HasAcknowledge()) {
            Tell(troubles::LostAcknowledge, MainName() +
                                                " has sent the initial sync and waits for the acknowledge, "
                                                "but neither of them is on its way.");
        }
    }

    void LookAtReset() {
        if (LaptopState() == SyncStateResetPending && RowState() == SyncStateReady &&
            !traffic_.HasResetRequest() && !traffic_.HasResetData()) {
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
                          stray->second);
        }
    }

    const Observations& seen_;
    Findings& findings_;
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

void DiagnosePairs(const Observations& observations, Findings& findings) {
    for (const Pair& pair : PairsOf(observations)) {
        PairSection(observations, findings, pair).Run();
    }
}

} // namespace qndr::control
