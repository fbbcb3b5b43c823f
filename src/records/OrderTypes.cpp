#include "records/OrderTypes.h"

#include "base/Unset.h"

#include <algorithm>
#include <iterator>

namespace TC {
namespace {

constexpr int kNoOverride = -1;
constexpr int kStock = static_cast<int>(EOrderStrategyTradeType::Stock);
constexpr int kCredit = static_cast<int>(EOrderStrategyTradeType::Credit);
constexpr int kOption = static_cast<int>(EOrderStrategyTradeType::StockOption);
constexpr int kNeeq = static_cast<int>(EOrderStrategyTradeType::Neeq);

/// A run of numbers and the operation of its first; the others follow in step.
struct COperationRow {
    int m_nFirst;
    int m_nLast;
    int m_nOperation;
};

// 14 repeats 0, and 15 repeats 3; 33, 34 and 35 leave the operation to their rows.
constexpr COperationRow kOperationRows[] = {
    {0, 13, 0},   {14, 14, 0},    {15, 15, 3},  {23, 24, 18},   {25, 26, 18},
    {27, 32, 20}, {36, 36, 19},   {37, 38, 55}, {39, 39, 1021}, {48, 57, 32},
    {66, 71, 42}, {72, 73, 1027}, {74, 75, 48}, {76, 77, 1013}, {78, 79, 1029},
    {86, 87, 26}, {88, 89, 1025}, {90, 91, 30}, {92, 92, 18},   {100, 100, 50},
};

bool isWithin(int orderType, int first, int last) {
    return orderType >= first && orderType <= last;
}

} // namespace

const COrderTypeRow kOrderTypeRows[] = {
    {0, 15, EOrderLineForm::Future, kNoOverride},  {23, 24, EOrderLineForm::General, kStock},
    {27, 31, EOrderLineForm::General, kCredit},    {32, 32, EOrderLineForm::Amount, kNoOverride},
    {34, 34, EOrderLineForm::Whole, kNoOverride},  {37, 38, EOrderLineForm::General, kCredit},
    {39, 39, EOrderLineForm::Amount, kNoOverride}, {48, 57, EOrderLineForm::Option, kOption},
    {66, 85, EOrderLineForm::General, kNeeq},      {86, 92, EOrderLineForm::General, kStock},
};
const std::size_t kOrderTypeRowCount = std::size(kOrderTypeRows);

const COrderTypeRow* findOrderTypeRow(int orderType) {
    const auto row = std::find_if(std::begin(kOrderTypeRows), std::end(kOrderTypeRows),
                                  [&](const auto& r) { return isWithin(orderType, r.m_nFirst, r.m_nLast); });
    return row != std::end(kOrderTypeRows) ? row : nullptr;
}

bool isBasketHeaderOrder(int orderType) {
    return orderType == kOrderBasketBuy || orderType == kOrderBasketSell || orderType == kOrderBasketHeader;
}

bool isTargetOrder(int orderType) {
    return orderType == kOrderBasketWhole || orderType == kOrderBasketList;
}

bool isCloseFirstButton(int orderType) {
    return isWithin(orderType, 6, 9);
}

bool isOpenOrCloseButton(int orderType) {
    return isWithin(orderType, 10, 15);
}

bool isRepayOrder(int orderType) {
    return isWithin(orderType, 29, kOrderCreditAmount) || orderType == kOrderCreditFurther;
}

bool isContractEndOrder(int orderType) {
    return isWithin(orderType, 37, 38);
}

bool isStockLockOrder(int orderType) {
    return orderType == kOrderLockStock || orderType == kOrderUnlockStock;
}

bool isExerciseOrder(int orderType) {
    constexpr int kStockOptionCall = 54, kStockOptionPut = 55, kFutureOption = 100;
    return orderType == kStockOptionCall || orderType == kStockOptionPut || orderType == kFutureOption;
}

bool isFundOrder(int orderType) {
    return isWithin(orderType, 86, 92);
}

bool isFixedPriceFundOrder(int orderType) {
    return isWithin(orderType, 90, 91);
}

EOperationType orderTypeToOperationType(int orderType) {
    for (const COperationRow& row : kOperationRows) {
        if (isWithin(orderType, row.m_nFirst, row.m_nLast)) {
            return static_cast<EOperationType>(row.m_nOperation + (orderType - row.m_nFirst));
        }
    }
    return unsetEnum<EOperationType>();
}

} // namespace TC
