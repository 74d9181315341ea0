#include "programs/qndr5ctl/commands.h"
#include "programs/qndr5ctl/opened_company.h"
#include "programs/qndr5ctl/output.h"
#include "programs/qndr5ctl/sync_words.h"
#include "shared/dates.h"
#include "suite/admin/provisioning.h"

#include <optional>

namespace qndr::control {

namespace {

struct AddArguments {
    std::string main;
    std::string roaming;
    std::optional<int> referenceCode;
};

struct ListArguments {
    std::string main;
    bool json = false;
};

void Add(const ControlContext& context, const AddArguments& arguments) {
    const OpenedCompany main(context, arguments.main);
    const OpenedCompany roaming(context, arguments.roaming);
    const int code = suite::AddWorkstation(main.Database(), roaming.Database(), arguments.referenceCode);
    context.out << "Registered the workstation '" << roaming.Text("Name") << "' with the reference code " << code
                << "; it asks for its initial sync at its next pass.\n";
}

Json DateCell(const sql::Statement& row, int column) {
    return row.IsNull(column) ? Json() : StoredDate(std::string(row.Text(column)));
}

void List(const ControlContext& context, const ListArguments& arguments) {
    const OpenedCompany main(context, arguments.main);
    main.DemandMain();
    auto row = main.Database().Prepare(
        "SELECT Name, SyncState, NextSequenceToRoaming, NextSequenceFromRoaming, LastSentTo, LastReceivedFrom,"
        " (SELECT COUNT(*) FROM AuditLog WHERE AuditLog.ID > RoamingWorkstations.LastAuditID),"
        " ReferenceCode, UniqueID FROM RoamingWorkstations ORDER BY Name, ID");
    Listing listing({{"Name", "name"},
                     {"State", ""},
                     {"", "state"},
                     {"", "stateText"},
                     {"Next to", "nextSequenceToRoaming"},
                     {"Next from", "nextSequenceFromRoaming"},
                     {"Last sent (UTC)", "lastSentTo"},
                     {"Last received (UTC)", "lastReceivedFrom"},
                     {"Waiting", "waitingChanges"},
                     {"Code", "referenceCode"},
                     {"Unique id", "uniqueID"}});
    const Date now = LocalToUtc(context.services, context.services.clock.Now());
    while (row.Step()) {
        const std::int64_t state = row.Integer(1);
        const std::string words = WordsForWorkstation(state, std::string(row.Text(5)), now);
        listing.Add({row.Text(0), NumberInWords(state, words), state, words, row.Integer(2), row.Integer(3),
                     DateCell(row, 4), DateCell(row, 5), row.Integer(6), row.Integer(7), row.Text(8)});
    }
    if (arguments.json) {
        context.out << listing.ToJson().ToText() << '\n';
    } else {
        listing.PrintTable(context.out, "This company has no workstations.");
        context.out << "\nHeartbeat on this computer: " << HeartbeatInWords(context.services.registryTools)
                    << '\n';
    }
}

} // namespace

void AddWorkstationCommands(const CommandLine& program, const ControlContext& context) {
    const CommandLine group = program.AddGroup("workstation", "The workstations that a main company knows");

    const auto add = AddCommand<AddArguments>(group, context, "add",
                                              "Register a workstation and let it ask for its initial sync", Add);
    add.app.Add("MAIN", add.arguments.main, "The main company's .psd file").Required();
    add.app.Add("ROAMING", add.arguments.roaming, "The workstation company's .psd file").Required();
    add.app
        .Add("--reference-code", add.arguments.referenceCode,
             "The workstation's number; the lowest free one when it is not given")
        .Between(1, 255);

    const auto list =
        AddCommand<ListArguments>(group, context, "list", "All workstations and how far each is", List);
    list.app.Add("MAIN", list.arguments.main, "The main company's .psd file").Required();
    list.app.AddJsonFlag(list.arguments.json);
}

} // namespace qndr::control
