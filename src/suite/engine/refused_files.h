#pragma once

#include "suite/sql/connection.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace qndr::suite {

// A file that counts as taken although its data are not in: it was damaged, and it will not come again. Its
// receiver says so in each file that it makes; so the sender knows what is missing there until a reset begins a
// new numbering.

/// So many refused files of one company are told. A company that has refused more does not count those behind as
/// accepted (AcceptedFiles), which is all that can be said of a pairing that is so far out of step.
inline constexpr int MostRefusedFilesTold = 8;

/// The files that this company has refused, as "UniqueID:number" with blanks between; the UniqueID is their
/// sender's. Number -1 is the full data that a numbering began with.
std::string RefusedFiles(const sql::Connection& connection);

/// Notes what `receiver` (SentRanges.Receiver) says of this company's files in a text of RefusedFiles, and enters
/// an event for each that was not known. Of a number that was not sent, or was confirmed before, nothing is
/// believed. To be called before CoveredBy forgets what those files covered; a caller has a transaction.
void NoteNotTakenFiles(const sql::Connection& connection, std::string_view receiver, std::string_view refused,
                       std::string_view ownUniqueID);

/// The audit rows of the files that the receiver could not take in.
class NotTakenFiles {
  public:
    NotTakenFiles(const sql::Connection& connection, std::string_view receiver);

    bool Empty() const { return ranges_.empty(); }
    bool Hold(std::int64_t auditID) const;

  private:
    struct Range {
        std::int64_t from; ///< excluded
        std::int64_t to;   ///< included
    };
    std::vector<Range> ranges_;
};

} // namespace qndr::suite
