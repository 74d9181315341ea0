#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace qndr::suite {

enum class ColumnType { Integer, Boolean, Decimal, Text, Date, Bytes, Reference };

struct Column {
    std::string_view name;
    ColumnType type;
    /// The table whose row a Reference names by UniqueID; empty otherwise.
    std::string_view references = {};
    /// A local column: in no export view, taken from no import, and a change of nothing else is not audited.
    bool local = false;
};

/// An audited table. Every one has, beside its columns, a local integer key ID and a UniqueID (GUID text, upper case,
/// unique without regard to case), and a view vwExporting_<name>.
struct Table {
    std::string_view name;
    std::vector<Column> columns;
    /// The column whose text goes into AuditLog.AuditData.
    std::string_view auditData;
    /// One of the 53 tables of a full export.
    bool exported = false;
};

/// All audited tables, the exported ones first and in the order of the full export.
const std::vector<Table>& AuditedTables();
/// Finds an audited table, without regard to letter case; null when there is none.
const Table* FindAuditedTable(std::string_view name);

/// The version of company databases that this code makes.
inline constexpr std::string_view CompanyDatabaseVersion = "5.0.1";

/// The statements that make an empty company database: tables, views, triggers, indexes; and the one Company row is
/// not among them.
std::string CompanySchemaScript();

} // namespace qndr::suite
