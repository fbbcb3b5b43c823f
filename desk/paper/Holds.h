#pragma once

#include "desk/paper/PaperBook.h"

#include <cstdint>
#include <optional>

/// What waiting orders hold of an account: money, credit, positions, and shares that they will return. All of
/// it is taken and given back here.
namespace desk {

/// What the order could close now of the position that it points at, by its operation.
std::int64_t closableVolume(const CPaperBook& book, const CPaperOrder& order);

/// Divides the order: what it closes of today's volume and of the earlier one, at most what can be closed.
/// What is left of it opens.
void planClosing(const CPaperBook& book, CPaperOrder& order);

/// What an order takes when it trades.
struct CNeeds {
    CMoney m_nMoney = 0;
    CMoney m_nCredit = 0;
};

/// What the order, which holds nothing yet, needs: at its limit, or at the prices that the book offers it now
/// where they take more. Without a limit only the book's prices count, and of shares that go back only the
/// proceeds of those that it offers. Empty where it is beyond kMaxMoney.
std::optional<CNeeds> needsOf(const CPaperBook& book, const CPaperOrder& order);

/// Holds what the accepted order needs at its limit. A return of shares also claims its part of what they
/// were sold for, so that later sales and returns do not change what it counts on.
void hold(CPaperBook& book, CPaperOrder& order);

/// How much of a volume the order may trade at a price: what it borrows must find room in its own credit and
/// in what is left of the account's, so that a price above its limit does not take the account beyond its
/// own.
int tradableVolume(const CPaperBook& book, const CPaperOrder& order, CMoney price, int volume);

/// What a volume that is about to trade, or to be returned, takes out of the order's plan.
struct CReleased {
    int m_nClosed = 0;      ///< this much of it closes
    int m_nClosedToday = 0; ///< of which was opened today
    CMoney m_nProceeds = 0; ///< of the shares returned: what they were sold for
};

/// Gives back what the order held for a volume, at most tradableVolume; its rest goes on holding what it
/// needs at its limit, or what the price leaves of its credit.
CReleased releaseTraded(CPaperBook& book, CPaperOrder& order, CMoney price, int volume);

/// Gives back all that the rest of the order holds.
void releaseRest(CPaperBook& book, CPaperOrder& order);

/// Whether the order trades at a price.
bool isWithinLimit(const CPaperOrder& order, CMoney price);

} // namespace desk
