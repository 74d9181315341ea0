#include "diagnosis/fates.h"
#include "observation/company_facts.h"
#include "observation/computer_places.h"
#include "observation/sync_folder_files.h"
#include "programs/qndr5ctl/commands.h"
#include "programs/qndr5ctl/opened_company.h"
#include "programs/qndr5ctl/output.h"
#include "services/failure.h"
#include "suite/admin/provisioning.h"
#include "suite/files/sync_folder_mark.h"

#include <algorithm>
#include <tuple>

namespace qndr::control {

namespace {

struct FolderArguments {
    std::string folder;
    std::vector<std::string> companies;
    bool json = false;
};

struct KnownCompanies {
    std::vector<diagnosis::CompanyFacts> facts;
    Listing passedOver{{{"Company file", "file"}, {"Not asked because", "reason"}}};
};

/// The companies that were named must open; of those that merely lie in the Companies location one may be broken.
KnownCompanies AskCompanies(const ControlContext& context, const std::vector<std::string>& named) {
    KnownCompanies known;
    for (const std::string& file : named.empty() ? observation::CompanyFilesHere(context.services) : named) {
        try {
            const OpenedCompany company(context, file, OpenedCompany::Older::Leave);
            if (company.IsMain() || company.IsRoaming()) {
                known.facts.push_back(observation::ReadCompanyFacts(company.Database()));
            }
        } catch (const services::Failure& failure) {
            if (!named.empty()) {
                throw;
            }
            known.passedOver.Add({file, failure.what()});
        }
    }
    return known;
}

std::string AgeInWords(std::int64_t seconds) {
    constexpr std::int64_t Minute = 60;
    constexpr std::int64_t Hour = 60 * Minute;
    constexpr std::int64_t Day = 24 * Hour;
    return seconds < 2 * Minute ? std::to_string(seconds) + " s"
           : seconds < 2 * Hour ? std::to_string(seconds / Minute) + " min"
           : seconds < 2 * Day  ? std::to_string(seconds / Hour) + " h"
                                : std::to_string(seconds / Day) + " days";
}

bool CarriesSequence(const diagnosis::FolderFile& file) {
    return file.kind == diagnosis::FileKind::SyncFile && file.entry.SyncState == 0;
}

Json OrNull(const std::string& text) {
    return text.empty() ? Json() : Json(text);
}

Listing ListFiles(const std::vector<diagnosis::ListedFile>& files,
                  const std::vector<diagnosis::CompanyFacts>& companies) {
    Listing listing({{"To", "addressee"},
                     {"", "addresseeID"},
                     {"From", "sender"},
                     {"", "senderID"},
                     {"Kind", "kind"},
                     {"Seq", "sequence"},
                     {"Age", ""},
                     {"", "ageSeconds"},
                     {"Bytes", "size"},
                     {"Who takes it", "judgement"},
                     {"", "fate"},
                     {"", "damage"},
                     {"File", "file"}});
    std::vector<diagnosis::FolderFile> judged(files.size());
    std::transform(files.begin(), files.end(), judged.begin(),
                   [](const diagnosis::ListedFile& listed) { return listed.file; });
    const std::vector<diagnosis::Judgement> judgements = diagnosis::JudgeFiles(judged, companies);
    for (std::size_t index = 0; index < files.size(); ++index) {
        const diagnosis::ListedFile& listed = files[index];
        const FoundSyncFile& entry = listed.file.entry;
        const diagnosis::Judgement& judgement = judgements[index];
        listing.Add({OrNull(diagnosis::NameOf(entry.To, companies)), OrNull(entry.To),
                     OrNull(diagnosis::NameOf(entry.From, companies)), OrNull(entry.From),
                     diagnosis::KindInWords(listed.file),
                     CarriesSequence(listed.file) ? Json(entry.Sequence) : Json(), AgeInWords(listed.ageSeconds),
                     listed.ageSeconds, listed.size, judgement.text, diagnosis::FateWord(judgement.fate),
                     OrNull(listed.damage), listed.name});
    }
    return listing;
}

void Folder(const ControlContext& context, const FolderArguments& arguments) {
    const observation::SyncLocation own = observation::ReadSyncLocation(context.services, suite::DefaultProfile);
    const std::string folder = arguments.folder.empty() ? own.folder : arguments.folder;
    if (folder.empty()) {
        throw services::Failure("this computer has no Sync location: name a folder, or 'qndr5ctl location set "
                                "Sync FOLDER'");
    }
    const KnownCompanies known = AskCompanies(context, arguments.companies);
    std::vector<diagnosis::ListedFile> files = observation::ReadSyncFolder(context.services, folder);
    // What one party awaits from another stands together and in its order.
    std::stable_sort(
        files.begin(), files.end(), [](const diagnosis::ListedFile& left, const diagnosis::ListedFile& right) {
            const auto key = [](const diagnosis::ListedFile& listed) {
                return std::tie(listed.file.entry.To, listed.file.entry.From, listed.file.entry.Sequence);
            };
            return key(left) < key(right);
        });
    const Listing listing = ListFiles(files, known.facts);

    if (arguments.json) {
        Json result = Json::Object();
        result.Set("folder", folder)
            .Set("files", listing.ToJson())
            .Set("companiesPassedOver", known.passedOver.ToJson());
        context.out << result.ToText() << '\n';
        return;
    }
    listing.PrintTable(context.out, "The Sync folder '" + folder + "' is empty.");
    if (arguments.folder.empty() && !suite::IsMarkedAs(folder, own.identity)) {
        context.out
            << "\nThis is not the folder that was set up, and the agent leaves it alone: 'qndr5ctl doctor' "
               "tells more.\n";
    }
    if (known.facts.empty()) {
        context.out << "\nNo company could be asked: name company files with --company, or set the Companies "
                       "location.\n";
    }
    if (!known.passedOver.Empty()) {
        context.out << '\n';
        known.passedOver.PrintTable(context.out, "");
    }
}

} // namespace

void AddFolderCommand(const CommandLine& program, const ControlContext& context) {
    const auto folder = AddCommand<FolderArguments>(
        program, context, "folder", "What lies in the Sync folder, and who will take it or why nobody will",
        Folder);
    folder.app.Add("FOLDER", folder.arguments.folder,
                   "A Sync folder; this computer's Sync location when it is not given");
    folder.app
        .Add("--company", folder.arguments.companies,
             "A company's .psd file, once for each company; those of this computer's Companies location "
             "when none is given. Only what these companies know can be told")
        .OneValueATime();
    folder.app.AddJsonFlag(folder.arguments.json);
}

} // namespace qndr::control
