#include "simulation/agreement.h"

#include "suite/admin/company_compare.h"
#include "suite/schema/company_ddl.h"
#include "suite/schema/company_schema.h"
#include "text/sql_name.h"

namespace qndr::simulation {
namespace {

using Rows = std::map<std::string, std::string>;

/// All that travels of each row, by its identity.
Rows ReadRows(const SimulatedComputer& computer, const suite::Table& table) {
    Rows rows;
    sql::Statement row = computer.Company().Prepare("SELECT " + suite::ExchangedColumnList(table) + " FROM " +
                                                    text::QuotedName("vwExporting_" + std::string(table.name)));
    while (row.Step()) {
        std::string& values = rows[std::string(row.Text(0))];
        for (int column = 1; column < row.ColumnCount(); ++column) {
            values.append(row.IsNull(column) ? "-" : "=").append(row.Text(column)).append("\n");
        }
    }
    return rows;
}

bool WasChangedBehindFullData(const SimulatedComputer& main, const std::string& id, const Pairing& pairing) {
    return main.Number("SELECT COUNT(*) FROM AuditLog WHERE AuditUniqueID = '" + id + "' AND ID > " +
                       std::to_string(pairing.fullDataAuditId)) != 0;
}

} // namespace

std::map<std::string, std::string> DifferingRows(const SimulatedComputer& main,
                                                 const SimulatedComputer& workstation, const Pairing& pairing) {
    std::map<std::string, std::string> differing;
    for (const auto& comparison :
         suite::CompareCompanies(main.Company(), workstation.Company(), suite::Scope::All)) {
        if (comparison.Alike()) {
            continue;
        }
        const suite::Table& table = *suite::FindAuditedTable(comparison.table);
        const Rows left = ReadRows(main, table);
        Rows right = ReadRows(workstation, table);
        const auto take = [&](const std::string& id, bool isOnMain) {
            if (!pairing.wasReset || (isOnMain && suite::IsWhollyExported(table)) ||
                WasChangedBehindFullData(main, id, pairing)) {
                differing[id] = comparison.table;
            }
        };
        for (const auto& [id, values] : left) {
            const auto found = right.find(id);
            if (found == right.end() || found->second != values) {
                take(id, true);
            }
            right.erase(id);
        }
        for (const auto& [id, values] : right) {
            take(id, false);
        }
    }
    return differing;
}

} // namespace qndr::simulation
