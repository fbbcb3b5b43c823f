#pragma once

#include "orderservice/check/CommandSource.h"
#include "orderservice/records/CommandParam.h"

#include <QString>

#include <optional>
#include <vector>

namespace TC {

/// The last check of a command before it leaves the library. It is off unless the deployment switch
/// kCommandGuardSwitch is on, which is read for each command. It is needed because the other checks accept
/// some orders that no trading layer can trade: an instrument that the host lists but cannot describe, a
/// strategy whose code has no market, or an order without a code at a specified price.
///
/// If the guard is on, a whole order is refused with one report if one of its records lacks a required value:
///  - A market and a code. Not required for repayments of money, nor for the end of a single contract (37,
///    38) if the order names the contract.
///  - At the specified price type, a price that is set, finite and not zero. Not required for orders that are
///    not trades: repayments of money, returned shares (30), the end of a contract (37, 38), exercised
///    options (54, 55, 100), and locked or unlocked shares (56, 57). Other price types take the price from
///    quotes or are market prices, so the record's price is not checked.
///  - A volume that is set and at least 1. A repayment of money instead requires an amount above zero,
///    because its volume is only the whole part of the amount.
///
/// A sale of all positions (26 with `all`) has records of volume 0 for positions that cannot be sold today.
/// These records are left out with one report each, and the others are sent. If all records are left out,
/// nothing is sent.
///
/// Order numbers are turned into properties by sourceOf (check/CommandSource.h); the guard reads only those.
///
/// A command without records is accepted: the share-transfer market has only such commands, and a basket or a
/// repayment can end with no records. In a basket by target position, targets without a volume, or with a
/// volume that no order can hold, are left out.
bool isCommandGuardOn();

/// Returns the missing value of the record, as text for the report; nothing if the record may be sent. Pure,
/// except that it calls the host's isDirectRepay.
std::optional<QString> missingOf(const CCodeOrderParam& record, const CCommandSource& source);

/// If the source is a sale of all positions: removes the records that have no volume, and reports each of
/// them if the others can be sent. If no record is left, it reports once that there is nothing to trade, and
/// returns false. For other sources it changes nothing and returns true. Call it before the text of an
/// algorithm is made, because that text refers to the records by their index.
bool leaveOutUnsellable(std::vector<CCodeOrderParam>& records, const CCommandSource& source);

/// Whether the command may be sent. If not, reports the first record that lacks a value as a failed
/// check.
bool passesCommandGuard(const COrderComandParam& command, const CCommandSource& source);

} // namespace TC
