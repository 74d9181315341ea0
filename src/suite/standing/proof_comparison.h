#pragma once

#include "standing/digests.h"
#include "suite/sql/connection.h"

#include <cstdint>
#include <vector>

namespace qndr::suite {

/// What a workstation finds when it holds its rows against main's proof.
struct ProofComparison {
    bool alike = false; ///< every bucket that could be compared is, and none had to be left out
    /// The rows of the buckets that differ, and of the tables of which full data carries only a part all rows: of
    /// those main alone can say whether they are right.
    std::vector<standing::RowList> lists;
};

/// `confirmed` is the workstation's AuditLog.ID up to which main had its changes when the proof was made; what was
/// changed since cannot be compared. Reads in one transaction of its own. Raises services::Failure when the
/// database does not work.
ProofComparison CompareWithProof(const sql::Connection& connection,
                                 const std::vector<standing::TableDigests>& proof, std::int64_t confirmed);

} // namespace qndr::suite
