#include "desk/paper/Settlement.h"

#include "desk/paper/CreditLedger.h"
#include "desk/paper/Holds.h"
#include "desk/paper/PaperFamilies.h"

#include <algorithm>

namespace desk {
namespace {

CMoney worthOf(const CPaperOrder& order, CMoney price, int volume) {
    return amountOf(price, static_cast<std::int64_t>(volume) * order.m_nMultiplier).value_or(0);
}

/// The parts of a position's money that fall on a volume.
struct CMoneyParts {
    CMoney m_nCost = 0;
    CMoney m_nPaid = 0;
    CMoney m_nMargin = 0;
};

/// Takes a volume that the order held out of its position.
CMoneyParts takeOut(CPaperPosition& position, int volume, int today) {
    const CMoneyParts parts = {partOf(position.m_nCost, volume, position.m_nVolume),
                               partOf(position.m_nPaid, volume, position.m_nVolume),
                               partOf(position.m_nMargin, volume, position.m_nVolume)};
    position.m_nVolume -= volume;
    position.m_nSellable -= volume;
    position.m_nFrozen -= volume;
    position.m_nToday -= today;
    position.m_nFrozenToday -= today;
    position.m_nCost -= parts.m_nCost;
    position.m_nPaid -= parts.m_nPaid;
    position.m_nMargin -= parts.m_nMargin;
    return parts;
}

/// Marks a volume of the order as closed, and tells how much of it was opened today.
int takeFromPlan(CPaperOrder& order, int volume) {
    const bool isTodayFirst = closingOf(order) == EClosing::TodayFirst;
    const int today = isTodayFirst ? std::min(volume, order.m_nCloseToday)
                                   : volume - std::min(volume, order.m_nCloseEarlier);
    order.m_nCloseToday -= today;
    order.m_nCloseEarlier -= volume - today;
    return today;
}

void close(CPaperBook& book, CPaperOrder& order, CMoney price, int volume) {
    CPaperPosition& position = book.editPosition(order, closedSide(order));
    const CMoneyParts parts = takeOut(position, volume, takeFromPlan(order, volume));
    const CMoney rise = worthOf(order, price, volume) - parts.m_nCost;
    CPaperFunds& funds = book.m_funds.edit(order.m_strAccount);
    // What was paid comes back with what was gained; for a short position both have the other sign.
    funds.m_nCash += parts.m_nPaid + (position.m_eSide == EPositionSide::Long ? rise : -rise);
    funds.m_nMargin -= parts.m_nMargin;
}

void open(CPaperBook& book, CPaperOrder& order, CMoney price, int volume) {
    const CMoney amount = worthOf(order, price, volume);
    const CMoney inFull = order.isBuy() ? amount : -amount;
    const CMoney paid = paymentOf(order) == EPayment::Margin ? 0 : inFull;
    const CMoney margin = rateOf(amount, order.m_nMarginRate);
    CPaperFunds& funds = book.m_funds.edit(order.m_strAccount);
    funds.m_nCash -= paid;
    funds.m_nMargin += margin;
    CPaperPosition& position = book.editPosition(order, openedSide(order));
    position.m_nVolume += volume;
    position.m_nToday += volume;
    // Only what is plainly bought waits for the next day.
    if (operationOf(order).m_eEffect != EOperationEffect::Trade) position.m_nSellable += volume;
    position.m_nCost += amount;
    position.m_nPaid += paid;
    position.m_nMargin += margin;
}

void closeAndOpen(CPaperBook& book, CPaperOrder& order, CMoney price, int volume) {
    const int closing = std::min(volume, order.closing());
    if (closing != 0) close(book, order, price, closing);
    if (volume != closing) open(book, order, price, volume - closing);
}

void buyOnCredit(CPaperBook& book, CPaperOrder& order, CMoney price, int volume) {
    borrowMoney(book, order.m_strAccount, worthOf(order, price, volume));
    open(book, order, price, volume);
}

void sellShort(CPaperBook& book, CPaperOrder& order, CMoney price, int volume) {
    sellBorrowed(book, order, worthOf(order, price, volume), volume);
}

void sellToRepay(CPaperBook& book, CPaperOrder& order, CMoney price, int volume) {
    close(book, order, price, volume);
    repayMoney(book, order.m_strAccount, worthOf(order, price, volume));
}

void buyToReturn(CPaperBook& book, CPaperOrder& order, CMoney price, int volume) {
    book.m_funds.edit(order.m_strAccount).m_nCash -= worthOf(order, price, volume);
    returnShares(book, order, volume);
}

struct CSettler {
    EBooking m_eBooking;
    void (*m_pSettle)(CPaperBook&, CPaperOrder&, CMoney, int);
};

constexpr CSettler kSettlers[] = {
    {EBooking::Own, closeAndOpen},           {EBooking::BorrowedMoney, buyOnCredit},
    {EBooking::BorrowedShares, sellShort},   {EBooking::MoneyRepaid, sellToRepay},
    {EBooking::SharesReturned, buyToReturn},
};

} // namespace

void settleTrade(CPaperBook& book, CPaperOrder& order, CMoney price, int volume) {
    releaseTraded(book, order, volume);
    for (const CSettler& settler : kSettlers) {
        if (settler.m_eBooking == operationOf(order).m_eBooking)
            settler.m_pSettle(book, order, price, volume);
    }
}

void settleDirectly(CPaperBook& book, CPaperOrder& order, CMoney money) {
    if (operationOf(order).m_eEffect == EOperationEffect::RepayMoney) {
        repayMoney(book, order.m_strAccount, money);
        return;
    }
    // The shares leave the account without money, at whatever they had cost.
    const int today = takeFromPlan(order, order.m_nVolume);
    takeOut(book.editPosition(order, closedSide(order)), order.m_nVolume, today);
    returnShares(book, order, order.m_nVolume);
}

} // namespace desk
