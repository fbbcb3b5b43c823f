#include "orderservice/records/CommandParam.h"

#include <gtest/gtest.h>

namespace {

using namespace TC;

TEST(CommandParam, NewCodeRecordIsNotSet) {
    const CCodeOrderParam code;
    EXPECT_EQ(code.m_account, nullptr);
    EXPECT_EQ(static_cast<int>(code.m_eHedgeFlag), 49);
    EXPECT_EQ(static_cast<int>(code.m_eOperationType), -1);
    EXPECT_EQ(static_cast<int>(code.m_eOrderType), -1);
    EXPECT_EQ(static_cast<int>(code.m_ePositionType), -1);
    EXPECT_EQ(code.m_stock.m_strMarket + code.m_stock.m_strCode + code.m_stock.m_strName +
                  code.m_stock.m_strProductId,
              "");
    EXPECT_EQ(static_cast<int>(code.m_ePriceType), -1);
    EXPECT_EQ(code.m_dPrice, kUnsetDouble);
    EXPECT_EQ(code.m_nVolume, 0x7fffffff);
    EXPECT_EQ(code.m_strUserId, "");
    EXPECT_EQ(static_cast<int>(code.m_eEntrustType), -1);
    EXPECT_EQ(code.m_strContractText + code.m_strRepayText + code.m_strSubAccountId, "");
    EXPECT_EQ(code.m_nQuantityKind, 0x7fffffff);
    EXPECT_EQ(code.m_dQuantity, kUnsetDouble);
    EXPECT_EQ(code.m_nSubAccountKind, 0x7fffffff);
    EXPECT_EQ(code.m_nOverFreqMode, 0x7fffffff);
    EXPECT_EQ(code.getKey(), "");
}

TEST(CommandParam, NewCommandIsPlain) {
    const COrderComandParam command;
    EXPECT_EQ(static_cast<int>(command.m_eTraderType), -1);
    EXPECT_EQ(command.m_eHedgeType, EQdHedgeType::None);
    EXPECT_EQ(command.m_eBtnType, EFtSpecBtnBarType::None);
    EXPECT_TRUE(command.m_codes.empty());
    EXPECT_TRUE(command.m_weights.empty());
    EXPECT_EQ(command.m_eStopLossType, EQdStopLossType::None);
    EXPECT_FALSE(command.m_bUnion);
    EXPECT_TRUE(command.m_extra.isEmpty());
    EXPECT_EQ(command.m_strTag + command.m_strAlgoParam + command.m_strRemark + command.m_strCreateTime, "");
    EXPECT_EQ(command.m_ePlatform, ETradePlatform::Plain);
    EXPECT_FALSE(command.m_bCommandFlag);
    EXPECT_FALSE(command.m_bForceConfirm);
    EXPECT_EQ(static_cast<int>(command.m_eStrategyType), -1);
}

COrderParam filledOrder() {
    COrderParam order;
    order.m_nOrderType = 27;
    order.m_nChannel = 9;
    order.m_eStrategyType = EOrderStrategyType::BatchPending;
    order.m_bAll = true;
    order.m_orders.resize(2);
    order.m_orders[1].m_strCode = QStringLiteral("600000");
    order.m_strAccountKeyPart1 = QStringLiteral("1");
    order.m_strAccountKeyPart2 = QStringLiteral("2");
    order.m_strBasketText = "basket";
    order.m_strAccountKey = "key";
    order.m_strRemark = "remark";
    order.m_eOrderType = static_cast<EOrderType>(5);
    order.m_strOrderSetting = "setting";
    order.m_nSettingKind = 1;
    order.m_strTradeText1 = "t1";
    order.m_strTradeText2 = "t2";
    order.m_strTradeText3 = "t3";
    order.m_nTradeTypeOverride = 3;
    return order;
}

void expectFilledOrder(const COrderParam& order) {
    EXPECT_EQ(order.m_nOrderType, 27);
    EXPECT_EQ(order.m_nChannel, 9);
    EXPECT_EQ(order.m_eStrategyType, EOrderStrategyType::BatchPending);
    EXPECT_TRUE(order.m_bAll);
    ASSERT_EQ(order.m_orders.size(), 2);
    EXPECT_EQ(order.m_orders[1].m_strCode, QStringLiteral("600000"));
    EXPECT_EQ(order.m_strAccountKeyPart1, QStringLiteral("1"));
    EXPECT_EQ(order.m_strAccountKeyPart2, QStringLiteral("2"));
    EXPECT_EQ(order.m_strBasketText, "basket");
    EXPECT_EQ(order.m_strAccountKey, "key");
    EXPECT_EQ(order.m_strRemark, "remark");
    EXPECT_EQ(static_cast<int>(order.m_eOrderType), 5);
    EXPECT_EQ(order.m_strOrderSetting, "setting");
    EXPECT_EQ(order.m_nSettingKind, 1);
    EXPECT_EQ(order.m_strTradeText1, "t1");
    EXPECT_EQ(order.m_strTradeText2, "t2");
    EXPECT_EQ(order.m_strTradeText3, "t3");
    EXPECT_EQ(order.m_nTradeTypeOverride, 3);
}

TEST(CommandParam, CheckedOrderIsMadeFromAnOrder) {
    const orderParamForOrderService checked(filledOrder());
    expectFilledOrder(checked);
    EXPECT_TRUE(checked.m_codes.empty());
    EXPECT_TRUE(checked.m_weights.empty());
}

TEST(CommandParam, AssignmentCopiesTheOrderAndKeepsTheResults) {
    orderParamForOrderService checked;
    checked.m_codes.resize(3);
    checked.m_weights["A1"] = 0.6;
    checked = filledOrder();
    expectFilledOrder(checked);
    EXPECT_EQ(checked.m_codes.size(), 3u);
    EXPECT_EQ(checked.m_weights, (std::map<std::string, double>{{"A1", 0.6}}));
}

} // namespace
