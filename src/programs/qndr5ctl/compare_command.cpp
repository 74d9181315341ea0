#include "programs/qndr5ctl/commands.h"
#include "programs/qndr5ctl/opened_company.h"
#include "programs/qndr5ctl/output.h"
#include "programs/qndr5ctl/sync_words.h"
#include "services/failure.h"
#include "suite/admin/company_compare.h"

namespace qndr::control {

namespace {

struct CompareArguments {
    std::string left;
    std::string right;
    bool all = false;
    bool rows = false;
    bool json = false;
};

struct Totals {
    std::int64_t unlikeTables = 0;
    std::int64_t leftOut = 0;
};

std::string KindWord(suite::RowDifference::Kind kind) {
    switch (kind) {
    case suite::RowDifference::Kind::Differing:
        return "differs";
    case suite::RowDifference::Kind::OnlyLeft:
        return "missing in B";
    case suite::RowDifference::Kind::OnlyRight:
        return "missing in A";
    case suite::RowDifference::Kind::LeftOut:
        return "left out";
    }
    return "";
}

std::string Joined(const std::vector<std::string>& names) {
    std::string text;
    for (const std::string& name : names) {
        text += (text.empty() ? "" : ", ") + name;
    }
    return text;
}

Listing ListTables(const std::vector<suite::TableComparison>& tables, Totals& totals) {
    Listing listing({{"Table", "table"},
                     {"Same", "same"},
                     {"Differing", "differing"},
                     {"Missing in B", "onlyLeft"},
                     {"Missing in A", "onlyRight"},
                     {"Left out", "leftOut"}});
    for (const auto& table : tables) {
        listing.Add({table.table, table.same, table.differing, table.onlyLeft, table.onlyRight, table.leftOut});
        totals.unlikeTables += table.Alike() ? 0 : 1;
        totals.leftOut += table.leftOut;
    }
    return listing;
}

void PrintVerdict(const ControlContext& context, const Totals& totals) {
    if (totals.leftOut > 0) {
        context.out
            << "Left out: " << Counted(totals.leftOut, "row")
            << " that main alone has and that full data does not carry (orders, older activities). Whether "
               "the workstation should have them cannot be told from the rows; --all counts them as missing, "
               "--rows names them.\n";
    } else if (totals.unlikeTables == 0) {
        context.out << "The companies hold the same rows.\n";
    }
    if (totals.leftOut > 0 && totals.unlikeTables == 0) {
        context.out << "All others are the same.\n";
    }
}

void Compare(const ControlContext& context, const CompareArguments& arguments) {
    const OpenedCompany left(context, arguments.left);
    const OpenedCompany right(context, arguments.right);
    Listing rows({{"Table", "table"}, {"Unique id", "uniqueID"}, {"What", "what"}, {"Columns", "columns"}});
    suite::DifferenceSink tell;
    if (arguments.rows) {
        tell = [&](const suite::RowDifference& row) {
            rows.Add({row.table, row.uniqueID, KindWord(row.kind),
                      row.columns.empty() ? Json() : Json(Joined(row.columns))});
        };
    }
    Totals totals;
    const Listing tables =
        ListTables(suite::CompareCompanies(left.Database(), right.Database(),
                                           arguments.all ? suite::Scope::All : suite::Scope::Held, tell),
                   totals);
    if (arguments.json) {
        Json result = Json::Object();
        result.Set("alike", totals.unlikeTables == 0)
            .Set("leftOut", totals.leftOut)
            .Set("tables", tables.ToJson());
        if (arguments.rows) {
            result.Set("rows", rows.ToJson());
        }
        context.out << result.ToText() << '\n';
    } else {
        tables.PrintTable(context.out, "There are no tables to compare.");
        context.out << '\n';
        if (arguments.rows) {
            rows.PrintTable(context.out, "There is no row to name.");
            context.out << '\n';
        }
        PrintVerdict(context, totals);
    }
    if (totals.unlikeTables > 0) {
        throw services::Failure("the companies differ in " + Counted(totals.unlikeTables, "table"));
    }
}

} // namespace

void AddCompareCommand(const CommandLine& companyGroup, const ControlContext& context) {
    const auto compare =
        AddCommand<CompareArguments>(companyGroup, context, "compare",
                                     "Compare the rows of two companies; exit status 1 when they differ", Compare);
    compare.app.Add("A", compare.arguments.left, "A .psd file").Required();
    compare.app.Add("B", compare.arguments.right, "Another .psd file").Required();
    compare.app.AddFlag("--all", compare.arguments.all,
                        "Count as missing also what main alone has and full data does not carry");
    compare.app.AddFlag("--rows", compare.arguments.rows, "Name each row that is not the same, and its columns");
    compare.app.AddJsonFlag(compare.arguments.json);
}

} // namespace qndr::control
