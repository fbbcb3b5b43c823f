// Options on stocks by function.
#include "orderservice/base/KNError.h"
#include "tests/func/RoutineFixture.h"

namespace {

using namespace TC;

class OrderOption : public RoutineFixture {
protected:
    OrderOption() {
        for (const char* key : {"O1", "O2"}) {
            host.user.addAccount(key, EQDBrokerType::StockOption);
            addData(key);
        }
        host.user.addGroup(EQDBrokerType::StockOption, "options", {{"O1", 1}, {"O2", 1}});
        host.exchange.addOther("option", QStringLiteral("10005001"));
        addQuote(QStringLiteral("10005001"), 0.5, 0.1, 0.9);
        defaults = {{"opType", "50"},
                    {"orderType", "1101"},
                    {"prType", "11"},
                    {"modelPrice", "\"0.4\""},
                    {"modelVolume", "\"4\""},
                    {"accountID", "\"O1\""},
                    {"orderCode", "\"10005001\""},
                    {"tradeKey", "\"x|key|7\""},
                    {"strategyName", "\"grid\""},
                    {"note", "\"remark\""},
                    {"modelName", "\"model\""}};
    }
    void order(const std::map<std::string, std::string>& changes = {}) { call(orderOption, changes); }
    /// The only failure, with the title of the source in front of the text.
    void expectTitled(const char* text) {
        expectFull(host.rules.orderStrategyTypeToOrderTitle(strategy.m_eStrategyType) +
                   QString::fromUtf8(text));
    }
};

TEST_F(OrderOption, SendsOneCommand) {
    order();
    expectReports({}, {}, {});
    const auto command = onlyCommand();
    EXPECT_EQ(command->m_eTraderType, EQdTraderType::Option);
    EXPECT_EQ(static_cast<int>(command->m_eHedgeType), 2);
    EXPECT_EQ(command->m_weights, (std::map<std::string, double>{{"O1", 1.0}}));
    EXPECT_TRUE(command->m_bUnion);
    EXPECT_TRUE(command->m_bFuncOrder);
    EXPECT_EQ(command->m_strAlgoParam, "x|key|7");
    EXPECT_EQ(command->m_strStrategyName, ""); // an option's command has none
    EXPECT_EQ(command->m_strFuncMessage, "");
    EXPECT_EQ(command->m_strRemark, "remark");
    EXPECT_EQ(command->m_strModelName, "model");
    ASSERT_EQ(command->m_codes.size(), 1u);
    const CCodeOrderParam& record = command->m_codes[0];
    EXPECT_EQ(record.m_eOperationType, EOperationType::OptionBuyOpen);
    EXPECT_EQ(record.m_nVolume, 4);
    EXPECT_EQ(record.m_dPrice, 0.4);
    EXPECT_EQ(record.m_stock.m_strCode, "10005001");
}

TEST_F(OrderOption, OperationIsTheNumberLess18) {
    host.exchange.addOther("option", QStringLiteral("SH600000"));
    for (int number = 50; number <= 59; ++number) {
        forget();
        order({{"opType", std::to_string(number)},
               {"orderCode", number >= 58 ? "\"600000\"" : "\"10005001\""}});
        EXPECT_EQ(static_cast<int>(onlyCommand()->m_codes.at(0).m_eOperationType), number - 18) << number;
    }
}

TEST_F(OrderOption, NumbersOutsideAreRefused) {
    order();
    for (const int number : {49, 60}) {
        forget();
        param.m_nOpType = number;
        callParsed(orderOption);
        expectTitled(("[函数交易] 函数:passorder, 下单指令[" + std::to_string(number) + "]不合法!").c_str());
    }
}

TEST_F(OrderOption, SeveralLinesAreRefused) {
    order();
    forget();
    param.m_orders.append(param.m_orders.first());
    callParsed(orderOption);
    expectTitled("[函数交易] 函数:passorder, 下单指令不合法!");
}

TEST_F(OrderOption, CodeIsCutToTheDigitsAtItsEnd) {
    for (const char* code : {"\"SHO10005001\"", "\"10005001\"", "\"sho.10005001\""}) {
        forget();
        order({{"orderCode", code}});
        EXPECT_EQ(onlyCommand()->m_codes.at(0).m_stock.m_strCode, "10005001") << code;
    }
    forget();
    order({{"orderCode", "\"SHO99999999\""}});
    expectTitled("[函数交易] 函数: passorder, 下单代码[99999999]不合法!");
    forget();
    order({{"orderCode", "\"600000\""}}); // a stock is no option
    expectTitled("[函数交易] 函数: passorder, 下单代码[SH600000]不合法!");
}

TEST_F(OrderOption, LockAndUnlockNameAStock) {
    for (const char* number : {"58", "59"}) {
        forget();
        order({{"opType", number}, {"orderCode", "\"600000\""}});
        EXPECT_EQ(onlyCommand()->m_codes.at(0).m_stock.m_strCode, "600000");
        forget();
        order({{"opType", number}});
        expectTitled("[函数交易] 函数: passorder, 下单代码[10005001]不合法!");
    }
}

TEST_F(OrderOption, PriceMustBeUsable) {
    order({{"modelPrice", "\"0\""}});
    expectTitled("证券:[10005001] 价11(10005001)无效,无法下单!");
    forget();
    host.quotes.quotes.clear();
    order({{"prType", "5"}});
    expectTitled("证券:[10005001] 价5(10005001)无效,无法下单!");
    EXPECT_EQ(clock.sleeps(), (std::vector<double>{1, 1}));
    forget();
    order({{"prType", "26"}}); // no wait for this type
    EXPECT_EQ(clock.sleeps().size(), 2u);
    EXPECT_EQ(failures.size(), 1u);
}

TEST_F(OrderOption, GivenPriceHasNoLimits) {
    order({{"modelPrice", "\"99\""}});
    EXPECT_EQ(onlyCommand()->m_codes.at(0).m_dPrice, 99);
    forget();
    order({{"modelPrice", "\"-1\""}});
    expectTitled("[函数交易] 函数: passorder,[10005001]不能以[-1]为指定价报单!");
}

TEST_F(OrderOption, HostSplitsTheVolume) {
    order({{"orderType", "1201"}, {"accountID", "\"options\""}});
    const auto command = onlyCommand();
    ASSERT_EQ(command->m_codes.size(), 2u);
    EXPECT_EQ(command->m_codes[0].m_nVolume, 2);
    ASSERT_EQ(host.trade.splitCalls.size(), 1u);
    const auto& call = host.trade.splitCalls[0];
    EXPECT_EQ(call.volume, 4);
    EXPECT_EQ(call.price, 0.4);
    EXPECT_EQ(call.code, "10005001");
    EXPECT_EQ(static_cast<int>(call.hedge), 49);
}

TEST_F(OrderOption, AccountsWithoutAVolumeAreLeftOut) {
    host.trade.split = [](const auto&, utils::KNError&) { return std::vector<int>{0, 4}; };
    order({{"orderType", "1201"}, {"accountID", "\"options\""}});
    const auto command = onlyCommand();
    ASSERT_EQ(command->m_codes.size(), 1u);
    EXPECT_EQ(command->m_codes[0].m_account->getKey(), "O2");
}

TEST_F(OrderOption, FailedSplitEndsTheCall) {
    host.trade.split = [](const auto&, utils::KNError& error) {
        error = utils::KNError(1, "no funds");
        return std::vector<int>{4};
    };
    order({{"orderType", "1201"}, {"accountID", "\"options\""}});
    expectTitled("[交易函数] 函数: passorder,分单失败: no funds");
}

TEST_F(OrderOption, LargeTotalsGoIntoTheSplitAsTheLargestInt) {
    host.trade.split = [](const auto&, utils::KNError& error) {
        error = utils::KNError(1, "too large");
        return std::vector<int>{};
    };
    order({{"orderType", "1102"}, {"modelVolume", "\"1e300\""}});
    ASSERT_EQ(host.trade.splitCalls.size(), 1u);
    EXPECT_EQ(host.trade.splitCalls[0].volume, 2147483647);
}

TEST_F(OrderOption, VolumesThatNoRecordCanHoldMakeTheSplitFail) {
    std::vector<int> totals;
    host.trade.split = [&](const auto& call, utils::KNError&) {
        totals.push_back(call.volume);
        return std::vector<int>{0};
    };
    for (const char* volume : {"\"2147483646\"", "\"1e20\"", "\"inf\""})
        order({{"modelVolume", volume}});
    EXPECT_EQ(totals, (std::vector<int>{kUnsetInt, kUnsetInt, kUnsetInt}));
    totals.clear();
    for (const char* amount : {"\"-4294967196\"", "\"-1e18\"", "\"-1e300\""})
        order({{"orderType", "1102"}, {"modelPrice", "\"1\""}, {"modelVolume", amount}});
    for (const int total : totals)
        EXPECT_TRUE(total == 0 || total == kUnsetInt) << total;
    EXPECT_EQ(totals.size(), 3u);
}

TEST_F(OrderOption, NothingIsSentForAnotherKindOfUser) {
    host.user.kind = 1;
    order();
    EXPECT_TRUE(host.commands().empty());
    expectReports({}, {}, {});
}

} // namespace
