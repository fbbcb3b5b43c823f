#include "tests/check/StockCheckFixture.h"

#include <cmath>

namespace {

using namespace TC;

class StockVolume : public StockCheckFixture {};

TEST_F(StockVolume, VolumeOfTheLineReplacesEverythingUnrounded) {
    ASSERT_TRUE(check(COrderBuilder(23).line(kCode, 10.5, 333), CStrategyBuilder().amount(100000)));
    EXPECT_EQ(splitVolume(), 333);
}

TEST_F(StockVolume, AmountBuysWholeUnits) {
    ASSERT_TRUE(check(COrderBuilder(23).line(kCode, 10.5), CStrategyBuilder().amount(100000)));
    EXPECT_EQ(splitVolume(), 9500);
    EXPECT_EQ(host.types.unitOperations, std::vector<int>{-1});
}

TEST_F(StockVolume, AmountWithQuotePriceUsesTheCalculationPrice) {
    quote()->otherCalc = 20;
    ASSERT_TRUE(check(COrderBuilder(23).line(kCode), latestPrice().amount(100000)));
    EXPECT_EQ(splitVolume(), 5000);
}

TEST_F(StockVolume, StarMarketUsesTheUnitShownToTheUser) {
    host.types.types.insert({knservice::kTypeStarMarket, "SH600000"});
    host.types.uiUnits["SH600000"] = 200;
    ASSERT_TRUE(check(COrderBuilder(23).line(kCode, 10.5), CStrategyBuilder().amount(100000)));
    EXPECT_EQ(splitVolume(), 9400);
}

TEST_F(StockVolume, ParPricedInstrumentDisregardsThePrice) {
    host.addStock("SH", "204001", 3.5, 10);
    host.types.types.insert({126, "SH204001"});
    ASSERT_TRUE(
        check(COrderBuilder(24).line(QStringLiteral("204001"), 3.5), CStrategyBuilder().amount(100050)));
    EXPECT_EQ(splitVolume(), 1000);
}

TEST_F(StockVolume, ParPricedTypeOfShanghaiDoesNotReachShenzhen) {
    host.addStock("SZ", "204001", 3.5, 10);
    host.types.types.insert({knservice::kTypeParPriced, "SH204001"});
    ASSERT_TRUE(
        check(COrderBuilder(24).line(QStringLiteral("204001"), 4.0), CStrategyBuilder().amount(1000)));
    EXPECT_EQ(splitVolume(), 250);
}

TEST_F(StockVolume, ParPricedInstrumentStillNeedsAUsablePrice) {
    host.addStock("SH", "204001", 3.5, 10);
    host.types.types.insert({knservice::kTypeParPriced, "SH204001"});
    host.rules.marketPrices.insert(EPriceType::Latest);
    for (const double price : {0.0, kUnsetDouble}) {
        host.trade.splitCalls.clear();
        host.quotes.quotes.at(QStringLiteral("SH204001"))->otherCalc = price;
        check(COrderBuilder(24).line(QStringLiteral("204001")), latestPrice().amount(100050));
        EXPECT_EQ(splitVolume(), kUnsetInt) << price;
    }
}

TEST_F(StockVolume, UnknownInstrumentHasAUnitOfOne) {
    const COrderStrategyParam strategy = CStrategyBuilder().code(QStringLiteral("SH999999")).amount(1000);
    ASSERT_TRUE(check(COrderBuilder(23).line(QString(), 3.0), strategy));
    EXPECT_EQ(splitVolume(), 333);
}

TEST_F(StockVolume, UnusableAmountOrPriceLeavesNoVolume) {
    host.rules.marketPrices.insert(EPriceType::Latest);
    quote()->otherCalc = 0;
    EXPECT_FALSE(check(COrderBuilder(23).line(kCode), latestPrice().amount(100000)));
    EXPECT_EQ(splitVolume(), kUnsetInt);
    EXPECT_EQ(onlyError(), QStringLiteral("[文件单]　分单失败: 没有数量"));
    host.trade.splitCalls.clear();
    check(COrderBuilder(23).line(kCode, 10.5), CStrategyBuilder().amount(2147483647.5));
    EXPECT_EQ(splitVolume(), kUnsetInt);
    host.trade.splitCalls.clear();
    check(COrderBuilder(23).line(kCode, 10.5), CStrategyBuilder().amount(kUnsetDouble));
    EXPECT_EQ(splitVolume(), kUnsetInt);
}

TEST_F(StockVolume, AmountNeverBuysAtTheFallbackPriceWhereTheQuoteHasNone) {
    host.rules.marketPrices.insert(EPriceType::Latest);
    quote()->otherCalc = kUnsetDouble;
    quote()->m_dFallbackPrice = 9.9;
    EXPECT_FALSE(check(COrderBuilder(23).line(kCode), latestPrice().amount(100000)));
    EXPECT_EQ(splitVolume(), kUnsetInt);
    EXPECT_EQ(host.trade.splitCalls.at(0).price, 9.9); // only the split may use this price
}

TEST_F(StockVolume, AmountAboveTheRangeOfIntIsUsable) {
    ASSERT_TRUE(check(COrderBuilder(23).line(kCode, 100), CStrategyBuilder().amount(3e9)));
    EXPECT_EQ(splitVolume(), 30'000'000);
}

TEST_F(StockVolume, UnusableAmountDoesNotMatterToALineWithAVolume) {
    EXPECT_TRUE(check(COrderBuilder(23).line(kCode, 10.5, 200), CStrategyBuilder().amount(kUnsetDouble)));
    EXPECT_EQ(splitVolume(), 200);
}

TEST_F(StockVolume, NumbersThatAreNotFiniteAreAsIfNotGiven) {
    for (const double number : {std::nan(""), HUGE_VAL, -HUGE_VAL}) {
        check(COrderBuilder(23).line(kCode, 10.5), CStrategyBuilder().amount(number));
        EXPECT_EQ(splitVolume(), kUnsetInt) << number;
        host.rules.marketPrices.insert(EPriceType::Latest);
        quote()->all(number);
        quote()->m_dFallbackPrice = number;
        check(COrderBuilder(23).line(kCode, 10.5), latestPrice().amount(1000));
        EXPECT_EQ(splitVolume(), kUnsetInt) << number;
        EXPECT_EQ(host.trade.splitCalls.back().price, kUnsetDouble) << number;
    }
}

TEST_F(StockVolume, VolumeBelowZeroGivesNoAccountAnything) {
    host.trade.split = [](const fake::CSplitCall& call, utils::KNError&) {
        EXPECT_EQ(call.volume, -5);
        return std::vector<int>{3, -8};
    };
    EXPECT_TRUE(check(COrderBuilder(23).line(kCode, 10.5, -5)));
    EXPECT_TRUE(codes.empty());
}

TEST_F(StockVolume, SpecifiedPriceThatTheHostMakesNoNumberOfIsRefused) {
    host.rules.onFixTimeRange = [](CCodeOrderParam& record) { record.m_dPrice = std::nan(""); };
    EXPECT_FALSE(check(COrderBuilder(23).line(kCode, 10.5, 100)));
    EXPECT_EQ(onlyError(), QStringLiteral("[文件单]　证券 [SH600000] 价11(600000)无效, 无法下单!"));
}

TEST_F(StockVolume, HugeAmountThatBuysMoreThanAnIntHoldsLeavesNoVolume) {
    check(COrderBuilder(23).line(kCode, 0.01), CStrategyBuilder().amount(1e12));
    EXPECT_EQ(splitVolume(), kUnsetInt);
}

// Fund operations.

TEST_F(StockVolume, FundOperationsCarryAQuantity) {
    for (const int number : {86, 87, 88, 89, 92}) {
        codes.clear();
        ASSERT_TRUE(check(COrderBuilder(number).line(kCode, 10.5, 1000))) << number;
        EXPECT_EQ(codes.at(0).m_nQuantityKind, 48) << number;
        EXPECT_EQ(codes.at(0).m_dQuantity, 600.0) << number;
        EXPECT_EQ(codes.at(0).m_dPrice, 10.5) << number;
    }
}

TEST_F(StockVolume, NinetyAndNinetyOneGoOutAtAPriceOfOne) {
    host.rules.marketPrices.insert(EPriceType::Latest);
    quote()->otherOrder = 0;
    const COrderStrategyParam strategy =
        latestPrice().set([](auto& s) { s.m_stockSetting.m_eOrderType = static_cast<EOrderType>(8); });
    for (const int number : {90, 91}) {
        codes.clear();
        ASSERT_TRUE(check(COrderBuilder(number).line(kCode, 0, 1000), strategy)) << number;
        EXPECT_EQ(codes.at(0).m_nQuantityKind, 48) << number;
        EXPECT_EQ(codes.at(0).m_dQuantity, 600.0) << number;
        EXPECT_EQ(codes.at(0).m_dPrice, 1.0) << number;
        EXPECT_EQ(codes.at(0).m_ePriceType, EPriceType::Specified) << number;
        EXPECT_EQ(codes.at(0).m_eOrderType, EOrderType::Plain) << number;
    }
}

} // namespace
