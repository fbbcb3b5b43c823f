#pragma once

#include "desk/config/PositionSide.h"
#include "desk/paper/Money.h"
#include "records/Enums.h"

#include <cstdint>
#include <string>

/// The paper broker's records, as its queries and events give them: plain values, copies. Texts are UTF-8;
/// times are local, ISO 8601 with milliseconds; volumes are shares or lots.
namespace desk {

/// An order's state. Its numbers stand in the store.
enum class EOrderStatus : int {
    Working = 0,    ///< accepted, nothing filled yet
    PartFilled = 1, ///< filled in part, the rest works on
    Filled = 2,
    Cancelled = 3, ///< ended before it was filled whole; m_nFilled tells how far it came
    Rejected = 4,
};

/// The state as a word: working, part_filled, filled, cancelled, rejected.
const char* statusWord(EOrderStatus status);

/// One order: one code record of one command.
struct CPaperOrder {
    int m_nId = 0;
    int m_nTask = 0;
    std::string m_strAccount; ///< empty where the record had none
    std::string m_strStock;   ///< instrument key, such as "SH600000"
    TC::EOperationType m_eOperation = TC::EOperationType::Buy;
    TC::EPriceType m_ePriceType = TC::EPriceType::Specified;
    bool m_bMarket = false; ///< takes what the book has; m_nPrice is 0
    CMoney m_nPrice = 0;    ///< limit
    int m_nVolume = 0;
    int m_nFilled = 0;
    CMoney m_nFilledAmount = 0;
    CMoney m_nFrozen = 0; ///< money held for the rest
    EOrderStatus m_eStatus = EOrderStatus::Working;
    std::string m_strReason; ///< why it was rejected or cancelled
    std::string m_strTime;   ///< of the last change
    TC::EQdTraderType m_eFamily = TC::EQdTraderType::Stock;
    int m_nMultiplier = 1;   ///< money is price times volume times this
    int m_nMarginRate = 0;   ///< what it opens holds this part of its money, in millionths
    int m_nCloseEarlier = 0; ///< of the rest: closes what is older than today; the position holds it
    int m_nCloseToday = 0;   ///< of the rest: closes what was opened today
    CMoney m_nCredit = 0;    ///< credit held for the rest
    CMoney m_nProceeds = 0;  ///< of the shares that the rest returns: what they were sold for

    /// Whether it takes the sell side of the book.
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
    CMoney m_nFrozen = 0; ///< of which waiting orders hold
    CMoney m_nMargin = 0; ///< of which open positions hold, and what borrowed shares were sold for

    CMoney available() const { return m_nCash - m_nFrozen - m_nMargin; }
};

/// What an account has of an instrument on one side.
struct CPaperPosition {
    std::string m_strAccount;
    std::string m_strStock;
    EPositionSide m_eSide = EPositionSide::Long;
    std::int64_t m_nVolume = 0;
    std::int64_t m_nSellable = 0;    ///< of which may be closed today: all but stocks bought today
    std::int64_t m_nToday = 0;       ///< of the volume: what was opened today
    std::int64_t m_nFrozen = 0;      ///< of the sellable: what waiting orders hold
    std::int64_t m_nFrozenToday = 0; ///< of the frozen: what was opened today
    CMoney m_nCost = 0;              ///< what the volume was worth when it was opened
    CMoney m_nPaid = 0;    ///< of the cost, what was paid: all, or nothing of a future; below 0: what was got
    CMoney m_nMargin = 0;  ///< money of the account held for it
    int m_nMultiplier = 1; ///< the instrument's when it was opened

    std::int64_t available() const { return m_nSellable - m_nFrozen; }
};

/// What an account owes its broker: money, or shares of an instrument.
struct CPaperDebt {
    std::string m_strAccount;
    std::string m_strStock;     ///< empty: money
    std::int64_t m_nVolume = 0; ///< shares owed
    CMoney m_nAmount = 0;       ///< money owed; of shares: what they were sold for, which the account holds
    std::int64_t m_nReturning = 0; ///< of the shares: what waiting orders will return
    CMoney m_nReserved = 0;        ///< credit that waiting orders will take
    CMoney m_nClaimed = 0;         ///< of the shares' money: what waiting returns will free
    int m_nMultiplier = 1;         ///< the instrument's when the shares were sold

    std::int64_t returnable() const { return m_nVolume - m_nReturning; }
};

/// One command that the broker took.
struct CPaperTask {
    int m_nId = 0;
    std::int64_t m_nReference = 0; ///< the caller's number for the command: its journal record; 0: none
    int m_nOrders = 0;
    std::string m_strRemark;
    std::string m_strTime;
};

/// What happened to an order, numbered 1, 2, 3 and so on through the life of the store.
struct CBrokerEvent {
    std::int64_t m_nNumber = 0;
    std::int64_t m_nReference = 0; ///< of the order's task
    CPaperOrder m_order;           ///< as it was after this event
    CPaperFill m_fill;             ///< m_nId 0: the event is a change of the order's state
    bool isFill() const { return m_fill.m_nId != 0; }
};

} // namespace desk
