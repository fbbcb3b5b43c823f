#include "orderservice/records/OrderParam.h"

#include <gtest/gtest.h>

namespace {

using namespace TC;

TEST(OrderParam, NewLineIsNotSet) {
    const COrderSingleParam line;
    EXPECT_TRUE(line.m_strCode.isEmpty());
    EXPECT_TRUE(line.m_strAccount.isEmpty());
    EXPECT_EQ(line.m_nVolume, 0x7fffffff);
    EXPECT_EQ(line.m_dPrice, kUnsetDouble);
    EXPECT_FALSE(line.m_bHasFirstLimit);
    EXPECT_EQ(line.m_dFirstLimit, kUnsetDouble);
    EXPECT_FALSE(line.m_bHasSecondLimit);
    EXPECT_EQ(line.m_dSecondLimit, kUnsetDouble);
    EXPECT_EQ(line.m_dAmount, kUnsetDouble);
    EXPECT_TRUE(line.m_strCompact.isEmpty());
    EXPECT_EQ(line.m_eOperationType, -1);
    EXPECT_EQ(line.m_dWeight, 0.0);
    EXPECT_EQ(line.m_nOverFreqMode, 0x7fffffff);
    EXPECT_EQ(static_cast<int>(line.m_ePriceType), -1);
}

/// Many orders wait in the queue at once.
TEST(OrderParam, RecordsHaveNoGapsBetweenTheirFields) {
    constexpr std::size_t kLineFields = 3 * sizeof(QString) + 5 * sizeof(double) + 4 * sizeof(int) + 2;
    EXPECT_LT(sizeof(COrderSingleParam), kLineFields + alignof(COrderSingleParam));
    constexpr std::size_t kOrderFields = 6 * sizeof(int) + 1 + sizeof(QVector<COrderSingleParam>) +
                                         2 * sizeof(QString) + 7 * sizeof(std::string);
    EXPECT_LT(sizeof(COrderParam), kOrderFields + alignof(COrderParam));
}

TEST(OrderParam, TheOnlyLineReplacesAllLinesAndReservesNoMore) {
    COrderParam order;
    order.m_orders.resize(3);
    setOnlyLine(order).m_nVolume = 7;
    ASSERT_EQ(order.m_orders.size(), 1);
    EXPECT_EQ(order.m_orders[0].m_nVolume, 7);
    EXPECT_EQ(order.m_orders.capacity(), 1);
}

TEST(OrderParam, NewOrderIsNotSet) {
    const COrderParam order;
    EXPECT_EQ(order.m_nOrderType, 0x7fffffff);
    EXPECT_EQ(order.m_nChannel, 0x7fffffff);
    EXPECT_EQ(static_cast<int>(order.m_eStrategyType), -1);
    EXPECT_FALSE(order.m_bAll);
    EXPECT_TRUE(order.m_orders.isEmpty());
    EXPECT_TRUE(order.m_strAccountKeyPart1.isEmpty());
    EXPECT_TRUE(order.m_strAccountKeyPart2.isEmpty());
    EXPECT_EQ(order.m_strBasketText, "");
    EXPECT_EQ(order.m_strAccountKey, "");
    EXPECT_EQ(order.m_strRemark, "");
    EXPECT_EQ(static_cast<int>(order.m_eOrderType), -1);
    EXPECT_EQ(order.m_strOrderSetting, "");
    EXPECT_EQ(order.m_nSettingKind, 0);
    EXPECT_EQ(order.m_strTradeText1 + order.m_strTradeText2 + order.m_strTradeText3, "");
    EXPECT_EQ(order.m_nTradeTypeOverride, -1);
}

TEST(OrderParam, NewTradeParamIsNotSet) {
    const COrderTradeParam param;
    EXPECT_EQ(param.m_strRemark, "");
    EXPECT_EQ(param.m_eOrderType, -1);
    EXPECT_TRUE(param.m_strOrderSetting.isEmpty());
    EXPECT_TRUE(param.m_strAccountKeyPart1.isEmpty());
    EXPECT_TRUE(param.m_strAccountKeyPart2.isEmpty());
    EXPECT_EQ(param.m_nSettingKind, 0);
    EXPECT_EQ(param.m_strTradeText1 + param.m_strTradeText2 + param.m_strTradeText3, "");
}

TEST(OrderParamText, UnsetNumbersAreDashes) {
    COrderParam order;
    EXPECT_EQ(order.toQString(), QStringLiteral("order_type=- channel=- strategy_type=-1"));
    order.m_orders.resize(1);
    EXPECT_EQ(order.toQString(),
              QStringLiteral("order_type=- channel=- strategy_type=-1 {code= volume=- price=-}"));
}

TEST(OrderParamText, PlainOrder) {
    COrderParam order;
    order.m_nOrderType = 23;
    order.m_nChannel = 3;
    order.m_eStrategyType = EOrderStrategyType::File;
    COrderSingleParam line;
    line.m_strCode = QStringLiteral("600000");
    line.m_nVolume = 100;
    line.m_dPrice = 10.57;
    order.m_orders.push_back(line);
    EXPECT_EQ(order.toQString(),
              QStringLiteral("order_type=23 channel=3 strategy_type=2 {code=600000 volume=100 price=10.57}"));
}

TEST(OrderParamText, FurtherFieldsStandWhereTheyAreSet) {
    COrderParam order;
    order.m_nOrderType = 0;
    order.m_nChannel = 7;
    order.m_eStrategyType = EOrderStrategyType::Signal;
    order.m_bAll = true;
    order.m_strRemark = "备注";
    order.m_strOrderSetting = "price=5";
    order.m_strAccountKeyPart1 = QStringLiteral("2");
    COrderSingleParam line;
    line.m_strCode = QStringLiteral("IF2601");
    line.m_strAccount = QStringLiteral("A1");
    line.m_bHasFirstLimit = line.m_bHasSecondLimit = true;
    line.m_dFirstLimit = 3900.2;
    line.m_eOperationType = 18;
    line.m_dWeight = 0.25;
    line.m_dAmount = 50000;
    line.m_ePriceType = EPriceType::Latest;
    line.m_strCompact = QStringLiteral("C9");
    order.m_eOrderType = EOrderType::Plain;
    order.m_nSettingKind = 1;
    order.m_strBasketText = "b";
    order.m_strAccountKey = "1_k";
    order.m_strTradeText2 = "t";
    order.m_orders.push_back(line);
    order.m_orders.push_back(COrderSingleParam());
    EXPECT_EQ(order.toQString(),
              QStringLiteral(
                  "order_type=0 channel=7 strategy_type=1 all remark=备注 setting=price=5 "
                  "order_kind=0 setting_kind=1 basket_text=b account_key=1_k text=t account=2/ "
                  "{code=IF2601 volume=- price=- account=A1 first_limit=3900.2 second_limit=- operation=18 "
                  "weight=0.25 amount=50000 price_type=5 compact=C9} {code= volume=- price=-}"));
}

} // namespace
