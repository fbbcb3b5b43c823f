#include "tests/desk/paper/FamilyDesk.h"

using namespace desk;
using namespace desk::test;

namespace {

constexpr EFamily kCredit = EFamily::Credit; // price 10, may owe 5000
constexpr int kBuyOnCredit = 20;
constexpr int kSellShort = 21;
constexpr int kBuyToReturn = 22;
constexpr int kReturnShares = 23;
constexpr int kSellToRepay = 24;
constexpr int kRepayMoney = 25;

class CreditOrders : public FamilyDesk {
protected:
    std::string outcomeOf(int operation, int volume, double price) {
        return FamilyDesk::outcomeOf(kCredit, operation, volume, price);
    }
    std::string repay(double amount, int kind = TC::kQuantityKindPlain) {
        const int volume = amount < 1000000 ? static_cast<int>(amount) : TC::kUnsetInt;
        TC::CCodeOrderParam code = recordOf(kCredit, kRepayMoney, volume, 10);
        code.m_stock = {};
        code.m_nQuantityKind = kind;
        code.m_dQuantity = amount;
        return outcome(orderOf(kCredit, code));
    }
    CPaperDebt debt(const std::string& stock) const {
        for (const CPaperDebt& each : m_broker->debts()) {
            if (each.m_strAccount == "CR" && each.m_strStock == stock) return each;
        }
        return {};
    }
    /// Sets a book with one buy price and one sell price.
    void bid(double buy, double sell) {
        m_quotes.setQuote(keyOf(kCredit), {{buy, 1000}}, {{sell, 1000}});
        ASSERT_TRUE(m_broker->onQuote(keyOf(kCredit)).isSuccess());
    }
    double owed() const { return fromMoney(debt("").m_nAmount); }
    std::int64_t sharesOwed() const { return debt(keyOf(kCredit)).m_nVolume; }
};

} // namespace

TEST_F(CreditOrders, CollateralIsBoughtAndSoldWithTheAccountsOwnMoney) {
    startDay("20260105");
    EXPECT_EQ(outcomeOf(18, 1000, 10), "filled");
    EXPECT_EQ(cash(kCredit), kFunds - 10000);
    EXPECT_EQ(outcomeOf(19, 1000, 10), "not enough to sell: 1000 ordered, 0 available today");
    startDay("20260106");
    EXPECT_EQ(outcomeOf(19, 1000, 10), "filled");
    EXPECT_EQ(cash(kCredit), kFunds);
    EXPECT_TRUE(m_broker->debts().empty());
}

TEST_F(CreditOrders, FinancedBuyTakesCreditAndNoCash) {
    EXPECT_EQ(outcomeOf(kBuyOnCredit, 300, 10), "filled");
    EXPECT_EQ(cash(kCredit), kFunds);
    EXPECT_EQ(frozen(kCredit), 0);
    EXPECT_EQ(owed(), 3000);
    EXPECT_EQ(longOf(kCredit), 300);
    EXPECT_EQ(positionOf(kCredit).available(), 0);
}

TEST_F(CreditOrders, CreditLimitCoversMoneySharesAndWaitingOrders) {
    EXPECT_EQ(outcomeOf(kBuyOnCredit, 100, 10), "filled");
    EXPECT_EQ(outcomeOf(kSellShort, 100, 10), "filled");
    EXPECT_EQ(outcomeOf(kBuyOnCredit, 100, 9), "working");
    EXPECT_EQ(debt("").m_nReserved, toMoney(900).value());
    EXPECT_EQ(outcomeOf(kSellShort, 100, 12), "working");
    EXPECT_EQ(outcomeOf(kBuyOnCredit, 100, 10), "not enough credit: needs 1000.0000, available 900.0000");
    EXPECT_EQ(outcomeOf(kSellShort, 100, 8), "not enough credit: needs 1000.0000, available 900.0000")
        << "the book pays 10";
    ASSERT_TRUE(m_broker->cancelTask(3, "").isSuccess());
    EXPECT_EQ(debt("").m_nReserved, 0);
    EXPECT_EQ(outcomeOf(kBuyOnCredit, 100, 10), "filled");
    EXPECT_EQ(owed(), 2000);
}

TEST_F(CreditOrders, CreditIsHeldAtTheLimitAndOwedAtThePrice) {
    outcomeOf(kBuyOnCredit, 200, 9);
    offer(kCredit, 8, 100);
    EXPECT_EQ(owed(), 800);
    EXPECT_EQ(debt("").m_nReserved, toMoney(900).value());
    offer(kCredit, 8);
    EXPECT_EQ(owed(), 1600);
    EXPECT_EQ(debt("").m_nReserved, 0);
}

TEST_F(CreditOrders, ShortSaleOwesSharesAndItsProceedsAreHeld) {
    EXPECT_EQ(outcomeOf(kSellShort, 300, 10), "filled");
    EXPECT_EQ(sharesOwed(), 300);
    EXPECT_EQ(cash(kCredit), kFunds + 3000);
    EXPECT_EQ(available(kCredit), kFunds);
    EXPECT_EQ(longOf(kCredit), 0);
    EXPECT_EQ(shortOf(kCredit), 0) << "it is a debt, not a position";
}

TEST_F(CreditOrders, BuyingBackReturnsSharesAndFreesTheirProceeds) {
    outcomeOf(kSellShort, 300, 10);
    offer(kCredit, 9);
    EXPECT_EQ(outcomeOf(kBuyToReturn, 200, 9), "filled");
    EXPECT_EQ(sharesOwed(), 100);
    EXPECT_EQ(available(kCredit), kFunds + 200);
    EXPECT_EQ(margin(kCredit), 1000);
    EXPECT_EQ(outcomeOf(kBuyToReturn, 200, 9), "fewer shares are owed: 200 to return, 100 owed");
    EXPECT_EQ(outcomeOf(kBuyToReturn, 100, 8), "working");
    EXPECT_EQ(outcomeOf(kBuyToReturn, 100, 9), "fewer shares are owed: 100 to return, 0 owed");
    ASSERT_TRUE(m_broker->cancelTask(4, "").isSuccess());
    EXPECT_EQ(outcomeOf(kBuyToReturn, 100, 9), "filled");
    EXPECT_TRUE(m_broker->debts().empty());
    EXPECT_EQ(margin(kCredit), 0);
}

TEST_F(CreditOrders, ProceedsOfTheShortSalePayForBuyingBack) {
    outcomeOf(18, 9990, 10);
    ASSERT_EQ(available(kCredit), 100);
    outcomeOf(kSellShort, 100, 10);
    EXPECT_EQ(outcomeOf(kBuyToReturn, 100, 11.01), "not enough funds: needs 101.0000, available 100.0000");
    offer(kCredit, 12);
    EXPECT_EQ(outcomeOf(kBuyToReturn, 100, 11), "working");
    EXPECT_EQ(frozen(kCredit), 100);
    offer(kCredit, 11);
    EXPECT_EQ(available(kCredit), 0);
    EXPECT_EQ(frozen(kCredit), 0);
    EXPECT_EQ(cash(kCredit), 0);
}

TEST_F(CreditOrders, WaitingShortSaleSellsAtABetterPriceAsFarAsItsCreditPays) {
    offer(kCredit, 9);
    const CPaperOrder waiting = orderOf(kCredit, kSellShort, 500, 10);
    offer(kCredit, 12, 100);
    EXPECT_EQ(sharesOwed(), 100);
    EXPECT_EQ(debt(keyOf(kCredit)).m_nReserved, toMoney(3800).value()) << "what the price has left of it";
    EXPECT_EQ(order(waiting.m_nId).m_eStatus, EOrderStatus::PartFilled);
    offer(kCredit, 12);
    EXPECT_EQ(sharesOwed(), 416);
    EXPECT_EQ(fromMoney(debt(keyOf(kCredit)).m_nAmount), 416 * 12);
    EXPECT_EQ(order(waiting.m_nId).m_eStatus, EOrderStatus::Cancelled);
    EXPECT_EQ(order(waiting.m_nId).m_strReason, "not enough credit for the better price");
    EXPECT_EQ(debt(keyOf(kCredit)).m_nReserved, 0);
}

TEST_F(CreditOrders, WaitingShortSaleTakesWhatElseIsLeftOfTheLimit) {
    offer(kCredit, 9);
    outcomeOf(kSellShort, 400, 10);
    EXPECT_EQ(outcomeOf(kSellShort, 100, 10), "working");
    ASSERT_TRUE(m_broker->cancelTask(2, "").isSuccess());
    offer(kCredit, 12);
    EXPECT_EQ(order(1).m_eStatus, EOrderStatus::Filled);
    EXPECT_EQ(fromMoney(debt(keyOf(kCredit)).m_nAmount), 4800);
}

TEST_F(CreditOrders, LimitThatWasLoweredBoundsWhatWaitsByWhatItHolds) {
    offer(kCredit, 9);
    outcomeOf(kSellShort, 300, 10);
    std::vector<CAccountEntry> accounts = familyAccounts();
    for (CAccountEntry& account : accounts)
        account.creditLimit = 0;
    openFamilies(accounts);
    EXPECT_EQ(outcomeOf(kSellShort, 100, 10), "not enough credit: needs 1000.0000, available -3000.0000");
    offer(kCredit, 12);
    EXPECT_EQ(sharesOwed(), 250);
    EXPECT_EQ(fromMoney(debt(keyOf(kCredit)).m_nAmount), 3000);
    EXPECT_EQ(order(1).m_eStatus, EOrderStatus::Cancelled);
}

TEST_F(CreditOrders, ReturnWithoutLimitIsPaidByTheProceedsOfWhatTheBookHasAlone) {
    std::vector<CAccountEntry> accounts = {familyAccounts()[3]};
    accounts[0].key = "C2";
    accounts[0].funds = 0;
    accounts[0].creditLimit = 10000;
    openFamilies(accounts);
    const auto orderOfC2 = [this](int operation, int volume, TC::EPriceType type) {
        TC::CCodeOrderParam code = recordOf(kCredit, operation, volume, 10);
        code.m_account = account("C2");
        code.m_ePriceType = type;
        return outcome(orderOf(kCredit, code));
    };
    ASSERT_EQ(orderOfC2(kSellShort, 1000, TC::EPriceType::Specified), "filled");
    offer(kCredit, 50, 100);
    EXPECT_EQ(orderOfC2(kBuyToReturn, 1000, kMarket), "not enough funds for what the book has");
    EXPECT_EQ(funds("C2").available(), 0);
    offer(kCredit, 10, 100);
    EXPECT_EQ(orderOfC2(kBuyToReturn, 1000, kMarket), "cancelled") << "a hundred pay for themselves";
    EXPECT_EQ(m_broker->debts().at(0).m_nVolume, 900);
    EXPECT_EQ(funds("C2").available(), 0);
}

TEST_F(CreditOrders, WaitingReturnCountsOnTheProceedsThatItFound) {
    outcomeOf(18, 9990, 10);
    outcomeOf(kSellShort, 100, 10);
    bid(12, 12);
    EXPECT_EQ(outcomeOf(kBuyToReturn, 100, 11), "working");
    EXPECT_EQ(frozen(kCredit), 100);
    EXPECT_EQ(available(kCredit), 0);
    bid(5, 12);
    EXPECT_EQ(outcomeOf(kSellShort, 100, 5), "filled");
    offer(kCredit, 11);
    EXPECT_EQ(available(kCredit), 0);
    EXPECT_EQ(sharesOwed(), 100);
    EXPECT_EQ(margin(kCredit), 500) << "what the second hundred were sold for";
}

TEST_F(CreditOrders, ReturnsClaimTheProceedsOneAfterTheOther) {
    outcomeOf(kSellShort, 100, 10);
    bid(10, 12);
    EXPECT_EQ(outcomeOf(kBuyToReturn, 60, 11), "working");
    EXPECT_EQ(frozen(kCredit), 60);
    bid(5, 12);
    outcomeOf(kSellShort, 60, 5);
    EXPECT_EQ(outcomeOf(kBuyToReturn, 100, 10), "working");
    EXPECT_EQ(frozen(kCredit), 60 + 300) << "the rest of the proceeds is 400 and 300";
    EXPECT_EQ(debt(keyOf(kCredit)).m_nClaimed, toMoney(1300).value());
    ASSERT_TRUE(m_broker->cancelTask(2, "").isSuccess());
    EXPECT_EQ(debt(keyOf(kCredit)).m_nClaimed, toMoney(700).value());
    offer(kCredit, 10, 50);
    EXPECT_EQ(debt(keyOf(kCredit)).m_nClaimed, toMoney(350).value());
    EXPECT_EQ(frozen(kCredit), 150);
    EXPECT_EQ(available(kCredit), kFunds - 300);
    offer(kCredit, 9);
    EXPECT_EQ(available(kCredit), kFunds - 250);
    EXPECT_EQ(margin(kCredit), 600) << "of the 60 that are still owed";
}

TEST_F(CreditOrders, SharesAreReturnedFromThePosition) {
    startDay("20260105");
    outcomeOf(18, 300, 10);
    outcomeOf(kSellShort, 200, 10);
    EXPECT_EQ(outcomeOf(kReturnShares, 100, 0), "not enough to return: 100 ordered, 0 available today");
    startDay("20260106");
    EXPECT_EQ(outcomeOf(kReturnShares, 250, 0), "fewer shares are owed: 250 to return, 200 owed");
    const CPaperOrder order = orderOf(kCredit, kReturnShares, 150, TC::kUnsetDouble);
    EXPECT_EQ(order.m_eStatus, EOrderStatus::Filled);
    EXPECT_EQ(order.m_nFilled, 150);
    EXPECT_EQ(fills().size(), 2u) << "nothing was traded";
    EXPECT_EQ(sharesOwed(), 50);
    EXPECT_EQ(longOf(kCredit), 150);
    EXPECT_EQ(positionOf(kCredit).m_nFrozen, 0);
    EXPECT_EQ(debt(keyOf(kCredit)).m_nReturning, 0);
    EXPECT_EQ(margin(kCredit), 500);
}

TEST_F(CreditOrders, SellingToRepayPaysTheDebtAndKeepsTheSurplus) {
    startDay("20260105");
    outcomeOf(18, 300, 10);
    EXPECT_EQ(outcomeOf(kSellToRepay, 100, 10), "not enough to sell: 100 ordered, 0 available today");
    startDay("20260106");
    EXPECT_EQ(outcomeOf(kSellToRepay, 100, 10), "CR owes no money");
    outcomeOf(kBuyOnCredit, 150, 10);
    EXPECT_EQ(outcomeOf(kSellToRepay, 100, 10), "filled");
    EXPECT_EQ(owed(), 500);
    EXPECT_EQ(cash(kCredit), kFunds - 3000);
    EXPECT_EQ(outcomeOf(kSellToRepay, 100, 10), "filled");
    EXPECT_EQ(owed(), 0);
    EXPECT_EQ(cash(kCredit), kFunds - 3000 + 500);
}

TEST_F(CreditOrders, MoneyIsRepaidDirectlyUpToWhatIsOwed) {
    EXPECT_EQ(repay(10), "CR owes no money");
    outcomeOf(kBuyOnCredit, 100, 10);
    EXPECT_EQ(repay(1000.5), "repays 1000.5000, but only 1000.0000 is owed");
    EXPECT_EQ(repay(0), "the amount to repay is not positive or too large");
    EXPECT_EQ(repay(TC::kUnsetDouble), "the amount to repay is not positive or too large");
    EXPECT_EQ(repay(10, 49), "quantity kind 49 is not modelled");
    EXPECT_EQ(repay(400.5), "filled");
    EXPECT_EQ(m_broker->orders().back().m_nFilledAmount, toMoney(400.5).value());
    EXPECT_EQ(owed(), 599.5);
    EXPECT_EQ(cash(kCredit), kFunds - 400.5);
    EXPECT_EQ(repay(0.5), "filled");
    EXPECT_EQ(repay(599), "filled");
    EXPECT_TRUE(m_broker->debts().empty());
}

TEST_F(CreditOrders, DirectRepaymentTakesOnlyAvailableMoney) {
    outcomeOf(kBuyOnCredit, 100, 10);
    outcomeOf(18, 9950, 10);
    EXPECT_EQ(repay(600), "not enough funds: needs 600.0000, available 500.0000");
}

TEST_F(CreditOrders, BasketsTradeOnACreditAccountWithItsOwnMoney) {
    TC::CCodeOrderParam code = recordOf(EFamily::Basket, 18, 100, 10);
    code.m_account = account("CR");
    EXPECT_EQ(outcome(orderOf(EFamily::Basket, code)), "filled");
    EXPECT_EQ(cash(kCredit), kFunds - 1000);
    EXPECT_TRUE(m_broker->debts().empty());
}
