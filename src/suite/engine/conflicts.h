#pragma once

#include "suite/company/row_editing.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace qndr::suite {

/// ImportConflicts.State. Stored: never change.
enum class ConflictState : std::int64_t { Open = 0, Restored = 1, Dismissed = 2 };

/// A version of a row that lost against a different one and was kept. Both versions' companies are told by their
/// UniqueIDs.
struct Conflict {
    std::int64_t id = 0;
    const Table* table = nullptr;
    std::string uniqueID;
    std::string occurredOn; ///< UTC, as it is stored
    std::string losingOrigin;
    std::string winningOrigin;
    ConflictState state = ConflictState::Open;
    /// The losing version's values; nothing when it is a deletion.
    std::optional<std::vector<ColumnValue>> losing;
};

/// Raises services::Failure when there is no such conflict, and when its table is unknown or its values are not
/// readable; columns that the table no longer has are passed over.
Conflict ReadConflict(const SqliteConnection& connection, std::int64_t id);

enum class Restoration { Updated, Inserted, Deleted, NothingToDo };

/// Makes the losing version the row's present one, as a new change of this company, and marks the conflict; both
/// or, with a services::Failure, neither. A conflict that was restored or dismissed can be restored again.
Restoration RestoreConflict(const SqliteConnection& connection, std::int64_t id);

/// Marks a conflict as settled without its losing version. Raises services::Failure when there is none of this
/// number or it was restored.
void DismissConflict(const SqliteConnection& connection, std::int64_t id);

} // namespace qndr::suite
