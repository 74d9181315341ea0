#include "diagnosis/receivers.h"

#include "shared/records.h"

namespace qndr::diagnosis {

namespace {

bool IsSyncFile(const FolderFile& file) {
    return file.kind == FileKind::SyncFile || file.kind == FileKind::UnreadableSyncFile;
}

} // namespace

bool IsAddressedTo(const FolderFile& file, const std::string& identity) {
    return IsSyncFile(file) && EqualIdentities(file.entry.To, NormalizeUniqueID(identity));
}

bool IsAddressedToMain(const FolderFile& file) {
    return IsSyncFile(file) && EqualIdentities(file.entry.To, "main");
}

Judgement Takes(const CompanyFacts& company) {
    return {Fate::Taken, company.name + " takes it next"};
}

Judgement BySequence(const CompanyFacts& receiver, std::int64_t sequence, std::int64_t expected) {
    if (sequence == expected) {
        return Takes(receiver);
    }
    if (sequence > expected) {
        return {Fate::Waits,
                "waits for sequence " + std::to_string(sequence) + " (" + receiver.name + " expects " +
                    std::to_string(expected) + ")",
                expected};
    }
    return {Fate::Late, "late: " + receiver.name + " is at " + std::to_string(expected) +
                            " already; will be ignored for ever"};
}

} // namespace qndr::diagnosis
