// Baskets by function: the guard, settings, and the futures leg.
#include "tests/func/ComposeFixture.h"
#include "tests/support/LogCapture.h"

#include <cmath>
#include <limits>

namespace {

using namespace TC;

class OrderComposeEdges : public ComposeFixture {};

TEST_F(OrderComposeEdges, NothingIsSentForAnotherKindOfUser) {
    host.user.kind = 5;
    order({{"prType", "7"}});
    EXPECT_TRUE(host.commands().empty());
    expectReports({}, {}, {}); // the price is checked after the user
}

TEST_F(OrderComposeEdges, EmptyBasketIsSentUnlessTheGuardIsOn) {
    rows().clear();
    EXPECT_EQ(volumesOf(), CVolumes{});
    host.switches.on.insert("mdl_order_command_guard");
    forget();
    order();
    expectFull(QStringLiteral("[函数交易]　函数: passorder, 没有可下单的数量!"));
}

TEST_F(OrderComposeEdges, GuardRefusesARecordOfVolumeZero) {
    host.switches.on.insert("mdl_order_command_guard");
    rows()[0].m_nVolume = 20;
    order();
    expectFull(QStringLiteral(
        "[函数交易]　函数: passorder, 账号 [A1] 合约 [SH600000] 没有数量, 整个指令(2条)未发出!"));
}

TEST_F(OrderComposeEdges, NullAccountsArePassedOver) {
    host.user.nullAccount = true;
    EXPECT_EQ(volumesOf({{"orderType", "2203"}, {"accountID", "\"G\""}, {"modelVolume", "\"0.4\""}}),
              (CVolumes{1000, 500, 3000, 1500}));
}

TEST_F(OrderComposeEdges, LargeBasketIsOneCommand) {
    rows().clear();
    for (int i = 0; i < 5000; ++i)
        addRow("SH", "600000", 100, 1);
    const CVolumes volumes = volumesOf({{"modelVolume", "\"1\""}});
    EXPECT_EQ(volumes, CVolumes(5000, 100));
}

TEST_F(OrderComposeEdges, GuardLeavesOutAWeightThatWouldOverspend) {
    rows()[1].m_dWeight = -0.5;
    EXPECT_EQ(volumesOf({{"orderType", "2102"}, {"modelVolume", "\"40000\""}}), CVolumes{8000});
    host.audit.incidents.clear();
    host.switches.on.insert("mdl_order_command_guard");
    for (const double weight : {-0.5, std::numeric_limits<double>::infinity(), std::nan("")}) {
        rows()[1].m_dWeight = weight;
        host.audit.incidents.clear();
        EXPECT_EQ(volumesOf({{"orderType", "2102"}, {"modelVolume", "\"40000\""}}), CVolumes{4000});
        EXPECT_EQ(leftOut(), "1 SZ000001: the weight is below zero or not finite");
        EXPECT_EQ(volumesOf(), (CVolumes{200, 300})); // weights do not matter for volumes
    }
}

TEST_F(OrderComposeEdges, GuardRefusesARecordWithoutAnOperation) {
    host.switches.on.insert("mdl_order_command_guard");
    rows()[0].m_eOperationType = -1;
    call(orderCompose, {});
    param.m_nOpType = 35;
    forget();
    callParsed(orderCompose);
    EXPECT_TRUE(host.commands().empty());
    ASSERT_EQ(failures.size(), 1u);
    EXPECT_NE(failures[0].text.find("没有操作类型"), std::string::npos);
}

TEST_F(OrderComposeEdges, LeftOutRowsAreNotReportedIfTheCommandIsRefused) {
    rows()[0].m_strCode = QStringLiteral("999999");
    order({{"prType", "7"}});
    EXPECT_TRUE(host.audit.incidents.empty());
    host.switches.on.insert("mdl_order_command_guard");
    rows()[1].m_nVolume = 20;
    order();
    EXPECT_TRUE(host.commands().empty());
    EXPECT_TRUE(host.audit.incidents.empty());
}

TEST_F(OrderComposeEdges, SettingIsThatOfTheFamily) {
    const auto remarkOf = [&](int tradeType, ESettingSlot slot) {
        param.m_nTradeType = tradeType;
        param.m_nPrType = -1;
        param.m_strNote.clear();
        strategy.setting(slot).m_strCmdLog = "slot " + std::to_string(static_cast<int>(slot));
        strategy.setting(slot).m_ePriceType = EPriceType::Latest;
        forget();
        orderCompose(param, strategy, CFuncReporter(param.m_strTradeKey, {}));
        return onlyCommand()->m_strRemark;
    };
    call(orderCompose, {});
    EXPECT_EQ(remarkOf(2, ESettingSlot::StockBasket), "slot 6");
    EXPECT_EQ(remarkOf(10, ESettingSlot::FunctionHGT), "slot 13");
    EXPECT_EQ(remarkOf(9, ESettingSlot::FunctionSGT), "slot 14");
    addFutures();
    call(orderCompose, {});
    EXPECT_EQ(remarkOf(8, ESettingSlot::FutureBasket), "slot 7");
}

TEST_F(OrderComposeEdges, FlagOfTheStrategyIsNotForSales) {
    const auto flagOf = [&](int opType) {
        param.m_nOpType = opType;
        strategy.m_bCommandFlag = true;
        forget();
        orderCompose(param, strategy, CFuncReporter(param.m_strTradeKey, {}));
        return onlyCommand()->m_bCommandFlag;
    };
    call(orderCompose, {});
    for (const int opType : {25, 27, 29, 33})
        EXPECT_TRUE(flagOf(opType)) << opType;
    for (const int opType : {26, 28, 31, 34, 35, 36})
        EXPECT_FALSE(flagOf(opType)) << opType;
}

// The futures leg.

class OrderComposeHedge : public ComposeFixture {
protected:
    OrderComposeHedge() {
        addFutureAccount("F1");
        host.exchange.addOther("future", QStringLiteral("IF2609"));
        defaults["orderType"] = "2331";
        defaults["modelPrice"] = "\"0.9\"";
        defaults["accountID"] = "\"A1,F1\"";
        defaults["orderCode"] = "\"b,IF2609\"";
    }
};

TEST_F(OrderComposeHedge, SwitchAddsTheLeg) {
    const CLogCapture log;
    utils::CLogCenter::setLogEnabled(true);
    host.switches.on.insert("mdl_order_compose_hedge");
    order();
    const auto command = onlyCommand();
    EXPECT_EQ(command->m_eHedgeType, EQdHedgeType::Hedge);
    EXPECT_EQ(command->m_strOrderCode, "b");
    int kind = 0;
    EXPECT_TRUE(bson::readField(command->m_extra, "m_nPriceKind", kind));
    EXPECT_EQ(kind, 3);
    double ratio = 0;
    EXPECT_TRUE(bson::readField(command->m_extra, "m_dRatio", ratio));
    EXPECT_EQ(ratio, 0.9);
    EXPECT_NE(log.lines().back().text.find("placeCommands: [orderservice] basket hedge."), std::string::npos);
    forget();
    order({{"opType", "26"}});
    EXPECT_TRUE(bson::readField(onlyCommand()->m_extra, "m_nPriceKind", kind));
    EXPECT_EQ(kind, 9);
}

TEST_F(OrderComposeHedge, WithoutTheSwitchThereIsNoLeg) {
    order();
    EXPECT_EQ(onlyCommand()->m_eHedgeType, EQdHedgeType::Compose);
    EXPECT_TRUE(onlyCommand()->m_extra.isEmpty());
}

TEST_F(OrderComposeHedge, AccountWithoutAPairGivesALegWithoutData) {
    host.switches.on.insert("mdl_order_compose_hedge");
    order({{"accountID", "\"A1\""}});
    EXPECT_EQ(onlyCommand()->m_eHedgeType, EQdHedgeType::Hedge);
    double ratio = 0;
    EXPECT_FALSE(bson::readField(onlyCommand()->m_extra, "m_dRatio", ratio));
}

TEST_F(OrderComposeHedge, CodeOfAnotherOperationStaysWhole) {
    host.user.baskets[QStringLiteral("b,IF2609")] = host.user.baskets[QStringLiteral("b")];
    addFutures();
    host.user.baskets[QStringLiteral("b,IF2609")] = host.user.baskets[QStringLiteral("b")];
    order({{"opType", "40"}, {"accountID", "\"F1\""}});
    EXPECT_EQ(onlyCommand()->m_strOrderCode, "b,IF2609");
}

} // namespace
