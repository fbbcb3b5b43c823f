#pragma once

#include "desk/journal/Journal.h"
#include "desk/paper/PaperRecords.h"

namespace desk {

/// Writes a broker event to the journal as kind `order` or `fill`. Used as the listener of a CPaperBroker.
/// Returns false if the journal refuses it; the broker then keeps the event. Any thread.
///
/// Keys of `order`: event, command (journal number of the command, or null), order, task, account, stock,
/// operation_type, price_type, price (null if the order has no limit), volume, status, filled, filled_amount,
/// reason. Keys of `fill`: event, command, fill, order, task, account, stock, operation_type, price, volume.
bool journalBrokerEvent(CJournal& journal, const CBrokerEvent& event);

} // namespace desk
