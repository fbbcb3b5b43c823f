#pragma once

#include "orderservice/base/Export.h"
#include "orderservice/records/Enums.h"

namespace kit {

/// Which side of the order book an operation takes.
enum class ETradeSide : int { None = 0, Buy = 1, Sell = 2 };

/// What an operation does to positions and debts.
enum class EOperationEffect : int {
    Trade,         ///< of stocks, funds and similar: a buy adds to the position, a sale reduces it
    Open,          ///< opens a position of a derivative
    Close,         ///< closes a position of a derivative
    CloseThenOpen, ///< closes the existing position, and opens a new one with the remaining volume
    Exercise,
    LockUnderlying,
    UnlockUnderlying,
    RepayMoney,   ///< with the account's own money
    ReturnShares, ///< with the account's own shares
    EndContract,  ///< ends a single contract of margin trading
    None,         ///< for an unknown operation
};

/// How an operation of margin trading is booked. The number is also written to the operation's records.
enum class EBooking : int {
    Own = 0,           ///< with the account's own money and shares
    BorrowedMoney = 1, ///< the broker lends the money
    BorrowedShares = 2,
    MoneyRepaid = 3, ///< by selling shares, or with the account's money
    SharesReturned = 4,
    ContractEnded = 5,
};

/// The properties of one operation that trading, booking and reading the journal need.
struct COperation {
    TC::EOperationType m_eOperation;
    ETradeSide m_eSide;
    EOperationEffect m_eEffect;
    EBooking m_eBooking;
    const char* m_pszWord = ""; ///< name, for users
};

/// Returns the row of an operation, or null if the number is not in the table. Any thread.
ORDERSERVICE_EXPORT const COperation* findOperation(TC::EOperationType operation);

} // namespace kit
