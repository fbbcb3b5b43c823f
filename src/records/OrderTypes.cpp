#include "orderservice/records/OrderTypes.h"

#include "orderservice/base/Unset.h"
#include "orderservice/records/OrderNumbers.h"

namespace TC {
namespace {

bool hasFlag(int orderType, EOrderFlag flag) {
    const COrderNumber* row = findOrderNumber(orderType);
    return row != nullptr && row->has(flag);
}

} // namespace

bool isBasketHeaderOrder(int orderType) {
    return hasFlag(orderType, kFlagBasketHeader);
}

bool isTargetOrder(int orderType) {
    return hasFlag(orderType, kFlagTarget);
}

bool isCloseFirstButton(int orderType) {
    return hasFlag(orderType, kFlagCloseFirst);
}

bool isOpenOrCloseButton(int orderType) {
    return hasFlag(orderType, kFlagOpenOrClose);
}

bool isRepayOrder(int orderType) {
    return hasFlag(orderType, kFlagRepay);
}

bool isContractEndOrder(int orderType) {
    return hasFlag(orderType, kFlagContractEnd);
}

bool isStockLockOrder(int orderType) {
    return hasFlag(orderType, kFlagStockLock);
}

bool isExerciseOrder(int orderType) {
    return hasFlag(orderType, kFlagExercise);
}

bool isFundOrder(int orderType) {
    return hasFlag(orderType, kFlagFund);
}

bool isFixedPriceFundOrder(int orderType) {
    return hasFlag(orderType, kFlagFixedPriceFund);
}

EOperationType orderTypeToOperationType(int orderType) {
    const COrderNumber* row = findOrderNumber(orderType);
    return row != nullptr ? row->m_eOperation : unsetEnum<EOperationType>();
}

} // namespace TC
