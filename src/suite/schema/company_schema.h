#pragma once

#include <cstdint>
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
    /// Rows are looked up by this column.
    bool indexed = false;
};

/// An audited table. Every one has, beside its columns, a local integer key ID and a UniqueID (GUID text, upper
/// case, unique without regard to case), and a view vwExporting_<name>.
struct Table {
    std::string_view name;
    std::vector<Column> columns;
    /// The column whose text goes into AuditLog.AuditData; empty for none.
    std::string_view auditData = {};
    /// One of the 53 tables of a full export.
    bool exported = false;
};

/// Local column of orders and purchase orders: 0 the number is still to be queued for main, 1 it was queued.
inline constexpr std::string_view SyncStateColumn = "SyncState";
/// Local column of the same tables: 1 when the row came by import, so that its number is not this company's to
/// queue.
inline constexpr std::string_view ImportedColumn = "Imported";

/// All audited tables, the exported ones first and in the order of the full export.
const std::vector<Table>& AuditedTables();
/// Finds an audited table, without regard to letter case; null when there is none.
const Table* FindAuditedTable(std::string_view name);

/// Whether every company database has this table and no exchange file may write to it: the name of such a table is
/// not unknown. Without regard to letter case.
bool IsClosedToFiles(std::string_view table);

/// Whether all of the table's rows are part of a full export. Orders are not, and of activities and
/// attachments only some.
bool IsWhollyExported(const Table& table);

/// The version of company databases that this code makes. Stored in Company.DatabaseVersion.
inline constexpr std::string_view CompanyDatabaseVersion = "5.0.1";

/// The version of tables, indexes, views and triggers, raised with each change of them (company_versions.h).
/// Stored in SchemaVersion.Version: never give a number to anything else.
inline constexpr std::int64_t CompanySchemaVersion = 7;

/// The script that makes an empty company database: tables, views, triggers and indexes. The one Company row is
/// not among them.
std::string CompanySchemaScript();

} // namespace qndr::suite
