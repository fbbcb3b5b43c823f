#include "desk/paper/Matching.h"

#include <algorithm>

namespace desk {
namespace {

bool isWithinLimit(const CPaperOrder& order, CMoney price) {
    if (order.m_bMarket) return true;
    return order.isBuy() ? price <= order.m_nPrice : price >= order.m_nPrice;
}

/// Part of a sum that falls on a part of the volume, rounded down; the last part takes the rest.
CMoney partOf(CMoney sum, std::int64_t part, std::int64_t whole) {
    __extension__ using CWide = __int128;
    return static_cast<CMoney>(static_cast<CWide>(sum) * part / whole);
}

void settleBuy(CPaperBook& book, CPaperOrder& order, CMoney amount, int volume) {
    CPaperFunds& funds = book.m_funds.edit(order.m_strAccount);
    const CMoney released = order.m_bMarket ? 0 : order.m_nPrice * volume;
    funds.m_nCash -= amount;
    funds.m_nFrozen -= released;
    order.m_nFrozen -= released;
    CPaperPosition& position = book.editPosition(order);
    position.m_nVolume += volume;
    position.m_nCost += amount;
}

void settleSell(CPaperBook& book, const CPaperOrder& order, CMoney amount, int volume) {
    book.m_funds.edit(order.m_strAccount).m_nCash += amount;
    CPaperPosition& position = book.editPosition(order);
    position.m_nCost -= partOf(position.m_nCost, volume, position.m_nVolume);
    position.m_nVolume -= volume;
    position.m_nSellable -= volume;
    position.m_nFrozen -= volume;
}

void fill(CPaperBook& book, CPaperOrder& order, CMoney price, CMoney amount, int volume) {
    order.m_nFilled += volume;
    order.m_nFilledAmount += amount;
    order.m_eStatus = order.rest() == 0 ? EOrderStatus::Filled : EOrderStatus::PartFilled;
    if (order.isBuy())
        settleBuy(book, order, amount, volume);
    else
        settleSell(book, order, amount, volume);
    book.addFill(order, price, volume);
}

} // namespace

void freeze(CPaperBook& book, CPaperOrder& order) {
    if (!order.isBuy()) {
        book.editPosition(order).m_nFrozen += order.m_nVolume;
    } else if (!order.m_bMarket) {
        order.m_nFrozen = order.m_nPrice * order.m_nVolume;
        book.m_funds.edit(order.m_strAccount).m_nFrozen += order.m_nFrozen;
    }
}

void match(CPaperBook& book, CPaperOrder& order) {
    if (book.m_sides.find(order.m_strStock) == nullptr) return;
    CBookSides& sides = book.m_sides.edit(order.m_strStock);
    const int before = order.m_nFilled;
    for (CBookLevel& level : order.isBuy() ? sides.m_sell : sides.m_buy) {
        const std::int64_t volume = std::min<std::int64_t>(order.rest(), level.m_nVolume);
        if (volume == 0 || !isWithinLimit(order, level.m_nPrice)) continue;
        const std::optional<CMoney> amount = amountOf(level.m_nPrice, volume);
        if (!amount) continue; // nobody trades at such a price
        level.m_nVolume -= volume;
        fill(book, order, level.m_nPrice, *amount, static_cast<int>(volume));
    }
    if (order.m_nFilled != before) book.announce(order);
}

void cancel(CPaperBook& book, CPaperOrder& order, const std::string& reason) {
    if (!order.isBuy()) book.editPosition(order).m_nFrozen -= order.rest();
    if (order.m_nFrozen != 0) book.m_funds.edit(order.m_strAccount).m_nFrozen -= order.m_nFrozen;
    order.m_nFrozen = 0;
    order.m_eStatus = EOrderStatus::Cancelled;
    order.m_strReason = reason;
    book.announce(order);
}

std::optional<CMoney> marketCost(const CPaperBook& book, const CPaperOrder& order) {
    const CBookSides* sides = book.m_sides.find(order.m_strStock);
    if (sides == nullptr) return 0;
    CMoney cost = 0;
    std::int64_t rest = order.m_nVolume;
    for (const CBookLevel& level : sides->m_sell) {
        const std::int64_t volume = std::min(rest, level.m_nVolume);
        const std::optional<CMoney> amount = amountOf(level.m_nPrice, volume);
        if (!amount || cost + *amount > kMaxMoney) return {};
        cost += *amount;
        rest -= volume;
    }
    return cost;
}

} // namespace desk
