#include "observation/computer_places.h"
#include "programs/qndr5ctl/commands.h"
#include "programs/qndr5ctl/opened_company.h"
#include "programs/qndr5ctl/output.h"
#include "programs/qndr5ctl/sync_words.h"
#include "services/failure.h"
#include "shared/settings.h"
#include "suite/standing/standing_view.h"

#include <algorithm>
#include <utility>

namespace qndr::control {

namespace {

using standing::Health;
using suite::PairingView;

constexpr std::int32_t DefaultMendMinutes = 60;

struct StatusArguments {
    std::vector<std::string> companies;
    bool json = false;
};

struct ProveArguments {
    std::string company;
};

std::string HealthWord(Health health) {
    switch (health) {
    case Health::Same:
        return "same";
    case Health::Behind:
        return "behind";
    case Health::Unknown:
        return "unknown";
    case Health::OutOfStep:
        return "out-of-step";
    }
    return "unknown";
}

struct CompanyStatus {
    std::string name;
    std::vector<PairingView> pairings;
};

CompanyStatus ReadStatus(const ControlContext& context, const std::string& psdFile) {
    const OpenedCompany company(context, psdFile, OpenedCompany::Older::Leave);
    const std::int32_t mendMinutes = context.services.registryTools.GetLong(
        services::CurrentUserHive, settings::RootKey, settings::MendMinutes, DefaultMendMinutes);
    return {company.Text("Name"), suite::ReadPairings(company.Database(), context.services.clock, mendMinutes)};
}

Listing ListingOf(const std::vector<CompanyStatus>& companies) {
    Listing listing({{"Company", "company"},
                     {"Partner", "partner"},
                     {"", "uniqueID"},
                     {"", "health"},
                     {"", "trouble"},
                     {"Last heard (UTC)", "lastHeard"},
                     {"Proven (UTC)", "proven"},
                     {"Behind", "behind"},
                     {"Standing", "standing"}});
    for (const CompanyStatus& company : companies) {
        for (const PairingView& pairing : company.pairings) {
            listing.Add({company.name, pairing.name, pairing.partner, HealthWord(pairing.verdict.health),
                         pairing.verdict.kind, StoredDate(pairing.heardOn), StoredDate(pairing.provenOn),
                         pairing.behind, pairing.verdict.text});
        }
    }
    return listing;
}

std::size_t CountOf(const std::vector<CompanyStatus>& companies, Health health) {
    std::size_t count = 0;
    for (const CompanyStatus& company : companies) {
        count += static_cast<std::size_t>(
            std::count_if(company.pairings.begin(), company.pairings.end(),
                          [&](const PairingView& pairing) { return pairing.verdict.health == health; }));
    }
    return count;
}

/// Good news only where it is known of every pairing.
std::string VerdictOf(const std::vector<CompanyStatus>& companies) {
    if (const std::size_t count = CountOf(companies, Health::OutOfStep); count > 0) {
        return Counted(static_cast<std::int64_t>(count), "pairing") + " out of step.";
    }
    if (const std::size_t count = CountOf(companies, Health::Unknown); count > 0) {
        return "Of " + Counted(static_cast<std::int64_t>(count), "pairing") + " it is not known how they stand.";
    }
    if (CountOf(companies, Health::Behind) > 0) {
        return "All pairings are in step; some have changes to exchange.";
    }
    return CountOf(companies, Health::Same) > 0 ? "All pairings hold the same." : "There is no pairing.";
}

void Status(const ControlContext& context, const StatusArguments& arguments) {
    std::vector<CompanyStatus> companies;
    for (const std::string& file :
         arguments.companies.empty() ? observation::CompanyFilesHere(context.services) : arguments.companies) {
        companies.push_back(ReadStatus(context, file));
    }
    const Listing listing = ListingOf(companies);
    if (arguments.json) {
        context.out << listing.ToJson().ToText() << '\n';
    } else {
        listing.PrintTable(context.out, "No company here exchanges with another one.");
        context.out << '\n' << VerdictOf(companies) << '\n';
    }
    if (CountOf(companies, Health::OutOfStep) + CountOf(companies, Health::Unknown) > 0) {
        throw services::Failure(VerdictOf(companies));
    }
}

void Prove(const ControlContext& context, const ProveArguments& arguments) {
    const OpenedCompany company(context, arguments.company);
    suite::AskForProof(company.Database());
    context.out << "A proof is asked for at the next passes; 'qndr5ctl status' tells what comes of it.\n";
}

} // namespace

void AddStatusCommands(const CommandLine& program, const ControlContext& context) {
    const auto status = AddCommand<StatusArguments>(program, context, "status",
                                                    "How each pairing stands, from what both ends know. Exit "
                                                    "status 1 when one is out of step, or when it is not "
                                                    "known",
                                                    Status);
    status.app.Add("COMPANY", status.arguments.companies,
                   "Company files (.psd); those of this computer's Companies location when none is given");
    status.app.AddJsonFlag(status.arguments.json);

    const auto prove = AddCommand<ProveArguments>(
        program, context, "prove", "Let main and its workstations prove that they hold the same", Prove);
    prove.app.Add("COMPANY", prove.arguments.company, "The .psd file of one of the two").Required();
}

} // namespace qndr::control
