#include "programs/qndr5ctl/column_values.h"
#include "programs/qndr5ctl/commands.h"
#include "programs/qndr5ctl/output.h"

namespace qndr::control {

namespace {

struct TablesArguments {
    std::string table;
    bool json = false;
};

std::string TypeWord(suite::ColumnType type) {
    switch (type) {
    case suite::ColumnType::Integer:
        return "whole number";
    case suite::ColumnType::Boolean:
        return "yes or no";
    case suite::ColumnType::Decimal:
        return "number";
    case suite::ColumnType::Text:
        return "text";
    case suite::ColumnType::Date:
        return "date in UTC";
    case suite::ColumnType::Bytes:
        return "bytes";
    case suite::ColumnType::Reference:
        return "UniqueID of a row";
    }
    return "";
}

Listing AllTables() {
    Listing listing({{"Table", "table"}, {"Columns", "columns"}, {"In full data", "inFullData"}});
    for (const suite::Table& table : suite::AuditedTables()) {
        listing.Add({table.name, table.columns.size(),
                     suite::IsWhollyExported(table) ? "all rows"
                     : table.exported               ? "some rows"
                                                    : "no"});
    }
    return listing;
}

Listing ColumnsOf(const suite::Table& table) {
    Listing listing({{"Column", "column"}, {"Holds", "type"}, {"Of table", "references"}});
    for (const suite::Column& column : table.columns) {
        if (!column.local) {
            listing.Add({column.name, TypeWord(column.type),
                         column.references.empty() ? Json() : Json(column.references)});
        }
    }
    return listing;
}

void Tables(const ControlContext& context, const TablesArguments& arguments) {
    const Listing listing = arguments.table.empty() ? AllTables() : ColumnsOf(TableNamed(arguments.table));
    if (arguments.json) {
        context.out << listing.ToJson().ToText() << '\n';
    } else {
        listing.PrintTable(context.out, "");
    }
}

} // namespace

void AddTableCommand(const CommandLine& program, const ControlContext& context) {
    const auto tables = AddCommand<TablesArguments>(
        program, context, "tables", "The tables whose changes are exchanged, or the columns of one", Tables);
    tables.app.Add("TABLE", tables.arguments.table, "For instance Customers");
    tables.app.AddJsonFlag(tables.arguments.json);
}

} // namespace qndr::control
