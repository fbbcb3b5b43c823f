#include "desk/paper/Holds.h"

#include "desk/paper/PaperFamilies.h"

#include <algorithm>

namespace desk {
namespace {

/// Parts of a position that an order may close.
struct CParts {
    std::int64_t m_nEarlier = 0;
    std::int64_t m_nToday = 0;
};

CParts closableParts(const CPaperBook& book, const CPaperOrder& order) {
    const EClosing closing = closingOf(order);
    const CPaperPosition* position =
        book.m_positions.find({order.m_strAccount, order.m_strStock, closedSide(order)});
    if (position == nullptr || closing == EClosing::None) return {};
    CParts parts;
    parts.m_nToday = position->m_nToday - position->m_nFrozenToday;
    parts.m_nEarlier = position->m_nVolume - position->m_nFrozen - parts.m_nToday;
    if (closing == EClosing::Earlier) parts.m_nToday = 0;
    if (closing == EClosing::Today) parts.m_nEarlier = 0;
    // Shares bought today are part of the volume, but not of what can be closed.
    parts.m_nEarlier = std::min(parts.m_nEarlier, position->available());
    parts.m_nToday = std::min(parts.m_nToday, position->available() - parts.m_nEarlier);
    return parts;
}

/// Whether what the order closes costs it money: options that were sold are bought back.
bool paysForClosing(const CPaperOrder& order) {
    return order.isBuy() && paymentOf(order) != EPayment::Margin;
}

/// How much of a volume that trades next takes the order's money. What the order closes trades first.
int unitsInMoney(const CPaperOrder& order, int volume) {
    return paysForClosing(order) ? volume : std::max(0, volume - order.closing());
}

std::optional<CMoney> worth(const CPaperOrder& order, CMoney price, std::int64_t volume) {
    return amountOf(price, volume * order.m_nMultiplier);
}

/// What the book offers the order now: the worth of the units that take money, and their number.
struct COffer {
    CMoney m_nWorth = 0;
    int m_nUnits = 0;
};

std::optional<COffer> offerOf(const CPaperBook& book, const CPaperOrder& order) {
    COffer offer;
    const CBookSides* sides = book.m_sides.find(order.m_strStock);
    if (sides == nullptr || operationOf(order).m_eSide == ETradeSide::None) return offer;
    std::int64_t rest = order.rest();
    std::int64_t skipped = rest - unitsInMoney(order, order.rest());
    for (const CBookLevel& level : order.isBuy() ? sides->m_sell : sides->m_buy) {
        if (!isWithinLimit(order, level.m_nPrice)) continue;
        std::int64_t volume = std::min(rest, level.m_nVolume);
        rest -= volume;
        const std::int64_t closing = std::min(skipped, volume);
        skipped -= closing;
        volume -= closing;
        const std::optional<CMoney> amount = worth(order, level.m_nPrice, volume);
        if (!amount || offer.m_nWorth + *amount > kMaxMoney) return {};
        offer.m_nWorth += *amount;
        offer.m_nUnits += static_cast<int>(volume);
    }
    return offer;
}

/// What shares were sold for that the order buys back: it pays for them first.
CMoney heldForReturn(const CPaperBook& book, const CPaperOrder& order) {
    const CPaperDebt* debt = book.m_debts.find({order.m_strAccount, order.m_strStock});
    if (debt == nullptr || debt->m_nVolume == 0) return 0;
    return partOf(debt->m_nAmount, std::min<std::int64_t>(order.rest(), debt->m_nVolume), debt->m_nVolume);
}

CNeeds needsOfWorth(const CPaperBook& book, const CPaperOrder& order, CMoney amount) {
    switch (operationOf(order).m_eBooking) {
    case EBooking::BorrowedMoney:
    case EBooking::BorrowedShares:
        return {0, amount};
    case EBooking::SharesReturned:
        return {order.isBuy() ? std::max<CMoney>(0, amount - heldForReturn(book, order)) : 0, 0};
    default:
        break;
    }
    if (order.isBuy() && paymentOf(order) != EPayment::Margin) return {amount, 0};
    return {rateOf(amount, order.m_nMarginRate), 0};
}

std::optional<CMoney> worthAtLimit(const CPaperOrder& order) {
    if (order.m_bMarket) return 0;
    return worth(order, order.m_nPrice, unitsInMoney(order, order.rest()));
}

bool returnsShares(const CPaperOrder& order) {
    return operationOf(order).m_eBooking == EBooking::SharesReturned;
}

CPaperDebt& editCredit(CPaperBook& book, const CPaperOrder& order) {
    const bool isMoney = operationOf(order).m_eBooking == EBooking::BorrowedMoney;
    return book.editDebt(order.m_strAccount, isMoney ? std::string() : order.m_strStock);
}

void addHeld(CPaperBook& book, CPaperOrder& order, const CNeeds& held) {
    if (held.m_nMoney != 0) book.m_funds.edit(order.m_strAccount).m_nFrozen += held.m_nMoney;
    if (held.m_nCredit != 0) editCredit(book, order).m_nReserved += held.m_nCredit;
    order.m_nFrozen += held.m_nMoney;
    order.m_nCredit += held.m_nCredit;
}

} // namespace

bool isWithinLimit(const CPaperOrder& order, CMoney price) {
    if (order.m_bMarket) return true;
    return order.isBuy() ? price <= order.m_nPrice : price >= order.m_nPrice;
}

std::int64_t closableVolume(const CPaperBook& book, const CPaperOrder& order) {
    const CParts parts = closableParts(book, order);
    return parts.m_nEarlier + parts.m_nToday;
}

void planClosing(const CPaperBook& book, CPaperOrder& order) {
    const CParts parts = closableParts(book, order);
    const std::int64_t volume = std::max(0, order.m_nVolume);
    const bool isTodayFirst = closingOf(order) == EClosing::TodayFirst;
    const std::int64_t first = std::min(volume, isTodayFirst ? parts.m_nToday : parts.m_nEarlier);
    const std::int64_t second = std::min(volume - first, isTodayFirst ? parts.m_nEarlier : parts.m_nToday);
    order.m_nCloseToday = static_cast<int>(isTodayFirst ? first : second);
    order.m_nCloseEarlier = static_cast<int>(isTodayFirst ? second : first);
}

std::optional<CNeeds> needsOf(const CPaperBook& book, const CPaperOrder& order) {
    const std::optional<CMoney> atLimit = worthAtLimit(order);
    const std::optional<COffer> offer = offerOf(book, order);
    if (!atLimit || !offer) return {};
    // A sale that opens may find better prices than its limit, and then takes more.
    const int waiting = order.m_bMarket ? 0 : unitsInMoney(order, order.rest()) - offer->m_nUnits;
    const std::optional<CMoney> later = worth(order, order.m_nPrice, waiting);
    if (!later || offer->m_nWorth + *later > kMaxMoney) return {};
    return needsOfWorth(book, order, std::max(*atLimit, offer->m_nWorth + *later));
}

void hold(CPaperBook& book, CPaperOrder& order) {
    addHeld(book, order, needsOfWorth(book, order, worthAtLimit(order).value_or(0)));
    if (order.closing() != 0) {
        CPaperPosition& position = book.editPosition(order, closedSide(order));
        position.m_nFrozen += order.closing();
        position.m_nFrozenToday += order.m_nCloseToday;
    }
    if (returnsShares(order))
        book.editDebt(order.m_strAccount, order.m_strStock).m_nReturning += order.rest();
}

void releaseTraded(CPaperBook& book, CPaperOrder& order, int volume) {
    const int all = unitsInMoney(order, order.rest());
    const int part = unitsInMoney(order, volume);
    if (part == 0) return;
    addHeld(book, order, {-partOf(order.m_nFrozen, part, all), -partOf(order.m_nCredit, part, all)});
}

void releaseRest(CPaperBook& book, CPaperOrder& order) {
    addHeld(book, order, {-order.m_nFrozen, -order.m_nCredit});
    if (order.closing() != 0) {
        CPaperPosition& position = book.editPosition(order, closedSide(order));
        position.m_nFrozen -= order.closing();
        position.m_nFrozenToday -= order.m_nCloseToday;
        order.m_nCloseEarlier = 0;
        order.m_nCloseToday = 0;
    }
    if (returnsShares(order))
        book.editDebt(order.m_strAccount, order.m_strStock).m_nReturning -= order.rest();
}

} // namespace desk
