#pragma once

#include "records/Enums.h"

#include <cstddef>

/// Order-type numbers: the grammar of order files and of the socket protocol.
namespace TC {

/// Numbers that code compares one by one.
enum EOrderNumber : int {
    kOrderBuy = 23,
    kOrderSell = 24,
    kOrderBasketBuy = 25,
    kOrderBasketSell = 26,
    kOrderCreditAmount = 32,
    kOrderBasketHeader = 33,
    kOrderBasketWhole = 34,
    kOrderBasketList = 35,
    kOrderPosition = 36,
};

/// What the fields of a plain line of the number are. Basket forms have no plain line.
enum class EOrderLineForm : int {
    None,    ///< the line gives no order line at all
    Future,  ///< price, code, volume, two further prices
    General, ///< price, code, volume
    Amount,  ///< amount
    Option,  ///< price, code, volume, account
    Whole,   ///< a basket taken whole from the settings
};

/// One run of order-type numbers that are treated alike.
struct COrderTypeRow {
    int m_nFirst;
    int m_nLast;
    EOrderLineForm m_eForm;
    int m_nTradeTypeOverride; ///< family that the line grammar recognises in the number; -1: none
};

/// The table, by ascending numbers, and its length.
extern const COrderTypeRow kOrderTypeRows[];
extern const std::size_t kOrderTypeRowCount;

/// The row of a number, or null where the number has no plain line form.
const COrderTypeRow* findOrderTypeRow(int orderType);

/// 25, 26 and 33: a first line of such a number is a basket header.
bool isBasketHeaderOrder(int orderType);

/// A number's operation for the trading layer; unset for 33, 34, 35 and for numbers without one.
EOperationType orderTypeToOperationType(int orderType);

} // namespace TC
