#pragma once

#include <array>
#include <string>

namespace qndr {

/// One row of the full export.
struct ExportTable {
    const char* Name;           ///< given to the engine as it stands
    const char* Condition = ""; ///< which rows of its export view travel; empty for all
};

/// What a Roaming Workstation gets at first contact and in answer to a reset, in this order. Orders, purchase
/// orders, `Company`, `RoamingWorkstations` and `AuditLog` never travel this way.
extern const std::array<ExportTable, 53> ExportTables;

/// The statement that reads the rows of one table from its export view.
std::string ExportStatement(const ExportTable& table);

} // namespace qndr
