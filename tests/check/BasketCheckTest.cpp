#include "tests/check/BasketFixture.h"

namespace {

using namespace TC;

using BasketCheck = BasketFixture;

TEST_F(BasketCheck, EveryRowIsSplitOverTheAccounts) {
    ASSERT_TRUE(check(basket(25, {{"600001", 1000}, {"SH600002", 500}})));
    EXPECT_EQ(records(), "A1 18 600 600001, A2 18 400 600001, A1 18 300 600002, A2 18 200 600002, ");
    EXPECT_EQ(weights.size(), 2u);
    EXPECT_EQ(host.quotes.subscribed.size(), 2u);
    EXPECT_EQ(codes[0].m_stock.m_strProductId, "");
}

TEST_F(BasketCheck, TakesItsNumbers) {
    std::vector<int> accepted;
    for (int number = -1; number <= 130; ++number) {
        host.orders.errors.clear();
        check(basket(number, {{"600001", 100}}));
        const auto errors = host.errorTexts();
        if (errors.empty() || errors[0] != QStringLiteral("[文件单]　通道号: 3, 下单指令不合法!"))
            accepted.push_back(number);
    }
    EXPECT_EQ(accepted, numbers({{25, 26}, {33, 36}, {110, 119}}));
}

TEST_F(BasketCheck, RowsAreNeededButForSales) {
    EXPECT_FALSE(check(basket(25, {})));
    EXPECT_EQ(onlyError(), QStringLiteral("[文件单]　通道号: 3, 下单指令不合法!"));
    EXPECT_TRUE(check(basket(26, {})));
    EXPECT_TRUE(check(basket(26, {}), strategy().amount(kUnsetDouble))); // there is nothing to divide
    EXPECT_TRUE(codes.empty());
}

TEST_F(BasketCheck, SwitchGuardsTwoNumbers) {
    host.switches.on.clear();
    for (const int number : {33, 34}) {
        host.orders.errors.clear();
        EXPECT_FALSE(check(basket(number, {{"600001", 100}})));
        EXPECT_EQ(onlyError(), QStringLiteral("[文件单]　通道号: 3, 下单指令不合法，一键买卖授权已关闭!"));
    }
    EXPECT_TRUE(check(basket(25, {{"600001", 100}})));
}

TEST_F(BasketCheck, FirstOfSeveralFaultsIsReported) {
    host.switches.on.clear();
    const auto noGroup = strategy().group(QStringLiteral("none"));
    for (const int number : {33, 34}) {
        host.orders.errors.clear();
        EXPECT_FALSE(check(basket(number, {}), noGroup));
        EXPECT_EQ(onlyError(), QStringLiteral("[文件单]　通道号: 3, 下单指令不合法!")) << number;
        host.orders.errors.clear();
        EXPECT_FALSE(check(basket(number, {{"600001", 100}}), noGroup));
        EXPECT_EQ(onlyError(), QStringLiteral("[文件单]　通道号: 3, 下单指令不合法，一键买卖授权已关闭!"))
            << number;
    }
}

TEST_F(BasketCheck, MissingAccountsAreReported) {
    EXPECT_FALSE(check(basket(25, {{"600001", 100}}), strategy().group(QStringLiteral("none"))));
    EXPECT_EQ(onlyError(), QStringLiteral("[文件单]　通道号: 3, 指定账号不可用!"));
}

TEST_F(BasketCheck, VolumesAreMultipliedButForTargets) {
    ASSERT_TRUE(check(basket(25, {{"600001", 100}}), strategy().volume(3)));
    EXPECT_EQ(host.trade.splitCalls.back().volume, 300);
    ASSERT_TRUE(check(basket(35, {{"600001", 100}}), strategy().volume(3)));
    EXPECT_EQ(host.trade.splitCalls.back().volume, 100); // without account data the rows stay unchanged
}

TEST_F(BasketCheck, TargetsBecomeDifferencesOfTheFirstAccount) {
    host.tasks.addPosition(host.user.accounts.at("A1"), "SH", "600001", 1000);
    ASSERT_TRUE(check(basket(35, {{"600001", 300}, {"600002", 50}}), strategy().volume(2)));
    EXPECT_EQ(records(), "A1 19 240 600001, A2 19 160 600001, A1 18 60 600002, A2 18 40 600002, ");
}

TEST_F(BasketCheck, TargetsByMoneyHaveNoMultiplier) {
    host.tasks.addPosition(host.user.accounts.at("A1"), "SH", "600001", 100);
    const COrderParam order = basket(34, {{"600001", 0}}).set([](auto& o) { o.m_orders[0].m_dWeight = 1; });
    ASSERT_TRUE(check(order, strategy().amount(5000).volume(9)));
    EXPECT_EQ(host.trade.splitCalls.back().volume, 400);
}

TEST_F(BasketCheck, MoneyIsSharedByWeightOrEqually) {
    COrderParam order = basket(25, {{"600001", 0}, {"600002", 0}});
    order.m_orders[0].m_dWeight = 1;
    order.m_orders[1].m_dWeight = 3;
    ASSERT_TRUE(check(order, strategy().amount(10010)));
    EXPECT_EQ(host.trade.splitCalls[0].volume, 250); // 10010 / 4 / 10, not rounded to units
    EXPECT_EQ(host.trade.splitCalls[1].volume, 375);
    order.m_orders[0].m_dWeight = order.m_orders[1].m_dWeight = 0;
    host.trade.splitCalls.clear();
    ASSERT_TRUE(check(order, strategy().amount(10010)));
    EXPECT_EQ(host.trade.splitCalls[0].volume, 500);
    EXPECT_EQ(host.trade.splitCalls[1].volume, 250);
}

TEST_F(BasketCheck, RowsOfNothingUnknownOrOtherTypesAreDroppedSilently) {
    host.addStock("SH", "600009", 10, 100); // its type is not allowed in baskets
    host.quotes.quotes.at(QStringLiteral("SH600009"))->m_nDayCount = 1;
    ASSERT_TRUE(check(basket(25, {{"nobody", 100}, {"600009", 100}, {"600001", 0}, {"600002", 100}})));
    EXPECT_EQ(records(), "A1 18 60 600002, A2 18 40 600002, ");
    EXPECT_TRUE(host.errorTexts().empty());
}

TEST_F(BasketCheck, SuspendedInstrumentsAreDroppedUnlessThePriceIsGiven) {
    const auto quote = host.quotes.quotes.at(QStringLiteral("SH600001"));
    quote->m_nDayCount = 0;
    ASSERT_TRUE(check(basket(25, {{"600001", 100}})));
    EXPECT_TRUE(codes.empty());
    COrderParam order = basket(25, {{"600001", 100}});
    order.m_orders[0].m_dPrice = 9;
    ASSERT_TRUE(check(order, strategy(EPriceType::Specified)));
    EXPECT_EQ(codes.size(), 2u);
    EXPECT_EQ(codes[0].m_dPrice, 9);
    for (double* figure : {&quote->m_dDayFigure1, &quote->m_dDayFigure2}) {
        *figure = 1; // each figure alone shows that there were trades
        ASSERT_TRUE(check(basket(25, {{"600001", 100}})));
        EXPECT_EQ(codes.size(), 2u);
        *figure = 0;
    }
}

TEST_F(BasketCheck, DayFigureNearZeroIsNoTrade) {
    const auto quote = host.quotes.quotes.at(QStringLiteral("SH600001"));
    quote->m_nDayCount = 0;
    for (double* figure : {&quote->m_dDayFigure1, &quote->m_dDayFigure2}) {
        for (const auto& [value, records] :
             {std::pair{5e-6, 0u}, std::pair{-5e-6, 0u}, std::pair{2e-5, 2u}}) {
            *figure = value;
            ASSERT_TRUE(check(basket(25, {{"600001", 100}})));
            EXPECT_EQ(codes.size(), records) << value;
        }
        *figure = 0;
    }
}

TEST_F(BasketCheck, RowWithoutAUsablePriceIsReportedAndTradesNothing) {
    const auto quote = host.quotes.quotes.at(QStringLiteral("SH600001"));
    quote->origin.clear();
    quote->otherOrigin = 0;
    ASSERT_TRUE(check(basket(25, {{"600001", 100}, {"600002", 100}})));
    EXPECT_TRUE(onlyError().startsWith(QStringLiteral("[文件单]　通道号 [3] 组合交易中, 证券 [SH600001] ")));
    EXPECT_TRUE(onlyError().endsWith(QStringLiteral("无效, 修改下单量为0!")));
    EXPECT_EQ(host.trade.splitCalls[0].volume, 0);
    EXPECT_EQ(records(), "A1 18 60 600002, A2 18 40 600002, ");
}

TEST_F(BasketCheck, MissingQuoteIsWaitedForAlsoWhereThePriceIsGiven) {
    host.quotes.quotes.clear();
    COrderParam order = basket(25, {{"600001", 100}});
    order.m_orders[0].m_dPrice = 9;
    ASSERT_TRUE(check(order, strategy(EPriceType::Specified)));
    EXPECT_EQ(clock.sleeps(), (std::vector<double>{1, 1}));
    EXPECT_TRUE(codes.empty());
}

TEST_F(BasketCheck, StarMarketHasALeastVolumeForEachAccount) {
    host.types.types.insert({1172, "SH600001"});
    host.trade.split = [](const fake::CSplitCall&, utils::KNError&) { return std::vector<int>{300, 150}; };
    ASSERT_TRUE(check(basket(25, {{"600001", 450}}).set([](auto& o) { o.m_strRemark = "备注"; })));
    EXPECT_EQ(records(), "A1 18 300 600001, ");
    EXPECT_EQ(onlyError(), QStringLiteral("[文件单] [通道3] [备注:备注] 科创板合约下单量最小为200!"));
}

TEST_F(BasketCheck, LeastVolumeOfTheStarMarketItselfGoesOut) {
    host.types.types.insert({1172, "SH600001"});
    host.trade.split = [](const fake::CSplitCall&, utils::KNError&) { return std::vector<int>{200, 199}; };
    ASSERT_TRUE(check(basket(25, {{"600001", 399}})));
    EXPECT_EQ(records(), "A1 18 200 600001, ");
    EXPECT_EQ(onlyError(), QStringLiteral("[文件单] [通道3] [备注:] 科创板合约下单量最小为200!"));
}

TEST_F(BasketCheck, StarMarketsLeastVolumeIsTestedOnceTheHostHasStampedTheRecord) {
    host.types.types.insert({1172, "SH600001"});
    host.trade.split = [](const fake::CSplitCall&, utils::KNError&) { return std::vector<int>{150, 300}; };
    std::vector<std::size_t> errorsBefore;
    host.rules.onFixTimeRange = [&](CCodeOrderParam&) { errorsBefore.push_back(host.errorTexts().size()); };
    ASSERT_TRUE(check(basket(25, {{"600001", 450}})));
    EXPECT_EQ(errorsBefore, (std::vector<std::size_t>{0, 1}));
    EXPECT_EQ(host.rules.settingCalls.all().size(), 2u);
    EXPECT_EQ(records(), "A2 18 300 600001, ");
}

TEST_F(BasketCheck, StarMarketsLeastVolumeIsTestedBeforeAPriceOfZero) {
    host.types.types.insert({1172, "SH600001"});
    COrderParam order = basket(25, {{"600001", 300}, {"600002", 300}});
    order.m_orders[0].m_dPrice = 0;
    order.m_orders[1].m_dPrice = 20;
    host.trade.split = [](const fake::CSplitCall&, utils::KNError&) { return std::vector<int>{150, 150}; };
    ASSERT_TRUE(check(order, strategy(EPriceType::Specified)));
    EXPECT_EQ(records(), "A1 18 150 600002, A2 18 150 600002, ");
    EXPECT_EQ(host.errorTexts(),
              std::vector<QString>(2, QStringLiteral("[文件单] [通道3] [备注:] 科创板合约下单量最小为200!")));
}

TEST_F(BasketCheck, FailedSplitDropsTheRowSilently) {
    host.trade.split = [](const fake::CSplitCall& call, utils::KNError&) {
        return call.code == "600001" ? std::vector<int>{5} : std::vector<int>{1, 1};
    };
    ASSERT_TRUE(check(basket(25, {{"600001", 100}, {"600002", 100}})));
    EXPECT_EQ(records(), "A1 18 1 600002, A2 18 1 600002, ");
    EXPECT_TRUE(host.errorTexts().empty());
}

TEST_F(BasketCheck, PriceOfZeroEndsTheCheck) {
    COrderParam order = basket(25, {{"600001", 100}});
    order.m_orders[0].m_dPrice = 0;
    EXPECT_FALSE(check(order, strategy(EPriceType::Specified)));
    EXPECT_EQ(onlyError(), QStringLiteral("[文件单]　不能以0为模型价报单!"));
}

TEST_F(BasketCheck, RowsMayBringTheirOperation) {
    COrderParam order = basket(33, {{"600001", 100}, {"600002", 100}});
    order.m_orders[0].m_eOperationType = 19;
    order.m_orders[1].m_eOperationType = 18;
    ASSERT_TRUE(check(order));
    EXPECT_EQ(records(), "A1 19 60 600001, A2 19 40 600001, A1 18 60 600002, A2 18 40 600002, ");
}

TEST_F(BasketCheck, PositionOrderNamesItsSubAccount) {
    ASSERT_TRUE(check(basket(36, {{"600001", 100}}).set([](auto& o) { o.m_strAccountKey = "12_key"; })));
    EXPECT_EQ(codes.at(0).m_nSubAccountKind, 12);
    EXPECT_EQ(codes.at(0).m_strSubAccountId, "key");
    ASSERT_TRUE(check(basket(36, {{"600001", 100}}).set([](auto& o) { o.m_strAccountKey = "1_2_3"; })));
    EXPECT_TRUE(isUnset(codes.at(0).m_nSubAccountKind));
}

TEST_F(BasketCheck, FarSideOfTheBookIsNotAllowed) {
    for (const EPriceType type :
         {EPriceType::Sell5, EPriceType::Sell4, EPriceType::Sell3, EPriceType::Sell2}) {
        host.orders.errors.clear();
        EXPECT_FALSE(
            check(basket(26, {{"600001", 100}}).set([](auto& o) { o.m_nOrderType = 36; }), strategy(type)));
        EXPECT_EQ(onlyError(), QStringLiteral("[文件单]　通道号: 3, 组合交易卖出不允许报卖二到卖五的价格!"));
        EXPECT_TRUE(check(basket(25, {{"600001", 100}}), strategy(type)));
    }
    for (const EPriceType type : {EPriceType::Buy2, EPriceType::Buy3, EPriceType::Buy4, EPriceType::Buy5}) {
        host.orders.errors.clear();
        EXPECT_FALSE(check(basket(25, {{"600001", 100}}), strategy(type)));
        EXPECT_EQ(onlyError(), QStringLiteral("[文件单]　通道号: 3, 组合交易买入不允许报买二到买五的价格!"));
    }
}

TEST_F(BasketCheck, NearSideOfTheBookIsAllowed) {
    EXPECT_TRUE(check(basket(26, {{"600001", 100}}), strategy(EPriceType::Sell1)));
    EXPECT_TRUE(check(basket(26, {{"600001", 100}}), strategy(EPriceType::Buy2)));
    EXPECT_TRUE(check(basket(25, {{"600001", 100}}), strategy(EPriceType::Buy1)));
    EXPECT_TRUE(check(basket(25, {{"600001", 100}}), strategy(EPriceType::Sell2)));
    EXPECT_TRUE(host.errorTexts().empty());
}

// Sale of all positions.

TEST_F(BasketCheck, AllPositionsOfAllAccountsAreSold) {
    host.tasks.addPosition(host.user.accounts.at("A1"), "SH", "600001", 700);
    host.tasks.addPosition(host.user.accounts.at("A1"), "SH", "600002", 50);
    ASSERT_TRUE(check(basket(26, {}).set([](auto& o) { o.m_bAll = true; })));
    EXPECT_EQ(records(), "A1 19 700 600001, A1 19 50 600002, "); // A2 has no data
    EXPECT_TRUE(host.trade.splitCalls.empty());
    EXPECT_EQ(codes[0].m_stock.m_strName, "name of 600001");
}

TEST_F(BasketCheck, SuspendedPositionsStay) {
    host.tasks.addPosition(host.user.accounts.at("A1"), "SH", "600001", 700);
    host.quotes.quotes.at(QStringLiteral("SH600001"))->m_nDayCount = 0;
    ASSERT_TRUE(check(basket(26, {}).set([](auto& o) { o.m_bAll = true; })));
    EXPECT_TRUE(codes.empty());
}

} // namespace
