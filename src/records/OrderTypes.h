#pragma once

#include "orderservice/base/Export.h"
#include "orderservice/records/Enums.h"

/// Names and properties of order-type numbers. The table is in records/OrderNumbers.h.
namespace TC {

/// Order-type numbers that the code compares directly.
enum EOrderNumber : int {
    kOrderBuy = 23,
    kOrderSell = 24,
    kOrderBasketBuy = 25,
    kOrderBasketSell = 26,
    kOrderReturnShares = 30,
    kOrderCreditAmount = 32,
    kOrderBasketHeader = 33,
    kOrderBasketWhole = 34,
    kOrderBasketList = 35,
    kOrderPosition = 36,
};

/// 25, 26 and 33: a first line with such a number is a basket header.
ORDERSERVICE_EXPORT bool isBasketHeaderOrder(int orderType);
/// 34 and 35: the rows are target positions.
ORDERSERVICE_EXPORT bool isTargetOrder(int orderType);
/// 6 to 9: orders of the button "close first" of the futures panel. 10 to 15: orders of its button "open or
/// close". 14 and 15 only open a position, but they belong to that button too.
ORDERSERVICE_EXPORT bool isCloseFirstButton(int orderType);
ORDERSERVICE_EXPORT bool isOpenOrCloseButton(int orderType);
/// 29 to 32 and 39: shares or money of a credit account are repaid.
ORDERSERVICE_EXPORT bool isRepayOrder(int orderType);
/// 37 and 38: one contract of a credit account is ended.
ORDERSERVICE_EXPORT bool isContractEndOrder(int orderType);
/// 56 and 57: the underlying stock of an option is locked and unlocked.
ORDERSERVICE_EXPORT bool isStockLockOrder(int orderType);
/// 54, 55 and 100: options on stocks and on futures are exercised.
ORDERSERVICE_EXPORT bool isExerciseOrder(int orderType);
/// 86 to 92: operations of funds. Their records have a quantity in addition to the volume. 90 and 91 are sent
/// at a price of 1 and ignore the setting.
ORDERSERVICE_EXPORT bool isFundOrder(int orderType);
ORDERSERVICE_EXPORT bool isFixedPriceFundOrder(int orderType);

/// The operation of a number for the trading layer. Unset for 33, 34, 35 and for numbers without an
/// operation.
ORDERSERVICE_EXPORT EOperationType orderTypeToOperationType(int orderType);

} // namespace TC
