#include "suite/database/database_error.h"

namespace qndr::suite {

DatabaseErrorKind KindOf(int result) {
    switch (result & 0xFF) {
    case SQLITE_BUSY:
    case SQLITE_LOCKED: // by a connection that shares this one's cache
    case SQLITE_PROTOCOL:
        return DatabaseErrorKind::Busy;
    case SQLITE_FULL:
        return DatabaseErrorKind::Full;
    case SQLITE_IOERR:
        return DatabaseErrorKind::Io;
    case SQLITE_NOMEM:
        return DatabaseErrorKind::NoMemory;
    case SQLITE_CANTOPEN:
        return DatabaseErrorKind::CannotOpen;
    case SQLITE_READONLY:
    case SQLITE_PERM:
        return DatabaseErrorKind::ReadOnly;
    case SQLITE_CORRUPT:
    case SQLITE_NOTADB:
        return DatabaseErrorKind::Corrupt;
    case SQLITE_INTERRUPT:
        return DatabaseErrorKind::Interrupted;
    case SQLITE_CONSTRAINT:
        return DatabaseErrorKind::Constraint;
    default:
        return DatabaseErrorKind::Other;
    }
}

bool DatabaseError::IsOfThisComputer() const {
    switch (kind_) {
    case DatabaseErrorKind::Interrupted: // a statement that takes too long is no better on another day
    case DatabaseErrorKind::Constraint:
    case DatabaseErrorKind::Other:
        return false;
    default:
        return true;
    }
}

DatabaseError LastErrorOf(sqlite3* connection) {
    return {KindOf(sqlite3_errcode(connection)), sqlite3_errmsg(connection)};
}

} // namespace qndr::suite
