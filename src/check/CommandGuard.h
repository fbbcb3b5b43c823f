#pragma once

#include "records/CommandParam.h"

#include <QString>

#include <optional>
#include <vector>

namespace TC {

/// The last look at a command before it leaves the library. Off unless the deployment switch
/// kCommandGuardSwitch is on, which is read for each command. The checks let some orders pass that no
/// trading layer can trade: an instrument that the host lists but cannot describe, a strategy whose code
/// lacks its market, an order without any code at a price of its own.
///
/// With the guard on, an order is refused whole, with one report, if one of its records lacks what it needs:
///  - a market and a code. Not needed by repayments of money, and by the end of a single contract (37, 38) if
///    the order names the contract;
///  - at the specified price type a price: set, finite and not zero. Not needed by what is no trade:
///    repayments of money, shares given back (30), the end of a contract (37, 38), options exercised (54, 55,
///    100), shares locked and unlocked (56, 57). All other price types take their price from quotes, market
///    prices have none, and the record's price is not looked at;
///  - a volume of at least 1, and one that is set. A repayment of money needs an amount above zero instead:
///    its volume is the whole part of it.
/// A sale of all positions (26 with `all`) has records of volume 0 for what cannot be sold today. Those are
/// left out, with a report each, and the rest goes out. If all are left out, nothing goes out.
///
/// A command without records passes: the share-transfer market has no others, and a basket or a repayment of
/// which nothing is left has none either. A target position without a volume, or with one that no order
/// can hold, is left out of its basket.
bool isCommandGuardOn();

/// What the record lacks, in the words of the report; nothing if it may go out. Pure but for the host's
/// isDirectRepay.
std::optional<QString> missingOf(const CCodeOrderParam& record, const COrderParam& order);

/// Takes out of a sale of all the records that have no volume, and reports them. False if none is left: then
/// there is nothing to trade, and one report says so. All other orders keep their records. To be called
/// before an algorithm's text is made, since that text refers to the records by their place.
bool leaveOutUnsellable(std::vector<CCodeOrderParam>& records, const COrderParam& order);

/// Whether the order's command may go out. Reports the first record that lacks something, as a failed check.
bool passesCommandGuard(const COrderComandParam& command, const COrderParam& order);

} // namespace TC
