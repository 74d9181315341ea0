#include "suite/schema/company_ddl.h"

#include <algorithm>

namespace qndr::suite {

namespace {

/// A random GUID, version 4. The number-sync queues are filled by statements that name no UniqueID.
constexpr std::string_view NewUniqueID =
    "(hex(randomblob(4)) || '-' || hex(randomblob(2)) || '-4' || substr(hex(randomblob(2)), 2) || '-' ||"
    " substr('89AB', 1 + (random() & 3), 1) || substr(hex(randomblob(2)), 2) || '-' || hex(randomblob(6)))";

std::string Quoted(std::string_view name) {
    return "\"" + std::string(name) + "\"";
}

std::string_view SqlType(ColumnType type) {
    switch (type) {
    case ColumnType::Integer:
    case ColumnType::Boolean:
        return "INTEGER";
    case ColumnType::Decimal:
        return "DECIMAL";
    case ColumnType::Bytes:
        return "BLOB";
    case ColumnType::Reference:
        return "TEXT COLLATE NOCASE";
    case ColumnType::Text:
    case ColumnType::Date:
        break;
    }
    return "TEXT";
}

std::string TableScript(const Table& table) {
    std::string script =
        "CREATE TABLE " + Quoted(table.name) +
        " (\n  ID INTEGER PRIMARY KEY AUTOINCREMENT,\n  UniqueID TEXT COLLATE NOCASE NOT NULL UNIQUE"
        " CHECK (length(UniqueID) > 0) DEFAULT " +
        std::string(NewUniqueID);
    std::string indexes;
    for (const Column& column : table.columns) {
        script += ",\n  " + Quoted(column.name) + " " + std::string(SqlType(column.type));
        if (column.local) {
            script += " NOT NULL DEFAULT 0";
        }
        if (column.indexed) {
            indexes += "CREATE INDEX " + Quoted("ix" + std::string(table.name) + "_" + std::string(column.name)) +
                       " ON " + Quoted(table.name) + " (" + Quoted(column.name) + ");\n";
        }
    }
    return script + "\n);\n" + indexes;
}

/// The row that an audit trigger writes. `row` is NEW or OLD.
std::string AuditStatement(const Table& table, std::string_view auditType, const std::string& row) {
    const std::string data = table.auditData.empty() ? "NULL" : row + "." + Quoted(table.auditData);
    return "BEGIN\n"
           "  INSERT INTO AuditLog (TableName, RecordID, AuditType, AddedOn, AuditUniqueID, AuditData, Origin, "
           "OriginID)\n"
           "  VALUES ('" +
           std::string(table.name) + "', " + row + ".ID, " + std::string(auditType) + ", GETUTCDATE(), " + row +
           ".UniqueID, " + data +
           ",\n    (SELECT Origin FROM ImportMark), (SELECT OriginID FROM ImportMark));\n"
           "END;\n";
}

std::string TriggerHead(const Table& table, std::string_view name, std::string_view event) {
    // The mark is asked first: an import that is not audited then pays for nothing else.
    return "CREATE TRIGGER " + Quoted(std::string(name) + std::string(table.name)) + " AFTER " +
           std::string(event) + " ON " + Quoted(table.name) +
           "\nWHEN NOT EXISTS (SELECT 1 FROM ImportMark WHERE Audited = 0)";
}

std::string TriggersScript(const Table& table) {
    std::string changes = "OLD.UniqueID IS NOT NEW.UniqueID";
    for (const Column& column : table.columns) {
        if (!column.local) {
            changes += " OR OLD." + Quoted(column.name) + " IS NOT NEW." + Quoted(column.name);
        }
    }
    std::string script = TriggerHead(table, "auditInsert", "INSERT") + "\n" + AuditStatement(table, "1", "NEW") +
                         TriggerHead(table, "auditUpdate", "UPDATE OF " + ExchangedColumnList(table)) +
                         "\n  AND (" + changes + ")\n" + AuditStatement(table, "2", "NEW") +
                         TriggerHead(table, "auditDelete", "DELETE") + "\n" + AuditStatement(table, "3", "OLD");
    const bool marksImported = std::any_of(table.columns.begin(), table.columns.end(),
                                           [](const Column& column) { return column.name == ImportedColumn; });
    if (marksImported) {
        script += "CREATE TRIGGER " + Quoted("markImported" + std::string(table.name)) + " AFTER INSERT ON " +
                  Quoted(table.name) + "\nWHEN EXISTS (SELECT 1 FROM ImportMark)\nBEGIN\n  UPDATE " +
                  Quoted(table.name) + " SET " + Quoted(ImportedColumn) + " = 1 WHERE ID = NEW.ID;\nEND;\n";
    }
    return script;
}

} // namespace

std::string ExchangedColumnList(const Table& table) {
    std::string list = "UniqueID";
    for (const Column& column : table.columns) {
        if (!column.local) {
            list += ", " + Quoted(column.name);
        }
    }
    return list;
}

std::string AuditedTableScript(const Table& table) {
    return TableScript(table) + "CREATE VIEW " + Quoted("vwExporting_" + std::string(table.name)) +
           " AS SELECT ID, " + ExchangedColumnList(table) + " FROM " + Quoted(table.name) + ";\n" +
           TriggersScript(table);
}

std::string NumberSyncViewScript(const Table& table, std::string_view numberColumn) {
    return "CREATE VIEW " + Quoted("vwExporting_" + std::string(table.name) + "_NumberSync") +
           " AS SELECT ID, State, UniqueID, ReferenceNumber, " + Quoted(numberColumn) + ", " +
           Quoted(SyncStateColumn) + " FROM " + Quoted(table.name) + " WHERE " + Quoted(ImportedColumn) +
           " = 0;\n";
}

} // namespace qndr::suite
