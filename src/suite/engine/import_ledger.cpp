#include "suite/engine/import_ledger.h"

#include "suite/exchange/import_reader.h"
#include "suite/exchange/xml_text.h"
#include "suite/schema/vocabulary.h"

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

void BindOptional(sql::Statement& statement, int parameter, const std::optional<std::string>& text) {
    if (text) {
        statement.Bind(parameter, *text);
    } else {
        statement.BindNull(parameter);
    }
}

} // namespace

ImportLedger::ImportLedger(const sql::Connection& connection)
    : problem_(connection.Prepare(
          "INSERT INTO ImportProblems (TableName, RowUniqueID, OccurredOn, Reason, RecordXml) "
          "SELECT ?1, ?2, GETUTCDATE(), ?3, ?4 WHERE NOT EXISTS (SELECT 1 FROM ImportProblems WHERE "
          "RowUniqueID IS ?2 AND TableName = ?1 AND Reason IS ?3 AND RecordXml IS ?4)")),
      conflict_(connection.Prepare(
          "INSERT INTO ImportConflicts (TableName, RowUniqueID, OccurredOn, LosingOrigin, WinningOrigin, "
          "LosingValues, Deleted, State, Reason) SELECT ?1, ?2, GETUTCDATE(), ?3, ?4, ?5, ?5 IS NULL, ?6, ?7 "
          "WHERE NOT EXISTS "
          "(SELECT 1 FROM ImportConflicts WHERE RowUniqueID = ?2 AND TableName = ?1 AND LosingOrigin IS ?3 "
          "AND WinningOrigin IS ?4 AND LosingValues IS ?5 AND State = ?6)")) {
}

void ImportLedger::EnterProblem(std::string_view table, std::string_view uniqueID, const std::string& reason,
                                const std::string& recordXml) {
    problem_.Bind(1, table);
    BindOptional(problem_, 2, uniqueID.empty() ? std::nullopt : std::optional<std::string>(uniqueID));
    problem_.Bind(3, reason);
    problem_.Bind(4, recordXml);
    problem_.Step();
    problem_.Reset();
}

void ImportLedger::AddProblem(const ImportBatch& batch, const ImportRecord& record, const std::string& reason) {
    if (++problems_ > bounds::MostProblems || problemBytes_ > bounds::MostProblemBytes) {
        ++unkept_;
        lastTable_ = record.table->name;
        return;
    }
    // As XML a large record would take its memory several times over.
    const bool isLarge = batch.text.size() > bounds::LargeRecord;
    const std::string xml = isLarge ? "" : RecordXml(batch, record);
    problemBytes_ += xml.size() + reason.size();
    EnterProblem(record.table->name, batch.Text(record, record.uniqueID),
                 isLarge ? reason + " It is too large to be kept." : reason, xml);
}

void ImportLedger::NoteUnkept() {
    if (unkept_ > 0) {
        EnterProblem(lastTable_, "",
                     "Too many records of one file could not be imported; the last " + std::to_string(unkept_) +
                         " are not kept.",
                     "");
    }
}

void ImportLedger::AddConflict(const Conflict& conflict) {
    conflictBytes_ += conflict.losingValues ? conflict.losingValues->size() : 0;
    if (kept_ >= bounds::MostConflicts || conflictBytes_ > bounds::MostConflictBytes) {
        throw FileRefused("the file overwrites more than can be kept");
    }
    conflict_.Bind(1, conflict.table);
    conflict_.Bind(2, conflict.uniqueID);
    conflict_.Bind(3, conflict.losingOrigin);
    conflict_.Bind(4, conflict.winningOrigin);
    BindOptional(conflict_, 5, conflict.losingValues);
    const ConflictState state = conflict.isRepair ? ConflictState::Dismissed : ConflictState::Open;
    const ConflictReason reason = conflict.isRepair ? ConflictReason::Repaired : ConflictReason::OtherVersion;
    conflict_.Bind(6, static_cast<std::int64_t>(state));
    conflict_.Bind(7, static_cast<std::int64_t>(reason));
    conflict_.Step();
    conflict_.Reset();
    ++kept_;
    conflicts_ += conflict.isRepair ? 0 : 1;
}

} // namespace qndr::suite
