#pragma once

#include "desk/paper/PaperBook.h"

#include <cstdint>
#include <string>

/// What accounts owe their broker. Single credit contracts are not kept: an account has one debt of money,
/// and one debt of shares for each instrument. There is no interest.
namespace desk {

/// The money that an account owes.
CMoney owedMoney(const CPaperBook& book, const std::string& account);

/// The credit that the account's debts and waiting orders use. It counts the money owed, and for shares owed
/// the money for which they were sold.
CMoney usedCredit(const CPaperBook& book, const std::string& account);

/// What the account may still borrow. Negative if its limit was lowered below what it owes.
CMoney creditLeft(const CPaperBook& book, const std::string& account);

/// The broker lends the account money.
void borrowMoney(CPaperBook& book, const std::string& account, CMoney amount);

/// The account pays back `upTo`, but at most what it owes. It keeps the difference.
void repayMoney(CPaperBook& book, const std::string& account, CMoney upTo);

/// The broker lends shares to the order's account, and they are sold for `amount` at once. The account's cash
/// includes this money, but it is held until the account returns the shares.
void sellBorrowed(CPaperBook& book, const CPaperOrder& order, CMoney amount, int volume);

/// Shares go back to the broker, at most as many as the order had announced. `proceeds` is the money for
/// which they were sold; it is no longer held.
void bookReturn(CPaperBook& book, const CPaperOrder& order, int volume, CMoney proceeds);

} // namespace desk
