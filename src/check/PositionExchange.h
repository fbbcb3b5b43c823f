#pragma once

#include "orderservice/records/Account.h"
#include "orderservice/records/OrderParam.h"

#include <QVector>

namespace TC {

/// The held volume of one instrument.
struct CHeldVolume {
    QString m_strCode;
    int m_nVolume = 0; ///< shares, at least 1
};

/// Returns the orders that change the held volumes to the targets. First come the held instruments in their
/// order: each is sold or bought until its target times the multiplier is reached. A held instrument without
/// a target is sold completely. Then come the targets of instruments that are not held, sorted by code; these
/// are bought. If the volume of an order does not fit an int, it is kUnsetInt. A target that is not set is
/// treated as the number 0x7fffffff, so the caller must remove such targets beforehand. Pure.
QVector<COrderSingleParam> positionDifferences(const QVector<CHeldVolume>& held,
                                               QVector<COrderSingleParam> targets, int multiplier);

/// Replaces target volumes by the orders that change the account's stock positions to them. If the host has
/// no data of the account, the rows do not change. Locks the account's data during the call.
void exchangePosition(const CAccountInfoPtr& account, QVector<COrderSingleParam>& rows, int multiplier);

} // namespace TC
