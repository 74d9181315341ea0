#pragma once

#include "programs/qndr5ctl/control_context.h"
#include "suite/admin/row_editing.h"

#include <optional>
#include <string>
#include <vector>

namespace qndr::control {

/// What the name of an order backup tells: "ODR<order>~<token>~<stamp>.zip".
struct BackupName {
    std::string order;
    Date savedOn; ///< UTC
};

/// Nothing for the name of any other file. `baseName` is without the extension.
std::optional<BackupName> ParseBackupName(const std::string& baseName);

/// The order of a backup archive, with the columns that the archive holds.
struct OrderBackup {
    suite::Row order;
    std::vector<suite::Row> items;
};

/// Raises services::Failure when the archive is no order backup, is damaged, or holds anything but one order and
/// its items.
OrderBackup ReadOrderBackup(const ControlContext& context, const std::string& archive);

} // namespace qndr::control
