#include "simulation/judge.h"

namespace qndr::simulation {

/// What the doctor said of each file before the pass is what has become of it. Nothing can come between but what
/// befell this very pass.
void Judge::DemandFates(const std::set<std::string>& names, bool ranThrough) const {
    for (const auto& [name, said] : foreseen_) {
        const bool isGone = !names.contains(name);
        const bool hasCounted = taken_.contains(name);
        const bool isForMain = said.file.kind == diagnosis::FileKind::Heartbeat;
        if (said.judgement.Goes() && (AtMain() || !isForMain)) {
            if (!isGone && !hasCounted && !MayStay(name, said, ranThrough)) {
                Contradict(name, said, "and it lies there still");
            }
            if (hasCounted && said.judgement.fate == diagnosis::Fate::Deleted) {
                Contradict(name, said, "and its number was counted");
            }
        } else if ((isGone || hasCounted) && !MayGo(said)) {
            Contradict(name, said, isGone ? "and it is gone" : "and its number was counted");
        } else if (!isGone && ranThrough && gate_->WasQuiet()) {
            DemandPlace(name, said);
        }
    }
}

/// By the number that the receiver now expects: a file can only wait for one that is to come, and only be late for
/// one that was.
void Judge::DemandPlace(const std::string& name, const Prophecy& said) const {
    const DroppedFile* const file = files_.Find(name);
    const bool isLate = said.judgement.fate == diagnosis::Fate::Late;
    if (file == nullptr || (!isLate && !said.judgement.waitsFor)) {
        return;
    }
    const std::int64_t sequence = said.file.entry.Sequence;
    const std::int64_t expected = known_[computer_].at(file->workstation).nextIn;
    if (!isLate && sequence < expected && !HasTaken(said, sequence)) {
        Contradict(name, said, "and its number is past");
    }
    if (isLate && sequence >= expected) {
        Contradict(name, said, "and its number is still to come");
    }
}

/// A file of which it was said that it goes.
bool Judge::MayStay(const std::string& name, const Prophecy& said, bool ranThrough) const {
    return !gate_->WasQuiet() || !ranThrough || watch_.WasHeld(name) || HasTaken(said, said.file.entry.Sequence);
}

/// A file of which it was said that it stays. The steps go by what they read and stored before.
bool Judge::MayGo(const Prophecy& said) const {
    return CouldNotBeRead() || gate_->WasFeltBelow() || watch_.HasFailedUpdate() ||
           (said.judgement.waitsFor && HasTaken(said, said.file.entry.Sequence - 1));
}

/// Whether a file of that number was taken in this pass, of the same sender at main; a workstation does not ask
/// who has sent it.
bool Judge::HasTaken(const Prophecy& said, std::int64_t sequence) const {
    for (const std::string& name : taken_) {
        const auto other = foreseen_.find(name);
        if (other != foreseen_.end() && other->second.file.entry.Sequence == sequence &&
            (!AtMain() || other->second.file.entry.From == said.file.entry.From)) {
            return true;
        }
    }
    return false;
}

void Judge::Contradict(const std::string& name, const Prophecy& said, const std::string& what) const {
    Accuse("the doctor said of " + name + " (" + KindInWords(said.file) + " " +
           std::to_string(said.file.entry.Sequence) + "): " + said.judgement.text + ", " + what);
}

void Judge::DemandNoTrouble(std::size_t computer, const std::set<std::string_view>& real) const {
    for (const diagnosis::Finding& finding : doctor_.Troubles(computer)) {
        if (!real.contains(finding.code)) {
            throw Violation{computers_[computer]->Name() + ": nothing went wrong, and the doctor names " +
                            finding.code + ": " + finding.subject + ": " + finding.text};
        }
    }
}

} // namespace qndr::simulation
