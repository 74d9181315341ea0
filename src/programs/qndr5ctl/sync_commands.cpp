#include "programs/qndr5ctl/commands.h"

#include "programs/qndr5ctl/opened_company.h"
#include "services/failure.h"
#include "suite/company/provisioning.h"
#include "suite/files/ascii_case.h"

namespace qndr::control {

namespace {

struct InitialArguments {
    std::string roaming;
    std::string main;
};

struct ResetArguments {
    std::string roaming;
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

void RequestReset(const ControlContext& context, const ResetArguments& arguments) {
    const OpenedCompany roaming(context, arguments.roaming);
    roaming.DemandRoaming();
    suite::RequestReset(roaming.Database());
    context.out << "The workstation asks its main company for a reset at its next pass.\n";
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
}

} // namespace qndr::control
