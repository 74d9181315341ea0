#pragma once

#include "programs/qndr5ctl/opened_company.h"
#include "programs/qndr5ctl/order_backup.h"

namespace qndr::control {

/// What a restore wrote.
struct RestoreResult {
    enum class Order { Unchanged, Changed, MadeAnew };

    Order order = Order::Unchanged;
    int itemsChanged = 0;
    int itemsMadeAnew = 0;
    int itemsRemoved = 0;

    bool ChangedNothing() const {
        return order == Order::Unchanged && itemsChanged + itemsMadeAnew + itemsRemoved == 0;
    }
};

/// Makes the order and its items what the backup holds, as one transaction of the company's own audited changes,
/// so that it travels as if it had been typed in. Items of the order that the backup does not hold are deleted.
/// Raises services::Failure, with nothing changed, when the database refuses a row or a change would not travel.
RestoreResult RestoreOrder(const OpenedCompany& company, const OrderBackup& backup);

} // namespace qndr::control
