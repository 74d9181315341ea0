#include "diagnosis/pair_look.h"
#include "services/company_numbers.h"

#include <map>

namespace qndr::diagnosis {

namespace {

/// Main's next pass and the way through a cloud's folder are over by then.
constexpr std::int64_t AnswerSeconds = 60 * 60;

/// One direction of a pair in normal running.
struct Line {
    std::string sender;
    std::string receiver;
    std::int64_t expected = 0;        ///< by the receiver
    std::optional<std::int64_t> next; ///< what the sender's next file carries, when it is at hand
    std::multimap<std::int64_t, FoundSyncFile> lying;
};

/// A sender that could not count on behind its copy sends the number again, with more in it.
void LookForDuplicates(PairLook& look, const Line& line) {
    for (auto first = line.lying.begin(); first != line.lying.end();
         first = line.lying.upper_bound(first->first)) {
        if (line.lying.count(first->first) > 1) {
            look.Tell(troubles::DuplicateSequence,
                      Counted(static_cast<std::int64_t>(line.lying.count(first->first)), "file") + " of " +
                          line.sender + " carry the sequence " + std::to_string(first->first) +
                          ": one of them is taken, and what "
                          "only the others hold never arrives.");
        }
    }
}

/// The sender counts on behind its copy, so its next number may lie there already, but none above it.
void LookForStrays(PairLook& look, const Line& line) {
    if (!line.next) {
        return;
    }
    for (auto stray = line.lying.upper_bound(*line.next); stray != line.lying.end(); ++stray) {
        look.TellOfFile(troubles::StrayFile,
                        "A file of " + line.sender + " carries the sequence " + std::to_string(stray->first) +
                            ", but " + line.sender + " is only at " + std::to_string(*line.next) +
                            ": it is left from before a reset, and would be taken once its number comes up.",
                        stray->second.FilePath);
    }
}

void LookAtLine(PairLook& look, const Line& line) {
    if (line.next && line.expected > *line.next) {
        look.Tell(troubles::SequenceAhead, line.receiver + " expects the sequence " +
                                               std::to_string(line.expected) + " of " + line.sender +
                                               ", whose next file carries " + std::to_string(*line.next) +
                                               " and will be ignored for ever.");
        return;
    }
    LookForDuplicates(look, line);
    LookForStrays(look, line);
    const std::int64_t last = line.lying.empty() ? -1 : line.lying.rbegin()->first;
    const std::int64_t end = line.next.value_or(last + 1);
    std::int64_t missing = line.expected;
    while (missing < end && line.lying.contains(missing)) {
        ++missing;
    }
    if (missing < end) {
        look.Tell(troubles::SequenceLost,
                  line.receiver + " expects the sequence " + std::to_string(line.expected) + " of " + line.sender +
                      ", and the file " + std::to_string(missing) + " is not in the Sync folder" +
                      (line.next ? ", though " + line.sender + " is at " + std::to_string(*line.next) + " already"
                                 : "") +
                      (last > missing ? "; the file " + std::to_string(last) + " waits behind it" : "") + ".");
    }
}

} // namespace

/// Only while both sides that are at hand run normally and nothing is on its way that would begin anew.
void DiagnoseSequences(PairLook& look) {
    const bool isRunning = look.LaptopState().value_or(SyncStateReady) == SyncStateReady &&
                           look.RowState().value_or(SyncStateReady) == SyncStateReady;
    if (!isRunning || look.traffic.HasInitialRequest() || look.traffic.HasInitialData() ||
        look.traffic.HasAcknowledge() || look.traffic.HasResetRequest()) {
        return;
    }
    if (look.pair.row != nullptr) {
        Line line{look.pair.name,
                  look.MainName(),
                  look.pair.row->nextSequenceFromRoaming,
                  {},
                  look.traffic.SequencesToMain()};
        if (look.pair.laptop != nullptr) {
            line.next = look.pair.laptop->facts.nextSequenceToMain;
        }
        LookAtLine(look, line);
    }
    if (look.pair.laptop != nullptr) {
        Line line{look.MainName(),
                  look.pair.name,
                  look.pair.laptop->facts.nextSequenceFromMain,
                  {},
                  look.traffic.SequencesToLaptop()};
        if (look.pair.row != nullptr) {
            line.next = look.pair.row->nextSequenceToRoaming;
        }
        LookAtLine(look, line);
    }
}

void DiagnoseConfirmations(PairLook& look) {
    if (look.pair.laptop == nullptr || look.pair.main != nullptr || look.LaptopState() != SyncStateReady) {
        return;
    }
    const CompanyFacts& facts = look.pair.laptop->facts;
    const auto sent = ParseDate(look.pair.laptop->sentOn);
    const auto lying = look.traffic.SequencesToMain();
    std::int64_t missing = facts.confirmed.value_or(facts.nextSequenceToMain);
    while (lying.contains(missing)) {
        ++missing;
    }
    if (missing < facts.nextSequenceToMain && sent && look.seen.nowUtc.SecondsSince(*sent) > AnswerSeconds &&
        look.traffic.SequencesToLaptop().empty()) {
        look.Tell(troubles::UnconfirmedFiles, "The file " + std::to_string(missing) +
                                                  " to main was sent and is not in the Sync folder, and main, "
                                                  "which answers at once, has not told that it took it: it was "
                                                  "lost, or dropped into another folder.");
    }
}

} // namespace qndr::diagnosis
