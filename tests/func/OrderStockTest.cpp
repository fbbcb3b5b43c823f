// Stocks and the connects by function.
#include "orderservice/platform/InstrumentTypes.h"
#include "tests/func/RoutineFixture.h"
#include "tests/support/LogCapture.h"

namespace {

using namespace TC;

std::string s_algorithm; ///< the settings of the next call's algorithm

class OrderStock : public RoutineFixture {
protected:
    OrderStock() {
        s_algorithm.clear();
        addQuote(QStringLiteral("SH600000"), 10.5, 9, 11);
        addQuote(QStringLiteral("SZ000001"), 10.5, 9, 11);
        defaults = {{"opType", "23"},
                    {"orderType", "1101"},
                    {"prType", "11"},
                    {"modelPrice", "\"10.4\""},
                    {"modelVolume", "\"300\""},
                    {"accountID", "\"A1\""},
                    {"orderCode", "\"600000\""},
                    {"tradeKey", "\"x|key|7\""},
                    {"strategyName", "\"grid\""},
                    {"note", "\"remark\""},
                    {"modelName", "\"model\""}};
    }
    void order(const std::map<std::string, std::string>& changes = {}) {
        call([](const COrderFuncParam& call, const COrderStrategyParam& of,
                const CFuncReporter& to) { orderStock(call, of, to, s_algorithm); },
             changes);
    }
    int onlyVolume(const std::map<std::string, std::string>& changes) {
        forget();
        order(changes);
        const auto command = onlyCommand();
        return command->m_codes.size() == 1 ? command->m_codes[0].m_nVolume : -1;
    }
    /// The key of the instrument that the call with this code trades, or nothing.
    std::string tradedBy(const std::string& code) {
        forget();
        order({{"orderCode", '"' + code + '"'}});
        if (host.commands().empty()) return {};
        const CStockInfo& stock = host.commands().back()->m_codes.at(0).m_stock;
        return stock.m_strMarket + stock.m_strCode;
    }
};

TEST_F(OrderStock, SendsOneCommand) {
    order();
    expectReports({}, {}, {});
    const auto command = onlyCommand();
    EXPECT_EQ(command->m_eTraderType, EQdTraderType::Stock);
    EXPECT_EQ(command->m_eHedgeType, EQdHedgeType::None);
    EXPECT_TRUE(command->m_weights.empty()); // stocks pass no weights on
    EXPECT_TRUE(command->m_bUnion);
    EXPECT_TRUE(command->m_bFuncOrder);
    EXPECT_EQ(static_cast<int>(command->m_eStrategyType), 3);
    EXPECT_EQ(command->m_strAlgoParam, "x|key|7");
    EXPECT_EQ(static_cast<int>(command->m_ePlatform), 0);
    EXPECT_EQ(command->m_strStrategyName, "grid");
    EXPECT_EQ(command->m_strRemark, "remark");
    EXPECT_EQ(command->m_strModelName, "model");
    ASSERT_EQ(command->m_codes.size(), 1u);
    const CCodeOrderParam& record = command->m_codes[0];
    EXPECT_EQ(record.m_nVolume, 300);
    EXPECT_EQ(record.m_dPrice, 10.4);
    EXPECT_EQ(record.m_eOperationType, EOperationType::Buy);
    EXPECT_EQ(record.m_stock.m_strMarket, "SH");
    EXPECT_EQ(record.m_stock.m_strCode, "600000");
}

TEST_F(OrderStock, OperationsAreBuySellAndBuyAtAGivenPrice) {
    const auto operationOf = [this](const char* opType, const char* prType) {
        forget();
        order({{"opType", opType}, {"prType", prType}});
        return static_cast<int>(onlyCommand()->m_codes.at(0).m_eOperationType);
    };
    EXPECT_EQ(operationOf("23", "11"), 18);
    EXPECT_EQ(operationOf("24", "11"), 19);
    EXPECT_EQ(operationOf("23", "49"), 1043);
    EXPECT_EQ(operationOf("24", "49"), 19);
    EXPECT_NE(accounts["A1"]->m_calls.front().find(" op 18 "), std::string::npos);
    forget();
    accounts["A1"]->m_calls.clear();
    order({{"prType", "49"}});
    EXPECT_EQ(accounts["A1"]->m_calls, (std::vector<std::string>{"SH600000 op 1043 hedge 49 at 10.400000"}));
}

TEST_F(OrderStock, CodesAreResolved) {
    EXPECT_EQ(tradedBy("600000"), "SH600000");
    EXPECT_EQ(tradedBy("000001"), "SZ000001");
    EXPECT_EQ(tradedBy("sz000001"), "SZ000001");
    EXPECT_EQ(tradedBy("SH600000"), "SH600000");
    host.addStock("SH", "000001", 10.5);
    addQuote(QStringLiteral("SH000001"), 10.5, 9, 11);
    EXPECT_EQ(tradedBy("000001"), "SH000001"); // SH is first
    EXPECT_EQ(tradedBy("999999"), "");
    expectFull(QStringLiteral("[函数交易]　函数: passorder, 下单代码 [999999] 不合法!"));
    EXPECT_EQ(failures.at(0).id, 7);
}

TEST_F(OrderStock, ConnectsHaveTheirOwnSettingAndTraderType) {
    host.exchange.addOther("hgt", QStringLiteral("HGT12345"));
    host.exchange.addOther("sgt", QStringLiteral("SGT12345"));
    host.user.addAccount("H1", EQDBrokerType::HGT);
    host.user.addAccount("S1", EQDBrokerType::SGT);
    addData("H1");
    addData("S1");
    addQuote(QStringLiteral("HGT12345"), 10.5, 9, 11);
    addQuote(QStringLiteral("SGT12345"), 10.5, 9, 11);
    order({{"orderCode", "\"hgt12345\""}, {"accountID", "\"H1\""}});
    EXPECT_EQ(static_cast<int>(onlyCommand()->m_eTraderType), 128);
    forget();
    order({{"orderCode", "\"SGT12345\""}, {"accountID", "\"S1\""}});
    EXPECT_EQ(static_cast<int>(onlyCommand()->m_eTraderType), 16384);
}

TEST_F(OrderStock, ModelPriceMustBeGiven) {
    const QString text =
        QStringLiteral("[函数交易]　函数: passorder,　证券 [SH600000] 价11(600000) 无效, 无法下单!");
    for (const char* price : {"\"0\"", "\"0.00001\"", "\"nan\"", "\"inf\"", "\"no price\""}) {
        forget();
        order({{"modelPrice", price}});
        expectFull(text);
    }
    forget();
    host.quotes.quotes.clear();
    order();
    expectFull(text); // the limits of the day are not known
    EXPECT_TRUE(clock.sleeps().empty());
}

TEST_F(OrderStock, QuotedPriceIsWaitedFor) {
    host.quotes.quotes.clear();
    order({{"prType", "5"}});
    expectFull(QStringLiteral("[函数交易]　函数: passorder,　证券 [SH600000] 价5(600000) 无效, 无法下单!"));
    EXPECT_EQ(clock.sleeps(), (std::vector<double>{1, 1}));
    forget();
    addQuote(QStringLiteral("SH600000"), 0, 9, 11);
    order({{"prType", "5"}});
    EXPECT_EQ(failures.size(), 1u);
    forget();
    addQuote(QStringLiteral("SH600000"), 10.5, 9, 11);
    order({{"prType", "5"}});
    EXPECT_EQ(onlyCommand()->m_codes.at(0).m_dPrice, 10.5);
}

TEST_F(OrderStock, PriceTypeWithoutAQuotedPriceNeedsOnlyAQuote) {
    addQuote(QStringLiteral("SH600000"), DBL_MAX, 9, 11);
    order({{"prType", "12"}});
    EXPECT_EQ(host.commands().size(), 1u);
}

TEST_F(OrderStock, GivenPriceMustBeWithinTheLimits) {
    for (const char* prType : {"11", "49"}) {
        forget();
        order({{"prType", prType}, {"modelPrice", "\"11.01\""}});
        expectFull(
            QStringLiteral("[函数交易]　函数: passorder,指定价 11.01 不在[600000]涨跌停[9, 11]范围内!"));
        forget();
        order({{"prType", prType}, {"modelPrice", "\"8.99\""}});
        expectFull(
            QStringLiteral("[函数交易]　函数: passorder,指定价 8.99 不在[600000]涨跌停[9, 11]范围内!"));
        forget();
        order({{"prType", prType}, {"modelPrice", "\"11.000009\""}});
        EXPECT_EQ(host.commands().size(), 1u);
    }
}

/// An instrument with phases.
class OrderStockInPhases : public OrderStock {
protected:
    OrderStockInPhases() { host.types.types.insert({1172, "SH600000"}); }
    void setPhase(double phase, double price) {
        fake::CQuote& quote = addQuote(QStringLiteral("SH600000"), 10.5, 9, 11);
        quote.m_dPhase = phase;
        quote.m_dPhasePrice = price;
    }
};

TEST_F(OrderStockInPhases, PhaseWithAPriceHasNoLimits) {
    setPhase(22, 20);
    order({{"prType", "49"}, {"modelPrice", "\"30\""}});
    EXPECT_EQ(host.commands().size(), 1u);
    EXPECT_NE(accounts["A1"]->m_calls.back().find(" at 20.0"), std::string::npos);
    forget();
    setPhase(22, DBL_MAX);
    order({{"prType", "49"}, {"modelPrice", "\"30\""}});
    EXPECT_NE(accounts["A1"]->m_calls.back().find(" at 30.0"), std::string::npos);
    forget();
    setPhase(21, 20);
    order({{"prType", "49"}, {"modelPrice", "\"30\""}});
    EXPECT_EQ(failures.size(), 1u); // the limits hold in every other phase
    forget();
    setPhase(22, 20);
    order({{"prType", "11"}, {"modelPrice", "\"30\""}});
    EXPECT_EQ(failures.size(), 1u); // and for the price type 11
}

TEST_F(OrderStock, InstrumentWithoutPhasesIsLimitedInEveryPhase) {
    fake::CQuote& quote = addQuote(QStringLiteral("SH600000"), 10.5, 9, 11);
    quote.m_dPhase = 22;
    quote.m_dPhasePrice = 20;
    order({{"prType", "49"}, {"modelPrice", "\"30\""}});
    EXPECT_EQ(failures.size(), 1u);
}

TEST_F(OrderStock, VolumesAreLegal) {
    EXPECT_EQ(onlyVolume({{"modelVolume", "\"350\""}}), 300);
    EXPECT_EQ(onlyVolume({{"prType", "49"}, {"modelVolume", "\"250\""}}), 250);
    EXPECT_EQ(onlyVolume({{"prType", "49"}, {"modelVolume", "\"150\""}}), 100);
    accounts["A1"]->m_dUsable = 150;
    EXPECT_EQ(onlyVolume({{"opType", "24"}, {"modelVolume", "\"150\""}}), 150);
    accounts["A1"]->m_dUsable = 200;
    EXPECT_EQ(onlyVolume({{"opType", "24"}, {"modelVolume", "\"150\""}}), 100);
    EXPECT_EQ(onlyVolume({{"modelVolume", "\"50\""}}), 0); // sent as it is, unless the guard is on
}

TEST_F(OrderStock, GuardRefusesAVolumeOfZero) {
    host.switches.on.insert("mdl_order_command_guard");
    order({{"modelVolume", "\"50\""}});
    expectFull(QStringLiteral(
        "[函数交易]　函数: passorder, 账号 [A1] 合约 [SH600000] 没有数量, 整个指令(1条)未发出!"));
}

TEST_F(OrderStock, RoundedVolumeIsThatOfTheNextAccounts) {
    accounts["A1"]->m_dUsable = 200;
    accounts["A2"]->m_dUsable = 150;
    order({{"opType", "24"}, {"orderType", "1201"}, {"accountID", "\"G\""}, {"modelVolume", "\"150\""}});
    const auto command = onlyCommand();
    ASSERT_EQ(command->m_codes.size(), 2u);
    EXPECT_EQ(command->m_codes[0].m_nVolume, 100);
    EXPECT_EQ(command->m_codes[1].m_nVolume, 100); // although the second account could sell 150
}

TEST_F(OrderStock, MoneyBuysAVolume) {
    EXPECT_EQ(onlyVolume({{"orderType", "1102"}, {"modelVolume", "\"10400\""}}), 1000);
    EXPECT_EQ(onlyVolume({{"orderType", "1102"}, {"modelVolume", "\"9999\""}}), 900);
    host.types.types.insert({126, "SH600000"});
    EXPECT_EQ(onlyVolume({{"orderType", "1102"}, {"modelVolume", "\"20000\""}}), 200);
    host.types.types.insert({100017, "SZ000001"});
    EXPECT_EQ(onlyVolume({{"orderType", "1102"}, {"modelVolume", "\"20000\""}, {"orderCode", "\"000001\""}}),
              200);
    host.types.types.insert({100017, "SH600000"});
    host.types.types.erase({126, "SH600000"});
    EXPECT_EQ(onlyVolume({{"orderType", "1102"}, {"modelVolume", "\"10400\""}}), 1000); // not on this market
}

TEST_F(OrderStock, RatioOfEachAccount) {
    accounts["A1"]->m_dUsable = 1000;
    accounts["A2"]->m_dUsable = 500;
    order({{"orderType", "1223"}, {"accountID", "\"G\""}, {"modelVolume", "\"0.5\""}});
    const auto command = onlyCommand();
    ASSERT_EQ(command->m_codes.size(), 2u);
    EXPECT_EQ(command->m_codes[0].m_nVolume, 500);
    EXPECT_EQ(command->m_codes[1].m_nVolume, 200);
}

TEST_F(OrderStock, AccountWithoutAVolumeIsLeftOut) {
    accounts["A1"]->m_dUsable = 50;
    accounts["A2"]->m_dUsable = 1000;
    host.rules.displayIds["A1"] = QStringLiteral("8001");
    order({{"orderType", "1223"}, {"accountID", "\"G\""}, {"modelVolume", "\"0.5\""}});
    const QString text = QStringLiteral("[函数交易] 账号[8001], [600000]的下单量[0]无效, 自动过滤!");
    expectReports({text}, {text}, {text});
    ASSERT_EQ(onlyCommand()->m_codes.size(), 1u);
    EXPECT_EQ(onlyCommand()->m_codes[0].m_account->getKey(), "A2");
}

TEST_F(OrderStock, ShortVolumeEndsTheCallWithAPlainReport) {
    accounts["A2"]->m_dUsable = 299;
    order({{"orderType", "1201"}, {"accountID", "\"G\""}});
    EXPECT_TRUE(host.commands().empty());
    const QString text = QStringLiteral("账号: [A2], 您的[600000]可用量 299 少于您输入的总量 300  ");
    expectReports({text}, {}, {text});
}

TEST_F(OrderStock, PriceOfTheRecordMustBeAboveZero) {
    addQuote(QStringLiteral("SH600000"), 1, -10, 10);
    order({{"modelPrice", "\"-1\""}});
    expectFull(QStringLiteral("[函数交易] 函数: passorder,[600000]不能以[-1]为指定价报单!"));
}

TEST_F(OrderStock, AlgorithmOrdersHaveAMessage) {
    s_algorithm = R"({"m_strategyType":"twap","m_nValidTimeEnd":"150000"})";
    order();
    const auto command = onlyCommand();
    EXPECT_EQ(static_cast<int>(command->m_ePlatform), 11);
    ASSERT_EQ(command->m_codes.size(), 1u);
    EXPECT_EQ(static_cast<int>(command->m_codes[0].m_eOrderType), 13);
    EXPECT_EQ(command->m_codes[0].m_nValidTimeEnd, 150000);
    EXPECT_NE(command->m_strAlgoParam.find("6061=TWAP"), std::string::npos);
    EXPECT_NE(command->m_strAlgoParam.find("38=300"), std::string::npos);
}

TEST_F(OrderStock, AlgorithmThatCannotBeReadStillOrders) {
    CLogCapture log;
    utils::CLogCenter::setLogEnabled(true);
    s_algorithm = "TWAP";
    order();
    const auto command = onlyCommand();
    EXPECT_EQ(static_cast<int>(command->m_ePlatform), 11);
    EXPECT_EQ(command->m_strAlgoParam, "");
    EXPECT_EQ(static_cast<int>(command->m_codes.at(0).m_eOrderType), 13);
    EXPECT_EQ(command->m_codes.at(0).m_nValidTimeEnd, kUnsetInt);
    bool isLogged = false;
    for (const CLogLine& line : log.lines())
        isLogged = isLogged ||
                   line.text.find("COrderFuncService parser smartAlgo Param error ") != std::string::npos;
    EXPECT_TRUE(isLogged);
}

TEST_F(OrderStock, NothingIsSentForAnotherKindOfUser) {
    host.user.kind = 1;
    order();
    EXPECT_TRUE(host.commands().empty());
    expectReports({}, {}, {});
}

} // namespace
