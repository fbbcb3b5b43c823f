#pragma once

#include "records/Instrument.h"
#include "records/OrderParam.h"

#include <QVector>

#include <cstdint>

namespace TC {

/// The number without its fraction, or kUnsetInt where that is no int.
int truncateToInt(double value);

/// A number that came with an order: files may say "nan" or "inf", which mean nothing here and are as if not
/// given.
double finiteOrUnset(double value);

/// Whether the star market trades the instrument, which has units of its own.
bool isStarMarket(const CStockInfo& stock);

/// Shares are bought in whole units of the instrument; an unknown instrument has a unit of one share.
int tradingUnit(const CStockInfo& stock);

/// Shares an amount of money, in currency units, out over the rows by weight, and writes the volume that each
/// share buys at the latest price, in whole units. A row that cannot be priced, or whose share is
/// no number of shares, keeps its volume. Reports nothing; waits for nothing.
void calcVolumnByWeight(QVector<COrderSingleParam>& rows, double amount);

} // namespace TC
