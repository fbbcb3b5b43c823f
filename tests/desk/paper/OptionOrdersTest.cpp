#include "tests/desk/paper/FamilyDesk.h"

#include <ostream>

using namespace desk;
using namespace desk::test;

namespace {

/// The two families of options: their operations, and the money of one lot.
struct COptionCase {
    EFamily m_eFamily;
    int m_nBuyOpen;
    int m_nSellClose;
    int m_nSellOpen;
    int m_nBuyClose;
    double m_dPrice;
    double m_dPremium; ///< for one lot at the price
    double m_dMargin;  ///< for one sold lot at the price
};

void PrintTo(const COptionCase& options, std::ostream* out) {
    *out << "family " << static_cast<int>(options.m_eFamily);
}

constexpr COptionCase kCases[] = {
    {EFamily::Option, 32, 33, 34, 35, 0.1, 100, 50},
    {EFamily::FutureOption, 0, 2, 3, 5, 4, 40, 20},
};

class OptionOrders : public FamilyDesk, public testing::WithParamInterface<COptionCase> {
protected:
    const COptionCase c = GetParam();
    const EFamily f = c.m_eFamily;
};

class FutureOptionOrders : public FamilyDesk {};

} // namespace

TEST_P(OptionOrders, BuyerPaysThePremiumAndHoldsNoMargin) {
    EXPECT_EQ(outcomeOf(f, c.m_nBuyOpen, 3, c.m_dPrice), "filled");
    EXPECT_EQ(cash(f), kFunds - 3 * c.m_dPremium);
    EXPECT_EQ(margin(f), 0);
    EXPECT_EQ(positionOf(f).available(), 3) << "it may be closed today";
    offer(f, 2 * c.m_dPrice);
    EXPECT_EQ(outcomeOf(f, c.m_nSellClose, 2, c.m_dPrice), "filled");
    EXPECT_EQ(cash(f), kFunds - 3 * c.m_dPremium + 4 * c.m_dPremium);
    EXPECT_EQ(fromMoney(positionOf(f).m_nCost), c.m_dPremium);
}

TEST_P(OptionOrders, SellerGetsThePremiumAndHoldsAMargin) {
    EXPECT_EQ(outcomeOf(f, c.m_nSellOpen, 4, c.m_dPrice), "filled");
    EXPECT_EQ(cash(f), kFunds + 4 * c.m_dPremium);
    EXPECT_EQ(margin(f), 4 * c.m_dMargin);
    EXPECT_EQ(shortOf(f), 4);
    offer(f, 2 * c.m_dPrice);
    EXPECT_EQ(outcomeOf(f, c.m_nBuyClose, 1, 2 * c.m_dPrice), "filled");
    EXPECT_EQ(cash(f), kFunds + 2 * c.m_dPremium);
    EXPECT_EQ(margin(f), 3 * c.m_dMargin);
    EXPECT_EQ(frozen(f), 0);
}

TEST_P(OptionOrders, WaitingOrdersFreezePremiumOrMargin) {
    orderOf(f, c.m_nBuyOpen, 2, c.m_dPrice / 2);
    EXPECT_EQ(frozen(f), c.m_dPremium);
    orderOf(f, c.m_nSellOpen, 2, c.m_dPrice * 2);
    EXPECT_EQ(frozen(f), c.m_dPremium + 4 * c.m_dMargin);
    orderOf(f, c.m_nSellOpen, 2, c.m_dPrice);
    orderOf(f, c.m_nBuyClose, 2, c.m_dPrice / 2);
    EXPECT_EQ(frozen(f), 2 * c.m_dPremium + 4 * c.m_dMargin);
    for (int task = 1; task <= 4; ++task)
        (void)m_broker->cancelTask(task, "");
    EXPECT_EQ(frozen(f), 0);
    EXPECT_EQ(positionOf(f, EPositionSide::Short).m_nFrozen, 0);
}

TEST_P(OptionOrders, PremiumAndMarginMustBeAvailable) {
    const int most = static_cast<int>(kFunds / c.m_dPremium);
    EXPECT_EQ(outcomeOf(f, c.m_nBuyOpen, most + 1, c.m_dPrice).substr(0, 17), "not enough funds:");
    EXPECT_EQ(outcomeOf(f, c.m_nSellOpen, 2 * most + 1, c.m_dPrice).substr(0, 17), "not enough funds:");
    EXPECT_EQ(outcomeOf(f, c.m_nSellOpen, 2 * most, c.m_dPrice), "filled");
    EXPECT_EQ(outcome(atMarket(f, c.m_nBuyClose, 2 * most)), "filled");
    EXPECT_EQ(cash(f), kFunds);
    EXPECT_EQ(margin(f), 0);
}

TEST_P(OptionOrders, OnlyWhatIsOpenCanBeClosed) {
    orderOf(f, c.m_nBuyOpen, 2, c.m_dPrice);
    EXPECT_EQ(outcomeOf(f, c.m_nBuyClose, 1, c.m_dPrice).substr(0, 36),
              "not enough to close: 1 ordered, 0 av");
    EXPECT_EQ(outcomeOf(f, c.m_nSellClose, 3, c.m_dPrice).substr(0, 36),
              "not enough to close: 3 ordered, 2 av");
}

INSTANTIATE_TEST_SUITE_P(Both, OptionOrders, testing::ValuesIn(kCases), [](const auto& testCase) {
    return testCase.param.m_eFamily == EFamily::Option ? std::string("Stock") : std::string("Future");
});

TEST_F(FutureOptionOrders, BuyThatClosesThenOpensPaysForBoth) {
    const EFamily f = EFamily::FutureOption;
    orderOf(f, 3, 2, 4);
    orderOf(f, 12, 5, 2);
    EXPECT_EQ(frozen(f), 5 * 20);
    offer(f, 2, 3);
    EXPECT_EQ(shortOf(f), 0);
    EXPECT_EQ(longOf(f), 1);
    EXPECT_EQ(cash(f), kFunds + 80 - 60);
    EXPECT_EQ(margin(f), 0);
    EXPECT_EQ(frozen(f), 2 * 20);
}

TEST_F(FutureOptionOrders, SaleThatClosesThenOpensHoldsTheMarginOfWhatItOpens) {
    const EFamily f = EFamily::FutureOption;
    orderOf(f, 0, 2, 4);
    EXPECT_EQ(outcomeOf(f, 10, 3, 4), "filled");
    EXPECT_EQ(longOf(f), 0);
    EXPECT_EQ(shortOf(f), 1);
    EXPECT_EQ(cash(f), kFunds + 40);
    EXPECT_EQ(margin(f), 20);
}

TEST_F(FutureOptionOrders, PositionsOfTheConfigurationArePaidOnBothSides) {
    CAccountEntry entry;
    entry.key = "NEW";
    entry.broker = TC::EQDBrokerType::StockOption;
    entry.funds = 1000;
    entry.positions = {{"SHO10000001", EPositionSide::Long, 1, 1, 0.1},
                       {"SHO10000001", EPositionSide::Short, 2, 2, 0.1}};
    openFamilies({entry});
    EXPECT_EQ(fromMoney(funds("NEW").m_nMargin), 100);
    for (const int operation : {33, 35}) {
        TC::CCodeOrderParam code = recordOf(EFamily::Option, operation, 1, 0.1);
        code.m_account = account("NEW");
        EXPECT_EQ(outcome(orderOf(EFamily::Option, code)), "filled");
    }
    EXPECT_EQ(fromMoney(funds("NEW").m_nCash), 1000);
    EXPECT_EQ(fromMoney(funds("NEW").m_nMargin), 50);
}
