#pragma once

#include "desk/config/PositionSide.h"
#include "desk/paper/Money.h"
#include "orderservice/records/Enums.h"

#include <cstdint>
#include <string>

/// The paper broker's records, as its queries and events return them: plain values, copies. Texts are UTF-8.
/// Times are local, ISO 8601 with milliseconds. Volumes are shares or lots.
namespace desk {

/// An order's state. The store contains these numbers.
enum class EOrderStatus : int {
    Working = 0,    ///< accepted, nothing filled yet
    PartFilled = 1, ///< filled in part, the rest waits
    Filled = 2,
    Cancelled = 3, ///< ended before it was completely filled; see m_nFilled
    Rejected = 4,
};

/// The state as a word: working, part_filled, filled, cancelled, rejected.
const char* statusWord(EOrderStatus status);

/// One order: one code record of one command.
struct CPaperOrder {
    int m_nId = 0;
    int m_nTask = 0;
    std::string m_strAccount; ///< empty if the record had none
    std::string m_strStock;   ///< instrument key, such as "SH600000"
    TC::EOperationType m_eOperation = TC::EOperationType::Buy;
    TC::EPriceType m_ePriceType = TC::EPriceType::Specified;
    bool m_bMarket = false; ///< has no limit; m_nPrice is 0
    CMoney m_nPrice = 0;    ///< the limit price
    int m_nVolume = 0;
    int m_nFilled = 0;
    CMoney m_nFilledAmount = 0;
    CMoney m_nFrozen = 0; ///< money held for the unfilled rest
    EOrderStatus m_eStatus = EOrderStatus::Working;
    std::string m_strReason; ///< why it was rejected or cancelled
    std::string m_strTime;   ///< time of the last change
    TC::EQdTraderType m_eFamily = TC::EQdTraderType::Stock;
    int m_nMultiplier = 1;   ///< money is price times volume times this
    int m_nMarginRate = 0;   ///< margin rate of the volume that it opens, in millionths
    int m_nCloseEarlier = 0; ///< part of the rest that closes volume opened before today
    int m_nCloseToday = 0;   ///< part of the rest that closes volume opened today
    CMoney m_nCredit = 0;    ///< credit held for the unfilled rest
    CMoney m_nProceeds = 0;  ///< money for which the shares that the rest returns were sold

    /// Whether the order trades with the sell side of the book.
    bool isBuy() const;
    int closing() const { return m_nCloseEarlier + m_nCloseToday; }
    bool isOpen() const {
        return m_eStatus == EOrderStatus::Working || m_eStatus == EOrderStatus::PartFilled;
    }
    int rest() const { return m_nVolume - m_nFilled; }
};

struct CPaperFill {
    int m_nId = 0;
    int m_nOrder = 0;
    CMoney m_nPrice = 0;
    int m_nVolume = 0;
    std::string m_strTime;
};

struct CPaperFunds {
    std::string m_strAccount;
    CMoney m_nCash = 0;   ///< all of the account's money
    CMoney m_nFrozen = 0; ///< part of m_nCash that waiting orders hold
    CMoney m_nMargin = 0; ///< part of m_nCash held as margin and as proceeds of short sales

    CMoney available() const { return m_nCash - m_nFrozen - m_nMargin; }
};

/// The position of an account in an instrument, on one side.
struct CPaperPosition {
    std::string m_strAccount;
    std::string m_strStock;
    EPositionSide m_eSide = EPositionSide::Long;
    std::int64_t m_nVolume = 0;
    std::int64_t m_nSellable = 0;    ///< part that may be closed today: all but stocks bought today
    std::int64_t m_nToday = 0;       ///< part of the volume that was opened today
    std::int64_t m_nFrozen = 0;      ///< part of m_nSellable that waiting orders hold
    std::int64_t m_nFrozenToday = 0; ///< part of m_nFrozen that was opened today
    CMoney m_nCost = 0;              ///< worth of the volume when it was opened
    CMoney m_nPaid = 0;              ///< money paid: the cost, or 0 on margin; negative if money was received
    CMoney m_nMargin = 0;            ///< margin that the account holds for it
    int m_nMultiplier = 1;           ///< multiplier of the instrument at the opening

    std::int64_t available() const { return m_nSellable - m_nFrozen; }
};

/// What an account owes its broker: money, or shares of an instrument.
struct CPaperDebt {
    std::string m_strAccount;
    std::string m_strStock;        ///< empty if it is a debt of money
    std::int64_t m_nVolume = 0;    ///< shares owed
    CMoney m_nAmount = 0;          ///< money owed; for shares: held proceeds of their sale
    std::int64_t m_nReturning = 0; ///< shares that waiting orders will return
    CMoney m_nReserved = 0;        ///< credit held for waiting orders
    CMoney m_nClaimed = 0;         ///< part of the proceeds that waiting returns will free
    int m_nMultiplier = 1;         ///< multiplier of the instrument when the shares were sold

    std::int64_t returnable() const { return m_nVolume - m_nReturning; }
};

/// One command that the broker took.
struct CPaperTask {
    int m_nId = 0;
    std::int64_t m_nReference = 0; ///< number of the command's journal record; 0 if it has none
    int m_nOrders = 0;
    std::string m_strRemark;
    std::string m_strTime;
};

/// What happened to an order. Events are numbered 1, 2, 3 and so on over the life of the store.
struct CBrokerEvent {
    std::int64_t m_nNumber = 0;
    std::int64_t m_nReference = 0; ///< reference of the order's task
    CPaperOrder m_order;           ///< the order's state after this event
    CPaperFill m_fill;             ///< if m_nId is 0, the event is a change of the order's state
    bool isFill() const { return m_fill.m_nId != 0; }
};

} // namespace desk
