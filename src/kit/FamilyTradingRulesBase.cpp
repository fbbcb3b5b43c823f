#include "orderservice/kit/FamilyTradingRulesBase.h"

#include "orderservice/kit/Operations.h"

namespace kit {

bool CFamilyTradingRulesBase::isBuy(TC::EOperationType operation) {
    const COperation* known = findOperation(operation);
    return known != nullptr && known->m_eSide == ETradeSide::Buy;
}

bool CFamilyTradingRulesBase::isClose(TC::EOperationType operation) {
    const COperation* known = findOperation(operation);
    return known != nullptr && known->m_eEffect == EOperationEffect::Close;
}

bool CFamilyTradingRulesBase::isDirectRepay(TC::EOperationType operation) {
    const COperation* known = findOperation(operation);
    return known != nullptr && known->m_eEffect == EOperationEffect::RepayMoney;
}

TC::EEntrustTypes CFamilyTradingRulesBase::operationTypeToEntrustType(TC::EOperationType operation) {
    const COperation* known = findOperation(operation);
    return static_cast<TC::EEntrustTypes>(known != nullptr ? known->m_eBooking : EBooking::Own);
}

} // namespace kit
