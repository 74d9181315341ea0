#include "suite/sql/sqlite/sqlite_error.h"

namespace qndr::sql {

ErrorKind KindOf(int result) {
    switch (result & 0xFF) {
    case SQLITE_BUSY:
    case SQLITE_LOCKED: // by a connection that shares this one's cache
    case SQLITE_PROTOCOL:
        return ErrorKind::Busy;
    case SQLITE_FULL:
        return ErrorKind::Full;
    case SQLITE_IOERR:
        return ErrorKind::Io;
    case SQLITE_NOMEM:
        return ErrorKind::NoMemory;
    case SQLITE_CANTOPEN:
        return ErrorKind::CannotOpen;
    case SQLITE_READONLY:
    case SQLITE_PERM:
        return ErrorKind::ReadOnly;
    case SQLITE_CORRUPT:
    case SQLITE_NOTADB:
        return ErrorKind::Corrupt;
    case SQLITE_INTERRUPT:
        return ErrorKind::Interrupted;
    case SQLITE_CONSTRAINT:
    case SQLITE_MISMATCH:
    case SQLITE_TOOBIG:
        return ErrorKind::Constraint;
    default:
        return ErrorKind::Other;
    }
}

Error LastErrorOf(sqlite3* connection) {
    return {KindOf(sqlite3_errcode(connection)), sqlite3_errmsg(connection)};
}

} // namespace qndr::sql
