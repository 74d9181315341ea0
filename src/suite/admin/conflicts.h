#pragma once

#include "suite/admin/row_editing.h"
#include "suite/schema/vocabulary.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace qndr::suite {

/// A version of a row that lost against a different one, or was given up by a reset, and was kept. Both versions'
/// companies are told by their UniqueIDs.
struct Conflict {
    std::int64_t id = 0;
    const Table* table = nullptr;
    std::string uniqueID;
    std::string occurredOn; ///< UTC, as it is stored
    std::string losingOrigin;
    std::string winningOrigin;
    ConflictState state = ConflictState::Open;
    ConflictReason reason = ConflictReason::OtherVersion;
    /// The losing version's values; nothing when it is a deletion.
    std::optional<std::vector<ColumnValue>> losing;
};

/// Raises services::Failure when there is no such conflict, and when its table is unknown or its values are not
/// readable; columns that the table no longer has are passed over.
Conflict ReadConflict(const sql::Connection& connection, std::int64_t id);

enum class Restoration { Updated, Inserted, Deleted, SentAgain, NothingToDo };

/// Makes the losing version the row's present one, as a new change of this company, and marks the conflict; both
/// or, with a services::Failure, neither. A row that holds it already is left alone, but when a reset gave it up
/// it is sent again: main does not have it. A conflict that was restored or dismissed can be restored again.
Restoration RestoreConflict(const sql::Connection& connection, std::int64_t id);

/// The open conflicts that come from a reset.
struct GivenUpConflicts {
    /// Orders first, then their items, purchase orders and theirs; of one row the oldest version first, so that
    /// the newest stays.
    std::vector<std::int64_t> restorable;
    /// Those whose row was changed here since: its newer values would be lost.
    std::int64_t changedSince = 0;
};
GivenUpConflicts FindGivenUpConflicts(const sql::Connection& connection);

/// Marks a conflict as settled without its losing version. Raises services::Failure when there is none of this
/// number or it was restored.
void DismissConflict(const sql::Connection& connection, std::int64_t id);

} // namespace qndr::suite
