#pragma once

#include "desk/paper/PaperBook.h"

#include <cstdint>
#include <string>

/// What accounts owe their broker. Contracts are not kept one by one: an account has one debt of money, and
/// one debt of shares for each instrument. There is no interest.
namespace desk {

/// The money that an account owes.
CMoney owedMoney(const CPaperBook& book, const std::string& account);

/// The credit that the account's debts and its waiting orders take: money, and shares at what they were sold
/// for.
CMoney usedCredit(const CPaperBook& book, const std::string& account);

/// What the account may still borrow. Below 0 where its limit was lowered under what it owes.
CMoney creditLeft(const CPaperBook& book, const std::string& account);

/// The broker lends the account money.
void borrowMoney(CPaperBook& book, const std::string& account, CMoney amount);

/// The account pays back up to an amount, at most what it owes; what is left stays with it.
void repayMoney(CPaperBook& book, const std::string& account, CMoney upTo);

/// The broker lends the order's account shares, which are sold for the amount at once. The account holds the
/// money until it returns the shares.
void sellBorrowed(CPaperBook& book, const CPaperOrder& order, CMoney amount, int volume);

/// Shares go back to the broker, at most as many as the order had announced; what they were sold for becomes
/// free.
void bookReturn(CPaperBook& book, const CPaperOrder& order, int volume, CMoney proceeds);

} // namespace desk
