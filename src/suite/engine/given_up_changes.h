#pragma once

#include "suite/engine/import_table.h"
#include "suite/sql/connection.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace qndr::suite {

// What a sync reset gives up on a workstation: changes that were not sent to main, and those that were sent
// without main having told that it took them, for main throws away the files of a workstation in reset. Before
// anything replaces them, their values go into ImportConflicts, where a person can get them back. A change is kept
// once, however often a reset is tried. All below raise services::Failure when the database does not work, and
// leave the transaction to their caller.

/// True on a workstation that waits for the full data of a reset.
bool IsResetPending(const sql::Connection& connection);

/// A row with a change that a reset gives up.
struct GivenUpChange {
    std::string table;
    std::string uniqueID;
    std::int64_t reason = 0; ///< as ImportConflicts.Reason
};
/// What would be given up if a reset came now, and what one that is under way gives up and has not put among the
/// conflicts yet. Each row once; none on a main company.
std::vector<GivenUpChange> FindChangesAtStake(const sql::Connection& connection);

/// To be called before a statement of the clearing: everything that main is not known to have is given up.
void KeepBeforeClearing(const sql::Connection& connection);

/// To be called behind a statement of the clearing, in the same transaction: what it left in the audit log is
/// nobody's change.
void PassOverAuditSoFar(const sql::Connection& connection);

/// To be called before the first write of an import: keeps what was noted and, while a reset is pending,
/// everything that main is not known to have.
void KeepBeforeImport(const sql::Connection& connection);

/// The kept versions that wait for a decision, while an import goes on.
class GivenUpVersions {
  public:
    explicit GivenUpVersions(const sql::Connection& connection);

    /// To be called for each version of main's that was taken: main has what is kept of this row when that is
    /// alike, and there is nothing to decide any more.
    void Settle(const Table& table, ImportTable& rows, std::string_view uniqueID);

    std::int64_t Open() const;

  private:
    const sql::Connection& connection_;
    /// Nothing when no version waits, as almost always: a full import then asks for none of its rows.
    std::optional<sql::Statement> isKept_;
};

} // namespace qndr::suite
