#include "diagnosis/traffic.h"

#include "services/company_numbers.h"
#include "shared/records.h"

#include <algorithm>

namespace qndr::diagnosis {

Traffic::Traffic(const Observations& seen, const Pair& pair)
    : files_(seen.files), former_(seen.formerFiles),
      laptop_(pair.laptop != nullptr ? pair.laptop->facts.uniqueID : pair.row->uniqueID),
      main_(pair.main != nullptr ? pair.main->facts.uniqueID : pair.laptop->facts.mainUniqueID) {
}

bool Traffic::HasInitialRequest() const {
    return Any([&](const FoundSyncFile& file) {
        return EqualIdentities(file.From, laptop_) && file.SyncState == SyncFileInitialSyncRequest;
    });
}

bool Traffic::HasInitialData() const {
    return Any(
        [&](const FoundSyncFile& file) { return IsForLaptop(file) && file.SyncState == SyncFileInitialSync; });
}

bool Traffic::HasAcknowledge() const {
    return Any([&](const FoundSyncFile& file) { return IsToMain(file) && file.SyncState == SyncFileReady; });
}

bool Traffic::HasResetRequest() const {
    return Any([&](const FoundSyncFile& file) { return IsToMain(file) && file.Sequence == SyncResetSequence; });
}

bool Traffic::HasResetData() const {
    return Any([&](const FoundSyncFile& file) { return IsForLaptop(file) && file.IsSyncReset == FieldTrue; });
}

std::multimap<std::int64_t, FoundSyncFile> Traffic::SequencesToMain() const {
    return Sequences([&](const FoundSyncFile& file) { return IsToMain(file); });
}

std::multimap<std::int64_t, FoundSyncFile> Traffic::SequencesToLaptop() const {
    return Sequences([&](const FoundSyncFile& file) { return IsForLaptop(file); });
}

bool Traffic::HasUncertain() const {
    const auto isBetween = [&](const FoundSyncFile& file) {
        return IsForLaptop(file) || EqualIdentities(file.From, laptop_) ||
               (file.To.empty() && EqualIdentities(file.From, main_));
    };
    return std::any_of(former_.begin(), former_.end(),
                       [&](const ListedFile& listed) { return isBetween(listed.file.entry); }) ||
           std::any_of(files_.begin(), files_.end(), [&](const ListedFile& listed) {
               const FoundSyncFile& file = listed.file.entry;
               const bool isUnread = listed.file.kind == FileKind::UnreadableSyncFile &&
                                     (IsForLaptop(file) || IsForMain(file) || EqualIdentities(file.To, "main"));
               return isUnread || (listed.file.kind == FileKind::Misnamed && isBetween(file));
           });
}

bool Traffic::IsForLaptop(const FoundSyncFile& file) const {
    return EqualIdentities(file.To, NormalizeUniqueID(laptop_));
}

bool Traffic::IsForMain(const FoundSyncFile& file) const {
    return EqualIdentities(file.To, NormalizeUniqueID(main_));
}
bool Traffic::IsToMain(const FoundSyncFile& file) const {
    return IsForMain(file) && EqualIdentities(file.From, laptop_);
}

bool Traffic::Any(const Test& test) const {
    return std::any_of(files_.begin(), files_.end(), [&](const ListedFile& listed) {
        return listed.file.kind == FileKind::SyncFile && test(listed.file.entry);
    });
}

std::multimap<std::int64_t, FoundSyncFile> Traffic::Sequences(const Test& test) const {
    std::multimap<std::int64_t, FoundSyncFile> sequences;
    for (const ListedFile& listed : files_) {
        const FoundSyncFile& file = listed.file.entry;
        if (listed.file.kind == FileKind::SyncFile && test(file) && file.SyncState == 0 && file.Sequence >= 0) {
            sequences.emplace(file.Sequence, file);
        }
    }
    return sequences;
}

} // namespace qndr::diagnosis
