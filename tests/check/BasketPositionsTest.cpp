// Baskets that sell all positions of the accounts, and baskets with target positions.
#include "tests/check/BasketFixture.h"

#include "orderservice/records/Portfolio.h"

#include <cmath>
#include <limits>

namespace {

using namespace TC;

class BasketPositions : public BasketFixture {
protected:
    static COrderBuilder all(int number = 26) {
        return COrderBuilder(number).set([](auto& o) { o.m_bAll = true; });
    }
    knservice::CPositionStaticsPtr hold(const std::string& code, int volume, const char* account = "A1") {
        return host.tasks.addPosition(host.user.accounts.at(account), "SH", code, volume);
    }
    static void nameSecondAccount(COrderParam& order) {
        order.m_strAccountKeyPart1 = QStringLiteral("A2");
        order.m_strAccountKeyPart2 = QStringLiteral("x");
    }
};

TEST_F(BasketPositions, RecordsAreSalesOfWhatCanBeSold) {
    hold("600001", 700)->m_nAvailableVolume = 300;
    hold("600002", 50, "A2");
    ASSERT_TRUE(
        check(all(), strategy().set([](auto& s) { s.m_ePositionType = static_cast<EPositionType>(3); })));
    EXPECT_EQ(records(), "A1 19 300 600001, A2 19 50 600002, ");
    for (const CCodeOrderParam& record : codes) {
        EXPECT_EQ(record.m_strUserId, "tester");
        EXPECT_EQ(record.m_eHedgeFlag, EHedge_Flag_Type::Speculation);
        EXPECT_EQ(static_cast<int>(record.m_ePositionType), 3);
        EXPECT_EQ(record.m_stock.m_strMarket, "SH");
        EXPECT_EQ(record.m_dPrice, kUnsetDouble);
    }
    for (const fake::CSettingCall& call : host.rules.settingCalls.all()) {
        EXPECT_EQ(call.price, kUnsetDouble);
        EXPECT_EQ(call.operation, EOperationType::Sell);
        EXPECT_NE(call.quote, nullptr);
    }
}

TEST_F(BasketPositions, HostSeesRecordsThatKnowTheirPositionAndInstrument) {
    hold("600001", 700);
    EXPECT_EQ(seenByHost(all()), std::vector<std::string>(2, "49 3 19 tester SH600001"));
}

TEST_F(BasketPositions, SubAccountIsNamedByPositionOrdersOnly) {
    hold("600001", 700);
    const auto named = [](int number) {
        return all(number).line(QStringLiteral("600001"), kUnsetDouble, 1).set([](auto& o) {
            o.m_strAccountKey = "12_key";
        });
    };
    ASSERT_TRUE(check(named(36)));
    EXPECT_EQ(codes.at(0).m_nSubAccountKind, 12);
    EXPECT_EQ(codes.at(0).m_strSubAccountId, "key");
    ASSERT_TRUE(check(named(26)));
    EXPECT_TRUE(isUnset(codes.at(0).m_nSubAccountKind));
}

TEST_F(BasketPositions, PriceOfZeroEndsTheCheck) {
    hold("600001", 700);
    host.rules.onFixTimeRange = [](CCodeOrderParam& record) { record.m_dPrice = 0; };
    EXPECT_FALSE(check(all(), strategy(EPriceType::Specified)));
    EXPECT_EQ(onlyError(), QStringLiteral("[文件单]　不能以0为模型价报单!"));
    EXPECT_TRUE(codes.empty());
    EXPECT_EQ(host.tasks.liveLocks, 0);
}

TEST_F(BasketPositions, PriceOfZeroLeavesLaterPositionsAndAccountsAlone) {
    hold("600001", 700);
    hold("600002", 50);
    hold("600002", 50, "A2");
    host.quotes.quotes.erase(QStringLiteral("SH600002"));
    host.rules.onFixTimeRange = [](CCodeOrderParam& record) { record.m_dPrice = 0; };
    EXPECT_FALSE(check(all(), strategy(EPriceType::Specified)));
    EXPECT_EQ(onlyError(), QStringLiteral("[文件单]　不能以0为模型价报单!"));
    EXPECT_TRUE(clock.sleeps().empty());
}

TEST_F(BasketPositions, MissingQuoteIsWaitedForAndThePositionSoldAllTheSame) {
    hold("600001", 700);
    host.quotes.quotes.clear();
    ASSERT_TRUE(check(all(), strategy(EPriceType::Specified)));
    EXPECT_EQ(clock.sleeps(), (std::vector<double>{1, 1}));
    EXPECT_EQ(records(), "A1 19 700 600001, ");
    EXPECT_EQ(host.rules.settingCalls.all().at(0).quote, nullptr);
}

TEST_F(BasketPositions, NothingToSellGoesOutAsNothing) {
    hold("600001", 700)->m_nAvailableVolume = 0; // bought today
    ASSERT_TRUE(check(all()));
    EXPECT_EQ(records(), "A1 19 0 600001, ");
}

TEST_F(BasketPositions, LessThanNothingIsNotSold) {
    hold("600001", 700)->m_nAvailableVolume = -1;
    hold("600002", 700)->m_nAvailableVolume = std::numeric_limits<std::int64_t>::min();
    ASSERT_TRUE(check(all()));
    EXPECT_TRUE(codes.empty());
}

TEST_F(BasketPositions, MoreThanAnOrderCanNameIsNotSold) {
    constexpr std::int64_t kMost = std::numeric_limits<int>::max();
    for (const std::int64_t volume : {kMost + 1, std::numeric_limits<std::int64_t>::max()}) {
        host.tasks.positions.clear();
        hold("600001", 700)->m_nAvailableVolume = volume;
        hold("600002", 700)->m_nAvailableVolume = kMost - 1;
        ASSERT_TRUE(check(all()));
        EXPECT_EQ(records(), "A1 19 2147483646 600002, ");
    }
}

TEST_F(BasketPositions, AccountThatIsMissingSellsNothing) {
    host.user.nullAccount = true;
    hold("600001", 700);
    ASSERT_TRUE(check(all()));
    EXPECT_EQ(records(), "A1 19 700 600001, ");
}

TEST_F(BasketPositions, OnlyTheAccountThatTheOrderNamesSells) {
    host.user.addGroup(EQDBrokerType::Stock, "A2/x", {{"A2", 1.0}});
    hold("600001", 700);
    hold("600002", 50, "A2");
    ASSERT_TRUE(check(all().set(nameSecondAccount)));
    EXPECT_EQ(records(), "A2 19 50 600002, ");
}

TEST_F(BasketPositions, OnlyTheAccountOfTheFirstRowSellsInTableMode) {
    hold("600001", 700);
    hold("600002", 50, "A2");
    ASSERT_TRUE(check(all().line(QStringLiteral("600001"), kUnsetDouble, 1).set([](auto& o) {
        o.m_orders[0].m_strAccount = QStringLiteral("A2");
    }),
                      strategy().account(QStringLiteral("A1")).tableMode()));
    EXPECT_EQ(records(), "A2 19 50 600002, ");
}

TEST_F(BasketPositions, OddLotsOfTheStarMarketAreSold) {
    host.types.types.insert({1172, "SH600001"});
    hold("600001", 150);
    ASSERT_TRUE(check(all()));
    EXPECT_EQ(records(), "A1 19 150 600001, ");
    EXPECT_TRUE(host.errorTexts().empty());
}

TEST_F(BasketPositions, PositionsOfEveryTypeAreSold) {
    host.types.types.clear(); // no stock has a type that baskets allow
    hold("600001", 700);
    ASSERT_TRUE(check(all()));
    EXPECT_EQ(records(), "A1 19 700 600001, ");
}

TEST_F(BasketPositions, SuspendedPositionIsSoldWhereThePriceIsGiven) {
    hold("600001", 700);
    host.quotes.quotes.at(QStringLiteral("SH600001"))->m_nDayCount = 0;
    ASSERT_TRUE(check(all(), strategy(EPriceType::Specified)));
    EXPECT_EQ(records(), "A1 19 700 600001, ");
}

TEST_F(BasketPositions, DataIsHeldStillThroughTheWaits) {
    hold("600001", 700);
    host.quotes.quotes.clear();
    std::vector<int> locks;
    clock.onSleep = [&] { locks.push_back(host.tasks.liveLocks); };
    ASSERT_TRUE(check(all()));
    EXPECT_EQ(locks, (std::vector<int>{1, 1}));
    EXPECT_FALSE(host.tasks.readUnlocked);
    EXPECT_EQ(host.tasks.liveLocks, 0);
}

TEST_F(BasketPositions, RowsOfTheOrderAreSubscribedThoughAllIsSold) {
    hold("600001", 700);
    ASSERT_TRUE(check(all().line(QStringLiteral("600002"), kUnsetDouble, 100)));
    EXPECT_EQ(host.quotes.subscribed, std::vector<QString>{QStringLiteral("SH600002")});
    EXPECT_EQ(records(), "A1 19 700 600001, ");
    EXPECT_EQ(weights.size(), 2u);
}

TEST_F(BasketPositions, FarSideOfTheBookIsNotAllowedForPositionsEither) {
    hold("600001", 700);
    EXPECT_FALSE(check(all(), strategy(EPriceType::Sell2)));
    EXPECT_EQ(onlyError(), QStringLiteral("[文件单]　通道号: 3, 组合交易卖出不允许报卖二到卖五的价格!"));
}

TEST_F(BasketPositions, FarSideOfTheBookIsTestedOnceAllPositionsHaveHadTheirWait) {
    hold("600001", 700);
    hold("600002", 50);
    host.quotes.quotes.erase(QStringLiteral("SH600002"));
    EXPECT_FALSE(check(all(), strategy(EPriceType::Sell2)));
    EXPECT_EQ(clock.sleeps(), (std::vector<double>{1, 1}));
    EXPECT_EQ(onlyError(), QStringLiteral("[文件单]　通道号: 3, 组合交易卖出不允许报卖二到卖五的价格!"));
}

TEST_F(BasketPositions, KeyOfAPositionIsJoinedAsTheHostJoinsIt) {
    hold("600001", 700);
    host.rules.keySeparator = QStringLiteral(".");
    ASSERT_TRUE(check(all(), strategy(EPriceType::Specified)));
    EXPECT_EQ(host.quotes.reads.count(QStringLiteral("SH.600001")), 1u);
    EXPECT_EQ(host.quotes.reads.count(QStringLiteral("SH600001")), 0u);
}

// Target positions.

/// The held volume is 1000. The target is 2147483647, the number that means "not set".
TEST_F(BasketPositions, TargetWithoutAVolumeCountsAsItsNumber) {
    hold("600001", 1000);
    ASSERT_TRUE(check(basket(35, {{"600001", kUnsetInt}})));
    ASSERT_EQ(host.trade.splitCalls.size(), 1u);
    EXPECT_EQ(host.trade.splitCalls[0].volume, 2147482647);
    EXPECT_EQ(host.trade.splitCalls[0].operation, EOperationType::Buy);
}

TEST_F(BasketPositions, TargetByMoneyWithoutPriceAndVolumeCountsAsItsNumber) {
    hold("600001", 1000);
    host.quotes.quotes.at(QStringLiteral("SH600001"))->m_dLastPrice = 0;
    const COrderParam order =
        basket(35, {{"600001", kUnsetInt}}).set([](auto& o) { o.m_orders[0].m_dWeight = 1; });
    ASSERT_TRUE(check(order, strategy().amount(5000)));
    ASSERT_EQ(host.trade.splitCalls.size(), 1u);
    EXPECT_EQ(host.trade.splitCalls[0].volume, 2147482647);
}

TEST_F(BasketPositions, WithTheCommandGuardTargetsWithoutAVolumeTradeNothing) {
    host.switches.on.insert("mdl_order_command_guard");
    hold("600001", 1000);
    const QString report = QStringLiteral("[文件单]　通道号: 3, 调仓合约 [600001] 没有目标数量, 未下单!");
    for (const int multiplier : {0, 1, 2}) {
        host.orders.errors.clear();
        ASSERT_TRUE(check(basket(35, {{"600001", kUnsetInt}}), strategy().volume(multiplier))) << multiplier;
        EXPECT_EQ(onlyError(), report) << multiplier;
    }
    host.quotes.quotes.at(QStringLiteral("SH600001"))->m_dLastPrice = 0;
    host.orders.errors.clear();
    const COrderParam order =
        basket(35, {{"600001", kUnsetInt}}).set([](auto& o) { o.m_orders[0].m_dWeight = 1; });
    ASSERT_TRUE(check(order, strategy().amount(5000)));
    EXPECT_EQ(onlyError(), report);
    EXPECT_TRUE(codes.empty());
    EXPECT_TRUE(host.trade.splitCalls.empty());
}

TEST_F(BasketPositions, CommandGuardTellsTargetsBeyondAnOrderInTheOrderOfTheRows) {
    addInstrument("600003", 10);
    hold("600004", 10000); // already equal to its target
    const COrderParam order =
        basket(35, {{"600003", 2000000}, {"600002", kUnsetInt}, {"600001", 2000000}, {"600004", 5}});
    const COrderStrategyParam times2000 = strategy().volume(2000);
    host.switches.on.insert("mdl_order_command_guard");
    ASSERT_TRUE(check(order, times2000));
    const auto report = [](const char* code, const char* why) {
        return QStringLiteral("[文件单]　通道号: 3, 调仓合约 [%1] %2, 未下单!")
            .arg(QString::fromUtf8(code), QString::fromUtf8(why));
    };
    EXPECT_EQ(host.errorTexts(),
              (std::vector<QString>{report("600001", "数量超出范围"), report("600002", "没有目标数量"),
                                    report("600003", "数量超出范围")}));
    EXPECT_TRUE(host.trade.splitCalls.empty());
}

TEST_F(BasketPositions, TargetByMoneyAtAPriceBelowZeroSellsNoMoreThanIsHeld) {
    hold("600001", 1000);
    for (const double price : {-1e-5, -5e-6, -1e-300, 0.0}) {
        host.quotes.quotes.at(QStringLiteral("SH600001"))->m_dLastPrice = price;
        const COrderParam order =
            basket(34, {{"600001", 900}}).set([](auto& o) { o.m_orders[0].m_dWeight = 1; });
        ASSERT_TRUE(check(order, strategy(EPriceType::Sell1).amount(1000))) << price;
        EXPECT_EQ(records(), "A1 19 60 600001, A2 19 40 600001, ") << price; // down to the target of 900
    }
}

TEST_F(BasketPositions, TargetBelowZeroIsRefused) {
    hold("600001", 1000);
    const auto refused = [&](const COrderParam& order, const COrderStrategyParam& with) {
        host.orders.errors.clear();
        EXPECT_FALSE(check(order, with));
        EXPECT_EQ(onlyError(), QStringLiteral("[文件单]　通道号: 3, 下单参数不合法!"));
        EXPECT_TRUE(host.trade.splitCalls.empty());
    };
    refused(basket(35, {{"600001", -100}}), strategy());
    refused(basket(35, {{"600001", 100}}), strategy().volume(-1));
    const auto weighted = basket(34, {{"600001", 7}, {"600002", 7}}).set([](auto& o) {
        o.m_orders[0].m_dWeight = -1;
        o.m_orders[1].m_dWeight = 3;
    });
    refused(weighted, strategy().amount(100000));
    refused(basket(34, {{"600001", 7}}).set([](auto& o) { o.m_orders[0].m_dWeight = 1; }),
            strategy().amount(-100000));
    EXPECT_TRUE(check(basket(35, {{"600001", 0}}), strategy()));
}

TEST_F(BasketPositions, TargetsByMoneyNeedFiniteWeightsAndAmounts) {
    hold("600001", 1000);
    hold("600002", 1000);
    const auto refused = [&](int number, double weight, double amount) {
        host.orders.errors.clear();
        const COrderParam order = basket(number, {{"600001", 100}, {"600002", 100}}).set([=](auto& o) {
            o.m_orders[0].m_dWeight = weight;
            o.m_orders[1].m_dWeight = 1;
        });
        EXPECT_FALSE(check(order, strategy().amount(amount))) << number << ' ' << weight << ' ' << amount;
        EXPECT_EQ(onlyError(), QStringLiteral("[文件单]　通道号: 3, 下单参数不合法!"));
    };
    for (const int number : {25, 26, 33, 34, 35}) {
        for (const double value : {std::nan(""), HUGE_VAL, -HUGE_VAL}) {
            refused(number, value, 1e5);
            refused(number, 1, value);
        }
        refused(number, 1, kUnsetDouble);
    }
    EXPECT_TRUE(host.trade.splitCalls.empty());
}

TEST_F(BasketPositions, LastPriceThatIsNotFiniteIsNone) {
    hold("600001", 1000);
    for (const double price : {std::nan(""), HUGE_VAL}) {
        host.quotes.quotes.at(QStringLiteral("SH600001"))->m_dLastPrice = price;
        const COrderParam order =
            basket(34, {{"600001", 900}}).set([](auto& o) { o.m_orders[0].m_dWeight = 1; });
        ASSERT_TRUE(check(order, strategy(EPriceType::Sell1).amount(1000))) << price;
        EXPECT_EQ(records(), "A1 19 60 600001, A2 19 40 600001, ") << price;
    }
}

TEST_F(BasketPositions, CommandGuardTellsTargetsWithoutAVolume) {
    host.switches.on.insert("mdl_order_command_guard");
    hold("600001", 1000);
    hold("600002", 50);
    ASSERT_TRUE(check(basket(35, {{"600001", kUnsetInt}, {"600002", 20}})));
    EXPECT_EQ(onlyError(), QStringLiteral("[文件单]　通道号: 3, 调仓合约 [600001] 没有目标数量, 未下单!"));
    EXPECT_EQ(records(), "A1 19 18 600002, A2 19 12 600002, ");
    EXPECT_EQ(host.trade.splitCalls.size(), 1u);
}

TEST_F(BasketPositions, TargetByMoneyWithoutAPriceIsTheVolumeOfTheRow) {
    hold("600001", 5000);
    // Before the first trade of the day, a quote may have a book but no last price.
    host.quotes.quotes.at(QStringLiteral("SH600001"))->m_dLastPrice = kUnsetDouble;
    const COrderParam order = basket(35, {{"600001", 100}}).set([](auto& o) { o.m_orders[0].m_dWeight = 1; });
    ASSERT_TRUE(check(order, strategy(EPriceType::Sell1).amount(50000).volume(9)));
    EXPECT_EQ(records(), "A1 19 2940 600001, A2 19 1960 600001, ");
}

TEST_F(BasketPositions, TargetsByMoneyWithoutAnyWeightSellAllThatIsHeld) {
    hold("600001", 1000);
    ASSERT_TRUE(check(basket(35, {{"600001", 1000}, {"600002", 100}}), strategy().amount(100000)));
    EXPECT_EQ(records(), "A1 19 600 600001, A2 19 400 600001, ");
}

TEST_F(BasketPositions, TargetsAreComparedWithTheAccountThatTheOrderNames) {
    host.user.addGroup(EQDBrokerType::Stock, "A2/x", {{"A2", 1.0}});
    hold("600001", 700);
    hold("600002", 50, "A2");
    ASSERT_TRUE(check(basket(35, {{"600001", 300}, {"600002", 20}}).set(nameSecondAccount)));
    EXPECT_EQ(records(), "A2 19 30 600002, A2 18 300 600001, ");
}

TEST_F(BasketPositions, TargetsAreComparedWithTheAccountOfTheFirstRowInTableMode) {
    hold("600001", 700);
    hold("600002", 50, "A2");
    ASSERT_TRUE(check(basket(35, {{"600001", 300}, {"600002", 20}}).set([](auto& o) {
        o.m_orders[0].m_strAccount = QStringLiteral("A2");
    }),
                      strategy().account(QStringLiteral("A1")).tableMode()));
    EXPECT_EQ(records(), "A2 19 30 600002, A2 18 300 600001, ");
}

TEST_F(BasketPositions, TargetsByMoneyAreFoundWithAnyKey) {
    host.rules.keySeparator = QStringLiteral(".");
    host.quotes.quotes[QStringLiteral("SH.600001")] = host.quotes.quotes.at(QStringLiteral("SH600001"));
    const COrderParam order = basket(35, {{"600001", 7}}).set([](auto& o) { o.m_orders[0].m_dWeight = 1; });
    ASSERT_TRUE(check(order, strategy().amount(5000)));
    EXPECT_EQ(host.trade.splitCalls.at(0).volume, 500);
}

} // namespace
