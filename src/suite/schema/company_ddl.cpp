#include "suite/schema/company_ddl.h"

#include "services/company_numbers.h"
#include "text/sql_name.h"

#include <algorithm>

namespace qndr::suite {

namespace {

/// A random GUID, version 4. The number-sync queues are filled by statements that name no UniqueID.
constexpr std::string_view NewUniqueID =
    "(hex(randomblob(4)) || '-' || hex(randomblob(2)) || '-4' || substr(hex(randomblob(2)), 2) || '-' ||"
    " substr('89AB', 1 + (random() & 3), 1) || substr(hex(randomblob(2)), 2) || '-' || hex(randomblob(6)))";

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
        "CREATE TABLE " + text::QuotedName(table.name) +
        " (\n  ID INTEGER PRIMARY KEY AUTOINCREMENT,\n  UniqueID TEXT COLLATE NOCASE NOT NULL UNIQUE"
        " CHECK (length(UniqueID) > 0) DEFAULT " +
        std::string(NewUniqueID);
    std::string indexes;
    for (const Column& column : table.columns) {
        script += ",\n  " + text::QuotedName(column.name) + " " + std::string(SqlType(column.type));
        if (column.local) {
            script += " NOT NULL DEFAULT 0";
        }
        if (column.indexed) {
            indexes += "CREATE INDEX " +
                       text::QuotedName("ix" + std::string(table.name) + "_" + std::string(column.name)) + " ON " +
                       text::QuotedName(table.name) + " (" + text::QuotedName(column.name) + ");\n";
        }
    }
    return script + "\n);\n" + indexes;
}

/// The row that an audit trigger writes. `row` is NEW or OLD.
std::string AuditStatement(const Table& table, AuditType auditType, const std::string& row) {
    const std::string data = table.auditData.empty() ? "NULL" : row + "." + text::QuotedName(table.auditData);
    return "BEGIN\n"
           "  INSERT INTO AuditLog (TableName, RecordID, AuditType, AddedOn, AuditUniqueID, AuditData, Origin, "
           "OriginID)\n"
           "  VALUES ('" +
           std::string(table.name) + "', " + row + ".ID, " + std::to_string(auditType) + ", GETUTCDATE(), " + row +
           ".UniqueID, " + data +
           ",\n    (SELECT Origin FROM ImportMark), (SELECT OriginID FROM ImportMark));\n"
           "END;\n";
}

std::string TriggerHead(const Table& table, std::string_view name, std::string_view event) {
    // The mark is asked first: an import that is not audited then pays for nothing else.
    return "CREATE TRIGGER " + text::QuotedName(std::string(name) + std::string(table.name)) + " AFTER " +
           std::string(event) + " ON " + text::QuotedName(table.name) +
           "\nWHEN NOT EXISTS (SELECT 1 FROM ImportMark WHERE Audited = 0)";
}

std::string TriggersScript(const Table& table) {
    std::string changes = "OLD.UniqueID IS NOT NEW.UniqueID";
    for (const Column& column : table.columns) {
        if (!column.local) {
            changes += " OR OLD." + text::QuotedName(column.name) + " IS NOT NEW." + text::QuotedName(column.name);
        }
    }
    std::string script =
        TriggerHead(table, "auditInsert", "INSERT") + "\n" + AuditStatement(table, AuditInsertion, "NEW") +
        TriggerHead(table, "auditUpdate", "UPDATE OF " + ExchangedColumnList(table)) + "\n  AND (" + changes +
        ")\n" + AuditStatement(table, AuditUpdate, "NEW") + TriggerHead(table, "auditDelete", "DELETE") + "\n" +
        AuditStatement(table, AuditDeletion, "OLD");
    const bool marksImported = std::any_of(table.columns.begin(), table.columns.end(),
                                           [](const Column& column) { return column.name == ImportedColumn; });
    if (marksImported) {
        script += "CREATE TRIGGER " + text::QuotedName("markImported" + std::string(table.name)) +
                  " AFTER INSERT ON " + text::QuotedName(table.name) +
                  "\nWHEN EXISTS (SELECT 1 FROM ImportMark)\nBEGIN\n  UPDATE " + text::QuotedName(table.name) +
                  " SET " + text::QuotedName(ImportedColumn) + " = 1 WHERE ID = NEW.ID;\nEND;\n";
    }
    return script;
}

} // namespace

std::string ExchangedColumnList(const Table& table) {
    std::string list = "UniqueID";
    for (const Column& column : table.columns) {
        if (!column.local) {
            list += ", " + text::QuotedName(column.name);
        }
    }
    return list;
}

std::string AuditedTableScript(const Table& table) {
    return TableScript(table) + "CREATE VIEW " + text::QuotedName("vwExporting_" + std::string(table.name)) +
           " AS SELECT ID, " + ExchangedColumnList(table) + " FROM " + text::QuotedName(table.name) + ";\n" +
           TriggersScript(table);
}

std::string NumberSyncViewScript(const Table& table, std::string_view numberColumn) {
    return "CREATE VIEW " + text::QuotedName("vwExporting_" + std::string(table.name) + "_NumberSync") +
           " AS SELECT ID, State, UniqueID, ReferenceNumber, " + text::QuotedName(numberColumn) + ", " +
           text::QuotedName(SyncStateColumn) + " FROM " + text::QuotedName(table.name) + " WHERE " +
           text::QuotedName(ImportedColumn) + " = 0;\n";
}

} // namespace qndr::suite
