#include "diagnosis/fates.h"

#include "diagnosis/receivers.h"
#include "shared/records.h"

#include <algorithm>
#include <optional>

namespace qndr::diagnosis {

namespace {

using Files = std::vector<FolderFile>;

/// Where the addressee of a file is, when no company here has its identity.
Judgement AtNobody(const FolderFile& file, const std::vector<CompanyFacts>& companies) {
    if (file.entry.To.empty()) {
        return {Fate::Nobody, "its name has no addressee"};
    }
    if (IsAddressedToMain(file)) {
        return {Fate::Elsewhere, "for the main company, which is not here"};
    }
    for (const CompanyFacts& company : companies) {
        if (IsAddressedTo(file, company.mainUniqueID)) {
            return {Fate::Elsewhere, "for the main company of " + company.name + ", which is not here"};
        }
        for (const WorkstationFacts& row : company.workstations) {
            if (IsAddressedTo(file, row.uniqueID)) {
                return {Fate::Elsewhere, "for " + row.name + ", whose company is not here"};
            }
        }
    }
    return {Fate::Nobody, "no company here has this id"};
}

Judgement JudgeSyncFile(const FolderFile& file, const Files& files, const std::vector<CompanyFacts>& companies) {
    std::optional<Judgement> judgement;
    for (const CompanyFacts& company : companies) {
        const bool isItsOwn = IsAddressedTo(file, company.uniqueID);
        if (!isItsOwn && !(company.isMain && IsAddressedToMain(file))) {
            continue;
        }
        Judgement here = company.isMain ? JudgeAtMain(company, file, files) : JudgeAtRoaming(company, file, files);
        if (!judgement || (here.Goes() && !judgement->Goes())) {
            judgement = std::move(here);
        }
    }
    if (!judgement) {
        judgement = AtNobody(file, companies);
    }
    if (file.kind == FileKind::UnreadableSyncFile) {
        judgement->text = "damaged archive: " + judgement->text;
    }
    return *judgement;
}

Judgement JudgeMisnamed(const FolderFile& file, const Files& files, const std::vector<CompanyFacts>& companies) {
    FolderFile renamed = file;
    renamed.kind = FileKind::SyncFile;
    renamed.entry.To = file.entry.To.empty() ? AddresseeOf(file, files, companies) : file.entry.To;
    const std::string text = "a sync file under a wrong name";
    if (renamed.entry.To.empty()) {
        return {Fate::Nobody, text};
    }
    const Judgement judgement = JudgeSyncFile(renamed, files, companies);
    const bool isWanted = judgement.Goes() || judgement.fate == Fate::Waits;
    return {Fate::Nobody,
            text + (isWanted ? ", which " + NameOf(renamed.entry.To, companies) + " needs: rename it back"
                             : "; under a right one: " + judgement.text)};
}

/// Whether a file of that number already lies there for the addressee, who then needs no other.
bool IsThere(const FoundSyncFile& entry, const std::vector<FolderFile>& files) {
    return std::any_of(files.begin(), files.end(), [&](const FolderFile& other) {
        return other.kind == FileKind::SyncFile && EqualIdentities(other.entry.To, entry.To) &&
               EqualIdentities(other.entry.From, entry.From) && other.entry.Sequence == entry.Sequence &&
               other.entry.SyncState == entry.SyncState && other.entry.IsSyncReset == entry.IsSyncReset;
    });
}

} // namespace

std::string AddresseeOf(const FolderFile& file, const std::vector<FolderFile>& files,
                        const std::vector<CompanyFacts>& companies) {
    std::vector<std::string> partners;
    for (const CompanyFacts& company : companies) {
        const bool isPartner =
            company.isMain
                ? std::any_of(company.workstations.begin(), company.workstations.end(),
                              [&](const auto& row) { return EqualIdentities(row.uniqueID, file.entry.From); })
                : EqualIdentities(company.mainUniqueID, file.entry.From);
        FolderFile addressed = file;
        addressed.kind = FileKind::SyncFile;
        addressed.entry.To = NormalizeUniqueID(company.uniqueID);
        const bool isMissed = isPartner && !IsThere(addressed.entry, files);
        const Judgement judgement = isMissed ? JudgeSyncFile(addressed, files, companies) : Judgement();
        if (judgement.Goes() || judgement.fate == Fate::Waits) {
            partners.push_back(addressed.entry.To);
        }
    }
    return partners.size() == 1 ? partners.front() : "";
}

std::vector<Judgement> JudgeFiles(const Files& files, const std::vector<CompanyFacts>& companies) {
    std::vector<Judgement> judgements;
    for (const FolderFile& file : files) {
        switch (file.kind) {
        case FileKind::SyncFile:
        case FileKind::UnreadableSyncFile:
            judgements.push_back(JudgeSyncFile(file, files, companies));
            break;
        case FileKind::Heartbeat:
            judgements.push_back({Fate::Deleted, "the main company's agent deletes it behind its next pass"});
            break;
        case FileKind::Misnamed:
            judgements.push_back(JudgeMisnamed(file, files, companies));
            break;
        case FileKind::Standing:
            judgements.push_back({Fate::Nobody, "tells how its sender stands; written anew at need"});
            break;
        case FileKind::Mark:
            judgements.push_back({Fate::Nobody, "marks the Sync folder; leave it where it is"});
            break;
        case FileKind::UnfinishedCopy:
            judgements.push_back({Fate::Nobody, "not complete; can be deleted when no copy is running"});
            break;
        case FileKind::Foreign:
            judgements.push_back({Fate::Nobody, "no sync file by its name; can be taken out"});
            break;
        }
    }
    return judgements;
}

std::string_view FateWord(Fate fate) {
    switch (fate) {
    case Fate::Taken:
    case Fate::Deleted:
        return "taken";
    case Fate::Waits:
        return "waits";
    case Fate::Late:
        return "late";
    case Fate::Elsewhere:
        return "elsewhere";
    case Fate::Nobody:
        break;
    }
    return "nobody";
}

} // namespace qndr::diagnosis
