#include "suite/engine/refused_files.h"

#include "suite/schema/company_events.h"
#include "text/letter_case.h"

#include <algorithm>
#include <charconv>

namespace qndr::suite {

namespace {

/// SentRanges tells what the file of this number held.
constexpr std::string_view NoteFile =
    "INSERT OR IGNORE INTO NotTakenFiles (Receiver, Sequence, FromID, ToID, ToldOn) "
    "SELECT ?1, ?2, Lower, Upper, GETUTCDATE() FROM (SELECT "
    "CASE ?2 WHEN -1 THEN 0 ELSE (SELECT LastAuditID FROM SentRanges WHERE Receiver = ?1 AND NextSequence <= ?2 "
    "ORDER BY NextSequence DESC LIMIT 1) END AS Lower, "
    "(SELECT LastAuditID FROM SentRanges WHERE Receiver = ?1 AND NextSequence > ?2 "
    "ORDER BY NextSequence LIMIT 1) AS Upper) WHERE Lower IS NOT NULL AND Upper IS NOT NULL";

constexpr std::string_view TellFile =
    "INSERT INTO CompanyEvents (OccurredOn, EventText, EventNumber) SELECT GETUTCDATE(), "
    "CASE WHEN ?2 < 0 THEN 'The full data' ELSE 'The file ' || ?2 END || ' for ' || ifnull((SELECT "
    "ifnull(nullif(Name, ''), UniqueID) FROM RoamingWorkstations WHERE UniqueID = ?1), 'main') || "
    "' could not be imported there.', ?3";

void NoteNotTaken(const sql::Connection& connection, std::string_view receiver, std::int64_t sequence) {
    sql::Statement note = connection.Prepare(NoteFile);
    note.Bind(1, receiver);
    note.Bind(2, sequence);
    note.Step();
    if (note.ChangedRows() == 0) {
        return;
    }
    sql::Statement tell = connection.Prepare(TellFile);
    tell.Bind(1, receiver);
    tell.Bind(2, sequence);
    tell.Bind(3, std::int64_t{FileRefusedEvent});
    tell.Step();
}

} // namespace

std::string RefusedFiles(const sql::Connection& connection) {
    return connection
        .Value("SELECT group_concat(ifnull(nullif(Sender, ''), (SELECT MainUniqueID FROM Company)) || ':' || "
               "Sequence, ' ') FROM RefusedFiles WHERE (SELECT COUNT(*) FROM RefusedFiles AS Earlier WHERE "
               "Earlier.Sender = RefusedFiles.Sender AND Earlier.Sequence < RefusedFiles.Sequence) < " +
               std::to_string(MostRefusedFilesTold))
        .value_or("");
}

void NoteNotTakenFiles(const sql::Connection& connection, std::string_view receiver, std::string_view refused,
                       std::string_view ownUniqueID) {
    int told = 0;
    while (!refused.empty() && told < MostRefusedFilesTold) {
        const std::string_view entry = refused.substr(0, refused.find(' '));
        refused.remove_prefix(std::min(refused.size(), entry.size() + 1));
        const std::size_t colon = entry.rfind(':');
        std::int64_t sequence = 0;
        if (colon == std::string_view::npos || !text::EqualsWithoutCase(entry.substr(0, colon), ownUniqueID)) {
            continue;
        }
        const char* const end = entry.data() + entry.size();
        const auto [stop, error] = std::from_chars(entry.data() + colon + 1, end, sequence);
        if (error == std::errc() && stop == end && sequence >= -1) {
            NoteNotTaken(connection, receiver, sequence);
            ++told;
        }
    }
}

NotTakenFiles::NotTakenFiles(const sql::Connection& connection, std::string_view receiver) {
    sql::Statement ranges = connection.Prepare("SELECT FromID, ToID FROM NotTakenFiles WHERE Receiver = ?1");
    ranges.Bind(1, receiver);
    while (ranges.Step()) {
        ranges_.push_back({ranges.Integer(0), ranges.Integer(1)});
    }
}

bool NotTakenFiles::Hold(std::int64_t auditID) const {
    return std::any_of(ranges_.begin(), ranges_.end(),
                       [&](const Range& range) { return range.from < auditID && auditID <= range.to; });
}

} // namespace qndr::suite
