#include "orderservice/check/CommandSource.h"

#include "orderservice/records/OrderTypes.h"

namespace TC {
namespace {

/// Whether the order is a trade at a price. Orders that return, end, exercise or lock something are not.
bool isTrade(int orderType) {
    return orderType != kOrderReturnShares && !isExerciseOrder(orderType) && !isContractEndOrder(orderType) &&
           !isStockLockOrder(orderType);
}

} // namespace

CCommandSource sourceOf(const COrderParam& order) {
    CCommandSource source;
    source.m_eStrategyType = order.m_eStrategyType;
    source.m_nChannel = order.m_nChannel;
    source.m_nShownOrder = order.m_nOrderType;
    source.m_bNeedsPrice = isTrade(order.m_nOrderType);
    source.m_bContractEnd = isContractEndOrder(order.m_nOrderType);
    source.m_bRepayment = isRepayOrder(order.m_nOrderType);
    source.m_bSaleOfAll = order.m_bAll && order.m_nOrderType == kOrderBasketSell;
    return source;
}

} // namespace TC
