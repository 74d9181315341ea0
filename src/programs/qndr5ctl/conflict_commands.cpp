#include "programs/qndr5ctl/column_values.h"
#include "programs/qndr5ctl/commands.h"
#include "programs/qndr5ctl/opened_company.h"
#include "programs/qndr5ctl/output.h"
#include "services/company_numbers.h"
#include "services/failure.h"
#include "suite/admin/conflicts.h"
#include "suite/engine/given_up_changes.h"

#include <algorithm>

namespace qndr::control {

namespace {

struct ListArguments {
    std::string file;
    bool all = false;
    bool json = false;
};

struct RestoreArguments {
    std::string file;
    std::int64_t id = 0;
    bool allGivenUp = false;
};

struct OneArguments {
    std::string file;
    std::int64_t id = 0;
    bool json = false;
};

std::string WordsForConflictState(suite::ConflictState state) {
    switch (state) {
    case suite::ConflictState::Open:
        return "open";
    case suite::ConflictState::Restored:
        return "restored";
    case suite::ConflictState::Dismissed:
        return "dismissed";
    }
    return "unknown";
}

std::string WordsForConflictReason(suite::ConflictReason reason) {
    switch (reason) {
    case suite::ConflictReason::OtherVersion:
        return "changed on both sides";
    case suite::ConflictReason::GivenUp:
        return "given up by a reset";
    case suite::ConflictReason::NotConfirmed:
        return "not confirmed before a reset";
    case suite::ConflictReason::Repaired:
        return "replaced by a repair";
    }
    return "unknown";
}

/// What a person calls a company: of another workstation, a workstation knows the UniqueID alone.
std::string CompanyName(const OpenedCompany& company, const std::string& uniqueID) {
    auto row = company.Database().Prepare(
        "SELECT CASE WHEN ?1 = UniqueID COLLATE NOCASE THEN 'this company' WHEN ?1 = MainUniqueID COLLATE NOCASE "
        "THEN 'main' ELSE ifnull(nullif((SELECT Name FROM RoamingWorkstations WHERE UniqueID = ?1), ''), ?1) END "
        "FROM Company");
    row.Bind(1, uniqueID);
    return row.Step() ? std::string(row.Text(0)) : uniqueID;
}

/// What the audit log would call the row. A reset empties that, so then the losing values have to tell; null when
/// they do not.
Json NameInValues(const OpenedCompany& company, std::string_view tableName, std::string_view losingValues) {
    const suite::Table* table = suite::FindAuditedTable(tableName);
    if (table == nullptr || table->auditData.empty() || losingValues.empty()) {
        return {};
    }
    auto name =
        company.Database().Prepare("SELECT CASE WHEN json_valid(?1) THEN json_extract(?1, '$.' || ?2) END");
    name.Bind(1, losingValues);
    name.Bind(2, table->auditData);
    return name.Step() && !name.IsNull(0) ? Json(name.Text(0)) : Json();
}

/// While a reset is under way, what it gives up is kept but not yet among the conflicts.
void TellOfAReset(const ControlContext& context, const OpenedCompany& company) {
    const std::int64_t state = company.Number("SyncState");
    if (!company.IsRoaming() || (state != SyncStateResetRequested && state != SyncStateResetPending)) {
        return;
    }
    Listing listing({{"Table", "table"}, {"Unique id", "uniqueID"}, {"Reason", "reason"}});
    for (const suite::GivenUpChange& change : suite::FindChangesAtStake(company.Database())) {
        listing.Add({change.table, change.uniqueID,
                     WordsForConflictReason(static_cast<suite::ConflictReason>(change.reason))});
    }
    context.out << "\nKept by the reset under way, and to stand above when the full data has come:\n";
    listing.PrintTable(context.out, "Nothing is given up.");
}

void ListConflicts(const ControlContext& context, const ListArguments& arguments) {
    const OpenedCompany company(context, arguments.file);
    auto row = company.Database().Prepare(
        "SELECT ID, TableName, RowUniqueID, OccurredOn, LosingOrigin, WinningOrigin, LosingValues, State, "
        "(SELECT AuditData FROM AuditLog WHERE TableName = ImportConflicts.TableName AND AuditUniqueID = "
        "RowUniqueID "
        "ORDER BY ID DESC LIMIT 1), Reason FROM ImportConflicts WHERE ?1 OR State = ?2 ORDER BY ID");
    row.Bind(1, std::int64_t{arguments.all ? 1 : 0});
    row.Bind(2, static_cast<std::int64_t>(suite::ConflictState::Open));
    Listing listing({{"ID", "id"},
                     {"Table", "table"},
                     {"Row", "rowName"},
                     {"Unique id", "uniqueID"},
                     {"Occurred (UTC)", "occurredOn"},
                     {"Lost", "losingCompany"},
                     {"", "losingOrigin"},
                     {"Won", "winningCompany"},
                     {"", "winningOrigin"},
                     {"Lost as", "losingVersion"},
                     {"Reason", "reason"},
                     {"State", "state"}});
    while (row.Step()) {
        const std::string losing(row.Text(4));
        const std::string winning(row.Text(5));
        listing.Add({row.Integer(0), row.Text(1),
                     row.IsNull(8) ? NameInValues(company, row.Text(1), row.Text(6)) : Json(row.Text(8)),
                     row.Text(2), StoredDate(std::string(row.Text(3))), CompanyName(company, losing), losing,
                     CompanyName(company, winning), winning, row.IsNull(6) ? "deletion" : "values",
                     WordsForConflictReason(static_cast<suite::ConflictReason>(row.Integer(9))),
                     WordsForConflictState(static_cast<suite::ConflictState>(row.Integer(7)))});
    }
    if (arguments.json) {
        context.out << listing.ToJson().ToText() << '\n';
    } else {
        listing.PrintTable(context.out, arguments.all ? "This company has no conflicts."
                                                      : "This company has no open conflicts.");
        TellOfAReset(context, company);
    }
}

Facts FactsOf(const OpenedCompany& company, const suite::Conflict& conflict, bool rowIsThere) {
    Facts facts;
    facts.Add("Conflict", "id", conflict.id);
    facts.Add("Table", "table", conflict.table->name);
    facts.Add("Unique id", "uniqueID", conflict.uniqueID);
    facts.Add("Occurred (UTC)", "occurredOn", StoredDate(conflict.occurredOn));
    facts.Add("Lost", "losingCompany", CompanyName(company, conflict.losingOrigin));
    facts.Add("", "losingOrigin", conflict.losingOrigin);
    facts.Add("Won", "winningCompany", CompanyName(company, conflict.winningOrigin));
    facts.Add("", "winningOrigin", conflict.winningOrigin);
    facts.Add("Lost as", "losingVersion", conflict.losing ? "values" : "deletion");
    facts.Add("Reason", "reason", WordsForConflictReason(conflict.reason));
    facts.Add("Row is there", "rowIsThere", rowIsThere);
    facts.Add("State", "state", WordsForConflictState(conflict.state));
    return facts;
}

const suite::ColumnValue* ValueOf(const std::vector<suite::ColumnValue>& values, const suite::Column& column) {
    const auto found =
        std::find_if(values.begin(), values.end(), [&](const auto& value) { return value.column == &column; });
    return found == values.end() ? nullptr : &*found;
}

/// Losing beside present values, of the columns that the losing version tells of; where there is no row every
/// value is null.
Listing CompareVersions(const suite::Conflict& conflict, const std::optional<suite::Row>& present) {
    Listing listing({{"Column", "column"},
                     {"Losing value", ""},
                     {"", "losing"},
                     {"Present value", ""},
                     {"", "present"},
                     {"Differs", ""},
                     {"", "differs"}});
    for (const suite::Column& column : conflict.table->columns) {
        const suite::ColumnValue nothing{&column, Null{}};
        const auto* losing = conflict.losing ? ValueOf(*conflict.losing, column) : &nothing;
        const auto* now = present ? ValueOf(present->values, column) : &nothing;
        if (column.local || losing == nullptr || now == nullptr) {
            continue;
        }
        const bool differs = losing->value != now->value;
        listing.Add({column.name, CellForPeople(*losing), CellForMachines(*losing), CellForPeople(*now),
                     CellForMachines(*now), differs ? "*" : "", differs});
    }
    return listing;
}

void ShowConflict(const ControlContext& context, const OneArguments& arguments) {
    const OpenedCompany company(context, arguments.file);
    const sql::Transaction reading(company.Database(), sql::Transaction::Kind::Read);
    const suite::Conflict conflict = suite::ReadConflict(company.Database(), arguments.id);
    const auto present = suite::ReadRow(company.Database(), *conflict.table, conflict.uniqueID);
    const Facts facts = FactsOf(company, conflict, present.has_value());
    const Listing columns = CompareVersions(conflict, present);
    if (arguments.json) {
        Json result = facts.ToJson();
        result.Set("columns", columns.ToJson());
        context.out << result.ToText() << '\n';
        return;
    }
    facts.Print(context.out);
    context.out << '\n';
    columns.PrintTable(context.out, "This table has no columns.");
}

/// Each row for itself: one that the database refuses does not keep the others back.
void RestoreAllGivenUp(const ControlContext& context, const OpenedCompany& company) {
    const suite::GivenUpConflicts conflicts = suite::FindGivenUpConflicts(company.Database());
    std::size_t restored = 0;
    std::string failures;
    for (const std::int64_t id : conflicts.restorable) {
        try {
            suite::RestoreConflict(company.Database(), id);
            ++restored;
        } catch (const services::Failure& failure) {
            failures += (failures.empty() ? "" : "; ") + std::to_string(id) + ": " + failure.what();
        }
    }
    context.out << "Restored " << restored << (restored == 1 ? " change that was" : " changes that were")
                << " given up by a reset.\n";
    if (conflicts.changedSince > 0) {
        context.out << (conflicts.changedSince == 1 ? "The row of 1 more was" : "The rows of ")
                    << (conflicts.changedSince == 1 ? "" : std::to_string(conflicts.changedSince) + " more were")
                    << " changed here since; such rows wait for a decision, one by one.\n";
    }
    if (!failures.empty()) {
        throw services::Failure("not all could be restored: " + failures);
    }
}

void Restore(const ControlContext& context, const RestoreArguments& arguments) {
    const OpenedCompany company(context, arguments.file);
    company.DemandThatChangesTravel();
    if (arguments.allGivenUp) {
        RestoreAllGivenUp(context, company);
        return;
    }
    switch (suite::RestoreConflict(company.Database(), arguments.id)) {
    case suite::Restoration::Updated:
        context.out << "Changed the row back to the losing values.\n";
        break;
    case suite::Restoration::Inserted:
        context.out << "Made the row again with the losing values.\n";
        break;
    case suite::Restoration::Deleted:
        context.out << "Deleted the row.\n";
        break;
    case suite::Restoration::SentAgain:
        context.out << "The row stands like the losing version already; it is sent again.\n";
        break;
    case suite::Restoration::NothingToDo:
        context.out << "Nothing was changed: the row stands like the losing version already.\n";
        break;
    }
}

void Dismiss(const ControlContext& context, const OneArguments& arguments) {
    const OpenedCompany company(context, arguments.file);
    suite::DismissConflict(company.Database(), arguments.id);
    context.out << "Dismissed the conflict; its values are kept.\n";
}

void ListProblems(const ControlContext& context, const ListArguments& arguments) {
    const OpenedCompany company(context, arguments.file);
    auto row = company.Database().Prepare(
        "SELECT ID, TableName, RowUniqueID, OccurredOn, Reason FROM ImportProblems ORDER BY ID");
    Listing listing({{"ID", "id"},
                     {"Table", "table"},
                     {"Unique id", "uniqueID"},
                     {"Occurred (UTC)", "occurredOn"},
                     {"Reason", "reason"}});
    while (row.Step()) {
        listing.Add({row.Integer(0), row.Text(1), row.IsNull(2) ? Json() : Json(row.Text(2)),
                     StoredDate(std::string(row.Text(3))), row.Text(4)});
    }
    if (arguments.json) {
        context.out << listing.ToJson().ToText() << '\n';
    } else {
        listing.PrintTable(context.out, "No record was put aside by an import into this company.");
    }
}

void ShowProblem(const ControlContext& context, const OneArguments& arguments) {
    const OpenedCompany company(context, arguments.file);
    auto row = company.Database().Prepare(
        "SELECT TableName, RowUniqueID, OccurredOn, Reason, RecordXml FROM ImportProblems WHERE ID = ?1");
    row.Bind(1, arguments.id);
    if (!row.Step()) {
        throw services::Failure("there is no problem " + std::to_string(arguments.id));
    }
    Facts facts;
    facts.Add("Problem", "id", arguments.id);
    facts.Add("Table", "table", row.Text(0));
    facts.Add("Unique id", "uniqueID", row.IsNull(1) ? Json() : Json(row.Text(1)));
    facts.Add("Occurred (UTC)", "occurredOn", StoredDate(std::string(row.Text(2))));
    facts.Add("Reason", "reason", row.Text(3));
    facts.Add("Record", "recordXml", row.Text(4));
    if (arguments.json) {
        context.out << facts.ToJson().ToText() << '\n';
    } else {
        facts.Print(context.out);
    }
}

CommandLine AddOneArguments(const Command<OneArguments>& command, const std::string& idDescription) {
    command.app.Add("FILE", command.arguments.file, "The company's .psd file").Required();
    command.app.Add("ID", command.arguments.id, idDescription).Required();
    return command.app;
}

void AddRestoreCommand(const CommandLine& group, const ControlContext& context, const std::string& idDescription) {
    const auto restore = AddCommand<RestoreArguments>(group, context, "restore",
                                                      "Make the losing version the row's present one; this is a "
                                                      "new change, which is audited and travels with the "
                                                      "next exchange",
                                                      Restore);
    restore.app.Add("FILE", restore.arguments.file, "The company's .psd file").Required();
    const CommandLine which = restore.app.AddChoice("What to restore");
    which.Add("ID", restore.arguments.id, idDescription);
    which.AddFlag("--all-given-up", restore.arguments.allGivenUp,
                  "All open conflicts that come from a reset, orders first; rows that were changed here since are "
                  "left out");
}

} // namespace

void AddConflictCommands(const CommandLine& program, const ControlContext& context) {
    const CommandLine group =
        program.AddGroup("conflicts", "Versions of rows that lost against another company's or in a reset");
    const auto list = AddCommand<ListArguments>(group, context, "list", "The open conflicts", ListConflicts);
    list.app.Add("FILE", list.arguments.file, "The company's .psd file").Required();
    list.app.AddFlag("--all", list.arguments.all, "Also those that were restored or dismissed");
    list.app.AddJsonFlag(list.arguments.json);

    const std::string id = "The conflict's number in the list";
    const auto show = AddCommand<OneArguments>(
        group, context, "show", "The losing values beside the present ones; a * marks those that differ",
        ShowConflict);
    AddOneArguments(show, id).AddJsonFlag(show.arguments.json);

    AddRestoreCommand(group, context, id);
    AddOneArguments(AddCommand<OneArguments>(group, context, "dismiss",
                                             "Take a conflict off the list of the open ones; its values are kept",
                                             Dismiss),
                    id);
}

void AddProblemCommands(const CommandLine& program, const ControlContext& context) {
    const CommandLine group = program.AddGroup("problems", "Records that an import could not take and put aside");
    const auto list = AddCommand<ListArguments>(group, context, "list", "All of them and why", ListProblems);
    list.app.Add("FILE", list.arguments.file, "The company's .psd file").Required();
    list.app.AddJsonFlag(list.arguments.json);

    const auto show =
        AddCommand<OneArguments>(group, context, "show", "The reason and the record, as it arrived", ShowProblem);
    AddOneArguments(show, "The problem's number in the list").AddJsonFlag(show.arguments.json);
}

} // namespace qndr::control
