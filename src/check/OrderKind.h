#pragma once

#include "orderservice/records/OrderParam.h"
#include "orderservice/records/StrategyParam.h"

namespace TC {

/// The kind of the order; if the order has none, the strategy's kind. May be not set.
inline EOrderType chosenOrderType(const COrderParam& order, const COrderStrategyParam& strategy) {
    return isUnset(order.m_eOrderType) ? strategy.m_eOrderType : order.m_eOrderType;
}

} // namespace TC
