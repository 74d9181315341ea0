#include "suite/engine/export_writer.h"

#include "services/failure.h"
#include "suite/computer/operating_system.h"
#include "suite/engine/refused_files.h"
#include "suite/engine/sent_ranges.h"
#include "text/letter_case.h"

namespace qndr::suite {

namespace {

constexpr std::size_t BufferSize = 256 * 1024;

/// In the place of the statement for a deletion, which does not show whose it was.
constexpr std::string_view DeletionWithOrigin =
    "SELECT AddedOn AS DeletedOn, AuditUniqueID AS UniqueID, ID AS AuditID, Origin AS AuditOrigin, "
    "OriginID AS AuditOriginID, EXISTS (SELECT 1 FROM RepairAudits WHERE AuditID = AuditLog.ID) AS AuditRepair "
    "FROM AuditLog WHERE ID = ?1";

/// The column of a row, after its type.
void AppendValue(std::string& out, const XmlColumn& element, const sql::Statement& row, int column,
                 const XmlColumn::Spill& spill) {
    switch (row.Type(column)) {
    case sql::ValueType::Null:
        element.AppendNull(out);
        return;
    case sql::ValueType::Integer:
        element.AppendInteger(out, row.Integer(column));
        return;
    case sql::ValueType::Real:
        element.AppendReal(out, row.Real(column));
        return;
    case sql::ValueType::Text:
        element.AppendText(out, row.Text(column), spill);
        return;
    case sql::ValueType::Bytes:
        element.AppendBytes(out, row.Bytes(column), spill);
        return;
    }
}

} // namespace

ExportWriter::ExportWriter(const sql::Connection& connection, ExportFile& file, ExportOrigin origin)
    : connection_(connection), file_(file), origin_(origin), fence_(connection.MakeFence()),
      own_(connection.Value("SELECT UniqueID FROM Company").value_or("")),
      newestAudit_(
          connection.Prepare("SELECT ID, Origin, OriginID, EXISTS (SELECT 1 FROM RepairAudits WHERE AuditID = "
                             "AuditLog.ID) FROM AuditLog WHERE TableName = ?1 COLLATE NOCASE "
                             "AND AuditUniqueID = ?2 ORDER BY ID DESC LIMIT 1")) {
}

void ExportWriter::WriteAll(const ExportList& list) {
    text_ += "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<Exchange Version=\"1\" From=\"";
    AppendXmlText(text_, own_);
    text_ += "\" CreatedOn=\"";
    AppendXmlText(text_, connection_.Value("SELECT GETUTCDATE()").value_or(""));
    if (const std::string seen = AcceptedFiles(connection_); origin_ == ExportOrigin::Tell && !seen.empty()) {
        text_ += "\" Seen=\"";
        AppendXmlText(text_, seen);
        if (const std::string refused = RefusedFiles(connection_); !refused.empty()) {
            text_ += "\" Refused=\"";
            AppendXmlText(text_, refused);
        }
        text_ += "\" FileID=\"" + RandomToken();
    }
    text_ += "\">\n";
    for (const ExportList::Entry& entry : list.Entries()) {
        Write(list.Kinds()[entry.kind], entry);
    }
    CloseTable();
    text_ += "</Exchange>\n";
    FlushBeyond(0);
}

void ExportWriter::Write(const ExportList::Kind& kind, const ExportList::Entry& entry) {
    Source* const source = SourceFor(kind, entry.kind);
    if (source == nullptr) {
        return;
    }
    if (kind.HasID()) {
        source->statement.Bind(1, entry.id);
    }
    OpenTable(kind);
    while (source->statement.Step()) {
        WriteRecord(*source, kind);
        FlushBeyond(BufferSize);
    }
    source->statement.Reset();
}

/// The name of the table comes with the entry, and in the end from an audit row. So it is taken as one name and
/// not as a part of the statement.
sql::Statement ExportWriter::PrepareFenced(const ExportList::Kind& kind) {
    return fence_->Prepare(kind.IsDeletion() ? DeletionWithOrigin : kind.statement,
                           {kind.IsDeletion() ? "auditlog" : text::ToLowerCase(services::ExportView(kind.table)),
                            "dateadd", "getutcdate", "repairaudits",
                            "orders" /* by which an order's items are found */});
}

ExportWriter::Source* ExportWriter::SourceFor(const ExportList::Kind& kind, std::size_t index) {
    const auto [place, added] = sources_.try_emplace(index);
    std::optional<Source>& source = place->second;
    if (!added) {
        return source ? &*source : nullptr;
    }
    try {
        source.emplace(PrepareFenced(kind));
    } catch (const services::Failure& failure) {
        // What the fence or the database makes nothing of is the entry's fault; all else is the database's.
        const auto* const error = dynamic_cast<const sql::Error*>(&failure);
        if (error != nullptr && error->Kind() != sql::ErrorKind::Other) {
            throw;
        }
        passedOver_.push_back("The table '" + kind.table + "' was left out of an export: " + failure.what());
        return nullptr;
    }
    for (int i = 0; i < source->statement.ColumnCount(); ++i) {
        const std::string name = source->statement.ColumnName(i);
        if (name == "AuditID") {
            source->auditID = i;
        } else if (name == "AuditOrigin") {
            source->origin = i;
        } else if (name == "AuditOriginID") {
            source->originID = i;
        } else if (name == "AuditRepair") {
            source->repair = i;
        } else if (!text::EqualsWithoutCase(name, "ID")) {
            source->uniqueID = text::EqualsWithoutCase(name, "UniqueID") ? i : source->uniqueID;
            source->columns.push_back(i);
            source->elements.emplace_back(name);
        }
    }
    return &*source;
}

void ExportWriter::OpenTable(const ExportList::Kind& kind) {
    if (tableIsOpen_ && openTable_ == kind.table && openDeletion_ == kind.IsDeletion()) {
        return;
    }
    CloseTable();
    text_ += "<Table Name=\"";
    AppendXmlText(text_, kind.table);
    text_ += kind.IsDeletion() ? "\" Deleted=\"1\">\n" : "\">\n";
    openTable_ = kind.table;
    openDeletion_ = kind.IsDeletion();
    tableIsOpen_ = true;
}

void ExportWriter::CloseTable() {
    if (tableIsOpen_) {
        text_ += "</Table>\n";
        tableIsOpen_ = false;
    }
}

void ExportWriter::WriteRecord(const Source& source, const ExportList::Kind& kind) {
    const sql::Statement& row = source.statement;
    text_ += "<Record";
    if (origin_ == ExportOrigin::Tell && source.auditID >= 0) {
        const bool own = row.IsNull(source.origin);
        AppendOrigin(own ? std::string_view(own_) : row.Text(source.origin),
                     row.Integer(own ? source.auditID : source.originID), row.Integer(source.repair) != 0);
    } else if (origin_ == ExportOrigin::Tell && kind.HasID() && source.uniqueID >= 0) {
        AppendNewestOrigin(kind.table, row.Text(source.uniqueID));
    }
    text_ += '>';
    for (std::size_t i = 0; i < source.columns.size(); ++i) {
        AppendValue(text_, source.elements[i], row, source.columns[i], spill_);
    }
    text_ += "</Record>\n";
    ++records_;
}

void ExportWriter::AppendNewestOrigin(const std::string& table, std::string_view uniqueID) {
    newestAudit_.Bind(1, table);
    newestAudit_.Bind(2, uniqueID);
    if (newestAudit_.Step()) {
        const bool own = newestAudit_.IsNull(1);
        AppendOrigin(own ? std::string_view(own_) : newestAudit_.Text(1), newestAudit_.Integer(own ? 0 : 2),
                     newestAudit_.Integer(3) != 0);
    }
    newestAudit_.Reset();
}

void ExportWriter::AppendOrigin(std::string_view origin, std::int64_t id, bool isRepair) {
    text_ += " Origin=\"";
    AppendXmlText(text_, origin);
    text_ += "\" OriginID=\"";
    text_ += std::to_string(id);
    text_ += isRepair ? "\" Repair=\"1\"" : "\"";
}

void ExportWriter::FlushBeyond(std::size_t size) {
    if (text_.size() > size) {
        file_.Write(text_);
        text_.clear();
    }
}

} // namespace qndr::suite
