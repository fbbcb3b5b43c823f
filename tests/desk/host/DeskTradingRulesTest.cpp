#include "desk/host/DeskTradingRules.h"

#include "orderservice/base/Unset.h"

#include "desk/market/DeskPriceData.h"
#include "desk/paper/OrderRules.h"
#include "orderservice/base/Text.h"

#include <boost/make_shared.hpp>

#include <gtest/gtest.h>

namespace desk {
namespace {

std::string gbk(const char* utf8) {
    return utils::safeUtf82Gbk(utf8);
}

TEST(DeskTradingRules, TradeParametersAreReadWhole) {
    CDeskTradingRules rules;
    TC::COrderTradeParam param;
    ASSERT_TRUE(rules.parserOrderTradeParam(gbk("remark:早盘建仓;account:甲;sub:-;order_type:0;kind:1;"
                                                "setting:price_type:6,remark:中;text1:一;text2:二;text3:三"),
                                            param));
    EXPECT_EQ(param.m_strRemark, gbk("早盘建仓")) << "the remark stays GBK";
    EXPECT_EQ(param.m_strAccountKeyPart1, QStringLiteral("甲"));
    EXPECT_EQ(param.m_strAccountKeyPart2, QStringLiteral("-"));
    EXPECT_EQ(param.m_eOrderType, 0);
    EXPECT_EQ(param.m_nSettingKind, 1);
    EXPECT_EQ(param.m_strOrderSetting, QStringLiteral("price_type:6,remark:中"));
    EXPECT_EQ(param.m_strTradeText1, "一");
    EXPECT_EQ(param.m_strTradeText2, "二");
    EXPECT_EQ(param.m_strTradeText3, "三");
}

TEST(DeskTradingRules, TradeParametersSetEveryFieldAnew) {
    CDeskTradingRules rules;
    TC::COrderTradeParam param;
    param.m_strAccountKeyPart1 = QStringLiteral("A9");
    param.m_strTradeText2 = "old";
    ASSERT_TRUE(rules.parserOrderTradeParam("remark:x", param));
    EXPECT_TRUE(param.m_strAccountKeyPart1.isEmpty());
    EXPECT_EQ(param.m_strTradeText2, "");
}

TEST(DeskTradingRules, TextsWithoutPairsLeaveTheRecord) {
    CDeskTradingRules rules;
    for (const char* text : {"", "remark", "account=A2"}) {
        TC::COrderTradeParam param;
        param.m_strRemark = "old";
        EXPECT_FALSE(rules.parserOrderTradeParam(text, param)) << text;
        EXPECT_EQ(param.m_strRemark, "old") << text;
    }
}

/// If its parameters were ignored, an order could trade on another account, at another price, or at once.
TEST(DeskTradingRules, OrdersOfParametersThatAreNotUnderstoodAreRejected) {
    CDeskTradingRules rules;
    for (const char* text :
         {"remark:a;", "remark:a;foo:b", "remark:a;remark:b", "kind:", "account:A2;sub", "sub:2",
          "order_type:twap", "order_type:", "order_type:1x", "order_type:99999999999", ";remark:a"}) {
        TC::COrderTradeParam param;
        param.m_strRemark = "old";
        ASSERT_TRUE(rules.parserOrderTradeParam(text, param)) << text;
        EXPECT_EQ(param.m_strRemark, "") << text;
        TC::COrderSetting setting;
        rules.orderSettingFromString(setting, param.m_strOrderSetting);
        EXPECT_EQ(setting.m_eOrderType, kUnreadTradeParams) << text;
    }
}

TEST(DeskTradingRules, ASettingTextChangesWhatItNames) {
    CDeskTradingRules rules;
    TC::COrderSetting setting;
    setting.m_strCmdLog = "kept";
    rules.orderSettingFromString(setting, QStringLiteral("price_type:6,order_type:2"));
    EXPECT_EQ(setting.m_ePriceType, TC::EPriceType::Buy1);
    EXPECT_EQ(static_cast<int>(setting.m_eOrderType), 2);
    EXPECT_EQ(setting.m_strCmdLog, "kept");
    rules.orderSettingFromString(setting, QStringLiteral("remark:午盘"));
    EXPECT_EQ(setting.m_strCmdLog, "午盘");
    EXPECT_EQ(setting.m_ePriceType, TC::EPriceType::Buy1);
}

TEST(DeskTradingRules, ASettingTextNamesPriceTypesByWordToo) {
    CDeskTradingRules rules;
    TC::COrderTradeParam param;
    ASSERT_TRUE(rules.parserOrderTradeParam("setting:price_type:sell1", param));
    TC::COrderSetting setting;
    rules.orderSettingFromString(setting, param.m_strOrderSetting);
    EXPECT_EQ(setting.m_ePriceType, TC::EPriceType::Sell1);
}

TEST(DeskTradingRules, ASettingTextWithAMistakeGivesAKindThatIsRejected) {
    CDeskTradingRules rules;
    for (const char* text :
         {"price_type:6,order_type:many", "price_type:6,colour:red", "price_type:sell11", "x"}) {
        TC::COrderSetting setting;
        rules.orderSettingFromString(setting, QString::fromUtf8(text));
        EXPECT_EQ(setting.m_ePriceType, TC::EPriceType::Latest) << text;
        EXPECT_EQ(setting.m_eOrderType, kUnreadTradeParams) << text;
    }
}

TEST(DeskTradingRules, AnAccountAloneIsThatAccount) {
    CDeskTradingRules rules;
    TC::COrderTradeParam param;
    ASSERT_TRUE(rules.parserOrderTradeParam("account:A2", param));
    EXPECT_EQ(rules.getAccountFromOrderParam(param.m_strAccountKeyPart1, param.m_strAccountKeyPart2),
              QStringLiteral("A2"));
    EXPECT_FALSE(param.m_strAccountKeyPart2.isEmpty())
        << "with an empty half the order would ignore the other";
}

TEST(DeskTradingRules, SecondPartWithoutAnAccountIsIgnored) {
    CDeskTradingRules rules;
    TC::COrderTradeParam param;
    for (const char* text : {"account:;sub:-;setting:price_type:sell1", "sub:-;setting:price_type:sell1"}) {
        ASSERT_TRUE(rules.parserOrderTradeParam(text, param));
        EXPECT_TRUE(param.m_strAccountKeyPart1.isEmpty() && param.m_strAccountKeyPart2.isEmpty()) << text;
        EXPECT_EQ(param.m_strOrderSetting, QStringLiteral("price_type:sell1")) << text;
    }
}

TEST(DeskTradingRules, AnAlgorithmIsReadFromTheSettingTextToo) {
    CDeskTradingRules rules;
    TC::COrderTradeParam param;
    ASSERT_TRUE(rules.parserOrderTradeParam("account:A2;sub:-;order_type:7;setting:price_type:6", param));
    EXPECT_EQ(param.m_strAccountKeyPart1, QStringLiteral("A2"));
    EXPECT_EQ(param.m_eOrderType, 7);
    TC::COrderSetting setting;
    rules.orderSettingFromString(setting, param.m_strOrderSetting);
    EXPECT_EQ(static_cast<int>(setting.m_eOrderType), 7);
    ASSERT_TRUE(rules.parserOrderTradeParam("order_type:-1;setting:price_type:6", param));
    EXPECT_EQ(param.m_strOrderSetting, QStringLiteral("price_type:6")) << "-1 is no algorithm";
}

TEST(DeskTradingRules, ARecordIsStampedWithSettingAndPrice) {
    CDeskTradingRules rules;
    TC::COrderSetting setting;
    setting.m_ePriceType = TC::EPriceType::Sell2;
    setting.m_eOrderType = static_cast<TC::EOrderType>(4);
    TC::CCodeOrderParam record;
    rules.orderSettingToParam(setting, record, TC::EOperationType::Buy, 100, 10.5, {});
    EXPECT_EQ(record.m_ePriceType, TC::EPriceType::Sell2);
    EXPECT_EQ(static_cast<int>(record.m_eOrderType), 4);
    EXPECT_EQ(record.m_dPrice, 10.5);
    setting.m_eOrderType = TC::unsetEnum<TC::EOrderType>();
    rules.orderSettingToParam(setting, record, TC::EOperationType::Buy, 100, 10.5, {});
    EXPECT_EQ(record.m_eOrderType, TC::EOrderType::Plain);
}

TEST(DeskTradingRules, ARecordWithoutAPriceTakesTheQuotesOwn) {
    CDeskTradingRules rules;
    CQuoteEntry quote;
    quote.last = 10;
    quote.buy[0].price = 9.9;
    const auto data = boost::make_shared<CDeskPriceData>(quote);
    const auto priceAt = [&](TC::EPriceType type, double price, const TC::CPriceDataPtr& given) {
        TC::COrderSetting setting;
        setting.m_ePriceType = type;
        TC::CCodeOrderParam record;
        rules.orderSettingToParam(setting, record, TC::EOperationType::Sell, 100, price, given);
        return record.m_dPrice;
    };
    EXPECT_EQ(priceAt(TC::EPriceType::Buy1, TC::kUnsetDouble, data), 9.9);
    EXPECT_EQ(priceAt(TC::EPriceType::Buy1, 9.8, data), 9.8);
    EXPECT_EQ(priceAt(TC::EPriceType::Specified, TC::kUnsetDouble, data), TC::kUnsetDouble);
    EXPECT_EQ(priceAt(TC::EPriceType::Buy1, TC::kUnsetDouble, nullptr), TC::kUnsetDouble);
}

TEST(DeskTradingRules, AnAccountIsNamedByItsKeyAndItsSecondPart) {
    CDeskTradingRules rules;
    EXPECT_EQ(rules.getAccountFromOrderParam(QStringLiteral("A1"), QStringLiteral("-")),
              QStringLiteral("A1"));
    EXPECT_EQ(rules.getAccountFromOrderParam(QStringLiteral("A1"), QStringLiteral("2")),
              QStringLiteral("A1_2"));
    EXPECT_EQ(rules.qdStockKey(QStringLiteral("SH"), QStringLiteral("600000")), QStringLiteral("SH600000"));
}

TEST(DeskTradingRules, FamiliesTradeOnTheirKindOfAccount) {
    using F = TC::EOrderStrategyTradeType;
    using B = TC::EQDBrokerType;
    const struct {
        F family;
        B broker;
    } rows[] = {{F::Stock, B::Stock},
                {F::Future, B::Future},
                {F::Basket, B::Stock},
                {F::Credit, B::Credit},
                {F::StockOption, B::StockOption},
                {F::FutureOption, B::FutureOption},
                {F::FutureBasket, B::Stock},
                {F::SGT, B::SGT},
                {F::HGT, B::HGT},
                {F::Neeq, B::Neeq},
                {F::Gold, B::Gold}};
    CDeskTradingRules rules;
    for (const auto& row : rows)
        EXPECT_EQ(rules.orderStrategyTradeTypeToBrokerType(row.family), row.broker);
}

TEST(DeskTradingRules, WordsAreChineseAndUnknownNumbersAreShown) {
    CDeskTradingRules rules;
    EXPECT_EQ(rules.orderStrategyTypeToString(TC::EOrderStrategyType::File), QStringLiteral("文件单"));
    EXPECT_EQ(rules.orderStrategyTypeToOrderTitle(TC::EOrderStrategyType::Signal),
              QStringLiteral("[信号单]"));
    EXPECT_EQ(rules.orderStrategyTypeToString(static_cast<TC::EOrderStrategyType>(9)),
              QStringLiteral("来源9"));
    EXPECT_EQ(rules.orderStrategyTradeTypeToString(TC::EOrderStrategyTradeType::SGT),
              QStringLiteral("深港通"));
    EXPECT_EQ(rules.orderStrategyOrderTypeToString(23), QStringLiteral("买入"));
    EXPECT_EQ(rules.orderStrategyOrderTypeToString(77), QStringLiteral("股转指令77"));
    EXPECT_EQ(rules.orderStrategyOrderTypeToString(777), QStringLiteral("指令777"));
    EXPECT_EQ(rules.knPriceTypeToString(TC::EPriceType::Buy10, "SH600000", false), QStringLiteral("买十价"));
}

TEST(DeskTradingRules, NoPriceTypeIsAMarketPriceAndNoOrderKindAnAlgorithm) {
    CDeskTradingRules rules;
    EXPECT_FALSE(rules.isMarketPrice(TC::EPriceType::Latest));
    EXPECT_FALSE(rules.isAlgoOrderType(static_cast<TC::EOrderType>(20)));
    EXPECT_EQ(rules.getPlatformTypeByOrderType(static_cast<TC::EOrderType>(20)), TC::ETradePlatform::Plain);
}

TEST(DeskTradingRules, OperationsAreBoughtClosedRepaidAndBookedAsTheTableSays) {
    const struct {
        int operation;
        bool isBuy, isClose, isDirectRepay;
        int booking;
    } rows[] = {{18, true, false, false, 0},  {19, false, false, false, 0}, {0, true, false, false, 0},
                {1, false, true, false, 0},   {3, false, false, false, 0},  {4, true, true, false, 0},
                {10, false, false, false, 0}, {20, true, false, false, 1},  {21, false, false, false, 2},
                {22, true, false, false, 4},  {23, false, false, false, 4}, {24, false, false, false, 3},
                {25, false, false, true, 3},  {55, false, false, false, 5}, {1021, false, false, true, 3},
                {-1, false, false, false, 0}, {999, false, false, false, 0}};
    CDeskTradingRules rules;
    for (const auto& row : rows) {
        const auto operation = static_cast<TC::EOperationType>(row.operation);
        EXPECT_EQ(rules.isBuy(operation), row.isBuy) << row.operation;
        EXPECT_EQ(rules.isClose(operation), row.isClose) << row.operation;
        EXPECT_EQ(rules.isDirectRepay(operation), row.isDirectRepay) << row.operation;
        EXPECT_EQ(static_cast<int>(rules.operationTypeToEntrustType(operation)), row.booking)
            << row.operation;
    }
}

} // namespace
} // namespace desk
