#pragma once

#include "records/Enums.h"

namespace kit {

/// Which side of the order book an operation takes.
enum class ETradeSide : int { None = 0, Buy = 1, Sell = 2 };

/// What an operation does to positions and debts.
enum class EOperationEffect : int {
    Trade,         ///< stocks, funds and the like: buys add, sells take away
    Open,          ///< opens a derivative's position
    Close,         ///< closes one
    CloseThenOpen, ///< closes what is there, and opens what is left
    Exercise,
    LockUnderlying,
    UnlockUnderlying,
    RepayMoney,   ///< with money of the account's own
    ReturnShares, ///< with shares of the account's own
    EndContract,  ///< of margin trading, one by one
    None,         ///< of an operation that is not known
};

/// How an operation of margin trading is booked; also the number that its records carry.
enum class EBooking : int {
    Own = 0,           ///< with the account's own money and shares
    BorrowedMoney = 1, ///< the broker lends the money
    BorrowedShares = 2,
    MoneyRepaid = 3, ///< by selling, or with the account's money
    SharesReturned = 4,
    ContractEnded = 5,
};

/// One operation: what trading, booking and reading the journal need to know of it.
struct COperation {
    int m_nNumber; ///< a TC::EOperationType
    ETradeSide m_eSide;
    EOperationEffect m_eEffect;
    EBooking m_eBooking;
    const char* m_pszWord = ""; ///< for people
};

/// The row of an operation, or null if the table does not have the number. Any thread.
const COperation* findOperation(TC::EOperationType operation);

} // namespace kit
