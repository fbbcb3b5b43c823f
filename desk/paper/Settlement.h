#pragma once

#include "desk/paper/PaperBook.h"
#include "kit/Operations.h"

/// What trades and direct repayments do to money, positions and debts. None fails.
namespace desk {

/// Whether there is a rule by which such an operation is booked. Orders of any other must not be accepted.
bool canSettle(const kit::COperation& operation);

/// Books a volume of the order, at most its rest, traded at a price whose worth is within kMaxMoney. What the
/// order closes comes first; the rest opens. The order's own counters of what is filled are the caller's.
void settleTrade(CPaperBook& book, CPaperOrder& order, CMoney price, int volume);

/// Carries out an accepted order that does not trade: `money` of its account goes back to the broker, or its
/// volume of shares does.
void settleDirectly(CPaperBook& book, CPaperOrder& order, CMoney money);

} // namespace desk
