#pragma once

#include "suite/sql/connection.h"

#include <string_view>

namespace qndr::suite {

/// Spares an import that is not audited the audit triggers, which would find out for each row anew that there is
/// nothing to do. Triggers of any other purpose run: the first table that has one turns all triggers on again.
class AuditSwitch {
  public:
    /// With `audited` everything stays as it is.
    AuditSwitch(const sql::Connection& connection, bool audited);
    ~AuditSwitch();
    AuditSwitch(const AuditSwitch&) = delete;
    AuditSwitch& operator=(const AuditSwitch&) = delete;

    /// To be called before the first write to the table.
    void Prepare(std::string_view table);

  private:
    void Turn(bool on);

    const sql::Connection& connection_;
    bool off_ = false;
};

} // namespace qndr::suite
