#pragma once

#include "orderservice/records/Instrument.h"
#include "orderservice/records/OrderParam.h"

#include <QVector>

#include <cstdint>

namespace TC {

/// The number without its fraction, or kUnsetInt if the result does not fit an int.
int truncateToInt(double value);

/// The rule for every price, amount and limit from an order, a strategy, a quote or another answer of the
/// host: "nan" and "inf" are treated as not set, so that neither reaches a calculation or the host. An
/// infinite price of an order is still refused, although it differs from the not-set value: no order can be
/// filled at it.
double finiteOrUnset(double value);

/// Whether the instrument is traded on the star market, which has its own trading units.
bool isStarMarket(const CStockInfo& stock);

/// The number of shares in one trading unit. It is 1 for an unknown instrument.
int tradingUnit(const CStockInfo& stock);

/// Divides an amount of money, in currency units, over the rows by weight. Writes to each row the volume that
/// its part buys at the latest price, in whole units. A row keeps its volume if it has no price above zero or
/// if the new volume does not fit an int. All rows keep their volumes if the sum of the weights is not
/// finite. A weight or an amount below zero gives a volume below zero, which the basket check refuses.
/// Reports nothing and does not wait.
void calcVolumnByWeight(QVector<COrderSingleParam>& rows, double amount);

} // namespace TC
