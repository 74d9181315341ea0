#include "suite/engine/audit_switch.h"

#include "text/letter_case.h"

#include <algorithm>
#include <array>
#include <string>

namespace qndr::suite {

namespace {

/// Their names begin so and end with the table's.
constexpr std::array<std::string_view, 3> AuditTriggers{"auditInsert", "auditUpdate", "auditDelete"};

} // namespace

AuditSwitch::AuditSwitch(const sql::Connection& connection, bool audited) : connection_(connection) {
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
    const std::vector<std::string> triggers = connection_.TriggersOf(table);
    const bool hasOthers = std::any_of(triggers.begin(), triggers.end(), [&](const std::string& trigger) {
        return std::none_of(AuditTriggers.begin(), AuditTriggers.end(), [&](std::string_view audit) {
            return text::EqualsWithoutCase(trigger, std::string(audit).append(table));
        });
    });
    if (hasOthers) {
        // The database compiles all statements anew at each turn, so it is not turned table by table.
        Turn(true);
    }
}

void AuditSwitch::Turn(bool on) {
    connection_.TurnTriggers(on);
    off_ = !on;
}

} // namespace qndr::suite
