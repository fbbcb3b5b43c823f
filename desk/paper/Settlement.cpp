#include "desk/paper/Settlement.h"

#include "desk/paper/CreditLedger.h"
#include "desk/paper/Holds.h"
#include "desk/paper/PaperFamilies.h"
#include "orderservice/base/FindRow.h"

#include <algorithm>
#include <cassert>

namespace desk {
namespace {

/// The part of an order that is booked in one step.
struct CDeal {
    CMoney m_nPrice = 0; ///< 0 if nothing is traded
    int m_nVolume = 0;
    CMoney m_nMoney = 0; ///< the worth of a trade, or the amount of a repayment
    CReleased m_released;
};

CMoney valueOf(const CPaperOrder& order, const CDeal& deal, int volume) {
    return worthOf(order, deal.m_nPrice, volume).value_or(0);
}

/// The parts of a position's money that belong to a volume.
struct CMoneyParts {
    CMoney m_nCost = 0;
    CMoney m_nPaid = 0;
    CMoney m_nMargin = 0;
};

CMoneyParts takeOut(CPaperPosition& position, const CReleased& released) {
    const int volume = released.m_nClosed;
    const CMoneyParts parts = {partOf(position.m_nCost, volume, position.m_nVolume),
                               partOf(position.m_nPaid, volume, position.m_nVolume),
                               partOf(position.m_nMargin, volume, position.m_nVolume)};
    position.m_nVolume -= volume;
    position.m_nSellable -= volume;
    position.m_nToday -= released.m_nClosedToday;
    position.m_nCost -= parts.m_nCost;
    position.m_nPaid -= parts.m_nPaid;
    position.m_nMargin -= parts.m_nMargin;
    return parts;
}

void close(CPaperBook& book, CPaperOrder& order, const CDeal& deal) {
    CPaperPosition& position = book.editPosition(order, closedSide(order));
    const std::int64_t units = static_cast<std::int64_t>(deal.m_released.m_nClosed) * position.m_nMultiplier;
    const CMoneyParts parts = takeOut(position, deal.m_released);
    const CMoney rise = amountOf(deal.m_nPrice, units).value_or(0) - parts.m_nCost;
    CPaperFunds& funds = book.m_funds.edit(order.m_strAccount);
    // The money paid comes back, plus the gain. For a short position both have the opposite sign.
    funds.m_nCash += parts.m_nPaid + (position.m_eSide == EPositionSide::Long ? rise : -rise);
    funds.m_nMargin -= parts.m_nMargin;
}

void open(CPaperBook& book, CPaperOrder& order, const CDeal& deal) {
    const int volume = deal.m_nVolume - deal.m_released.m_nClosed;
    const CMoney amount = valueOf(order, deal, volume);
    const CMoney inFull = order.isBuy() ? amount : -amount;
    const CMoney paid = paymentOf(order) == EPayment::Margin ? 0 : inFull;
    const CMoney margin = rateOf(amount, order.m_nMarginRate);
    CPaperFunds& funds = book.m_funds.edit(order.m_strAccount);
    funds.m_nCash -= paid;
    funds.m_nMargin += margin;
    CPaperPosition& position = book.editPosition(order, openedSide(order));
    if (position.m_nVolume == 0) position.m_nMultiplier = order.m_nMultiplier;
    position.m_nVolume += volume;
    position.m_nToday += volume;
    // Only volume from plain buys becomes sellable on the next day.
    if (operationOf(order).m_eEffect != kit::EOperationEffect::Trade) position.m_nSellable += volume;
    position.m_nCost += amount;
    position.m_nPaid += paid;
    position.m_nMargin += margin;
}

void closeAndOpen(CPaperBook& book, CPaperOrder& order, const CDeal& deal) {
    if (deal.m_released.m_nClosed != 0) close(book, order, deal);
    if (deal.m_nVolume != deal.m_released.m_nClosed) open(book, order, deal);
}

void buyOnCredit(CPaperBook& book, CPaperOrder& order, const CDeal& deal) {
    borrowMoney(book, order.m_strAccount, deal.m_nMoney);
    open(book, order, deal);
}

void sellShort(CPaperBook& book, CPaperOrder& order, const CDeal& deal) {
    sellBorrowed(book, order, deal.m_nMoney, deal.m_nVolume);
}

void sellToRepay(CPaperBook& book, CPaperOrder& order, const CDeal& deal) {
    close(book, order, deal);
    repayMoney(book, order.m_strAccount, deal.m_nMoney);
}

void repay(CPaperBook& book, CPaperOrder& order, const CDeal& deal) {
    repayMoney(book, order.m_strAccount, deal.m_nMoney);
}

void buyToReturn(CPaperBook& book, CPaperOrder& order, const CDeal& deal) {
    book.m_funds.edit(order.m_strAccount).m_nCash -= deal.m_nMoney;
    bookReturn(book, order, deal.m_nVolume, deal.m_released.m_nProceeds);
}

/// The shares leave the account without payment; their cost does not matter.
void returnOwn(CPaperBook& book, CPaperOrder& order, const CDeal& deal) {
    takeOut(book.editPosition(order, closedSide(order)), deal.m_released);
    bookReturn(book, order, deal.m_nVolume, deal.m_released.m_nProceeds);
}

using EEffect = kit::EOperationEffect;

struct CSettler {
    EEffect m_eEffect;
    kit::EBooking m_eBooking;
    void (*m_pSettle)(CPaperBook&, CPaperOrder&, const CDeal&);
};

constexpr CSettler kSettlers[] = {
    {EEffect::Trade, kit::EBooking::Own, closeAndOpen},
    {EEffect::Open, kit::EBooking::Own, closeAndOpen},
    {EEffect::Close, kit::EBooking::Own, closeAndOpen},
    {EEffect::CloseThenOpen, kit::EBooking::Own, closeAndOpen},
    {EEffect::Trade, kit::EBooking::BorrowedMoney, buyOnCredit},
    {EEffect::Trade, kit::EBooking::BorrowedShares, sellShort},
    {EEffect::Trade, kit::EBooking::MoneyRepaid, sellToRepay},
    {EEffect::RepayMoney, kit::EBooking::MoneyRepaid, repay},
    {EEffect::Trade, kit::EBooking::SharesReturned, buyToReturn},
    {EEffect::ReturnShares, kit::EBooking::SharesReturned, returnOwn},
};

const CSettler* settlerOf(const kit::COperation& operation) {
    return utils::findRow(kSettlers, [&](const CSettler& row) {
        return row.m_eEffect == operation.m_eEffect && row.m_eBooking == operation.m_eBooking;
    });
}

void settle(CPaperBook& book, CPaperOrder& order, CDeal deal) {
    const CSettler* settler = settlerOf(operationOf(order));
    assert(settler != nullptr); // orders without a settler are rejected earlier
    deal.m_released = releaseTraded(book, order, deal.m_nPrice, deal.m_nVolume);
    settler->m_pSettle(book, order, deal);
}

} // namespace

bool canSettle(const kit::COperation& operation) {
    return settlerOf(operation) != nullptr;
}

void settleTrade(CPaperBook& book, CPaperOrder& order, CMoney price, int volume) {
    settle(book, order, {price, volume, worthOf(order, price, volume).value_or(0), {}});
}

void settleDirectly(CPaperBook& book, CPaperOrder& order, CMoney money) {
    settle(book, order, {0, order.m_nVolume, money, {}});
}

} // namespace desk
