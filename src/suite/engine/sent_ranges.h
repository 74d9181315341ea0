#pragma once

#include "suite/sql/connection.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace qndr::suite {

/// How many change files of each company this one exchanges with it has accepted, as "UniqueID:number" with blanks
/// between: main for a workstation, all workstations for main. Empty for a company that exchanges with none. Those
/// of them that it could not take in stand in RefusedFiles; behind more of them than that tells, nothing is
/// accepted.
std::string AcceptedFiles(const sql::Connection& connection);

/// The number that a text of AcceptedFiles has for a company; nothing when it has none.
std::optional<std::int64_t> AcceptedFilesOf(std::string_view text, std::string_view uniqueID);

/// SentRanges.Receiver of a workstation's only receiver. Stored: never change.
inline constexpr std::string_view MainReceiver;

/// How many files to the receiver it has told to have accepted; nothing when that is not known.
std::optional<std::int64_t> ConfirmedFiles(const sql::Connection& connection, std::string_view receiver);

/// The highest AuditLog.ID of this company that the first `files` files to the receiver covered. When that is not
/// known (the counter of a file was not stored), that of fewer files, and 0 in the end: too low a bound keeps a
/// version too many, too high a one would lose values. What fewer files covered is forgotten; a caller has a
/// transaction.
std::int64_t CoveredBy(const sql::Connection& connection, std::string_view receiver, std::int64_t files);

/// Remembers the newest audit row of an export of whole tables as it stood in the export's transaction, in the
/// place of what was remembered; a transaction of its own.
void NoteSnapshot(const sql::Connection& connection, std::int64_t newestAuditID);

/// The audit rows that full data to a workstation has skipped. A row whose newest version is among them never got
/// there, unless the table's rows are all part of full data.
class SkippedRanges {
  public:
    /// All that were noted for the receiver by now.
    SkippedRanges(const sql::Connection& connection, std::string_view receiver);

    bool Empty() const { return ranges_.empty(); }
    bool Hides(std::string_view table, std::int64_t auditID) const;

  private:
    struct Range {
        std::int64_t from; ///< excluded
        std::int64_t to;   ///< included
    };
    std::vector<Range> ranges_;
};

} // namespace qndr::suite
