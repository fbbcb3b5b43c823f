// Futures by function.
#include "tests/func/RoutineFixture.h"

namespace {

using namespace TC;

class OrderSpec : public RoutineFixture {
protected:
    OrderSpec() {
        addFutureAccount("F1");
        addFutureAccount("F2");
        host.user.addGroup(EQDBrokerType::Future, "futures", {{"F1", 1}, {"F2", 2}});
        host.exchange.addOther("future", QStringLiteral("IF2609"));
        addQuote(QStringLiteral("IF2609"), 4000, 3600, 4400);
        defaults = {{"opType", "0"},
                    {"orderType", "1101"},
                    {"prType", "11"},
                    {"modelPrice", "\"4000.4\""},
                    {"modelVolume", "\"3\""},
                    {"accountID", "\"F1\""},
                    {"orderCode", "\"IF2609\""},
                    {"tradeKey", "\"x|key|7\""},
                    {"strategyName", "\"grid_remark\""},
                    {"modelName", "\"model\""}};
    }
    void order(const std::map<std::string, std::string>& changes = {}) { call(orderSpec, changes); }
};

TEST_F(OrderSpec, SendsOneCommand) {
    order();
    expectReports({}, {}, {});
    const auto command = onlyCommand();
    EXPECT_EQ(command->m_eTraderType, EQdTraderType::FutureSpeculation);
    EXPECT_EQ(command->m_eHedgeType, EQdHedgeType::None);
    EXPECT_EQ(command->m_eBtnType, EFtSpecBtnBarType::None);
    EXPECT_EQ(command->m_eStopLossType, EQdStopLossType::None);
    EXPECT_EQ(command->m_weights, (std::map<std::string, double>{{"F1", 1.0}}));
    EXPECT_TRUE(command->m_bUnion);
    EXPECT_TRUE(command->m_bFuncOrder);
    EXPECT_FALSE(command->m_bForceConfirm);
    EXPECT_EQ(static_cast<int>(command->m_eStrategyType), 3);
    EXPECT_EQ(command->m_strStrategyName, "grid");
    EXPECT_EQ(command->m_strRemark, "remark");
    EXPECT_EQ(command->m_strModelName, "model");
    EXPECT_EQ(command->m_strFuncMessage, "");
    EXPECT_EQ(command->m_strAlgoParam, ""); // a command of futures has no trade key
    EXPECT_EQ(command->m_strCreateTime, "");
    ASSERT_EQ(command->m_codes.size(), 1u);
    const CCodeOrderParam& record = command->m_codes[0];
    EXPECT_EQ(record.m_account->getKey(), "F1");
    EXPECT_EQ(record.m_nVolume, 3);
    EXPECT_EQ(record.m_ePriceType, EPriceType::Specified);
    EXPECT_EQ(record.m_dPrice, 4000.4);
    EXPECT_EQ(static_cast<int>(record.m_eHedgeFlag), 49);
    EXPECT_EQ(record.m_eOperationType, EOperationType::OpenLong);
    EXPECT_EQ(record.m_stock.m_strCode, "IF2609");
    EXPECT_EQ(record.m_strUserId, "tester");
}

TEST_F(OrderSpec, Operations14And15OnlyOpen) {
    for (int number = 0; number <= 15; ++number) {
        order({{"opType", std::to_string(number)}});
        const int expected = number == 14 ? 0 : number == 15 ? 3 : number;
        ASSERT_FALSE(host.commands().empty());
        EXPECT_EQ(static_cast<int>(host.commands().back()->m_codes.at(0).m_eOperationType), expected)
            << number;
    }
}

TEST_F(OrderSpec, RemarkIsThatOfTheSettingIfThereIsNoNote) {
    host.user.defaults[EDefaultSetting::Future].m_strCmdLog = "of the setting";
    order({{"strategyName", "\"grid\""}});
    EXPECT_EQ(onlyCommand()->m_strRemark, "of the setting");
}

TEST_F(OrderSpec, ForceConfirmIsASwitch) {
    host.switches.on.insert("mdl_order_service_force_confirm");
    order();
    EXPECT_TRUE(onlyCommand()->m_bForceConfirm);
}

TEST_F(OrderSpec, EveryAccountOfAGroupGetsTheVolume) {
    host.user.nullAccount = true; // a null entry is skipped
    order({{"orderType", "1201"}, {"accountID", "\"futures\""}});
    const auto command = onlyCommand();
    ASSERT_EQ(command->m_codes.size(), 2u);
    EXPECT_EQ(command->m_codes[0].m_nVolume, 3);
    EXPECT_EQ(command->m_codes[1].m_nVolume, 3);
    EXPECT_EQ(command->m_weights, (std::map<std::string, double>{{"F1", 1.0}, {"F2", 2.0}}));
}

TEST_F(OrderSpec, WithoutOneRatioForEachAccountThereAreNoWeights) {
    host.user.dropRatios = true;
    order({{"orderType", "1201"}, {"accountID", "\"futures\""}});
    EXPECT_TRUE(onlyCommand()->m_weights.empty());
}

TEST_F(OrderSpec, SeveralLinesAreRefused) {
    order();
    forget();
    param.m_orders.append(param.m_orders.first());
    callParsed(orderSpec);
    expectFull(QStringLiteral("[函数交易]　函数: passorder, 下单参数不合法!"));
    EXPECT_EQ(failures.at(0).id, 7);
    EXPECT_EQ(failures.at(0).key, "key");
}

TEST_F(OrderSpec, UnknownCodeIsRefused) {
    order({{"orderCode", "\"IF9999\""}});
    expectFull(QStringLiteral("[函数交易]　函数: passorder, 下单代码 [IF9999] 不合法!"));
    EXPECT_EQ(host.orders.errors.at(0).title, QStringLiteral("参数错误"));
}

TEST_F(OrderSpec, MissingQuoteIsRefused) {
    host.quotes.quotes.clear();
    order();
    expectFull(QStringLiteral("[函数交易]　合约 [IF2609] 价11(IF2609)无效, 无法下单!"));
    EXPECT_TRUE(clock.sleeps().empty()); // no wait for a given price
    forget();
    order({{"prType", "5"}});
    expectFull(QStringLiteral("[函数交易]　合约 [IF2609] 价5(IF2609)无效, 无法下单!"));
    EXPECT_EQ(clock.sleeps(), (std::vector<double>{1, 1}));
}

TEST_F(OrderSpec, ModelPriceMustBeANumber) {
    for (const char* price : {"\"nan\"", "\"inf\"", "\"-inf\""}) {
        forget();
        order({{"modelPrice", price}});
        expectFull(QStringLiteral("[函数交易]　合约 [IF2609] 价11(IF2609)无效, 无法下单!"));
    }
}

TEST_F(OrderSpec, ModelPriceMustBeWithinTheLimits) {
    order({{"modelPrice", "\"4400.1\""}});
    expectFull(QStringLiteral("[函数交易]　函数: passorder,指定价4400.1 不在涨跌停[3600, 4400]范围内!"));
    forget();
    order({{"modelPrice", "\"3599.9\""}});
    expectFull(QStringLiteral("[函数交易]　函数: passorder,指定价3599.9 不在涨跌停[3600, 4400]范围内!"));
    for (const char* price : {"\"4400\"", "\"3600\"", "\"4400.000009\"", "\"3599.999991\""}) {
        forget();
        order({{"modelPrice", price}});
        EXPECT_EQ(host.commands().size(), 1u) << price;
    }
}

TEST_F(OrderSpec, ModelPriceMustBeAboveZero) {
    addQuote(QStringLiteral("IF2609"), 1, -10, 10);
    for (const char* price : {"\"0\"", "\"-1\"", "\"0.00001\""}) {
        forget();
        order({{"modelPrice", price}});
        expectFull(QStringLiteral("[函数交易]　函数: passorder,　须大于0为模型价报单!"));
    }
}

TEST_F(OrderSpec, VolumeBelowOneFiltersTheAccount) {
    order({{"modelVolume", "\"0.5\""}});
    const QString text = QStringLiteral("[函数交易]账号[F1] 的下单量[0]无效, 自动过滤!");
    expectReports({text}, {text}, {text});
    EXPECT_TRUE(onlyCommand()->m_codes.empty()); // the command is sent without records
}

TEST_F(OrderSpec, GuardRefusesACommandWithoutRecords) {
    host.switches.on.insert("mdl_order_command_guard");
    order({{"modelVolume", "\"0.5\""}});
    EXPECT_TRUE(host.commands().empty());
    ASSERT_EQ(failures.size(), 2u);
    EXPECT_EQ(failures[1].text, "[函数交易]　函数: passorder, 没有可下单的数量!");
    order();
    EXPECT_EQ(host.commands().size(), 1u);
}

TEST_F(OrderSpec, ShortVolumeEndsTheCallWithAPlainReport) {
    accounts["F2"]->m_dUsable = 2.9;
    host.rules.displayIds["F2"] = QStringLiteral("9002");
    order({{"orderType", "1201"}, {"accountID", "\"futures\""}});
    EXPECT_TRUE(host.commands().empty());
    const QString text = QStringLiteral("账号: [9002], 您的[IF2609]可用量 2 少于您输入的总量 3 ");
    expectReports({text}, {}, {text});
}

TEST_F(OrderSpec, VolumesBeyondAnIntEndInTheShortage) {
    for (const char* volume : {"\"2147483646\"", "\"1e20\""}) {
        forget();
        order({{"modelVolume", volume}});
        EXPECT_TRUE(host.commands().empty()) << volume;
        ASSERT_EQ(failures.size(), 1u);
        EXPECT_NE(failures[0].text.find("少于您输入的总量"), std::string::npos);
    }
    forget();
    order({{"modelVolume", "\"2147483645\""}});
    EXPECT_EQ(onlyCommand()->m_codes.at(0).m_nVolume, 2147483645);
}

TEST_F(OrderSpec, RatioIsWorkedOutForEachAccount) {
    accounts["F1"]->m_dUsable = 10;
    accounts["F2"]->m_dUsable = 5;
    order({{"orderType", "1223"}, {"accountID", "\"futures\""}, {"modelVolume", "\"0.5\""}});
    const auto command = onlyCommand();
    ASSERT_EQ(command->m_codes.size(), 2u);
    EXPECT_EQ(command->m_codes[0].m_nVolume, 5);
    EXPECT_EQ(command->m_codes[1].m_nVolume, 2);
    forget();
    accounts["F1"]->m_dUsable = 1;
    order({{"orderType", "1223"}, {"accountID", "\"futures\""}, {"modelVolume", "\"0.5\""}});
    ASSERT_EQ(onlyCommand()->m_codes.size(), 1u);
    EXPECT_EQ(onlyCommand()->m_codes[0].m_account->getKey(), "F2");
    ASSERT_EQ(failures.size(), 1u); // of the account that is left out
}

TEST_F(OrderSpec, NothingIsSentForAnotherKindOfUser) {
    host.user.kind = 1;
    order();
    EXPECT_TRUE(host.commands().empty());
    expectReports({}, {}, {});
    order({{"orderCode", "\"IF9999\""}}); // failures are still reported
    EXPECT_EQ(failures.size(), 1u);
}

TEST_F(OrderSpec, QuotedPriceIsTakenFromTheQuote) {
    order({{"prType", "5"}});
    const auto command = onlyCommand();
    EXPECT_EQ(command->m_codes.at(0).m_dPrice, 4000);
    EXPECT_EQ(command->m_codes.at(0).m_ePriceType, EPriceType::Latest);
    EXPECT_EQ(accounts["F1"]->m_calls.back(), "futureIF2609 op 0 hedge 49 at 4000.000000");
}

TEST_F(OrderSpec, WithoutAPriceTypeTheSettingDecides) {
    host.user.defaults[EDefaultSetting::Future].m_ePriceType = EPriceType::Buy1;
    order({{"prType", "-1"}});
    EXPECT_EQ(onlyCommand()->m_codes.at(0).m_ePriceType, EPriceType::Buy1);
}

} // namespace
