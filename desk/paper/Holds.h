#pragma once

#include "desk/paper/PaperBook.h"

#include <cstdint>
#include <optional>

/// What waiting orders hold of an account: money, credit, positions, and shares that they will return.
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

/// What the rest of the order needs: at its limit, or at the prices that the book offers it now where they
/// take more. Without a limit only the book's prices count. Empty where it is beyond kMaxMoney.
std::optional<CNeeds> needsOf(const CPaperBook& book, const CPaperOrder& order);

/// Holds what the accepted order needs at its limit.
void hold(CPaperBook& book, CPaperOrder& order);

/// Gives back the part of the order's money and credit that falls on a volume which it is about to trade.
void releaseTraded(CPaperBook& book, CPaperOrder& order, int volume);

/// Gives back all that the rest of the order holds.
void releaseRest(CPaperBook& book, CPaperOrder& order);

/// Whether the order trades at a price.
bool isWithinLimit(const CPaperOrder& order, CMoney price);

} // namespace desk
