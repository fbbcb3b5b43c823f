#include "desk/paper/OrderRules.h"

#include "orderservice/platform/InstrumentTypes.h"
#include "tests/desk/paper/PaperDesk.h"

#include <limits>

using namespace desk;
using namespace desk::test;

namespace {

class OrderRules : public PaperDesk {};

} // namespace

TEST_F(OrderRules, OtherFamiliesAndKindsOfCommandAreRejected) {
    TC::COrderComandParam command = stockCommand({buy(100, 10)});
    command.m_eTraderType = TC::EQdTraderType::Neeq;
    placeCommand(command);
    EXPECT_EQ(order(1).m_strReason, "product family 256 is not modelled");
    command = stockCommand({buy(100, 10)});
    command.m_eStopLossType = static_cast<TC::EQdStopLossType>(1);
    placeCommand(command);
    EXPECT_EQ(order(2).m_strReason, "stop-loss commands are not modelled");
    command = stockCommand({buy(100, 10)});
    command.m_eHedgeType = TC::EQdHedgeType::Hedge;
    placeCommand(command);
    EXPECT_EQ(order(3).m_strReason, "hedge commands are not modelled");
    for (const CPaperOrder& each : m_broker->orders())
        EXPECT_EQ(each.m_eStatus, EOrderStatus::Rejected);
}

TEST_F(OrderRules, OtherOperationsAndAlgorithmOrdersAreRejected) {
    EXPECT_EQ(rejection(record(static_cast<TC::EOperationType>(26), 100, 10)),
              "operation 26 is not modelled");
    TC::CCodeOrderParam algo = buy(100, 10);
    algo.m_eOrderType = static_cast<TC::EOrderType>(7);
    EXPECT_EQ(rejection(algo), "order type 7 is not modelled");
    algo.m_eOrderType = TC::EOrderType::Plain;
    EXPECT_EQ(rejection(algo), "accepted");
}

TEST_F(OrderRules, OrdersForThePlatformOfAlgorithmsAreRejectedWithTheAlgorithmsName) {
    TC::COrderComandParam command = stockCommand({buy(100, 10)});
    command.m_ePlatform = static_cast<TC::ETradePlatform>(11);
    const auto reasonFor = [&](const std::string& message) {
        command.m_strAlgoParam = message;
        placeCommand(command);
        return m_broker->orders().back().m_strReason;
    };
    EXPECT_EQ(reasonFor(""), "the settings of the algorithm could not be read");
    EXPECT_EQ(reasonFor("40=0\x01"
                        "6061=VWAP\x01"
                        "23001=a&&1"),
              "algorithm VWAP is not modelled");
    EXPECT_EQ(reasonFor("40=0\x01"
                        "6061=GRID"),
              "algorithm GRID is not modelled");
    for (const std::string& message : {std::string("6061=VWAP"),
                                       std::string("40=0\x01"
                                                   "6061=\x01"),
                                       std::string("40=0\x01"
                                                   "6061=") +
                                           std::string(41, 'A')})
        EXPECT_EQ(reasonFor(message), "algorithm orders are not modelled") << message;
}

TEST_F(OrderRules, AccountMustBeALoggedInStockAccountOfTheDesk) {
    TC::CCodeOrderParam code = buy(100, 10);
    code.m_account.reset();
    EXPECT_EQ(rejection(code), "the order has no account");
    code.m_account = account("nobody");
    EXPECT_EQ(rejection(code), "unknown account nobody");
    code.m_account = account("F1");
    EXPECT_EQ(rejection(code), "F1 is not a stock account");
    code.m_account = account("X1");
    EXPECT_EQ(rejection(code), "X1 is not logged in");
}

TEST_F(OrderRules, InstrumentMustBeKnown) {
    TC::CCodeOrderParam code = buy(100, 10);
    code.m_stock.m_strCode = "600001";
    EXPECT_EQ(rejection(code), "unknown instrument SH600001");
}

TEST_F(OrderRules, VolumeMustBeSetAndPositive) {
    EXPECT_EQ(rejection(buy(TC::kUnsetInt, 10)), "the order has no volume");
    EXPECT_EQ(rejection(buy(0, 10)), "volume 0 is not positive");
    EXPECT_EQ(rejection(sell(-100, 10)), "volume -100 is not positive");
}

TEST_F(OrderRules, BuysComeInWholeUnits) {
    EXPECT_EQ(rejection(buy(150, 9.5)), "volume 150 is not a multiple of 100");
    EXPECT_EQ(rejection(buy(200, 9.5)), "accepted");
}

TEST_F(OrderRules, SellsMayCloseTheOddLotButNotSplitIt) {
    // 1050 shares can be sold today.
    EXPECT_EQ(rejection(sell(130, 10.5)),
              "volume 130 is not a multiple of 100 and does not close the odd lot");
    EXPECT_EQ(rejection(sell(150, 10.5)), "accepted");
    EXPECT_EQ(rejection(sell(50, 10.5)), "volume 50 is not a multiple of 100 and does not close the odd lot")
        << "the odd lot is on its way";
    EXPECT_EQ(rejection(sell(900, 10.5)), "accepted");
}

TEST_F(OrderRules, UnitOfTheStarMarketIsTheOneShownToTheUser) {
    CInstrumentEntry entry;
    entry.unit = 100;
    entry.uiUnit = 200;
    EXPECT_EQ(tradingUnit(entry), 100);
    entry.types = {knservice::kTypeStarMarket};
    EXPECT_EQ(tradingUnit(entry), 200);
    entry.uiUnit = 0;
    EXPECT_EQ(tradingUnit(entry), 1);
}

TEST_F(OrderRules, LimitMustBeUsableAndWithinThePriceLimits) {
    EXPECT_EQ(rejection(buy(100, TC::kUnsetDouble)), "a limit order has no price");
    EXPECT_EQ(rejection(buy(100, TC::kUnsetDouble, TC::EPriceType::SpecifiedByRow)),
              "a limit order has no price");
    EXPECT_EQ(rejection(buy(100, 0)), "the price is not positive");
    EXPECT_EQ(rejection(buy(100, -1)), "the price is not positive");
    EXPECT_EQ(rejection(buy(100, std::numeric_limits<double>::quiet_NaN())), "the price is not positive");
    EXPECT_EQ(rejection(buy(100, 9.50005)), "the price is finer than 0.0001 or too large");
    EXPECT_EQ(rejection(buy(100, 1e300)), "the price is finer than 0.0001 or too large");
    EXPECT_EQ(rejection(buy(100, 11.01)), "price 11.0100 is above the limit 11.0000");
    EXPECT_EQ(rejection(sell(100, 8.99)), "price 8.9900 is below the limit 9.0000");
    EXPECT_EQ(rejection(buy(100, 9.0)), "accepted");
    EXPECT_EQ(rejection(sell(100, 11.0)), "accepted");
}

TEST_F(OrderRules, InstrumentWithoutPriceLimitsTakesAnyPrice) {
    CInstrumentEntry entry;
    entry.market = "SH";
    entry.code = "600000";
    entry.unit = 100;
    m_quotes.addInstrument(entry);
    EXPECT_EQ(rejection(buy(100, 0.01)), "accepted");
}

TEST_F(OrderRules, FundsMustCoverTheLimitOfABuy) {
    TC::CCodeOrderParam code = buy(100, 9.5);
    code.m_account = account("A2");
    EXPECT_EQ(rejection(code), "not enough funds: needs 950.0000, available 500.0000");
    EXPECT_EQ(rejection(buy(10500, 9.5)), "accepted");
    EXPECT_EQ(rejection(buy(100, 9.5)), "not enough funds: needs 950.0000, available 250.0000")
        << "money of a waiting buy is taken";
}

TEST_F(OrderRules, AmountBeyondAnyAccountIsRejected) {
    CInstrumentEntry entry;
    entry.market = "SH";
    entry.code = "600000";
    m_quotes.addInstrument(entry);
    EXPECT_EQ(rejection(buy(2147483646, 1e12)), "the amount is too large");
}

TEST_F(OrderRules, OnlyWhatIsAvailableTodayCanBeSold) {
    EXPECT_EQ(rejection(sell(1100, 10.5)), "not enough to sell: 1100 ordered, 1050 available today");
    EXPECT_EQ(rejection(sell(1050, 10.5)), "accepted");
    EXPECT_EQ(rejection(sell(100, 10.5)), "not enough to sell: 100 ordered, 0 available today");
}

TEST_F(OrderRules, PriceTypesWithALimitAreTheSpecifiedOnesTheLevelsAndTheLatest) {
    for (const int type : {0, 4, 5, 6, 10, 11, 30, 39, 49}) {
        EXPECT_TRUE(isLimitPriceType(static_cast<TC::EPriceType>(type))) << type;
    }
    for (const int type : {-1, 12, 29, 40, 48, 50, 100}) {
        EXPECT_FALSE(isLimitPriceType(static_cast<TC::EPriceType>(type))) << type;
    }
}

/// If it were treated as a market order, it could trade at any price.
TEST_F(OrderRules, LimitWithoutANumberIsRejected) {
    for (const TC::EPriceType type :
         {TC::EPriceType::Sell1, TC::EPriceType::Latest, TC::EPriceType::Specified}) {
        const CPaperOrder order = placed(buy(300, TC::kUnsetDouble, type));
        EXPECT_EQ(order.m_eStatus, EOrderStatus::Rejected);
        EXPECT_EQ(order.m_strReason, "a limit order has no price");
    }
    EXPECT_EQ(fills(), CTexts{});
}
