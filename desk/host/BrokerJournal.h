#pragma once

#include "desk/journal/Journal.h"
#include "desk/paper/PaperRecords.h"

#include <cstddef>
#include <vector>

namespace desk {

/// Writes broker events to the journal as kind `order` or `fill`, with one write. Used as the listener of a
/// CPaperBroker. Returns how many of them, from the first, the journal has taken; the broker keeps the
/// others. Any thread.
///
/// Keys of `order`: event, command (journal number of the command, or null), order, task, account, stock,
/// operation_type, price_type, price (null if the order has no limit), volume, status, filled, filled_amount,
/// reason. Keys of `fill`: event, command, fill, order, task, account, stock, operation_type, price, volume.
std::size_t journalBrokerEvents(CJournal& journal, const std::vector<CBrokerEvent>& events);

} // namespace desk
