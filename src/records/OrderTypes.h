#pragma once

#include "records/Enums.h"

/// Order-type numbers in code: names and properties. The table is in records/OrderNumbers.h.
namespace TC {

/// Numbers that code compares one by one.
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
    kOrderCreditFurther = 39,
    kOrderLockStock = 56,
    kOrderUnlockStock = 57,
};

/// 25, 26 and 33: a first line of such a number is a basket header.
bool isBasketHeaderOrder(int orderType);
/// 34 and 35: the rows are positions to reach.
bool isTargetOrder(int orderType);
/// 6 to 9 and 10 to 15: orders of the futures panel's buttons "close first" and "open or close". 14 and 15
/// stand behind that button too, though they open only.
bool isCloseFirstButton(int orderType);
bool isOpenOrCloseButton(int orderType);
/// 29 to 32 and 39: shares or money of a credit account are given back.
bool isRepayOrder(int orderType);
/// 37 and 38: one contract of a credit account is ended.
bool isContractEndOrder(int orderType);
/// 56 and 57: the stock under an option is locked and unlocked.
bool isStockLockOrder(int orderType);
/// 54, 55 and 100: options on stocks and on futures are exercised.
bool isExerciseOrder(int orderType);
/// 86 to 92: operations of funds, whose records carry a quantity beside the volume; of them 90 and 91 go out
/// at a price of 1 whatever the setting says.
bool isFundOrder(int orderType);
bool isFixedPriceFundOrder(int orderType);

/// A number's operation for the trading layer; unset for 33, 34, 35 and for numbers without one.
EOperationType orderTypeToOperationType(int orderType);

} // namespace TC
