#pragma once

#include "desk/paper/PaperBook.h"

#include <cstdint>
#include <optional>

/// What waiting orders hold of an account: money, credit, positions, and shares that they will return. All
/// holds are made and released here.
namespace desk {

/// The volume that the order could close now. Account, instrument and operation of the order select the
/// position.
std::int64_t closableVolume(const CPaperBook& book, const CPaperOrder& order);

/// The shares of the order's instrument that the account owes and that no waiting order will return.
std::int64_t returnableShares(const CPaperBook& book, const CPaperOrder& order);

/// Divides the order's volume into the part that closes volume opened today, the part that closes earlier
/// volume, and the rest, which opens. Closes at most what can be closed.
void planClosing(const CPaperBook& book, CPaperOrder& order);

/// The money and the credit that an order takes when it trades.
struct CNeeds {
    CMoney m_nMoney = 0;
    CMoney m_nCredit = 0;
};

/// The money and the credit that the order needs. The order must not hold anything yet. Counts the larger of
/// two amounts: at the order's limit, or at the prices that the book offers now. An order without a limit
/// counts only the book's prices. If such an order returns shares, only the proceeds of the shares that the
/// book offers pay for it. Empty if the amount is beyond kMaxMoney.
std::optional<CNeeds> needsOf(const CPaperBook& book, const CPaperOrder& order);
/// The same with other prices of the book: `sides` may be null.
std::optional<CNeeds> needsOf(const CPaperBook& book, const CPaperOrder& order, const CBookSides* sides);

/// Holds what the accepted order needs at its limit. An order that returns shares also claims its part of the
/// money for which they were sold. So later sales and returns do not change the money that it relies on.
void hold(CPaperBook& book, CPaperOrder& order);

/// The part of `volume` that the order may trade at a price. An order that borrows must pay with its own held
/// credit and with the unused credit of the account. So a trade at a price above its limit does not take the
/// account over its credit limit.
int tradableVolume(const CPaperBook& book, const CPaperOrder& order, CMoney price, int volume);

/// The part of an order's plan that belongs to a volume which is about to be traded or returned.
struct CReleased {
    int m_nClosed = 0;      ///< volume that closes a position
    int m_nClosedToday = 0; ///< part of m_nClosed that was opened today
    CMoney m_nProceeds = 0; ///< money for which the returned shares were sold
};

/// Releases what the order held for a volume, which is at most tradableVolume. Afterwards the rest of the
/// order holds what it needs at its limit. If the trade left less credit than that, the rest holds the credit
/// that is left.
CReleased releaseTraded(CPaperBook& book, CPaperOrder& order, CMoney price, int volume);

/// Releases everything that the rest of the order holds.
void releaseRest(CPaperBook& book, CPaperOrder& order);

/// Whether the order's limit allows a trade at this price.
bool isWithinLimit(const CPaperOrder& order, CMoney price);

} // namespace desk
