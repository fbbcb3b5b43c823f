#pragma once

#include "records/OrderParam.h"
#include "records/StrategyParam.h"

namespace TC {

/// The order's own order kind, or the strategy's where the order has none; may be unset.
inline EOrderType chosenOrderType(const COrderParam& order, const COrderStrategyParam& strategy) {
    return isUnset(order.m_eOrderType) ? strategy.m_eOrderType : order.m_eOrderType;
}

} // namespace TC
