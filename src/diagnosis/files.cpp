#include "diagnosis/fates.h"
#include "diagnosis/sections.h"
#include "services/company_numbers.h"
#include "shared/dates.h"
#include "shared/records.h"
#include "text/editing.h"
#include "text/letter_case.h"

#include <algorithm>
#include <map>

namespace qndr::diagnosis {

namespace {

constexpr std::int64_t Hour = 60 * 60;
constexpr std::int64_t Day = 24 * Hour;
/// A copy in work is done by then.
constexpr std::int64_t UnfinishedSeconds = Hour;
/// The main computer may be off over night.
constexpr std::int64_t HeartbeatSeconds = Day;

/// The sender has no row on any main company at hand that the file is addressed to, and there is one.
bool IsFromStranger(const FoundSyncFile& entry, const std::vector<CompanyFacts>& companies) {
    bool isForMain = false;
    for (const CompanyFacts& company : companies) {
        if (!company.isMain || !(EqualIdentities(entry.To, NormalizeUniqueID(company.uniqueID)) ||
                                 EqualIdentities(entry.To, "main"))) {
            continue;
        }
        isForMain = true;
        if (std::any_of(company.workstations.begin(), company.workstations.end(),
                        [&](const auto& row) { return EqualIdentities(row.uniqueID, entry.From); })) {
            return false;
        }
    }
    return isForMain;
}

/// Only main knows all workstations: without it a file for nobody here may well be for somebody else.
bool KnowsAllParties(const std::vector<CompanyFacts>& companies) {
    return std::any_of(companies.begin(), companies.end(), [](const auto& company) { return company.isMain; });
}

/// Files that somebody should have taken long ago, by receiver.
class LyingFiles {
  public:
    void Add(const ListedFile& listed, const std::string& receiver) {
        auto& [count, oldest] = byReceiver_[receiver];
        ++count;
        oldest = std::max(oldest, listed.ageSeconds);
    }
    void Tell(Findings& findings) const {
        for (const auto& [receiver, lying] : byReceiver_) {
            findings.Add(troubles::LyingFile, receiver,
                         Counted(lying.first, "file") + " for " + receiver + " not taken yet, the oldest after " +
                             Counted(lying.second / Day, "day") + ".");
        }
    }

  private:
    std::map<std::string, std::pair<std::int64_t, std::int64_t>> byReceiver_;
};

class FileSection {
  public:
    FileSection(const Observations& seen, const BeginAnew& anew, Findings& findings)
        : seen_(seen), anew_(anew), findings_(findings) {
        for (const ObservedCompany& company : seen.companies) {
            companies_.push_back(company.facts);
        }
    }

    void Run() {
        for (const ListedFile& listed : seen_.files) {
            files_.push_back(listed.file);
        }
        const std::vector<Judgement> judgements = JudgeFiles(files_, companies_);
        for (std::size_t index = 0; index < files_.size(); ++index) {
            Look(index, judgements[index]);
        }
        lying_.Tell(findings_);
        if (heartbeats_ > 0) {
            findings_.Add(troubles::HeartbeatUnanswered, "main",
                          Counted(heartbeats_, "heartbeat file") +
                              " unanswered for more than a day: main's agent deletes them at each pass.");
        }
    }

  private:
    void Look(std::size_t index, const Judgement& judgement) {
        const ListedFile& listed = seen_.files[index];
        switch (listed.file.kind) {
        case FileKind::Heartbeat:
            heartbeats_ += listed.ageSeconds > HeartbeatSeconds ? 1 : 0;
            break;
        case FileKind::UnfinishedCopy:
            if (listed.ageSeconds > UnfinishedSeconds) {
                Tell(troubles::UnfinishedCopy, listed, "A copy was broken off and left here.");
            }
            break;
        case FileKind::Foreign:
            // No agent looks at other names.
            if (text::ToLowerCase(listed.name).ends_with(".zip")) {
                Tell(troubles::NotASyncFile, listed,
                     "Its name is no sync file's; it will lie here for ever, told in the log at each pass.");
            }
            break;
        case FileKind::Misnamed:
            LookAtMisnamed(index);
            break;
        case FileKind::Standing:
        case FileKind::Mark:
            break;
        case FileKind::UnreadableSyncFile:
            LookAtDamaged(listed);
            break;
        case FileKind::SyncFile:
            LookAtSyncFile(listed, judgement);
            break;
        }
    }

    void LookAtSyncFile(const ListedFile& listed, const Judgement& judgement) {
        const FoundSyncFile& entry = listed.file.entry;
        const std::string from = KindInWords(listed.file) + " from " + NameOf(entry.From, companies_) + ": ";
        const auto goes = [&](const std::string& identity) {
            return EqualIdentities(identity, entry.From) || EqualIdentities(NormalizeUniqueID(identity), entry.To);
        };
        if (std::any_of(anew_.begin(), anew_.end(), goes)) {
            return;
        }
        if (judgement.fate == Fate::Late) {
            const bool isChange = entry.SyncState == 0 && entry.IsSyncReset != FieldTrue;
            findings_.Add(isChange ? troubles::LateFile : troubles::LateFullData, listed.name,
                          from + judgement.text + ".", entry.FilePath, FileOf(entry.To));
        } else if (judgement.fate == Fate::Nobody && IsFromStranger(entry, companies_)) {
            const bool isRequest =
                entry.SyncState == SyncFileInitialSyncRequest && EqualIdentities(entry.To, "main");
            Tell(isRequest ? troubles::UnregisteredRequest : troubles::UnknownSender, listed,
                 from + judgement.text + ".");
        } else if (judgement.fate == Fate::Nobody && KnowsAllParties(companies_)) {
            Tell(troubles::UnclaimedFile, listed, from + judgement.text + ".");
        } else if (judgement.fate != Fate::Nobody && listed.ageSeconds > seen_.days * Day) {
            lying_.Add(listed, NameOf(entry.To, companies_));
        }
    }

    /// It is told as missing and not as rubbish when somebody waits for it.
    void LookAtMisnamed(std::size_t index) {
        const ListedFile& listed = seen_.files[index];
        std::vector<FolderFile> files = files_;
        FoundSyncFile& entry = files[index].entry;
        files[index].kind = FileKind::SyncFile;
        if (entry.To.empty()) {
            entry.To = AddresseeOf(files_[index], files_, companies_);
        }
        const Fate fate = JudgeFiles(files, companies_)[index].fate;
        if (!entry.To.empty() && fate != Fate::Nobody && fate != Fate::Late) {
            const std::string name = listed.properName.empty()
                                         ? entry.To + "~renamed~" + FormatFileStamp(seen_.nowUtc) + ".zip"
                                         : listed.properName;
            findings_.Add(troubles::MisnamedFile, listed.name,
                          "It is a sync file (" + KindInWords(files[index]) + " from " +
                              NameOf(entry.From, companies_) + ") under a name that nobody looks for, and " +
                              NameOf(entry.To, companies_) + " needs it.",
                          entry.FilePath, seen_.syncFolder + "/" + name);
        } else if (text::ToLowerCase(listed.name).ends_with(".zip")) {
            Tell(troubles::NotASyncFile, listed,
                 "It is a sync file under a wrong name, and nobody here needs it.");
        }
    }

    /// What its receiver awaits and cannot find elsewhere is this file or lies behind it.
    void LookAtDamaged(const ListedFile& listed) {
        const std::string text = "The archive cannot be read: " + text::Trimmed(listed.damage);
        for (const ObservedCompany& laptop : seen_.companies) {
            const CompanyFacts& facts = laptop.facts;
            if (facts.isMain ||
                !(IsFor(listed, facts.uniqueID) ? IsMissedBy(facts)
                                                : IsForMainOf(facts, listed) && IsMissedByMain(facts))) {
                continue;
            }
            const bool isFirst = facts.syncState == SyncStateInitialSyncRequested;
            findings_.Add(isFirst ? troubles::DamagedFirstFile : troubles::DamagedNextFile, listed.name,
                          text + " It is the file that comes next between " + facts.name +
                              " and its main company, or stands behind it, and nothing brings its data again by "
                              "itself.",
                          laptop.file, FileOf(NormalizeUniqueID(MainOf(facts))), seen_.syncFolder,
                          listed.file.entry.FilePath);
            return;
        }
        Tell(troubles::DamagedFile, listed, text);
    }

    const WorkstationFacts* RowOf(const CompanyFacts& laptop) const {
        for (const CompanyFacts& main : companies_) {
            for (const WorkstationFacts& row : main.workstations) {
                if (EqualIdentities(row.uniqueID, laptop.uniqueID)) {
                    return &row;
                }
            }
        }
        return nullptr;
    }
    /// The identity of its main company, which it does not know itself before its first sync.
    std::string MainOf(const CompanyFacts& laptop) const {
        for (const CompanyFacts& main : companies_) {
            if (std::any_of(main.workstations.begin(), main.workstations.end(),
                            [&](const auto& row) { return EqualIdentities(row.uniqueID, laptop.uniqueID); })) {
                return main.uniqueID;
            }
        }
        return laptop.mainUniqueID;
    }
    bool IsForMainOf(const CompanyFacts& laptop, const ListedFile& listed) const {
        return IsFor(listed, MainOf(laptop)) || IsFor(listed, "main");
    }
    bool IsMissedBy(const CompanyFacts& laptop) const {
        if (laptop.syncState != SyncStateReady && laptop.syncState != SyncStateResetPending) {
            return laptop.syncState == SyncStateInitialSyncRequested;
        }
        const WorkstationFacts* row = RowOf(laptop);
        const bool isSent = row == nullptr || laptop.nextSequenceFromMain < row->nextSequenceToRoaming;
        return isSent && !Lies(laptop.uniqueID, "", laptop.nextSequenceFromMain);
    }
    /// Main at hand has not got what the laptop has sent, and it lies nowhere else.
    bool IsMissedByMain(const CompanyFacts& laptop) const {
        const WorkstationFacts* row = RowOf(laptop);
        if (row == nullptr) {
            return false;
        }
        if (laptop.syncState == SyncStateInitialSyncRequested) {
            return row->syncState == SyncStateNone;
        }
        return row->nextSequenceFromRoaming < laptop.nextSequenceToMain &&
               !Lies(MainOf(laptop), row->uniqueID, row->nextSequenceFromRoaming);
    }

    bool IsFor(const ListedFile& listed, const std::string& identity) const {
        return EqualIdentities(listed.file.entry.To, NormalizeUniqueID(identity));
    }
    /// A readable change file of that number; from anybody when `from` is empty.
    bool Lies(const std::string& to, const std::string& from, std::int64_t sequence) const {
        return std::any_of(seen_.files.begin(), seen_.files.end(), [&](const ListedFile& listed) {
            const FoundSyncFile& entry = listed.file.entry;
            return listed.file.kind == FileKind::SyncFile && IsFor(listed, to) &&
                   (from.empty() || EqualIdentities(entry.From, from)) && entry.SyncState == 0 &&
                   entry.Sequence == sequence;
        });
    }
    std::string FileOf(const std::string& identity) const {
        const auto found = std::find_if(seen_.companies.begin(), seen_.companies.end(), [&](const auto& company) {
            return EqualIdentities(NormalizeUniqueID(company.facts.uniqueID), identity);
        });
        return found == seen_.companies.end() ? "COMPANY.psd" : found->file;
    }

    void Tell(const TroubleKind& kind, const ListedFile& listed, const std::string& text) {
        findings_.Add(kind, listed.name, text, listed.file.entry.FilePath);
    }

    const Observations& seen_;
    const BeginAnew& anew_;
    Findings& findings_;
    std::vector<FolderFile> files_;
    std::vector<CompanyFacts> companies_;
    LyingFiles lying_;
    std::int64_t heartbeats_ = 0;
};

} // namespace

void DiagnoseFiles(const Observations& observations, const BeginAnew& anew, Findings& findings) {
    FileSection(observations, anew, findings).Run();
}

} // namespace qndr::diagnosis
