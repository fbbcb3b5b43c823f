#pragma once

#include "records/Enums.h"

#include <cstddef>

namespace TC {

/// The fields of a plain line of an order file or of a table. Basket lines have no plain form.
enum class EOrderLineForm : int {
    None,    ///< the line gives no order line at all
    Future,  ///< price, code, volume, two further prices
    General, ///< price, code, volume
    Amount,  ///< amount
    Option,  ///< price, code, volume, account
    Whole,   ///< a basket taken whole from the settings
};

/// The fields of the argument of the socket's `placeorder`, behind number and channel.
enum class ESocketForm : int {
    Nothing,  ///< further fields are not read; the order has no line
    Future,   ///< price, code, volume, two further prices
    Plain,    ///< price, code, volume
    Reversed, ///< code, volume, price
    Position, ///< key of a portfolio
    Basket,   ///< name of a basket, or its members, and a text
};

/// Properties of an order number, as bits.
enum EOrderFlag : unsigned {
    kFlagBasketHeader = 1U << 0U,
    kFlagTarget = 1U << 1U,
    kFlagCloseFirst = 1U << 2U,
    kFlagOpenOrClose = 1U << 3U,
    kFlagRepay = 1U << 4U,
    kFlagContractEnd = 1U << 5U,
    kFlagStockLock = 1U << 6U,
    kFlagExercise = 1U << 7U,
    kFlagFund = 1U << 8U,
    kFlagFixedPriceFund = 1U << 9U,
    kFlagMayLackFields = 1U << 10U, ///< a line with number and channel alone gives an order line, too
};

/// All that is known of one order number. The predicates of records/OrderTypes.h read it.
struct COrderNumber {
    int m_nNumber;
    EOperationType m_eOperation; ///< not set: each row of the order names its own, or the number has none
    EOrderLineForm m_eLineForm;
    ESocketForm m_eSocketForm;
    EOrderStrategyTradeType
        m_eLineFamily;    ///< family that the line grammar recognises in the number; or not set
    unsigned m_nFamilies; ///< families whose check accepts the number, see familyBit
    unsigned m_nFlags;    ///< EOrderFlag

    constexpr bool has(EOrderFlag flag) const { return (m_nFlags & flag) != 0; }
};

/// The bit of a family in COrderNumber::m_nFamilies; 0 for a number without a family.
constexpr unsigned familyBit(EOrderStrategyTradeType family) {
    constexpr int kBits = 32;
    const int number = static_cast<int>(family);
    return number >= 0 && number < kBits ? 1U << static_cast<unsigned>(number) : 0U;
}

/// The table of order numbers, ascending, and its length. Each number that a family accepts or that has a
/// form of its own has one row.
extern const COrderNumber kOrderNumbers[];
extern const std::size_t kOrderNumberCount;

/// The row of a number, or null if it has none.
const COrderNumber* findOrderNumber(int orderType);

/// What the socket reads for a number, also for one without a row.
ESocketForm socketFormOf(int orderType);

} // namespace TC
