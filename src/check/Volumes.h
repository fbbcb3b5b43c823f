#pragma once

#include "records/Instrument.h"
#include "records/OrderParam.h"

#include <QVector>

#include <cstdint>

namespace TC {

/// The number without its fraction, or kUnsetInt where that is no int.
int truncateToInt(double value);

/// The rule for every price, amount and limit that comes in, from an order, a strategy, a quote or any other
/// answer of the host: "nan" and "inf" mean nothing and are as if not given. So neither reaches a calculation
/// or the host. An infinite price of an order is refused although it differs from the not-set value: no order
/// can be filled at it.
double finiteOrUnset(double value);

/// Whether the star market trades the instrument, which has units of its own.
bool isStarMarket(const CStockInfo& stock);

/// Shares are bought in whole units of the instrument; an unknown instrument has a unit of one share.
int tradingUnit(const CStockInfo& stock);

/// Shares an amount of money, in currency units, out over the rows by weight, and writes the volume that each
/// share buys at the latest price, in whole units. A row keeps its volume if it has no price above zero or
/// if its share is no int. So do all rows if the sum of the weights is not finite. A weight or an amount
/// below zero gives a volume below zero, which the basket check refuses. Reports nothing; waits for nothing.
void calcVolumnByWeight(QVector<COrderSingleParam>& rows, double amount);

} // namespace TC
