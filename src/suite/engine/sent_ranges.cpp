#include "suite/engine/sent_ranges.h"

#include "suite/engine/refused_files.h"
#include "suite/schema/company_schema.h"
#include "text/letter_case.h"

#include <algorithm>
#include <charconv>

namespace qndr::suite {

std::string AcceptedFiles(const sql::Connection& connection) {
    return connection
        .Value(
            "SELECT group_concat(UniqueID || ':' || ifnull((SELECT min(Files, Sequence) FROM RefusedFiles WHERE "
            "Sender = SenderKey ORDER BY Sequence LIMIT 1 OFFSET " +
            std::to_string(MostRefusedFilesTold) +
            "), Files), ' ') FROM (SELECT MainUniqueID AS UniqueID, '' AS SenderKey, NextSequenceFromMain AS "
            "Files "
            "FROM Company WHERE MainUniqueID <> '' "
            "UNION ALL SELECT UniqueID, UniqueID, NextSequenceFromRoaming FROM RoamingWorkstations)")
        .value_or("");
}

std::optional<std::int64_t> AcceptedFilesOf(std::string_view text, std::string_view uniqueID) {
    while (!text.empty()) {
        const std::string_view entry = text.substr(0, text.find(' '));
        text.remove_prefix(std::min(text.size(), entry.size() + 1));
        const std::size_t colon = entry.rfind(':');
        if (colon == std::string_view::npos || !text::EqualsWithoutCase(entry.substr(0, colon), uniqueID)) {
            continue;
        }
        std::int64_t files = 0;
        const char* const end = entry.data() + entry.size();
        const auto [stop, error] = std::from_chars(entry.data() + colon + 1, end, files);
        return error == std::errc() && stop == end ? std::optional(files) : std::nullopt;
    }
    return std::nullopt;
}

std::optional<std::int64_t> ConfirmedFiles(const sql::Connection& connection, std::string_view receiver) {
    // What it confirms makes CoveredBy forget the ranges below.
    sql::Statement oldest = connection.Prepare("SELECT MIN(NextSequence) FROM SentRanges WHERE Receiver = ?");
    oldest.Bind(1, receiver);
    return oldest.Step() && !oldest.IsNull(0) ? std::optional(oldest.Integer(0)) : std::nullopt;
}

std::int64_t CoveredBy(const sql::Connection& connection, std::string_view receiver, std::int64_t files) {
    sql::Statement range =
        connection.Prepare("SELECT NextSequence, LastAuditID FROM SentRanges WHERE Receiver = ?1 "
                           "AND NextSequence <= ?2 ORDER BY NextSequence DESC LIMIT 1");
    range.Bind(1, receiver);
    range.Bind(2, files);
    if (!range.Step()) {
        return 0;
    }
    const std::int64_t covered = range.Integer(1);
    sql::Statement forget = connection.Prepare("DELETE FROM SentRanges WHERE Receiver = ?1 AND NextSequence < ?2");
    forget.Bind(1, receiver);
    forget.Bind(2, range.Integer(0));
    forget.Step();
    return covered;
}

void NoteSnapshot(const sql::Connection& connection, std::int64_t newestAuditID) {
    sql::Transaction transaction(connection, sql::Transaction::Kind::Write);
    connection.Execute("DELETE FROM ExportSnapshot");
    sql::Statement note = connection.Prepare("INSERT INTO ExportSnapshot (AuditID) VALUES (?1)");
    note.Bind(1, newestAuditID);
    note.Step();
    transaction.Commit();
}

SkippedRanges::SkippedRanges(const sql::Connection& connection, std::string_view receiver) {
    sql::Statement ranges = connection.Prepare(
        "SELECT FromID, ifnull(ToID, 9223372036854775807) FROM SkippedRanges WHERE Receiver = ?");
    ranges.Bind(1, receiver);
    while (ranges.Step()) {
        ranges_.push_back({ranges.Integer(0), ranges.Integer(1)});
    }
}

bool SkippedRanges::Hides(std::string_view table, std::int64_t auditID) const {
    const bool lies = std::any_of(ranges_.begin(), ranges_.end(),
                                  [&](const Range& range) { return range.from < auditID && auditID <= range.to; });
    const Table* const known = lies ? FindAuditedTable(table) : nullptr;
    return known != nullptr && !IsWhollyExported(*known);
}

} // namespace qndr::suite
