#include "suite/engine/import_ledger.h"

#include "suite/engine/xml_text.h"

namespace qndr::suite {

namespace {

/// The record in the form that it had in the file, with the columns that are known here.
std::string RecordXml(const ImportBatch& batch, const ImportRecord& record) {
    std::string xml = "<Record";
    if (record.origin.length > 0) {
        xml += " Origin=\"";
        AppendXmlText(xml, batch.Text(record, record.origin));
        xml += "\" OriginID=\"" + std::to_string(record.originID) + '"';
    }
    xml += '>';
    if (record.uniqueID.length > 0) {
        XmlColumn("UniqueID").AppendText(xml, batch.Text(record, record.uniqueID));
    }
    for (std::size_t i = 0; i < record.valueCount; ++i) {
        const ImportValue& value = batch.values[record.firstValue + i];
        const XmlColumn element(record.table->columns[value.column].name);
        switch (value.kind) {
        case ImportValue::Kind::Null:
            element.AppendNull(xml);
            break;
        case ImportValue::Kind::Bytes:
            element.AppendBytes(xml, batch.Text(record, value.text));
            break;
        default:
            element.AppendText(xml, batch.Text(record, value.text));
            break;
        }
    }
    return xml + "</Record>";
}

void BindOptional(SqliteStatement& statement, int parameter, const std::optional<std::string>& text) {
    if (text) {
        statement.Bind(parameter, *text);
    } else {
        statement.BindNull(parameter);
    }
}

} // namespace

ImportLedger::ImportLedger(const SqliteConnection& connection)
    : problem_(connection.Prepare(
          "INSERT INTO ImportProblems (TableName, RowUniqueID, OccurredOn, Reason, RecordXml) "
          "SELECT ?1, ?2, GETUTCDATE(), ?3, ?4 WHERE NOT EXISTS (SELECT 1 FROM ImportProblems WHERE "
          "RowUniqueID IS ?2 AND TableName = ?1 AND Reason IS ?3 AND RecordXml IS ?4)")),
      conflict_(connection.Prepare(
          "INSERT INTO ImportConflicts (TableName, RowUniqueID, OccurredOn, LosingOrigin, WinningOrigin, "
          "LosingValues, Deleted, State) SELECT ?1, ?2, GETUTCDATE(), ?3, ?4, ?5, ?5 IS NULL, 0 WHERE NOT EXISTS "
          "(SELECT 1 FROM ImportConflicts WHERE RowUniqueID = ?2 AND TableName = ?1 AND LosingOrigin IS ?3 "
          "AND WinningOrigin IS ?4 AND LosingValues IS ?5 AND State = 0)")) {
}

void ImportLedger::AddProblem(const ImportBatch& batch, const ImportRecord& record, const std::string& reason) {
    const std::string_view uniqueID = batch.Text(record, record.uniqueID);
    problem_.Bind(1, record.table->name);
    BindOptional(problem_, 2, uniqueID.empty() ? std::nullopt : std::optional<std::string>(uniqueID));
    problem_.Bind(3, reason);
    problem_.Bind(4, RecordXml(batch, record));
    problem_.Step();
    problem_.Reset();
    ++problems_;
}

void ImportLedger::AddConflict(const Conflict& conflict) {
    conflict_.Bind(1, conflict.table);
    conflict_.Bind(2, conflict.uniqueID);
    conflict_.Bind(3, conflict.losingOrigin);
    conflict_.Bind(4, conflict.winningOrigin);
    BindOptional(conflict_, 5, conflict.losingValues);
    conflict_.Step();
    conflict_.Reset();
    ++conflicts_;
}

} // namespace qndr::suite
