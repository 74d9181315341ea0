#include "programs/qndr5ctl/diagnosis_sections.h"
#include "shared/records.h"
#include "shared/text.h"

#include <algorithm>
#include <map>

namespace qndr::control {

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
    FileSection(const Observations& seen, Findings& findings) : seen_(seen), findings_(findings) {
        for (const ObservedCompany& company : seen.companies) {
            companies_.push_back(company.facts);
        }
    }

    void Run() {
        std::vector<FolderFile> files;
        for (const ListedFile& listed : seen_.files) {
            files.push_back(listed.file);
        }
        const std::vector<Judgement> judgements = JudgeFiles(files, companies_);
        for (std::size_t index = 0; index < files.size(); ++index) {
            Look(seen_.files[index], judgements[index]);
        }
        lying_.Tell(findings_);
        if (heartbeats_ > 0) {
            findings_.Add(troubles::HeartbeatUnanswered, "main",
                          Counted(heartbeats_, "heartbeat file") +
                              " unanswered for more than a day: main's agent deletes them at each pass.");
        }
    }

  private:
    void Look(const ListedFile& listed, const Judgement& judgement) {
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
            if (ToLower(listed.name).ends_with(".zip")) {
                Tell(troubles::NotASyncFile, listed,
                     "Its name is no sync file's; it will lie here for ever, told in the log at each pass.");
            }
            break;
        case FileKind::UnreadableSyncFile:
            Tell(troubles::DamagedFile, listed, "The archive cannot be read: " + Trim(listed.damage));
            break;
        case FileKind::SyncFile:
            LookAtSyncFile(listed, judgement);
            break;
        }
    }

    void LookAtSyncFile(const ListedFile& listed, const Judgement& judgement) {
        const FoundSyncFile& entry = listed.file.entry;
        const std::string from = KindInWords(listed.file) + " from " + NameOf(entry.From, companies_) + ": ";
        if (judgement.fate == Fate::Late) {
            Tell(troubles::LateFile, listed, from + judgement.text + ".");
        } else if (judgement.fate == Fate::Nobody && IsFromStranger(entry, companies_)) {
            Tell(troubles::UnknownSender, listed, from + judgement.text + ".");
        } else if (judgement.fate == Fate::Nobody && KnowsAllParties(companies_)) {
            Tell(troubles::UnclaimedFile, listed, from + judgement.text + ".");
        } else if (judgement.fate != Fate::Nobody && listed.ageSeconds > seen_.days * Day) {
            lying_.Add(listed, NameOf(entry.To, companies_));
        }
    }

    void Tell(const TroubleKind& kind, const ListedFile& listed, const std::string& text) {
        findings_.Add(kind, listed.name, text, listed.name);
    }

    const Observations& seen_;
    Findings& findings_;
    std::vector<CompanyFacts> companies_;
    LyingFiles lying_;
    std::int64_t heartbeats_ = 0;
};

} // namespace

void DiagnoseFiles(const Observations& observations, Findings& findings) {
    FileSection(observations, findings).Run();
}

} // namespace qndr::control
