#include "diagnosis/receivers.h"
#include "diagnosis/state_words.h"
#include "services/company_numbers.h"
#include "shared/records.h"

#include <algorithm>

namespace qndr::diagnosis {

namespace {

using Files = std::vector<FolderFile>;

/// A damaged file for a workstation. It has the sequence 0 for the receiver, and its import counts as done.
Judgement Unreadable(const CompanyFacts& company, std::int64_t expected, const Files& files) {
    if (expected == 0) {
        return {Fate::Taken, company.name + " takes it next, without its data"};
    }
    const bool nextIsHere = std::any_of(files.begin(), files.end(), [&](const FolderFile& other) {
        return other.kind == FileKind::SyncFile && IsAddressedTo(other, company.uniqueID) &&
               other.entry.SyncState == 0 && other.entry.Sequence == expected;
    });
    return {Fate::Nobody, company.name + " cannot read it" +
                              (nextIsHere ? ""
                                          : "; it awaits sequence " + std::to_string(expected) +
                                                ", which lies nowhere else here: a reset is needed")};
}

} // namespace

Judgement JudgeAtRoaming(const CompanyFacts& company, const FolderFile& file, const Files& files) {
    std::int64_t state = company.syncState;
    std::int64_t expected = company.nextSequenceFromMain;
    if (state == SyncStateInitialSyncRequired) {
        state = SyncStateInitialSyncRequested;
        expected = 0;
    }
    if (state == SyncStateInitialSyncRequested) {
        if (file.entry.SyncState == SyncFileInitialSync) {
            return Takes(company);
        }
        const bool initialSyncIsHere = std::any_of(files.begin(), files.end(), [&](const FolderFile& other) {
            return IsAddressedTo(other, company.uniqueID) && other.entry.SyncState == SyncFileInitialSync;
        });
        if (!initialSyncIsHere) {
            return {Fate::Waits, "waits: " + company.name + " needs its initial sync first"};
        }
        state = SyncStateReady;
    }
    switch (state) {
    case SyncStateReady:
    case SyncStateResetPending:
        return file.kind == FileKind::UnreadableSyncFile ? Unreadable(company, expected, files)
                                                         : BySequence(company, file.entry.Sequence, expected);
    case SyncStateResetRequested:
        return {Fate::Deleted, company.name + " deletes it unread when it asks for its reset"};
    default:
        return {Fate::Nobody, company.name + " takes nothing: its state is " +
                                  NumberInWords(state, WordsForCompanyState(state))};
    }
}

} // namespace qndr::diagnosis
