#include "desk/paper/Holds.h"

#include "desk/paper/CreditLedger.h"
#include "desk/paper/PaperFamilies.h"

#include <algorithm>

namespace desk {
namespace {

/// The parts of a position that an order may close.
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
    // Shares bought today are part of the volume but cannot be closed today.
    parts.m_nEarlier = std::min(parts.m_nEarlier, position->available());
    parts.m_nToday = std::min(parts.m_nToday, position->available() - parts.m_nEarlier);
    return parts;
}

/// The part of a volume, traded next, for which the order needs money. The order's closing part trades first.
int unitsInMoney(const CPaperOrder& order, int volume) {
    return paysForClosing(order) ? volume : std::max(0, volume - order.closing());
}

/// The order's part of the money for which the shares owed were sold, without the money that other returns
/// have claimed.
CMoney unclaimedProceeds(const CPaperBook& book, const CPaperOrder& order) {
    const CPaperDebt* debt = book.m_debts.find({order.m_strAccount, order.m_strStock});
    if (debt == nullptr || debt->returnable() <= 0) return 0;
    const std::int64_t volume = std::min<std::int64_t>(order.rest(), debt->returnable());
    return partOf(debt->m_nAmount - debt->m_nClaimed, volume, debt->returnable());
}

/// What the book offers the order now: the worth and the number of the units that need money, and the
/// proceeds that returning the shares frees.
struct COffer {
    CMoney m_nWorth = 0;
    int m_nUnits = 0;
    CMoney m_nProceeds = 0;
};

std::optional<COffer> offerOf(const CPaperBook& book, const CPaperOrder& order, const CBookSides* sides) {
    COffer offer;
    if (sides == nullptr || isDirect(order)) return offer;
    std::int64_t rest = order.rest();
    std::int64_t skipped = rest - unitsInMoney(order, order.rest());
    CMoney proceeds = returnsShares(order) ? unclaimedProceeds(book, order) : 0;
    for (const CBookLevel& level : order.isBuy() ? sides->m_sell : sides->m_buy) {
        if (!isWithinLimit(order, level.m_nPrice)) continue;
        std::int64_t volume = std::min(rest, level.m_nVolume);
        if (volume == 0) break;
        // Counts level by level, because proceeds are freed per level and each part is rounded.
        const CMoney freed = partOf(proceeds, volume, rest);
        offer.m_nProceeds += freed;
        proceeds -= freed;
        rest -= volume;
        const std::int64_t closing = std::min(skipped, volume);
        skipped -= closing;
        volume -= closing;
        const std::optional<CMoney> amount = worthOf(order, level.m_nPrice, volume);
        if (!amount || offer.m_nWorth + *amount > kMaxMoney) return {};
        offer.m_nWorth += *amount;
        offer.m_nUnits += static_cast<int>(volume);
    }
    return offer;
}

/// `proceeds` is the held money that the order frees. It pays for buying the shares back.
CNeeds needsOfWorth(const CPaperOrder& order, CMoney amount, CMoney proceeds) {
    if (takesCredit(order)) return {0, amount};
    if (returnsShares(order)) return {order.isBuy() ? std::max<CMoney>(0, amount - proceeds) : 0, 0};
    if (order.isBuy() && paymentOf(order) != EPayment::Margin) return {amount, 0};
    return {rateOf(amount, order.m_nMarginRate), 0};
}

/// The money and credit that a volume of the order holds at its limit. An order without a limit holds
/// nothing, because it does not wait.
CNeeds needsAtLimit(const CPaperOrder& order, int volume) {
    const std::optional<CMoney> amount = worthOf(order, order.m_nPrice, unitsInMoney(order, volume));
    return needsOfWorth(order, amount.value_or(0), order.m_nProceeds);
}

CPaperDebt& editCredit(CPaperBook& book, const CPaperOrder& order) {
    const bool isMoney = operationOf(order).m_eBooking == kit::EBooking::BorrowedMoney;
    return book.editDebt(order.m_strAccount, isMoney ? std::string() : order.m_strStock);
}

void setHeld(CPaperBook& book, CPaperOrder& order, const CNeeds& held) {
    if (held.m_nMoney != order.m_nFrozen)
        book.m_funds.edit(order.m_strAccount).m_nFrozen += held.m_nMoney - order.m_nFrozen;
    if (held.m_nCredit != order.m_nCredit)
        editCredit(book, order).m_nReserved += held.m_nCredit - order.m_nCredit;
    order.m_nFrozen = held.m_nMoney;
    order.m_nCredit = held.m_nCredit;
}

void freeze(CPaperBook& book, const CPaperOrder& order, int volume, int today) {
    if (volume == 0) return;
    CPaperPosition& position = book.editPosition(order, closedSide(order));
    position.m_nFrozen += volume;
    position.m_nFrozenToday += today;
}

void claim(CPaperBook& book, CPaperOrder& order, int volume, CMoney proceeds) {
    CPaperDebt& debt = book.editDebt(order.m_strAccount, order.m_strStock);
    debt.m_nReturning += volume;
    debt.m_nClaimed += proceeds;
    order.m_nProceeds += proceeds;
}

/// The closing part of a volume is first taken from the part of the position that the operation closes first.
CReleased takeFromPlan(CPaperOrder& order, int volume) {
    CReleased released;
    if (order.closing() == 0) return released;
    const bool isTodayFirst = closingOf(order) == EClosing::TodayFirst;
    released.m_nClosed = std::min(volume, order.closing());
    released.m_nClosedToday = isTodayFirst
                                  ? std::min(released.m_nClosed, order.m_nCloseToday)
                                  : released.m_nClosed - std::min(released.m_nClosed, order.m_nCloseEarlier);
    order.m_nCloseToday -= released.m_nClosedToday;
    order.m_nCloseEarlier -= released.m_nClosed - released.m_nClosedToday;
    return released;
}

CReleased releaseVolume(CPaperBook& book, CPaperOrder& order, int volume) {
    CReleased released = takeFromPlan(order, volume);
    freeze(book, order, -released.m_nClosed, -released.m_nClosedToday);
    if (!returnsShares(order) || volume == 0) return released;
    released.m_nProceeds = partOf(order.m_nProceeds, volume, order.rest());
    claim(book, order, -volume, -released.m_nProceeds);
    return released;
}

/// The credit that the order can use: the credit that it holds, and the unused credit of the account.
CMoney creditWithin(const CPaperBook& book, const CPaperOrder& order) {
    return order.m_nCredit + std::max<CMoney>(0, creditLeft(book, order.m_strAccount));
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

std::int64_t returnableShares(const CPaperBook& book, const CPaperOrder& order) {
    const CPaperDebt* debt = book.m_debts.find({order.m_strAccount, order.m_strStock});
    return debt != nullptr ? debt->returnable() : 0;
}

std::optional<CNeeds> needsOf(const CPaperBook& book, const CPaperOrder& order) {
    return needsOf(book, order, book.m_sides.find(order.m_strStock));
}

std::optional<CNeeds> needsOf(const CPaperBook& book, const CPaperOrder& order, const CBookSides* sides) {
    const std::optional<CMoney> atLimit = worthOf(order, order.m_nPrice, unitsInMoney(order, order.rest()));
    const std::optional<COffer> offer = offerOf(book, order, sides);
    if (!atLimit || !offer) return {};
    // A sale that opens may trade at better prices than its limit, and then needs a larger margin.
    const int waiting = order.m_bMarket ? 0 : unitsInMoney(order, order.rest()) - offer->m_nUnits;
    const std::optional<CMoney> later = worthOf(order, order.m_nPrice, waiting);
    if (!later || offer->m_nWorth + *later > kMaxMoney) return {};
    // The rest of an order without a limit is cancelled and frees nothing.
    const CMoney proceeds = order.m_bMarket ? offer->m_nProceeds : unclaimedProceeds(book, order);
    return needsOfWorth(order, std::max(*atLimit, offer->m_nWorth + *later), proceeds);
}

void hold(CPaperBook& book, CPaperOrder& order) {
    if (returnsShares(order)) claim(book, order, order.rest(), unclaimedProceeds(book, order));
    setHeld(book, order, needsAtLimit(order, order.rest()));
    freeze(book, order, order.closing(), order.m_nCloseToday);
}

int tradableVolume(const CPaperBook& book, const CPaperOrder& order, CMoney price, int volume) {
    if (!takesCredit(order)) return volume;
    const std::optional<CMoney> one = worthOf(order, price, 1);
    if (!one || *one <= 0) return 0;
    return static_cast<int>(std::min<CMoney>(volume, creditWithin(book, order) / *one));
}

CReleased releaseTraded(CPaperBook& book, CPaperOrder& order, CMoney price, int volume) {
    const CReleased released = releaseVolume(book, order, volume);
    CNeeds rest = needsAtLimit(order, order.rest() - volume);
    if (takesCredit(order)) {
        const CMoney taken = worthOf(order, price, volume).value_or(0);
        rest.m_nCredit = std::min(rest.m_nCredit, creditWithin(book, order) - taken);
    }
    setHeld(book, order, rest);
    return released;
}

void releaseRest(CPaperBook& book, CPaperOrder& order) {
    releaseVolume(book, order, order.rest());
    setHeld(book, order, {});
}

} // namespace desk
