#pragma once

#include "desk/paper/PaperBook.h"
#include "orderservice/kit/Operations.h"

/// How trades and direct repayments change money, positions and debts. None of the functions fails.
namespace desk {

/// Whether a rule books such an operation. Orders with other operations must not be accepted.
bool canSettle(const kit::COperation& operation);

/// Books a trade of the order at a price. `volume` is at most the order's rest, and its worth must be within
/// kMaxMoney. First the closing part of the volume is booked, then the remainder opens a position. The caller
/// updates the order's counters of filled volume and amount.
void settleTrade(CPaperBook& book, CPaperOrder& order, CMoney price, int volume);

/// Carries out an accepted order that does not trade: the account pays `money` back to the broker, or it
/// returns the order's volume of shares.
void settleDirectly(CPaperBook& book, CPaperOrder& order, CMoney money);

} // namespace desk
