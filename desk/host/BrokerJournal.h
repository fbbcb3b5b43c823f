#pragma once

#include "desk/journal/Journal.h"
#include "desk/paper/PaperRecords.h"

namespace desk {

/// Writes a broker event to the journal as kind `order` or `fill`. False where the journal refuses it: the
/// broker keeps it. The listener of a CPaperBroker. Any thread.
///
/// Keys of `order`: event, command (journal number of the command; null: none), order, task, account, stock,
/// operation_type, price_type, price (null: it has no limit), volume, status, filled, filled_amount, reason.
/// Keys of `fill`: event, command, fill, order, task, account, stock, operation_type, price, volume.
bool journalBrokerEvent(CJournal& journal, const CBrokerEvent& event);

} // namespace desk
