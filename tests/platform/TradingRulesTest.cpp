#include "orderservice/platform/TradingRules.h"

#include "tests/platform/EchoHost.h"

#include <gtest/gtest.h>

#include <boost/make_shared.hpp>

#include <vector>

namespace {

using namespace TC;

using TradingRules = echo::CEchoHost;

TEST_F(TradingRules, KeysAndBrokers) {
    EXPECT_EQ(qdStockKey(QStringLiteral("SH"), QStringLiteral("600000")), QStringLiteral("key SH600000"));
    EXPECT_EQ(static_cast<int>(orderStrategyTradeTypeToBrokerType(EOrderStrategyTradeType::Credit)), 1003);
    EXPECT_EQ(getAccountFromOrderParam(QStringLiteral("a"), QStringLiteral("b")), QStringLiteral("a/b"));
}

TEST_F(TradingRules, TradeParameters) {
    COrderTradeParam known;
    known.m_strRemark = "remark";
    rules.tradeParams["text"] = known;
    COrderTradeParam param;
    EXPECT_FALSE(parserOrderTradeParam("other", param));
    EXPECT_EQ(param.m_strRemark, "");
    EXPECT_TRUE(parserOrderTradeParam("text", param));
    EXPECT_EQ(param.m_strRemark, "remark");
}

TEST_F(TradingRules, Settings) {
    COrderSetting setting;
    orderSettingFromString(setting, QStringLiteral("price=11"));
    EXPECT_EQ(setting.m_ePriceType, EPriceType::Specified);
    EXPECT_EQ(rules.settingTexts, std::vector<QString>{QStringLiteral("price=11")});

    CCodeOrderParam record;
    const CPriceDataPtr quote = boost::make_shared<fake::CQuote>();
    orderSettingToParam(setting, record, EOperationType::Sell, 300, 10.5, quote);
    EXPECT_EQ(record.m_ePriceType, EPriceType::Specified);
    EXPECT_EQ(record.m_eOperationType, EOperationType::Sell);
    EXPECT_EQ(record.m_nVolume, 300);
    EXPECT_EQ(record.m_dPrice, 10.5);
    EXPECT_EQ(rules.lastQuote, quote);
}

TEST_F(TradingRules, ByDefaultTheNamedOperationsOnShortPositionsAreNotLong) {
    for (const int operation : {3, 4, 5, 8, 9, 12, 13})
        EXPECT_FALSE(isLong(static_cast<EOperationType>(operation))) << operation;
    for (const int operation : {0, 1, 2, 6, 7, 10, 11, 18, 19, 900})
        EXPECT_TRUE(isLong(static_cast<EOperationType>(operation))) << operation;
}

TEST_F(TradingRules, TimeRange) {
    rules.onFixTimeRange = [](CCodeOrderParam& record) { record.m_strUserId = "fixed"; };
    CCodeOrderParam record;
    fixTimeRange(record);
    EXPECT_EQ(record.m_strUserId, "fixed");
}

TEST_F(TradingRules, DisplayTexts) {
    EXPECT_EQ(orderStrategyTypeToOrderTitle(EOrderStrategyType::File), QStringLiteral("[标题2]"));
    EXPECT_EQ(orderStrategyTypeToString(EOrderStrategyType::Signal), QStringLiteral("来源1"));
    EXPECT_EQ(orderStrategyOrderTypeToString(23), QStringLiteral("下单23"));
    EXPECT_EQ(orderStrategyTradeTypeToString(EOrderStrategyTradeType::Gold), QStringLiteral("品种12"));
    EXPECT_EQ(knPriceTypeToString(EPriceType::Latest, "600000", true), QStringLiteral("价5(600000)短"));
    EXPECT_EQ(knPriceTypeToString(EPriceType::Latest, "600000", false), QStringLiteral("价5(600000)"));
}

TEST_F(TradingRules, MarketPricesAndAlgorithms) {
    const auto algorithm = static_cast<EOrderType>(7);
    rules.marketPrices = {static_cast<EPriceType>(42)};
    rules.algoPlatforms[algorithm] = static_cast<ETradePlatform>(3);
    EXPECT_TRUE(knservice::isMarketPrice(static_cast<EPriceType>(42)));
    EXPECT_FALSE(knservice::isMarketPrice(EPriceType::Latest));
    EXPECT_TRUE(knservice::DataHelper::isAlgoOrderType(algorithm));
    EXPECT_FALSE(knservice::DataHelper::isAlgoOrderType(EOrderType::Plain));
    EXPECT_EQ(static_cast<int>(knservice::DataHelper::getPlatformTypeByOrderType(algorithm)), 3);
}

} // namespace
