#include "programs/qndr5ctl/sync_folder_report.h"

#include "programs/qndr5ctl/sync_words.h"
#include "services/company_numbers.h"
#include "shared/records.h"

#include <algorithm>
#include <optional>

namespace qndr::control {

namespace {

using Files = std::vector<FolderFile>;

bool IsSyncFile(const FolderFile& file) {
    return file.kind == FileKind::SyncFile || file.kind == FileKind::UnreadableSyncFile;
}

bool IsAddressedTo(const FolderFile& file, const std::string& identity) {
    return IsSyncFile(file) && EqualIdentities(file.entry.To, NormalizeUniqueID(identity));
}

bool IsAddressedToMain(const FolderFile& file) {
    return IsSyncFile(file) && EqualIdentities(file.entry.To, "main");
}

Judgement Takes(const CompanyFacts& company) {
    return {Fate::Taken, company.name + " takes it next"};
}

/// The rule of both directions: equal, nothing else.
Judgement BySequence(const CompanyFacts& receiver, std::int64_t sequence, std::int64_t expected) {
    if (sequence == expected) {
        return Takes(receiver);
    }
    if (sequence > expected) {
        return {Fate::Waits, "waits for sequence " + std::to_string(sequence) + " (" + receiver.name +
                                 " expects " + std::to_string(expected) + ")"};
    }
    return {Fate::Late, "late: " + receiver.name + " is at " + std::to_string(expected) +
                            " already; will be ignored for ever"};
}

/// One main company that walks the files in the order of its steps.
class AtMain {
  public:
    AtMain(const CompanyFacts& company, const Files& files) : company_(company), files_(files) {}

    Judgement Judge(const FolderFile& file) const {
        Judgement judgement = ByItsSteps(file);
        if (judgement.fate == Fate::Taken && !company_.syncEnabled) {
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
            return {Fate::Taken, company_.name + " deletes it with the reset request of " + row.name};
        }
        if (state == SyncStateResetPending) {
            return {Fate::Taken, company_.name + " deletes it: the reset of " + row.name + " is under way"};
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

/// One Roaming Workstation company, likewise. It goes by the addressee alone.
Judgement AtRoaming(const CompanyFacts& company, const FolderFile& file, const Files& files) {
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
        return {Fate::Taken, company.name + " deletes it unread when it asks for its reset"};
    default:
        return {Fate::Nobody, company.name + " takes nothing: its state is " +
                                  NumberInWords(state, WordsForCompanyState(state))};
    }
}

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
        Judgement here = company.isMain ? AtMain(company, files).Judge(file) : AtRoaming(company, file, files);
        if (!judgement || (here.fate == Fate::Taken && judgement->fate != Fate::Taken)) {
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
    const bool isWanted = judgement.fate == Fate::Taken || judgement.fate == Fate::Waits;
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
        const Fate fate = isMissed ? JudgeSyncFile(addressed, files, companies).fate : Fate::Nobody;
        if (fate == Fate::Taken || fate == Fate::Waits) {
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
            judgements.push_back({Fate::Taken, "the main company's agent deletes it behind its next pass"});
            break;
        case FileKind::Misnamed:
            judgements.push_back(JudgeMisnamed(file, files, companies));
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

std::string KindInWords(const FolderFile& file) {
    switch (file.kind) {
    case FileKind::UnreadableSyncFile:
        return "unreadable";
    case FileKind::Heartbeat:
        return "heartbeat";
    case FileKind::Mark:
        return "mark";
    case FileKind::UnfinishedCopy:
        return "unfinished copy";
    case FileKind::Foreign:
        return "not a sync file";
    case FileKind::Misnamed:
    case FileKind::SyncFile:
        break;
    }
    switch (file.entry.SyncState) {
    case SyncFileInitialSyncRequest:
        return "initial sync request";
    case SyncFileInitialSync:
        return "full data";
    case SyncFileReady:
        return "acknowledge";
    case 0:
        break;
    default:
        return "unknown state " + std::to_string(file.entry.SyncState);
    }
    if (file.entry.Sequence == SyncResetSequence) {
        return "reset request";
    }
    return file.entry.IsSyncReset == FieldTrue ? "reset data" : "changes";
}

std::string_view FateWord(Fate fate) {
    switch (fate) {
    case Fate::Taken:
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

std::string NameOf(const std::string& identity, const std::vector<CompanyFacts>& companies) {
    const std::string wanted = NormalizeUniqueID(identity);
    const auto isMeant = [&](const auto& party) {
        return !party.name.empty() && NormalizeUniqueID(party.uniqueID) == wanted;
    };
    const auto company = std::find_if(companies.begin(), companies.end(), isMeant);
    if (company != companies.end()) {
        return company->name;
    }
    for (const CompanyFacts& main : companies) {
        const auto row = std::find_if(main.workstations.begin(), main.workstations.end(), isMeant);
        if (row != main.workstations.end()) {
            return row->name;
        }
    }
    return identity;
}

} // namespace qndr::control
