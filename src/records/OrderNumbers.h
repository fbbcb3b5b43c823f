#pragma once

#include "orderservice/base/Export.h"
#include "orderservice/records/Enums.h"

#include <cstddef>

namespace TC {

/// The fields of a plain line of an order file or of a table. Basket lines have no plain form.
enum class EOrderLineForm : int {
    None,    ///< the line adds no order line to the order
    Future,  ///< price, code, volume, two further prices
    General, ///< price, code, volume
    Amount,  ///< amount
    Option,  ///< price, code, volume, account
    Whole,   ///< a whole basket from the settings
};

/// The fields of the socket command `placeorder` after number and channel.
enum class ESocketForm : int {
    Nothing,  ///< further fields are ignored; the order has no line
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
    kFlagMayLackFields = 1U << 10U, ///< a line with only number and channel makes an order line too
};

/// The properties of one order number. The functions of records/OrderTypes.h read them.
struct COrderNumber {
    int m_nNumber;
    /// Not set if each row of the order names its operation, or if the number has no operation.
    EOperationType m_eOperation;
    EOrderLineForm m_eLineForm;
    ESocketForm m_eSocketForm;
    EOrderStrategyTradeType
        m_eLineFamily;    ///< family that the line parser derives from the number; may be not set
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

/// The table of order numbers in ascending order, and its length. A number has one row if a family accepts it
/// or if it has its own form.
extern ORDERSERVICE_EXPORT const COrderNumber kOrderNumbers[];
extern ORDERSERVICE_EXPORT const std::size_t kOrderNumberCount;

/// The row of a number, or null if it has none.
ORDERSERVICE_EXPORT const COrderNumber* findOrderNumber(int orderType);

/// The form that the socket reads for a number. It is defined also for a number without a row.
ORDERSERVICE_EXPORT ESocketForm socketFormOf(int orderType);

} // namespace TC
