#include "suite/engine/export_writer.h"

#include "services/failure.h"
#include "suite/engine/sent_ranges.h"
#include "suite/files/ascii_case.h"

#include <charconv>

namespace qndr::suite {

namespace {

constexpr std::size_t BufferSize = 256 * 1024;

/// How the statements of audited changes end; the ID of the row or of the audit row follows.
constexpr std::string_view SingleRowEnd = " WHERE ID = ";

/// For the audit row of a deletion: what the entry's own statement does not show.
constexpr std::string_view DeletionShape =
    "SELECT AddedOn AS DeletedOn, AuditUniqueID AS UniqueID FROM AuditLog WHERE ID = ?1";
constexpr std::string_view DeletionWithOrigin =
    "SELECT AddedOn AS DeletedOn, AuditUniqueID AS UniqueID, ID AS AuditID, Origin AS AuditOrigin, "
    "OriginID AS AuditOriginID FROM AuditLog WHERE ID = ?1";

struct SingleRow {
    std::string shape;
    std::int64_t id = 0;
};

/// The statement without its number when it asks for one row by its ID.
std::optional<SingleRow> AsSingleRow(const std::string& statement) {
    const std::size_t at = statement.rfind(SingleRowEnd);
    if (at == std::string::npos) {
        return std::nullopt;
    }
    SingleRow row;
    const char* const begin = statement.data() + at + SingleRowEnd.size();
    const char* const end = statement.data() + statement.size();
    const auto [stop, error] = std::from_chars(begin, end, row.id);
    if (error != std::errc() || stop != end) {
        return std::nullopt;
    }
    row.shape = statement.substr(0, at + SingleRowEnd.size()) + "?1";
    return row;
}

} // namespace

ExportWriter::ExportWriter(const SqliteConnection& connection, ExportFile& file, ExportOrigin origin)
    : connection_(connection), file_(file), origin_(origin),
      own_(connection.Value("SELECT UniqueID FROM Company").value_or("")),
      newestAudit_(connection.Prepare("SELECT ID, Origin, OriginID FROM AuditLog WHERE TableName = ?1 "
                                      "AND AuditUniqueID = ?2 ORDER BY ID DESC LIMIT 1")) {
}

void ExportWriter::WriteAll(const std::vector<ExportEntry>& entries) {
    text_.reserve(BufferSize * 2);
    text_ += "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<Exchange Version=\"1\" From=\"";
    AppendXmlText(text_, own_);
    text_ += "\" CreatedOn=\"";
    AppendXmlText(text_, connection_.Value("SELECT GETUTCDATE()").value_or(""));
    if (const std::string seen = AcceptedFiles(connection_); origin_ == ExportOrigin::Tell && !seen.empty()) {
        text_ += "\" Seen=\"";
        AppendXmlText(text_, seen);
    }
    text_ += "\">\n";
    for (const ExportEntry& entry : entries) {
        Write(entry);
    }
    CloseTable();
    text_ += "</Exchange>\n";
    FlushBeyond(0);
}

void ExportWriter::Write(const ExportEntry& entry) {
    const std::optional<SingleRow> single = AsSingleRow(entry.statement);
    Source* const source = SourceFor(entry, single ? single->shape : entry.statement);
    if (source == nullptr) {
        return;
    }
    if (single) {
        source->statement.Bind(1, single->id);
    }
    OpenTable(entry);
    while (source->statement.Step()) {
        WriteRecord(*source, entry, single.has_value());
        FlushBeyond(BufferSize);
    }
    source->statement.Reset();
}

ExportWriter::Source* ExportWriter::SourceFor(const ExportEntry& entry, const std::string& shape) {
    const auto [place, added] = sources_.try_emplace(shape);
    std::optional<Source>& source = place->second;
    if (!added) {
        return source ? &*source : nullptr;
    }
    try {
        source.emplace(connection_.Prepare(shape == DeletionShape ? DeletionWithOrigin : shape));
    } catch (const services::Failure& failure) {
        const int error = sqlite3_errcode(connection_.Handle());
        if (error != SQLITE_ERROR && error != SQLITE_OK) {
            throw;
        }
        passedOver_.push_back("The table '" + entry.table + "' was left out of an export: " + failure.what());
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
        } else if (!EqualsWithoutCase(name, "ID")) {
            source->uniqueID = EqualsWithoutCase(name, "UniqueID") ? i : source->uniqueID;
            source->columns.push_back(i);
            source->elements.emplace_back(name);
        }
    }
    return &*source;
}

void ExportWriter::OpenTable(const ExportEntry& entry) {
    if (tableIsOpen_ && openTable_ == entry.table && openDeletion_ == entry.deletion) {
        return;
    }
    CloseTable();
    text_ += "<Table Name=\"";
    AppendXmlText(text_, entry.table);
    text_ += entry.deletion ? "\" Deleted=\"1\">\n" : "\">\n";
    openTable_ = entry.table;
    openDeletion_ = entry.deletion;
    tableIsOpen_ = true;
}

void ExportWriter::CloseTable() {
    if (tableIsOpen_) {
        text_ += "</Table>\n";
        tableIsOpen_ = false;
    }
}

void ExportWriter::WriteRecord(const Source& source, const ExportEntry& entry, bool single) {
    const SqliteStatement& row = source.statement;
    text_ += "<Record";
    if (origin_ == ExportOrigin::Tell && source.auditID >= 0) {
        const bool own = row.IsNull(source.origin);
        AppendOrigin(own ? std::string_view(own_) : row.Text(source.origin),
                     row.Integer(own ? source.auditID : source.originID));
    } else if (origin_ == ExportOrigin::Tell && single && source.uniqueID >= 0) {
        AppendNewestOrigin(entry.table, row.Text(source.uniqueID));
    }
    text_ += '>';
    for (std::size_t i = 0; i < source.columns.size(); ++i) {
        source.elements[i].AppendColumn(text_, row.Handle(), source.columns[i]);
    }
    text_ += "</Record>\n";
    ++records_;
}

void ExportWriter::AppendNewestOrigin(const std::string& table, std::string_view uniqueID) {
    newestAudit_.Bind(1, table);
    newestAudit_.Bind(2, uniqueID);
    if (newestAudit_.Step()) {
        const bool own = newestAudit_.IsNull(1);
        AppendOrigin(own ? std::string_view(own_) : newestAudit_.Text(1), newestAudit_.Integer(own ? 0 : 2));
    }
    newestAudit_.Reset();
}

void ExportWriter::AppendOrigin(std::string_view origin, std::int64_t id) {
    text_ += " Origin=\"";
    AppendXmlText(text_, origin);
    text_ += "\" OriginID=\"";
    text_ += std::to_string(id);
    text_ += '"';
}

void ExportWriter::FlushBeyond(std::size_t size) {
    if (text_.size() > size) {
        file_.Write(text_);
        text_.clear();
    }
}

} // namespace qndr::suite
