#include "tests/desk/paper/FamilyDesk.h"

using namespace desk;
using namespace desk::test;

namespace {

constexpr EFamily kFuture = EFamily::FutureSpeculation; // multiplier 10, margin rate 0.1, price 100
constexpr EFamily kGold = EFamily::Gold;                // multiplier 100, margin rate 0.2, price 5
constexpr double kMargin = 100;                         // for one lot of the future at 100

class FutureOrders : public FamilyDesk {};

} // namespace

TEST_F(FutureOrders, OpeningHoldsTheMarginAndPaysNothing) {
    EXPECT_EQ(outcomeOf(kFuture, 0, 3, 100), "filled");
    EXPECT_EQ(cash(kFuture), kFunds);
    EXPECT_EQ(margin(kFuture), 3 * kMargin);
    EXPECT_EQ(frozen(kFuture), 0);
    EXPECT_EQ(longOf(kFuture), 3);
    EXPECT_EQ(fromMoney(positionOf(kFuture).m_nMargin), 3 * kMargin);
    EXPECT_EQ(fromMoney(positionOf(kFuture).m_nCost), 3000);
}

TEST_F(FutureOrders, OrderThatWaitsFreezesTheMarginAtItsLimit) {
    orderOf(kFuture, 0, 2, 90);
    EXPECT_EQ(frozen(kFuture), 180);
    offer(kFuture, 80);
    EXPECT_EQ(frozen(kFuture), 0);
    EXPECT_EQ(margin(kFuture), 160) << "of the price it was filled at";
}

TEST_F(FutureOrders, GainAndLossAreBookedWhenClosing) {
    struct CRow {
        const char* m_pszName;
        int m_nOpen;
        int m_nClose;
        double m_dPrice;
        double m_dGain;
    };
    constexpr CRow kRows[] = {{"long gains", 0, 2, 103, 60},
                              {"long loses", 0, 2, 98, -40},
                              {"short gains", 3, 5, 97, 60},
                              {"short loses", 3, 5, 102, -40}};
    double expected = kFunds;
    for (const CRow& row : kRows) {
        SCOPED_TRACE(row.m_pszName);
        offer(kFuture, 100);
        EXPECT_EQ(outcome(atMarket(kFuture, row.m_nOpen, 2)), "filled");
        offer(kFuture, row.m_dPrice);
        EXPECT_EQ(cash(kFuture), expected) << "nothing is booked while it is open";
        EXPECT_EQ(outcome(atMarket(kFuture, row.m_nClose, 2)), "filled");
        expected += row.m_dGain;
        EXPECT_EQ(cash(kFuture), expected);
        EXPECT_EQ(margin(kFuture), 0);
        EXPECT_EQ(longOf(kFuture) + shortOf(kFuture), 0);
    }
}

TEST_F(FutureOrders, ClosingAPartFreesItsPartOfTheMargin) {
    orderOf(kFuture, 3, 4, 100);
    offer(kFuture, 110);
    orderOf(kFuture, 5, 1, 110);
    EXPECT_EQ(margin(kFuture), 3 * kMargin);
    EXPECT_EQ(cash(kFuture), kFunds - 100);
    EXPECT_EQ(shortOf(kFuture), 3);
}

TEST_F(FutureOrders, LongAndShortPositionsExistSideBySide) {
    orderOf(kFuture, 0, 2, 100);
    orderOf(kFuture, 3, 3, 100);
    EXPECT_EQ(longOf(kFuture), 2);
    EXPECT_EQ(shortOf(kFuture), 3);
    EXPECT_EQ(margin(kFuture), 5 * kMargin);
}

TEST_F(FutureOrders, FundsMustCoverTheMarginAtTheLimit) {
    EXPECT_EQ(outcomeOf(kFuture, 0, 1001, 100), "not enough funds: needs 100100.0000, available 100000.0000");
    EXPECT_EQ(outcomeOf(kFuture, 0, 1000, 100), "filled");
    EXPECT_EQ(outcomeOf(kFuture, 3, 1, 100), "not enough funds: needs 100.0000, available 0.0000");
    EXPECT_EQ(outcome(atMarket(kFuture, 3, 1)), "not enough funds for what the book has");
    EXPECT_EQ(outcomeOf(kFuture, 2, 1, 100), "filled") << "closing takes no money";
}

TEST_F(FutureOrders, SaleThatOpensNeedsTheMarginOfThePricesItFinds) {
    EXPECT_EQ(outcomeOf(kFuture, 3, 1500, 50), "not enough funds: needs 150000.0000, available 100000.0000");
    EXPECT_EQ(outcomeOf(kFuture, 3, 1000, 50), "filled");
    EXPECT_EQ(available(kFuture), 0);
}

TEST_F(FutureOrders, ClosingTakesTodaysOrEarlierVolumeByItsOperation) {
    startDay("20260105");
    orderOf(kFuture, 0, 5, 100);
    EXPECT_EQ(outcomeOf(kFuture, 1, 1, 100), "not enough to close: 1 ordered, 0 available of earlier days");
    EXPECT_EQ(outcomeOf(kFuture, 2, 1, 100), "filled");
    startDay("20260106");
    EXPECT_EQ(outcomeOf(kFuture, 2, 1, 100), "not enough to close: 1 ordered, 0 available of today");
    orderOf(kFuture, 0, 2, 100);
    EXPECT_EQ(outcomeOf(kFuture, 1, 1, 100), "filled"); // 3 earlier, 2 of today
    EXPECT_EQ(positionOf(kFuture).m_nToday, 2);
    EXPECT_EQ(outcomeOf(kFuture, 6, 1, 100), "filled");
    EXPECT_EQ(positionOf(kFuture).m_nToday, 1) << "today's first";
    EXPECT_EQ(outcomeOf(kFuture, 7, 1, 100), "filled");
    EXPECT_EQ(positionOf(kFuture).m_nToday, 1) << "earlier first";
    EXPECT_EQ(outcomeOf(kFuture, 7, 4, 100), "not enough to close: 4 ordered, 3 available");
    EXPECT_EQ(outcomeOf(kFuture, 7, 3, 100), "filled");
    EXPECT_EQ(positionOf(kFuture).m_nToday, 0);
}

TEST_F(FutureOrders, ShortsAreClosedByBuyingInTheSameWays) {
    startDay("20260105");
    orderOf(kFuture, 3, 4, 100);
    startDay("20260106");
    orderOf(kFuture, 3, 4, 100);
    for (const int operation : {4, 5, 8, 9}) {
        const CPaperOrder order = orderOf(kFuture, operation, 1, 100);
        EXPECT_TRUE(order.isBuy()) << operation;
        EXPECT_EQ(order.m_eStatus, EOrderStatus::Filled) << operation;
    }
    EXPECT_EQ(shortOf(kFuture), 4);
    EXPECT_EQ(positionOf(kFuture, EPositionSide::Short).m_nToday, 2);
    EXPECT_EQ(margin(kFuture), 4 * kMargin);
}

TEST_F(FutureOrders, WaitingCloseHoldsItsVolumeUntilItEnds) {
    orderOf(kFuture, 0, 5, 100);
    const CPaperOrder waiting = orderOf(kFuture, 2, 3, 120);
    EXPECT_EQ(positionOf(kFuture).m_nFrozen, 3);
    EXPECT_EQ(positionOf(kFuture).m_nFrozenToday, 3);
    EXPECT_EQ(outcomeOf(kFuture, 6, 3, 100), "not enough to close: 3 ordered, 2 available");
    ASSERT_TRUE(m_broker->cancelTask(waiting.m_nTask, "").isSuccess());
    EXPECT_EQ(positionOf(kFuture).m_nFrozen, 0);
    EXPECT_EQ(positionOf(kFuture).m_nFrozenToday, 0);
    EXPECT_EQ(outcomeOf(kFuture, 6, 5, 100), "filled");
}

TEST_F(FutureOrders, CloseThenOpenOpensWhatIsLeft) {
    orderOf(kFuture, 0, 2, 100);
    offer(kFuture, 110);
    EXPECT_EQ(outcomeOf(kFuture, 10, 5, 110), "filled");
    EXPECT_EQ(longOf(kFuture), 0);
    EXPECT_EQ(shortOf(kFuture), 3);
    EXPECT_EQ(cash(kFuture), kFunds + 200);
    EXPECT_EQ(margin(kFuture), 330);
    EXPECT_EQ(outcomeOf(kFuture, 13, 4, 110), "filled");
    EXPECT_EQ(shortOf(kFuture), 0);
    EXPECT_EQ(longOf(kFuture), 1);
    EXPECT_EQ(margin(kFuture), 110);
}

TEST_F(FutureOrders, CloseThenOpenThatWaitsFreezesTheMarginOfWhatItOpens) {
    orderOf(kFuture, 0, 2, 100);
    orderOf(kFuture, 11, 5, 120);
    EXPECT_EQ(frozen(kFuture), 3 * 120);
    EXPECT_EQ(positionOf(kFuture).m_nFrozen, 2);
    offer(kFuture, 120, 3);
    EXPECT_EQ(longOf(kFuture), 0);
    EXPECT_EQ(shortOf(kFuture), 1);
    EXPECT_EQ(frozen(kFuture), 2 * 120);
    EXPECT_EQ(margin(kFuture), 120);
    ASSERT_TRUE(m_broker->cancelTask(2, "").isSuccess());
    EXPECT_EQ(frozen(kFuture), 0);
}

TEST_F(FutureOrders, GoldTradesPlainlyAndOnMargin) {
    EXPECT_EQ(outcomeOf(kGold, 18, 2, 5), "filled");
    EXPECT_EQ(cash(kGold), kFunds - 1000);
    EXPECT_EQ(positionOf(kGold).available(), 0) << "what is plainly bought is sold tomorrow";
    EXPECT_EQ(outcomeOf(kGold, 0, 3, 5), "filled");
    EXPECT_EQ(outcomeOf(kGold, 3, 1, 5), "filled");
    EXPECT_EQ(cash(kGold), kFunds - 1000);
    EXPECT_EQ(margin(kGold), 400);
    EXPECT_EQ(positionOf(kGold).available(), 3);
    EXPECT_EQ(outcomeOf(kGold, 4, 1, 5), "filled") << "there is no operation for today's";
}

TEST_F(FutureOrders, GoldThatWasPaidInTwoWaysGivesBackWhatItCost) {
    startDay("20260105");
    orderOf(kGold, 18, 2, 5);
    orderOf(kGold, 0, 2, 5);
    startDay("20260106");
    EXPECT_EQ(outcomeOf(kGold, 1, 3, 5), "filled");
    EXPECT_EQ(outcomeOf(kGold, 19, 1, 5), "filled");
    EXPECT_EQ(cash(kGold), kFunds);
    EXPECT_EQ(margin(kGold), 0);
}

TEST_F(FutureOrders, PositionsOfTheConfigurationHoldTheirMargin) {
    CAccountEntry entry;
    entry.key = "NEW";
    entry.broker = TC::EQDBrokerType::Future;
    entry.funds = 1000;
    entry.positions = {{"SFrb2605", EPositionSide::Long, 2, 1, 90},
                       {"SFrb2605", EPositionSide::Short, 1, 1, 110}};
    openFamilies({entry});
    EXPECT_EQ(fromMoney(funds("NEW").m_nMargin), 2 * 90 + 110);
    TC::CCodeOrderParam code = recordOf(kFuture, 4, 1, 100);
    code.m_account = account("NEW");
    EXPECT_EQ(outcome(orderOf(kFuture, code)), "filled");
    EXPECT_EQ(fromMoney(funds("NEW").m_nCash), 1100);
    EXPECT_EQ(fromMoney(funds("NEW").m_nMargin), 180);
}

TEST_F(FutureOrders, GoldOfTheConfigurationIsOnMarginUnlessItWasBoughtOutright) {
    std::vector<CAccountEntry> accounts(2);
    for (CAccountEntry& entry : accounts) {
        entry.broker = TC::EQDBrokerType::Gold;
        entry.funds = 1000;
        entry.positions = {{"SGEAuTD", EPositionSide::Long, 2, 2, 4}};
    }
    accounts[0].key = "MARGIN";
    accounts[1].key = "FULL";
    accounts[1].positions[0].paidInFull = true;
    openFamilies(accounts);
    EXPECT_EQ(fromMoney(funds("MARGIN").m_nMargin), 160);
    EXPECT_EQ(fromMoney(funds("FULL").m_nMargin), 0);
    for (const CAccountEntry& entry : accounts) {
        TC::CCodeOrderParam code = recordOf(kGold, 1, 2, 5);
        code.m_account = account(entry.key);
        EXPECT_EQ(outcome(orderOf(kGold, code)), "filled");
    }
    EXPECT_EQ(fromMoney(funds("MARGIN").m_nCash), 1200) << "the gain alone";
    EXPECT_EQ(fromMoney(funds("FULL").m_nCash), 2000) << "what they are worth";
    EXPECT_EQ(fromMoney(funds("MARGIN").m_nMargin), 0);
}

/// An account of the folder that must be refused, and the reason.
struct CRefusedRow {
    const char* m_pszName;
    TC::EQDBrokerType m_eBroker;
    CPositionEntry m_position;
    const char* m_pszWhy;
};

TEST_F(FutureOrders, PositionsThatCannotBeTakenInAreRefused) {
    const CRefusedRow rows[] = {
        {"a stock has no short side",
         TC::EQDBrokerType::Stock,
         {kStock, EPositionSide::Short, 100, 100, 10},
         "position SH600000 makes no sense"},
        {"only gold can be paid either way",
         TC::EQDBrokerType::Future,
         {"SFrb2605", EPositionSide::Long, 1, 1, 100, true},
         "position SFrb2605 makes no sense"},
        {"short gold is always on margin",
         TC::EQDBrokerType::Gold,
         {"SGEAuTD", EPositionSide::Short, 1, 1, 5, true},
         "position SGEAuTD makes no sense"},
        {"stocks to lock",
         TC::EQDBrokerType::StockOption,
         {kStock, EPositionSide::Long, 100, 100, 10},
         "position SH600000 could never be traded on such an account"},
        {"no family trades futures there",
         TC::EQDBrokerType::FutureOption,
         {"SFrb2605", EPositionSide::Long, 1, 1, 100},
         "position SFrb2605 could never be traded on such an account"},
        {"margins beyond the funds",
         TC::EQDBrokerType::Future,
         {"SFrb2605", EPositionSide::Long, 3, 3, 100},
         "its positions hold 300.0000 as margin, more than its funds of 250.0000"},
    };
    for (const CRefusedRow& row : rows) {
        CAccountEntry entry;
        entry.key = "BAD";
        entry.broker = row.m_eBroker;
        entry.funds = 250;
        entry.positions = {row.m_position};
        CPaperBroker broker(m_quotes, nullptr);
        EXPECT_EQ(broker.open(m_folder.path(), {entry}, 0).errorMsg(),
                  std::string("account BAD: ") + row.m_pszWhy)
            << row.m_pszName;
    }
}
