#pragma once

#include "records/Account.h"
#include "records/OrderParam.h"

#include <QVector>

namespace TC {

/// One instrument of a position, as the exchange compares it.
struct CHeldVolume {
    QString m_strCode;
    int m_nVolume = 0; ///< shares, at least 1
};

/// The orders that lead from what is held to the targets: what is held first, in its order, sold down or
/// bought up to its target times the multiplier, and behind it the targets that nothing is held of, bought,
/// by code. A row whose volume is no int has none: kUnsetInt. A target that is not set counts as its number,
/// 0x7fffffff: the caller must leave it out if it may have none. Pure.
QVector<COrderSingleParam> positionDifferences(const QVector<CHeldVolume>& held,
                                               QVector<COrderSingleParam> targets, int multiplier);

/// Rewrites target volumes into the orders that lead to them from the account's stock positions. An account
/// whose data is not there leaves the rows as they came. Holds the account's data still meanwhile.
void exchangePosition(const CAccountInfoPtr& account, QVector<COrderSingleParam>& rows, int multiplier);

} // namespace TC
