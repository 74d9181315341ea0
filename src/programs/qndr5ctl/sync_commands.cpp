#include "programs/qndr5ctl/commands.h"

#include "programs/qndr5ctl/opened_company.h"
#include "programs/qndr5ctl/sync_words.h"
#include "services/failure.h"
#include "suite/company/provisioning.h"
#include "suite/files/ascii_case.h"
#include "syncfiles/sync_state.h"

namespace qndr::control {

namespace {

struct InitialArguments {
    std::string roaming;
    std::string main;
};

struct ResetArguments {
    std::string roaming;
    std::string date;
};

/// The row on main goes first: a workstation that asks while main still counts on would have every change refused
/// afterwards, whereas a row that waits for a request only waits.
void RequestInitial(const ControlContext& context, const InitialArguments& arguments) {
    const OpenedCompany roaming(context, arguments.roaming);
    roaming.DemandRoaming();
    const std::string mainUniqueID = roaming.Text("MainUniqueID");
    if (!arguments.main.empty()) {
        const OpenedCompany main(context, arguments.main);
        main.DemandMain();
        if (!mainUniqueID.empty() && !suite::EqualsWithoutCase(mainUniqueID, main.Text("UniqueID"))) {
            throw services::Failure("the workstation belongs to another main company than '" + arguments.main +
                                    "'");
        }
        suite::ResetCountersOf(main.Database(), roaming.Text("UniqueID"));
    } else if (!mainUniqueID.empty()) {
        throw services::Failure("this workstation has run before: name its main company with --main, for the two "
                                "counters of its row there must go to 0 too, or all changes will be refused");
    }
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
    // The date first: a request that the agent makes in between would go out without it.
    if (!arguments.date.empty()) {
        suite::SetCompanyOption(roaming.Database(), "Roaming Workstations", "ResetSyncDate",
                                FormatGeneralDate(ParseDate(arguments.date).value_or(NoDate)));
    }
    // Counted before: the agent's next pass counts them as sent.
    const std::int64_t unsent =
        roaming.Database().Number("SELECT COUNT(*) FROM AuditLog WHERE ID > (SELECT LastAuditID FROM Company)");
    suite::RequestReset(roaming.Database());
    context.out << "The workstation asks its main company for a reset at its next pass.\n";
    if (unsent > 0) {
        context.out << "Warning: the reset gives up what was not sent to main, at this moment " << unsent
                    << (unsent == 1 ? " change" : " changes")
                    << ". 'qndr5ctl conflicts' keeps what is lost by it and sends it again.\n";
    }
}

std::string CheckDate(const std::string& text) {
    return ParseDate(text) ? "" : "'" + text + "' is no date like \"2026-11-22 19:08:52\"";
}

} // namespace

void AddSyncCommands(CLI::App& program, const ControlContext& context) {
    CLI::App& group = AddGroup(program, "sync", "Let a workstation ask its main company for its data");

    const auto initial =
        AddCommand<InitialArguments>(group, context, "request-initial",
                                     "Ask for an initial sync at the workstation's next pass", RequestInitial);
    initial.app.add_option("ROAMING", initial.arguments.roaming, "The workstation company's .psd file")
        ->required();
    initial.app.add_option("--main", initial.arguments.main,
                           "The main company's .psd file; needed for a workstation that has run before, whose two "
                           "counters there go to 0");

    const auto reset = AddCommand<ResetArguments>(group, context, "request-reset",
                                                  "Ask for a reset at the workstation's next pass", RequestReset);
    reset.app.add_option("ROAMING", reset.arguments.roaming, "The workstation company's .psd file")->required();
    reset.app
        .add_option(
            "--date", reset.arguments.date,
            "The date that goes with this and later requests, in UTC; 14 days before the request when none "
            "was ever given")
        ->check(CheckDate);
}

} // namespace qndr::control
