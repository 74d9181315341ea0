#include "suite/engine/audit_switch.h"

#include <sqlite3.h>

namespace qndr::suite {

AuditSwitch::AuditSwitch(const SqliteConnection& connection, bool audited) : connection_(connection) {
    if (!audited) {
        Turn(false);
    }
}

AuditSwitch::~AuditSwitch() {
    if (off_) {
        Turn(true);
    }
}

void AuditSwitch::Prepare(std::string_view table) {
    if (!off_) {
        return;
    }
    SqliteStatement others = connection_.Prepare(
        "SELECT COUNT(*) FROM sqlite_schema WHERE type = 'trigger' AND tbl_name = ?1 COLLATE NOCASE AND "
        "name NOT IN ('auditInsert' || ?1, 'auditUpdate' || ?1, 'auditDelete' || ?1)");
    others.Bind(1, table);
    if (others.Step() && others.Integer(0) > 0) {
        others.Reset();
        // The database compiles all statements anew at each turn, so it is not turned table by table.
        Turn(true);
    }
}

void AuditSwitch::Turn(bool on) {
    sqlite3_db_config(connection_.Handle(), SQLITE_DBCONFIG_ENABLE_TRIGGER, on ? 1 : 0, nullptr);
    off_ = !on;
}

} // namespace qndr::suite
