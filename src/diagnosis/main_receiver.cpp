#include "diagnosis/receivers.h"
#include "diagnosis/state_words.h"
#include "services/company_numbers.h"
#include "shared/records.h"

#include <algorithm>

namespace qndr::diagnosis {

namespace {

using Files = std::vector<FolderFile>;

/// One main company that walks the files in the order of its steps.
class AtMain {
  public:
    AtMain(const CompanyFacts& company, const Files& files) : company_(company), files_(files) {}

    Judgement Judge(const FolderFile& file) const {
        Judgement judgement = ByItsSteps(file);
        if (judgement.Goes() && !company_.syncEnabled) {
            return {Fate::Waits, "waits until syncing is enabled for " + company_.name + " (EnableSync)"};
        }
        return judgement;
    }

  private:
    Judgement ByItsSteps(const FolderFile& file) const {
        const FoundSyncFile& entry = file.entry;
        const WorkstationFacts* row = RowOf(entry.From);
        if (IsRequest(file) && row != nullptr) {
            return Takes(company_);
        }
        if (IsAcknowledge(file)) {
            Judgement judgement = Takes(company_);
            judgement.text += row == nullptr ? ", without effect: its sender is not registered there" : "";
            return judgement;
        }
        if (file.kind == FileKind::UnreadableSyncFile) {
            return {Fate::Nobody, company_.name + " cannot read it and passes over it for ever"};
        }
        if (row == nullptr) {
            return {Fate::Nobody, "sender is not registered on " + company_.name};
        }
        if (!IsAddressedTo(file, company_.uniqueID)) {
            return {Fate::Nobody,
                    "only an initial sync request may be addressed to MAIN; will be ignored for ever"};
        }
        return ByRow(entry, *row);
    }

    Judgement ByRow(const FoundSyncFile& entry, const WorkstationFacts& row) const {
        const std::int64_t state = StateBehindTheFirstSteps(row);
        const bool listensToResets = state == SyncStateReady || state == SyncStateResetRequested;
        if (listensToResets && entry.Sequence == SyncResetSequence) {
            return Takes(company_);
        }
        if (listensToResets && AsksForReset(row)) {
            return {Fate::Deleted, company_.name + " deletes it with the reset request of " + row.name};
        }
        if (state == SyncStateResetPending) {
            return {Fate::Deleted, company_.name + " deletes it: the reset of " + row.name + " is under way"};
        }
        if (entry.SyncState == SyncFileReady && company_.syncState != SyncStateNone) {
            return {Fate::Nobody, company_.name + " takes no acknowledge as long as its own state is not 0"};
        }
        if (state == SyncStateReady) {
            return BySequence(company_, entry.Sequence, row.nextSequenceFromRoaming);
        }
        if (state != row.syncState) {
            return {Fate::Waits, "waits: " + row.name + " asks for a new initial sync first"};
        }
        return {Fate::Waits, "waits: " + company_.name + " has " + row.name + " at " +
                                 NumberInWords(state, WordsForWorkstationState(state))};
    }

    const WorkstationFacts* RowOf(const std::string& from) const {
        const auto row = std::find_if(company_.workstations.begin(), company_.workstations.end(),
                                      [&](const auto& each) { return EqualIdentities(each.uniqueID, from); });
        return row == company_.workstations.end() ? nullptr : &*row;
    }

    bool IsRequest(const FolderFile& file) const {
        return (IsAddressedTo(file, company_.uniqueID) || IsAddressedToMain(file)) &&
               file.entry.SyncState == SyncFileInitialSyncRequest;
    }
    bool IsAcknowledge(const FolderFile& file) const {
        return IsAddressedTo(file, company_.uniqueID) && file.entry.SyncState == SyncFileReady &&
               company_.syncState == SyncStateNone;
    }

    /// The row's state when the reset and change steps come, which stand behind those of the first exchange.
    std::int64_t StateBehindTheFirstSteps(const WorkstationFacts& row) const {
        const auto sent = [&](auto kind) {
            return std::any_of(files_.begin(), files_.end(), [&](const FolderFile& file) {
                return EqualIdentities(file.entry.From, row.uniqueID) && (this->*kind)(file);
            });
        };
        if (sent(&AtMain::IsAcknowledge)) {
            return SyncStateReady;
        }
        const bool isAnswered = sent(&AtMain::IsRequest) || row.syncState == SyncStateInitialSyncRequired;
        return isAnswered ? std::int64_t{SyncStateInitialSyncSent} : row.syncState;
    }

    bool AsksForReset(const WorkstationFacts& row) const {
        return std::any_of(files_.begin(), files_.end(), [&](const FolderFile& file) {
            return IsAddressedTo(file, company_.uniqueID) && EqualIdentities(file.entry.From, row.uniqueID) &&
                   file.entry.Sequence == SyncResetSequence;
        });
    }

    const CompanyFacts& company_;
    const Files& files_;
};

} // namespace

Judgement JudgeAtMain(const CompanyFacts& company, const FolderFile& file, const Files& files) {
    return AtMain(company, files).Judge(file);
}

} // namespace qndr::diagnosis
