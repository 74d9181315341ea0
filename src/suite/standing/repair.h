#pragma once

#include "standing/digests.h"
#include "suite/sql/connection.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace qndr::suite {

// Rows that a proof has shown to differ. They are entered in the audit log once more, and so travel by the
// ordinary road; what they overwrite is kept at the other end. All raise services::Failure when the database does
// not work.

/// So often in a row one row is repaired; then a person has to look.
inline constexpr std::int64_t MostRepairs = 3;

/// What main does about the rows that a workstation has listed.
struct RepairWork {
    std::vector<std::string> sent;        ///< the rows that are sent again, as "<table> <UniqueID>"
    std::vector<standing::RowList> asked; ///< what the workstation is to send again; a zero digest: main lacks it
    std::int64_t stubborn = 0;            ///< rows that differ once more after as many repairs as there may be

    bool Empty() const { return sent.empty() && asked.empty() && stubborn == 0; }
};

/// Holds the lists against main's rows and enters what is to be sent again, as one transaction. What main has
/// changed since `place`, the AuditLog.ID of the proof, is left alone: it was compared with another moment.
RepairWork RepairListedRows(const sql::Connection& connection, std::string_view workstation, std::int64_t place,
                            const std::vector<standing::RowList>& lists);

/// The workstation holds the same as main: no row of it is counted as repaired any more.
void ForgetRepairs(const sql::Connection& connection, std::string_view workstation);

/// On a workstation: enters its versions of the rows once more, as one transaction, unless they are on their way
/// to main anyhow. `sent` is its AuditLog.ID up to which its changes were sent. How many these were.
std::int64_t SendRowsAgain(const sql::Connection& connection, std::int64_t sent,
                           const std::vector<standing::RowList>& asked);

} // namespace qndr::suite
