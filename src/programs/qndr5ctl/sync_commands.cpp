#include "observation/computer_places.h"
#include "programs/qndr5ctl/commands.h"
#include "programs/qndr5ctl/opened_company.h"
#include "programs/qndr5ctl/sync_words.h"
#include "programs/qndr5ctl/taken_out_files.h"
#include "services/company_numbers.h"
#include "services/failure.h"
#include "suite/admin/provisioning.h"
#include "suite/engine/given_up_changes.h"
#include "text/letter_case.h"

namespace qndr::control {

namespace {

struct InitialArguments {
    std::string roaming;
    std::string main;
    std::string syncFolder;
};

struct ResetArguments {
    std::string roaming;
    std::string date;
    bool yes = false;
};

struct CancelArguments {
    std::string roaming;
};

/// An old request, acknowledge or full data of the two would be taken for a part of the new exchange.
void TakeOutOldFiles(const ControlContext& context, const InitialArguments& arguments,
                     const std::string& uniqueID) {
    const std::string folder = arguments.syncFolder.empty()
                                   ? observation::UserFileLocation(context.services, "Sync")
                                   : arguments.syncFolder;
    if (folder.empty() || !context.services.pathTools.FolderExists(folder)) {
        context.out << "No Sync folder is reached from here: files of this workstation that lie in it stay there "
                       "(--sync names it).\n";
        return;
    }
    const std::size_t count = TakeOutFilesOf(context, folder, uniqueID);
    if (count > 0) {
        context.out << "Took " << Counted(static_cast<std::int64_t>(count), "old file")
                    << " of this workstation out of the Sync folder, to " << TakenOutFolder(context) << '\n';
    }
}

/// The row on main goes first: a workstation that asks while main still counts on would have every change refused
/// afterwards, whereas a row that waits for a request only waits.
void RequestInitial(const ControlContext& context, const InitialArguments& arguments) {
    const OpenedCompany roaming(context, arguments.roaming);
    roaming.DemandRoaming();
    const std::string mainUniqueID = roaming.Text("MainUniqueID");
    if (!arguments.main.empty()) {
        const OpenedCompany main(context, arguments.main);
        main.DemandMain();
        if (!mainUniqueID.empty() && !text::EqualsWithoutCase(mainUniqueID, main.Text("UniqueID"))) {
            throw services::Failure("the workstation belongs to another main company than '" + arguments.main +
                                    "'");
        }
        suite::ResetCountersOf(main.Database(), roaming.Text("UniqueID"));
    } else if (!mainUniqueID.empty()) {
        throw services::Failure("this workstation has run before: name its main company with --main, for the two "
                                "counters of its row there must go to 0 too, or all changes will be refused");
    }
    TakeOutOldFiles(context, arguments, roaming.Text("UniqueID"));
    suite::RequestInitialSync(roaming.Database());
    context.out << "The workstation asks for its initial sync at its next pass.\n";
}

std::string WhyNoReset(std::int64_t state) {
    switch (state) {
    case SyncStateInitialSyncRequired:
    case SyncStateInitialSyncRequested:
        return "its initial sync is under way and brings all data";
    case SyncStateResetRequested:
        return "it asks for a reset at its next pass already";
    default:
        return "it has never had its initial sync: 'qndr5ctl workstation add' or 'sync request-initial' comes "
               "first";
    }
}

void RequestReset(const ControlContext& context, const ResetArguments& arguments) {
    const OpenedCompany roaming(context, arguments.roaming);
    roaming.DemandRoaming();
    const std::int64_t state = roaming.Number("SyncState");
    if (state != SyncStateReady && state != SyncStateResetPending) {
        throw services::Failure(
            "a reset is for a workstation that is ready or waits for one; the state of this one is " +
            NumberInWords(state, WordsForCompanyState(state)) + ": " + WhyNoReset(state));
    }
    const std::vector<suite::GivenUpChange> atStake = suite::FindChangesAtStake(roaming.Database());
    if (!atStake.empty() && !arguments.yes) {
        context.out << "The reset gives up " << Counted(static_cast<std::int64_t>(atStake.size()), "change")
                    << " that main is not known to have. They are kept: 'qndr5ctl conflicts list' shows them, and "
                       "'conflicts restore' sends them again. 'qndr5ctl sync cancel-reset' takes the request back "
                       "until it has left.\n";
        throw services::Failure("nothing was done; with --yes it is");
    }
    // The date first: a request that the agent makes in between would go out without it.
    if (!arguments.date.empty()) {
        suite::SetCompanyOption(roaming.Database(), "Roaming Workstations", "ResetSyncDate",
                                FormatGeneralDate(ParseDate(arguments.date).value_or(NoDate)));
    }
    suite::RequestReset(roaming.Database());
    context.out << "The workstation asks its main company for a reset at its next pass";
    if (!atStake.empty()) {
        context.out << ", and gives up " << Counted(static_cast<std::int64_t>(atStake.size()), "change")
                    << ", which 'qndr5ctl conflicts' keeps";
    }
    context.out << ".\n";
}

void Cancel(const ControlContext& context, const CancelArguments& arguments) {
    const OpenedCompany roaming(context, arguments.roaming);
    roaming.DemandRoaming();
    suite::CancelReset(roaming.Database());
    context.out << "The reset is not asked for any more.\n";
}

std::string CheckDate(const std::string& text) {
    return ParseDate(text) ? "" : "'" + text + "' is no date like \"2026-11-22 19:08:52\"";
}

} // namespace

void AddSyncCommands(const CommandLine& program, const ControlContext& context) {
    const CommandLine group = program.AddGroup("sync", "Let a workstation ask its main company for its data");

    const auto initial =
        AddCommand<InitialArguments>(group, context, "request-initial",
                                     "Ask for an initial sync at the workstation's next pass", RequestInitial);
    initial.app.Add("ROAMING", initial.arguments.roaming, "The workstation company's .psd file").Required();
    initial.app.Add("--main", initial.arguments.main,
                    "The main company's .psd file; needed for a workstation that has run before, whose two "
                    "counters there go to 0");
    initial.app.Add("--sync", initial.arguments.syncFolder,
                    "The Sync folder, out of which old files of the workstation are taken; this computer's "
                    "Sync location when it is not given");

    const auto reset = AddCommand<ResetArguments>(group, context, "request-reset",
                                                  "Ask for a reset at the workstation's next pass", RequestReset);
    reset.app.Add("ROAMING", reset.arguments.roaming, "The workstation company's .psd file").Required();
    reset.app
        .Add("--date", reset.arguments.date,
             "The date that goes with this and later requests, in UTC; 14 days before the request when none "
             "was ever given")
        .Check(CheckDate);
    reset.app.AddFlag("--yes", reset.arguments.yes,
                      "Do it although changes are given up that main is not known to have; they are kept");

    const auto cancel = AddCommand<CancelArguments>(
        group, context, "cancel-reset", "Take a request for a reset back that has not left yet", Cancel);
    cancel.app.Add("ROAMING", cancel.arguments.roaming, "The workstation company's .psd file").Required();
}

} // namespace qndr::control
