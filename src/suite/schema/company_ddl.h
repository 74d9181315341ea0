#pragma once

#include "suite/schema/company_schema.h"

#include <string>

namespace qndr::suite {

/// The columns of a table's export view but ID, as a list for a statement: UniqueID first, then all that are not
/// local.
std::string ExchangedColumnList(const Table& table);

/// What one audited table needs in SQLite: the table, its indexes, its export view and its audit triggers.
std::string AuditedTableScript(const Table& table);

/// The view of the rows whose number is this company's own to queue. `numberColumn` holds the number.
std::string NumberSyncViewScript(const Table& table, std::string_view numberColumn);

} // namespace qndr::suite
