#include "diagnosis/sections.h"
#include "services/company_numbers.h"
#include "shared/records.h"

#include <algorithm>

namespace qndr::diagnosis {

namespace {

/// So many files are told one by one; behind them the number says enough.
constexpr std::size_t MostTold = 8;

const ObservedCompany* Find(const Observations& seen, const std::string& uniqueID) {
    const auto found =
        std::find_if(seen.companies.begin(), seen.companies.end(), [&](const ObservedCompany& company) {
            return EqualIdentities(company.facts.uniqueID, uniqueID);
        });
    return found == seen.companies.end() ? nullptr : &*found;
}

/// Files of one partner, and the company that knows of them.
struct Refusals {
    const ObservedCompany& company;
    const ObservedCompany* partner = nullptr; ///< when it is at hand
    std::string partnerID;
    std::vector<RefusedFile> files;

    const ObservedCompany* Main() const { return company.facts.isMain ? &company : partner; }
    const ObservedCompany* Laptop() const { return company.facts.isMain ? partner : &company; }
    const WorkstationFacts* Row() const {
        if (Main() == nullptr) {
            return nullptr;
        }
        const std::string& laptop = company.facts.isMain ? partnerID : company.facts.uniqueID;
        const auto& rows = Main()->facts.workstations;
        const auto found = std::find_if(rows.begin(), rows.end(), [&](const WorkstationFacts& row) {
            return EqualIdentities(row.uniqueID, laptop);
        });
        return found == rows.end() ? nullptr : &*found;
    }
    std::string PartnerName() const {
        if (!company.facts.isMain) {
            return partner != nullptr ? partner->facts.name : "main";
        }
        return Row() != nullptr && !Row()->name.empty() ? Row()->name : partnerID;
    }
};

std::vector<Refusals> ByPartner(const Observations& seen, const ObservedCompany& company,
                                const std::vector<RefusedFile>& files) {
    std::vector<Refusals> all;
    for (const RefusedFile& file : files) {
        if (all.empty() || !EqualIdentities(all.back().partnerID, file.partner)) {
            all.push_back({company, Find(seen, file.partner), file.partner, {}});
        }
        all.back().files.push_back(file);
    }
    return all;
}

/// A reset, or a first exchange asked for anew, that is on its way mends it.
bool IsBeingMended(const Observations& seen, const Refusals& refusals) {
    const auto isReady = [](std::int64_t state) { return state == SyncStateReady; };
    if ((refusals.Laptop() != nullptr && !isReady(refusals.Laptop()->facts.syncState)) ||
        (refusals.Row() != nullptr && !isReady(refusals.Row()->syncState))) {
        return true;
    }
    const std::string& laptop =
        refusals.company.facts.isMain ? refusals.partnerID : refusals.company.facts.uniqueID;
    return std::any_of(seen.files.begin(), seen.files.end(), [&](const ListedFile& listed) {
        const FoundSyncFile& file = listed.file.entry;
        return listed.file.kind == FileKind::SyncFile && EqualIdentities(file.From, laptop) &&
               (file.Sequence == SyncResetSequence || file.SyncState == SyncFileInitialSyncRequest);
    });
}

/// `known` is what the sender knows of the files.
std::string InWords(const RefusedFile& file, const std::vector<RefusedFile>& known, const std::string& receiver) {
    const auto on = ParseDate(file.on);
    std::string text = file.sequence < 0 ? "the full data" : "the file " + std::to_string(file.sequence);
    text += " (" + (on ? FormatGeneralDate(*on) : file.on) + " UTC";
    for (const RefusedFile& told : known) {
        if (told.sequence == file.sequence && EqualIdentities(told.partner, receiver) && !told.held.empty()) {
            text += ", held " + told.held;
        }
    }
    return text + ")";
}

void Tell(Findings& findings, const Refusals& refusals, bool isSender) {
    const ObservedCompany& company = refusals.company;
    const std::string here =
        refusals.Row() != nullptr && !company.facts.isMain ? refusals.Row()->name : company.facts.name;
    const std::string receiver = isSender ? refusals.PartnerName() : here;
    const std::string sender = isSender ? here : refusals.PartnerName();
    const ObservedCompany* const from = isSender ? &company : refusals.partner;
    std::string files;
    for (std::size_t index = 0; index < std::min(refusals.files.size(), MostTold); ++index) {
        files += (index == 0 ? "" : ", ") +
                 InWords(refusals.files[index], from != nullptr ? from->refusedThere : std::vector<RefusedFile>{},
                         isSender ? refusals.partnerID : company.facts.uniqueID);
    }
    if (refusals.files.size() > MostTold) {
        files += " and " + Counted(static_cast<std::int64_t>(refusals.files.size() - MostTold), "more file");
    }
    findings.Add(
        troubles::ImportRefused, company.facts.isMain ? refusals.PartnerName() : here,
        receiver + " could not import what " + sender + " had sent: " + files +
            ". Damaged as it was it counts as taken and does not come again: what was in it is missing on " +
            receiver + ".",
        refusals.Laptop() != nullptr ? refusals.Laptop()->file : "ROAMING.psd");
}

} // namespace

void DiagnoseRefusals(const Observations& seen, Findings& findings) {
    for (const ObservedCompany& company : seen.companies) {
        for (const Refusals& refusals : ByPartner(seen, company, company.refusedHere)) {
            if (!IsBeingMended(seen, refusals)) {
                Tell(findings, refusals, false);
            }
        }
        for (const Refusals& refusals : ByPartner(seen, company, company.refusedThere)) {
            // A receiver that is at hand tells of them itself.
            if (refusals.partner == nullptr && !IsBeingMended(seen, refusals)) {
                Tell(findings, refusals, true);
            }
        }
    }
}

} // namespace qndr::diagnosis
