#include "programs/qndr5ctl/column_values.h"
#include "programs/qndr5ctl/commands.h"
#include "programs/qndr5ctl/opened_company.h"
#include "programs/qndr5ctl/output.h"
#include "programs/qndr5ctl/sync_words.h"
#include "services/failure.h"
#include "shared/records.h"
#include "text/letter_case.h"

#include <algorithm>

namespace qndr::control {

using services::Failure;

namespace {

struct RowArguments {
    std::string file;
    std::string table;
    std::string uniqueID;
    std::vector<std::string> values;
};

struct ShowArguments {
    std::string file;
    std::string table;
    std::string uniqueID;
    std::vector<std::string> conditions;
    std::int64_t limit = 20;
    bool json = false;
};

[[noreturn]] void FailForNoRow(const suite::Table& table, const std::string& uniqueID) {
    throw Failure("the table " + std::string(table.name) + " has no row '" + uniqueID + "'");
}

/// All values, each column once.
std::vector<suite::ColumnValue> ParseValues(const ControlContext& context, const suite::Table& table,
                                            const std::vector<Assignment>& assignments) {
    std::vector<suite::ColumnValue> values;
    for (const Assignment& assignment : assignments) {
        const suite::ColumnValue value = ParseColumnValue(context, table, assignment);
        if (std::any_of(values.begin(), values.end(),
                        [&](const auto& other) { return other.column == value.column; })) {
            throw Failure("the column " + std::string(value.column->name) + " is given twice");
        }
        values.push_back(value);
    }
    return values;
}

/// Gives references the spelling of the rows that they name. The database would take a reference to nothing, for
/// an import needs that.
void ResolveReferences(const sql::Connection& database, std::vector<suite::ColumnValue>& values) {
    for (suite::ColumnValue& value : values) {
        auto* uniqueID = std::get_if<std::string>(&value.value);
        if (value.column->type != suite::ColumnType::Reference || uniqueID == nullptr) {
            continue;
        }
        const suite::Table& table = TableNamed(std::string(value.column->references));
        const auto row = suite::ReadRow(database, table, *uniqueID);
        if (!row) {
            FailForNoRow(table, *uniqueID);
        }
        *uniqueID = row->uniqueID;
    }
}

void Edit(const ControlContext& context, const RowArguments& arguments) {
    const OpenedCompany company(context, arguments.file);
    company.DemandThatChangesTravel();
    const suite::Table& table = TableNamed(arguments.table);
    const std::string uniqueID = NormalizeUniqueID(arguments.uniqueID);
    auto values = ParseValues(context, table, {arguments.values.begin(), arguments.values.end()});
    sql::Transaction transaction(company.Database(), sql::Transaction::Kind::Write);
    ResolveReferences(company.Database(), values);
    const suite::RowChange change = suite::UpdateRow(company.Database(), table, uniqueID, values);
    if (change == suite::RowChange::NoRow) {
        FailForNoRow(table, uniqueID);
    }
    transaction.Commit();
    context.out << (change == suite::RowChange::Changed
                        ? "Changed the row.\n"
                        : "Nothing was changed: the row holds these values already.\n");
}

void Add(const ControlContext& context, const RowArguments& arguments) {
    const OpenedCompany company(context, arguments.file);
    company.DemandThatChangesTravel();
    const suite::Table& table = TableNamed(arguments.table);
    std::vector<Assignment> assignments(arguments.values.begin(), arguments.values.end());
    const auto given = std::find_if(assignments.begin(), assignments.end(), [](const Assignment& assignment) {
        return text::EqualsWithoutCase(assignment.column, "UniqueID");
    });
    std::string uniqueID;
    if (given == assignments.end()) {
        uniqueID = context.services.systemTools.GetIdentifierText();
    } else {
        uniqueID = ParseUniqueID(given->value);
        assignments.erase(given);
    }
    auto values = ParseValues(context, table, assignments);
    sql::Transaction transaction(company.Database(), sql::Transaction::Kind::Write);
    ResolveReferences(company.Database(), values);
    if (suite::ReadRow(company.Database(), table, uniqueID)) {
        throw Failure("the table " + std::string(table.name) + " has a row '" + uniqueID + "' already");
    }
    suite::InsertRow(company.Database(), table, uniqueID, values);
    transaction.Commit();
    context.out << uniqueID << '\n';
}

void Delete(const ControlContext& context, const RowArguments& arguments) {
    const OpenedCompany company(context, arguments.file);
    company.DemandThatChangesTravel();
    const suite::Table& table = TableNamed(arguments.table);
    const std::string uniqueID = NormalizeUniqueID(arguments.uniqueID);
    sql::Transaction transaction(company.Database(), sql::Transaction::Kind::Write);
    if (suite::DeleteRow(company.Database(), table, uniqueID) == suite::RowChange::NoRow) {
        FailForNoRow(table, uniqueID);
    }
    transaction.Commit();
    context.out << "Deleted the row.\n";
}

void ShowRow(const ControlContext& context, const suite::Row& row, bool json) {
    Facts facts;
    facts.Add("UniqueID", "UniqueID", row.uniqueID);
    for (const suite::ColumnValue& value : row.values) {
        facts.Add(std::string(value.column->name), "", CellForPeople(value));
        facts.Add("", std::string(value.column->name), CellForMachines(value));
    }
    if (json) {
        context.out << facts.ToJson().ToText() << '\n';
    } else {
        facts.Print(context.out);
    }
}

void ShowRows(const ControlContext& context, const suite::Table& table, const std::vector<suite::Row>& rows,
              bool json) {
    std::vector<ListColumn> columns{{"UniqueID", "UniqueID"}};
    for (const suite::Column& column : table.columns) {
        if (!column.local) {
            columns.push_back({std::string(column.name), std::string(column.name)});
        }
    }
    Listing listing(std::move(columns));
    for (const suite::Row& row : rows) {
        std::vector<Json> cells{row.uniqueID};
        for (const suite::ColumnValue& value : row.values) {
            cells.push_back(json ? CellForMachines(value) : CellForPeople(value));
        }
        listing.Add(std::move(cells));
    }
    if (json) {
        context.out << listing.ToJson().ToText() << '\n';
    } else {
        listing.PrintTable(context.out, "There are no such rows.");
    }
}

void Show(const ControlContext& context, const ShowArguments& arguments) {
    const OpenedCompany company(context, arguments.file);
    const suite::Table& table = TableNamed(arguments.table);
    if (arguments.uniqueID.empty()) {
        const auto conditions =
            ParseValues(context, table, {arguments.conditions.begin(), arguments.conditions.end()});
        // One more than is shown tells that there are more.
        std::vector<suite::Row> rows = suite::FindRows(company.Database(), table, conditions, arguments.limit + 1);
        const bool hasMore = static_cast<std::int64_t>(rows.size()) > arguments.limit;
        if (hasMore) {
            rows.pop_back();
        }
        ShowRows(context, table, rows, arguments.json);
        if (hasMore && !arguments.json) {
            const std::int64_t all = suite::CountRows(company.Database(), table, conditions);
            context.out << "\n"
                        << Counted(all - arguments.limit, "more row") << " left out; --limit " << all
                        << " shows all.\n";
        }
        return;
    }
    const std::string uniqueID = NormalizeUniqueID(arguments.uniqueID);
    const auto row = suite::ReadRow(company.Database(), table, uniqueID);
    if (!row) {
        FailForNoRow(table, uniqueID);
    }
    ShowRow(context, *row, arguments.json);
}

template <typename Arguments> void AddTableArguments(const Command<Arguments>& command) {
    command.app.Add("FILE", command.arguments.file, "The company's .psd file").Required();
    command.app.Add("TABLE", command.arguments.table, "For instance Customers").Required();
}

Option AddUniqueID(const CommandLine& app, std::string& uniqueID) {
    return app.Add("UNIQUEID", uniqueID, "The row's UniqueID");
}

void AddValues(const Command<RowArguments>& command) {
    command.app
        .Add("COLUMN=VALUE", command.arguments.values,
             "A value after the column's type: a number with a point for decimals, yes or no, a date in UTC "
             "(2026-11-22 19:08:52), another row's UniqueID, @FILE for bytes. Nothing behind the \"=\" is "
             "the empty text in a column of text and NULL in all others")
        .Required();
}

} // namespace

void AddRowCommands(const CommandLine& program, const ControlContext& context) {
    const auto show = AddCommand<ShowArguments>(program, context, "show", "Rows of a company's table", Show);
    AddTableArguments(show);
    const Option uniqueID = AddUniqueID(show.app, show.arguments.uniqueID);
    show.app
        .Add("--where", show.arguments.conditions,
             "COLUMN=VALUE: only the rows that hold this value, without regard to letter case; may be given "
             "several times")
        .Excludes(uniqueID);
    show.app.Add("--limit", show.arguments.limit, "At most so many rows").ShowDefault().Between(1, 1'000'000);
    show.app.AddJsonFlag(show.arguments.json);

    const auto edit = AddCommand<RowArguments>(
        program, context, "edit", "Change a row; the change is audited and travels with the next exchange", Edit);
    AddTableArguments(edit);
    AddUniqueID(edit.app, edit.arguments.uniqueID).Required();
    AddValues(edit);

    const auto add = AddCommand<RowArguments>(
        program, context, "add", "Add a row and print its UniqueID, a new one unless UniqueID=VALUE is given",
        Add);
    AddTableArguments(add);
    AddValues(add);

    const auto remove = AddCommand<RowArguments>(program, context, "delete",
                                                 "Delete a row; rows that refer to it stay as they are", Delete);
    AddTableArguments(remove);
    AddUniqueID(remove.app, remove.arguments.uniqueID).Required();
}

} // namespace qndr::control
