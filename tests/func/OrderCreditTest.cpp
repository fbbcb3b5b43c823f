// Margin trading by function.
#include "tests/func/RoutineFixture.h"

namespace {

using namespace TC;

class OrderCredit : public RoutineFixture {
protected:
    OrderCredit() {
        for (const char* key : {"C1", "C2"}) {
            host.user.addAccount(key, EQDBrokerType::Credit);
            addData(key);
        }
        host.user.addGroup(EQDBrokerType::Credit, "credit", {{"C1", 1}, {"C2", 2}});
        addQuote(QStringLiteral("SH600000"), 10.5, 9, 11);
        defaults = {{"opType", "27"},
                    {"orderType", "1101"},
                    {"prType", "11"},
                    {"modelPrice", "\"10.4\""},
                    {"modelVolume", "\"300\""},
                    {"accountID", "\"C1\""},
                    {"orderCode", "\"600000\""},
                    {"tradeKey", "\"x|key|7\""},
                    {"strategyName", "\"grid\""},
                    {"note", "\"remark\""},
                    {"modelName", "\"model\""}};
    }
    void order(const std::map<std::string, std::string>& changes = {}) { call(orderCredit, changes); }
    int onlyVolume(const char* opType, const char* volume, double usable) {
        forget();
        accounts["C1"]->m_dUsable = usable;
        order({{"opType", opType}, {"modelVolume", volume}});
        const auto command = onlyCommand();
        return command->m_codes.size() == 1 ? command->m_codes[0].m_nVolume : -1;
    }
};

TEST_F(OrderCredit, SendsOneCommand) {
    order();
    expectReports({}, {}, {});
    const auto command = onlyCommand();
    EXPECT_EQ(command->m_eTraderType, EQdTraderType::Credit);
    EXPECT_EQ(command->m_eHedgeType, EQdHedgeType::None);
    EXPECT_EQ(command->m_weights, (std::map<std::string, double>{{"C1", 1.0}}));
    EXPECT_TRUE(command->m_bUnion);
    EXPECT_TRUE(command->m_bFuncOrder);
    EXPECT_FALSE(command->m_bCommandFlag);
    EXPECT_EQ(static_cast<int>(command->m_eStrategyType), 3);
    EXPECT_EQ(command->m_strAlgoParam, "x|key|7");
    EXPECT_EQ(command->m_strStrategyName, "grid");
    EXPECT_EQ(command->m_strRemark, "remark");
    EXPECT_EQ(command->m_strModelName, "model");
    ASSERT_EQ(command->m_codes.size(), 1u);
    const CCodeOrderParam& record = command->m_codes[0];
    EXPECT_EQ(record.m_eOperationType, EOperationType::MarginBuy);
    EXPECT_EQ(static_cast<int>(record.m_eEntrustType), 520);
    EXPECT_EQ(record.m_nVolume, 300);
    EXPECT_EQ(record.m_dPrice, 10.4);
    EXPECT_EQ(record.m_strRepayText, "");
}

TEST_F(OrderCredit, Operations) {
    const std::map<std::string, int> expected = {{"27", 20}, {"28", 21}, {"29", 22}, {"30", 23},
                                                 {"31", 24}, {"33", 18}, {"34", 19}};
    for (const auto& [opType, operation] : expected) {
        forget();
        order({{"opType", opType}});
        EXPECT_EQ(static_cast<int>(onlyCommand()->m_codes.at(0).m_eOperationType), operation) << opType;
    }
}

TEST_F(OrderCredit, ContractIsOnEveryRecord) {
    order({{"opType", "29"},
           {"orderCode", "\"600000,1001\""},
           {"orderType", "1201"},
           {"accountID", "\"credit\""}});
    const auto command = onlyCommand();
    ASSERT_EQ(command->m_codes.size(), 2u);
    EXPECT_EQ(command->m_codes[0].m_strRepayText, "1001");
    EXPECT_EQ(command->m_codes[1].m_strRepayText, "1001");
    EXPECT_EQ(command->m_weights.size(), 2u);
}

TEST_F(OrderCredit, UnknownCodeIsRefused) {
    order({{"orderCode", "\"999999\""}});
    expectFull(QStringLiteral("[函数交易]　函数: passorder, 下单代码 [999999] 不合法!"));
}

TEST_F(OrderCredit, PriceMustBeGivenAndWithinTheLimits) {
    order({{"modelPrice", "\"0\""}});
    expectFull(QStringLiteral("[函数交易]　函数: passorder,　证券 [SH600000] 价11(600000)无效, 无法下单!"));
    forget();
    order({{"modelPrice", "\"12\""}});
    expectFull(QStringLiteral("[函数交易]　函数: passorder,指定价12 不在[600000]涨跌停[9, 11]范围内!"));
    forget();
    host.quotes.quotes.clear();
    order();
    expectFull(QStringLiteral("[函数交易]　函数: passorder,　证券 [SH600000] 价11(600000)无效, 无法下单!"));
    forget();
    order({{"prType", "5"}});
    expectFull(QStringLiteral("[函数交易]　函数: passorder,　证券 [SH600000] 价5(600000)无效, 无法下单!"));
    EXPECT_EQ(clock.sleeps(), (std::vector<double>{1, 1}));
}

TEST_F(OrderCredit, PriceOfTheRecordMustBeAboveZero) {
    addQuote(QStringLiteral("SH600000"), 1, -10, 10);
    order({{"modelPrice", "\"-1\""}});
    expectFull(QStringLiteral("[函数交易] 函数: passorder,[600000]不能以[-1]为指定价报单!"));
}

TEST_F(OrderCredit, VolumeBelowOneEndsTheCall) {
    order({{"modelVolume", "\"0.5\""}});
    expectFull(QStringLiteral("[函数交易]函数: passorder,[600000]下单量[0]无效"));
}

TEST_F(OrderCredit, VolumesAreLegal) {
    EXPECT_EQ(onlyVolume("27", "\"350\"", DBL_MAX), 300);
    EXPECT_EQ(onlyVolume("30", "\"350\"", DBL_MAX), 350); // shares are returned as they are
    for (const char* sale : {"34", "31"}) {
        EXPECT_EQ(onlyVolume(sale, "\"150\"", 150), 150) << sale;
        EXPECT_EQ(onlyVolume(sale, "\"150\"", 200), 100) << sale;
    }
    EXPECT_EQ(onlyVolume("28", "\"150\"", 150), 100);
}

TEST_F(OrderCredit, SaleOfEverythingIsAskedAsAPlainSale) {
    accounts["C1"]->m_dUsable = 150;
    order({{"opType", "31"}, {"modelVolume", "\"150\""}});
    ASSERT_EQ(accounts["C1"]->m_calls.size(), 2u);
    EXPECT_NE(accounts["C1"]->m_calls[0].find(" op 19 "), std::string::npos);
    EXPECT_NE(accounts["C1"]->m_calls[1].find(" op 24 "), std::string::npos);
}

TEST_F(OrderCredit, RoundedVolumeIsThatOfTheNextAccounts) {
    accounts["C1"]->m_dUsable = 200;
    accounts["C2"]->m_dUsable = 150;
    order({{"opType", "34"}, {"modelVolume", "\"150\""}, {"orderType", "1201"}, {"accountID", "\"credit\""}});
    const auto command = onlyCommand();
    ASSERT_EQ(command->m_codes.size(), 2u);
    EXPECT_EQ(command->m_codes[1].m_nVolume, 100);
}

TEST_F(OrderCredit, ShortVolumeIsToldOnlyToTheCaller) {
    accounts["C2"]->m_dUsable = 299;
    order({{"orderType", "1201"}, {"accountID", "\"credit\""}});
    EXPECT_TRUE(host.commands().empty());
    expectReports({}, {}, {QStringLiteral("账号: [C2], 您的[600000]可用量 299 少于您输入的总量 300  ")});
}

TEST_F(OrderCredit, MoneyBuysAVolume) {
    order({{"orderType", "1102"}, {"modelVolume", "\"10400\""}});
    EXPECT_EQ(onlyCommand()->m_codes.at(0).m_nVolume, 1000);
    forget();
    order({{"orderType", "1102"}, {"modelVolume", "\"1e300\""}});
    EXPECT_TRUE(host.commands().empty()); // a shortage, also without a limit
    EXPECT_EQ(failures.size(), 1u);
}

TEST_F(OrderCredit, RepaymentOfMoneyNeedsNoQuoteAndNoInstrument) {
    host.quotes.quotes.clear();
    order({{"opType", "32"},
           {"orderCode", "\"contract 9\""},
           {"modelVolume", "\"1000.5\""},
           {"orderType", "1201"},
           {"accountID", "\"credit\""}});
    expectReports({}, {}, {});
    const auto command = onlyCommand();
    ASSERT_EQ(command->m_codes.size(), 2u);
    for (const CCodeOrderParam& record : command->m_codes) {
        EXPECT_EQ(record.m_eOperationType, EOperationType::RepayMoney);
        EXPECT_EQ(static_cast<int>(record.m_eEntrustType), 525);
        EXPECT_EQ(record.m_strRepayText, "contract 9");
        EXPECT_EQ(record.m_nQuantityKind, 48);
        EXPECT_EQ(record.m_dQuantity, 1000.5);
        EXPECT_EQ(record.m_nVolume, 1000);
        EXPECT_EQ(record.m_stock.m_strCode, ""); // no instrument
        EXPECT_EQ(record.m_strUserId, "tester");
    }
    EXPECT_TRUE(clock.sleeps().empty());
    forget();
    order({{"opType", "32"}, {"modelVolume", "\"1000.5\""}}); // a code that is an instrument is not passed on
    EXPECT_EQ(onlyCommand()->m_codes.at(0).m_strRepayText, "");
    EXPECT_EQ(onlyCommand()->m_codes.at(0).m_stock.m_strCode, "");
}

TEST_F(OrderCredit, RepaymentNeedsAnAmount) {
    for (const char* orderType : {"1101", "1102"}) {
        for (const char* amount : {"\"inf\"", "\"1e400\"", "\"-inf\"", "\"1.7976931348623157e308\""}) {
            forget();
            order({{"opType", "32"}, {"orderType", orderType}, {"modelVolume", amount}});
            EXPECT_TRUE(host.commands().empty()) << amount << orderType;
            EXPECT_EQ(failures.size(), 1u) << amount << orderType;
        }
    }
    forget();
    order({{"opType", "32"}, {"modelVolume", "\"inf\""}});
    expectFull(QStringLiteral("[函数交易]函数: passorder,[600000]下单量[inf]无效"));
}

TEST_F(OrderCredit, RemarkIsThatOfTheSettingIfThereIsNoNote) {
    host.user.defaults[EDefaultSetting::Stock].m_strCmdLog = "of the setting";
    order({{"note", "\"\""}});
    EXPECT_EQ(onlyCommand()->m_strRemark, "of the setting");
}

TEST_F(OrderCredit, NothingIsSentForAnotherKindOfUser) {
    host.user.kind = 1;
    order();
    EXPECT_TRUE(host.commands().empty());
    expectReports({}, {}, {});
}

} // namespace
