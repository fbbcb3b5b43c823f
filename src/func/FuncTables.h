#pragma once

#include "orderservice/records/Enums.h"

#include <string>

/// The numbers and words of function trading as tables. Everything here is pure.
namespace TC {

/// What a call trades. It follows from `opType`, and for some numbers also from `orderType`.
enum class EFuncFamily {
    None, ///< the number has no meaning: the call gets no line and fails later, at its empty code
    Future,
    Stock,
    Credit,
    StockOption,
    StockBasket,
    CreditBasket,
    FutureBasket,
};

/// The trade type of a basket of futures in function trading. The strategies have another number for it.
inline constexpr int kFunctionFutureBasket = 8;

/// The family of a call.
EFuncFamily funcFamilyOf(int opType, int orderType);

/// Whether the order type trades a basket: 22, and 2000 to 2999.
bool isComposeOrderType(int orderType);

/// What the volume of a call means.
enum class EFuncUnit {
    Volume, ///< shares or lots
    Money,  ///< currency units
    Ratio,  ///< 0 to 1
};

/// One value of `orderType`.
struct CFuncOrderType {
    int m_nNumber;
    ESelectedAccountType m_eAccounts;
    EFuncUnit m_eUnit;
    bool m_bHedge; ///< a basket with a futures leg; names two accounts and two codes
};

/// The row of an order type, or null for an unknown number.
const CFuncOrderType* findFuncOrderType(int orderType);

/// Order types with a ratio must have a volume from 0 to 1.
bool isRatioOrderType(int orderType);
/// 1202, 2103 and 2203: allowed only for the operations 23 to 34.
bool isOrderTypeOfSecurities(int orderType);
/// 2331 to 2333.
bool isHedgeOrderType(int orderType);
/// The order types whose volume is written into the order line: 11, 12, 1101 and 1201.
bool isVolumeInLine(int orderType);
/// 1102 and 1202: money for single instruments. Futures cannot be ordered with them.
bool isMoneyOfSingle(int orderType);
/// The order types that a single credit order may have.
bool isCreditOrderType(int orderType);
/// 25 to 29, 31, 33 and 34: baskets of stocks, which may have a futures leg.
bool isHedgeableOperation(int opType);

/// The number of the operation with 33 and 34, which buy and sell again, as the plain purchase and sale: 25
/// and 26 for the order types of baskets, otherwise 23 and 24.
int shownNumber(int opType, int orderType);

/// The operation of a purchase at the price type 49.
inline constexpr int kBuyAtGivenPrice = 1043;

/// Whether the market is one of the futures markets.
bool isFuturesMarket(const std::string& market);

/// The kind of account that the word of a cancel names. The case of the word does not matter. -1 for an
/// unknown word.
int tranAccountType(const std::string& text);

} // namespace TC
