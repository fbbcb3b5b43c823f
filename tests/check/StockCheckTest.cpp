#include "tests/check/StockCheckFixture.h"

namespace {

using namespace TC;

class StockCheck : public StockCheckFixture {};

TEST_F(StockCheck, OrderBecomesOneRecordForEachAccount) {
    ASSERT_TRUE(check(COrderBuilder(23).line(kCode, 10.5, 1000)));
    ASSERT_EQ(codes.size(), 2u);
    EXPECT_EQ(codes[0].m_account->getKey(), "A1");
    EXPECT_EQ(codes[0].m_nVolume, 600);
    EXPECT_EQ(codes[1].m_account->getKey(), "A2");
    EXPECT_EQ(codes[1].m_nVolume, 400);
    for (const CCodeOrderParam& code : codes) {
        EXPECT_EQ(code.m_eOperationType, EOperationType::Buy);
        EXPECT_EQ(code.m_eHedgeFlag, EHedge_Flag_Type::Speculation);
        EXPECT_EQ(code.m_ePriceType, EPriceType::Specified);
        EXPECT_EQ(code.m_dPrice, 10.5);
        EXPECT_EQ(code.m_strUserId, "tester");
        EXPECT_EQ(code.m_stock.m_strMarket, "SH");
        EXPECT_EQ(code.m_stock.m_strCode, "600000");
        EXPECT_EQ(code.m_stock.m_strName, "name of 600000");
        EXPECT_EQ(code.m_stock.m_strProductId, "product of 600000");
        EXPECT_TRUE(isUnset(code.m_nOverFreqMode));
        EXPECT_TRUE(isUnset(code.m_nQuantityKind));
    }
    EXPECT_EQ(weights, (std::map<std::string, double>{{"A1", 0.6}, {"A2", 0.4}}));
    EXPECT_TRUE(host.errorTexts().empty());
    EXPECT_TRUE(clock.sleeps().empty());
}

TEST_F(StockCheck, EveryAcceptedNumberHasItsOperation) {
    const std::map<int, int> operations{{23, 18},   {24, 19}, {86, 26}, {87, 27}, {88, 1025},
                                        {89, 1026}, {90, 30}, {91, 31}, {92, 18}};
    for (const auto& [number, operation] : operations) {
        codes.clear();
        ASSERT_TRUE(check(COrderBuilder(number).line(kCode, 10.5, 100))) << number;
        EXPECT_EQ(static_cast<int>(codes.at(0).m_eOperationType), operation) << number;
    }
}

TEST_F(StockCheck, OtherNumbersAreRefused) {
    int refused = 0;
    for (const int number : {-1, 0, 22, 25, 27, 48, 66, 85, 93, 100, kUnsetInt}) {
        EXPECT_FALSE(check(COrderBuilder(number).line(kCode, 10.5, 100))) << number;
        EXPECT_EQ(host.errorTexts().back(), QStringLiteral("[文件单]　通道号: 3, 下单指令不合法!")) << number;
        ++refused;
    }
    EXPECT_EQ(host.errorTexts().size(), static_cast<std::size_t>(refused));
    EXPECT_EQ(host.orders.errors.front().title, QStringLiteral("参数错误"));
    EXPECT_TRUE(codes.empty());
}

TEST_F(StockCheck, SeveralLinesAreRefused) {
    EXPECT_FALSE(check(COrderBuilder(23).line(kCode, 10.5, 100).line(kCode, 10.5, 100)));
    EXPECT_EQ(onlyError(), QStringLiteral("[文件单]　通道号: 3, 下单参数不合法!"));
}

TEST_F(StockCheck, OrderWithoutLinesUsesTheStrategy) {
    ASSERT_TRUE(
        check(COrderBuilder(23),
              CStrategyBuilder().code(QStringLiteral("SH600000")).price(EPriceType::Latest).volume(500)));
    EXPECT_EQ(splitVolume(), 500);
    EXPECT_EQ(codes.at(0).m_dPrice, 10.5);
}

TEST_F(StockCheck, MissingAccountIsReportedOnce) {
    EXPECT_FALSE(
        check(COrderBuilder(23).line(kCode, 10.5, 100), CStrategyBuilder().group(QStringLiteral("none"))));
    EXPECT_EQ(onlyError(), QStringLiteral("[文件单]　通道号: 3, 指定账号不可用!"));
}

TEST_F(StockCheck, FirstOfSeveralFaultsIsTheOneReported) {
    const QString unknown = QStringLiteral("999999");
    const CStrategyBuilder noAccount = CStrategyBuilder().group(QStringLiteral("none"));
    struct CRow {
        COrderParam order;
        COrderStrategyParam strategy;
        const char* report;
    };
    const std::vector<CRow> rows{
        {COrderBuilder(25).line(kCode, 10.5).line(kCode, 10.5), noAccount,
         "[文件单]　通道号: 3, 下单指令不合法!"},
        {COrderBuilder(23).line(kCode, 10.5).line(kCode, 10.5), noAccount,
         "[文件单]　通道号: 3, 下单参数不合法!"},
        {COrderBuilder(23).line(unknown, 0), noAccount, "[文件单]　通道号: 3, 指定账号不可用!"},
        {COrderBuilder(23).line(unknown, 0), CStrategyBuilder(),
         "[文件单]　通道号: 3, 下单代码 [999999] 不合法!"},
        {COrderBuilder(23).line(kCode, 0), CStrategyBuilder().volume(kUnsetInt),
         "[文件单]　证券 [SH600000] 价11(600000)无效, 无法下单!"},
    };
    for (const CRow& row : rows) {
        host.orders.errors.clear();
        EXPECT_FALSE(check(row.order, row.strategy)) << row.report;
        EXPECT_EQ(onlyError(), QString::fromUtf8(row.report));
    }
    EXPECT_TRUE(host.trade.splitCalls.empty());
}

TEST_F(StockCheck, RecordsAndWeightsJoinThoseThatAreThere) {
    codes.resize(1);
    codes[0].m_nVolume = 77;
    weights["Z"] = 0.25;
    ASSERT_TRUE(check(COrderBuilder(23).line(kCode, 10.5, 1000)));
    ASSERT_EQ(codes.size(), 3u);
    EXPECT_EQ(codes[0].m_nVolume, 77);
    EXPECT_EQ(codes[1].m_nVolume, 600);
    EXPECT_EQ(weights, (std::map<std::string, double>{{"A1", 0.6}, {"A2", 0.4}, {"Z", 0.25}}));
}

TEST_F(StockCheck, RefusedOrderLeavesTheRecordsThatAreThere) {
    codes.resize(1);
    codes[0].m_nVolume = 77;
    EXPECT_FALSE(check(COrderBuilder(25).line(kCode, 10.5, 1000)));
    EXPECT_FALSE(check(COrderBuilder(23).line(QStringLiteral("x"), 10.5, 1000)));
    EXPECT_FALSE(check(COrderBuilder(23).line(kCode, 10.5, kUnsetInt), CStrategyBuilder().volume(kUnsetInt)));
    ASSERT_EQ(codes.size(), 1u);
    EXPECT_EQ(codes[0].m_nVolume, 77);
}

TEST_F(StockCheck, TableStrategyTakesTheAccountOfTheLine) {
    const COrderStrategyParam strategy = CStrategyBuilder().account(QStringLiteral("A1")).tableMode();
    const COrderParam order = COrderBuilder(23).line(kCode, 10.5, 100).set([](COrderParam& o) {
        o.m_orders[0].m_strAccount = QStringLiteral("A2");
    });
    ASSERT_TRUE(check(order, strategy));
    EXPECT_EQ(codes.at(0).m_account->getKey(), "A2");
    EXPECT_FALSE(check(COrderBuilder(23), strategy));
}

TEST_F(StockCheck, StrategyWithoutTableModeIgnoresTheAccountOfTheLine) {
    const COrderParam order = COrderBuilder(23).line(kCode, 10.5, 100).set([](COrderParam& o) {
        o.m_orders[0].m_strAccount = QStringLiteral("A2");
    });
    ASSERT_TRUE(check(order, CStrategyBuilder().account(QStringLiteral("A1"))));
    EXPECT_EQ(codes.at(0).m_account->getKey(), "A1");
}

// The setting text.

TEST_F(StockCheck, LineOverridesThePriceType) {
    const COrderParam order = COrderBuilder(23).line(kCode, 10.5, 100).set([](COrderParam& o) {
        o.m_strOrderSetting = "price=6";
        o.m_orders[0].m_ePriceType = EPriceType::Latest;
    });
    ASSERT_TRUE(check(order));
    EXPECT_EQ(host.rules.settingTexts.size(), 1u);
    EXPECT_EQ(codes.at(0).m_ePriceType, EPriceType::Latest);
}

TEST_F(StockCheck, SettingTextIsReadIntoTheSetting) {
    const COrderParam order = COrderBuilder(23).line(kCode, 10.5, 100).set([](COrderParam& o) {
        o.m_strOrderSetting = "price=5";
        o.m_eOrderType = static_cast<EOrderType>(4);
    });
    ASSERT_TRUE(check(order));
    EXPECT_EQ(codes.at(0).m_ePriceType, EPriceType::Latest);
    EXPECT_EQ(codes.at(0).m_eOrderType, static_cast<EOrderType>(4));
}

TEST_F(StockCheck, TextOfAnAlgorithmOrderIsKeptForTheCommand) {
    host.rules.algoPlatforms[static_cast<EOrderType>(4)] = ETradePlatform::Plain;
    const COrderParam order = COrderBuilder(23).line(kCode, 10.5, 100).set([](COrderParam& o) {
        o.m_strOrderSetting = "price=5";
        o.m_eOrderType = static_cast<EOrderType>(4);
    });
    ASSERT_TRUE(check(order));
    EXPECT_TRUE(host.rules.settingTexts.empty());
    EXPECT_EQ(codes.at(0).m_eOrderType, static_cast<EOrderType>(4));
    EXPECT_EQ(codes.at(0).m_ePriceType, EPriceType::Specified);
}

TEST_F(StockCheck, SettingTextOfAnOrderWithoutAKindUnsetsTheSettingsKind) {
    const COrderParam order =
        COrderBuilder(23).line(kCode, 10.5, 100).set([](COrderParam& o) { o.m_strOrderSetting = "price=5"; });
    const COrderStrategyParam strategy =
        CStrategyBuilder().set([](auto& s) { s.m_stockSetting.m_eOrderType = static_cast<EOrderType>(4); });
    ASSERT_TRUE(check(order, strategy));
    EXPECT_TRUE(isUnset(codes.at(0).m_eOrderType));
    EXPECT_TRUE(isUnset(host.user.priceTypeCalls.all().at(0).orderType));
}

TEST_F(StockCheck, KindInTheSettingTextOutdoesTheOrders) {
    const COrderParam order = COrderBuilder(23).line(kCode, 10.5, 100).set([](COrderParam& o) {
        o.m_strOrderSetting = "kind=9";
        o.m_eOrderType = static_cast<EOrderType>(4);
    });
    ASSERT_TRUE(check(order));
    EXPECT_EQ(codes.at(0).m_eOrderType, static_cast<EOrderType>(9));
}

TEST_F(StockCheck, OrderKindWithoutTextLeavesTheSettingAlone) {
    const COrderParam order = COrderBuilder(23).line(kCode, 10.5, 100).set([](COrderParam& o) {
        o.m_eOrderType = static_cast<EOrderType>(4);
    });
    ASSERT_TRUE(check(order));
    EXPECT_EQ(codes.at(0).m_eOrderType, EOrderType::Plain);
}

// The code.

TEST_F(StockCheck, SixDigitCodeOnBothMarketsGoesToShanghai) {
    host.addStock("SZ", "600000", 9);
    ASSERT_TRUE(check(COrderBuilder(23).line(kCode, 10.5, 100)));
    EXPECT_EQ(codes.at(0).m_stock.m_strMarket, "SH");
}

TEST_F(StockCheck, CodeOfTheWrongTypeOnShanghaiGoesToShenzhen) {
    host.addStock("SZ", "600000", 9);
    host.types.types.erase({knservice::kTypeTradableStock, "SH600000"});
    ASSERT_TRUE(check(COrderBuilder(23).line(kCode, 10.5, 100)));
    EXPECT_EQ(codes.at(0).m_stock.m_strMarket, "SZ");
}

TEST_F(StockCheck, FullCodeInSmallLettersIsStoredInCapitals) {
    ASSERT_TRUE(check(COrderBuilder(23).line(QStringLiteral("sz000001"), 10.5, 100)));
    EXPECT_EQ(codes.at(0).m_stock.m_strMarket, "SZ");
    EXPECT_EQ(host.quotes.subscribed, std::vector<QString>{QStringLiteral("SZ000001")});
}

TEST_F(StockCheck, BareCodeIsLookedUpUnderTheHostsKey) {
    host.rules.keySeparator = QStringLiteral(".");
    EXPECT_FALSE(check(COrderBuilder(23).line(kCode, 10.5, 100)));
    EXPECT_TRUE(host.quotes.subscribed.empty());
    host.exchange.stocks[QStringLiteral("SH.600000")] = host.exchange.getCodeInfo(QStringLiteral("SH600000"));
    ASSERT_TRUE(check(COrderBuilder(23).line(kCode, 10.5, 100)));
    EXPECT_EQ(host.quotes.subscribed, std::vector<QString>{QStringLiteral("SH600000")});
}

TEST_F(StockCheck, FullCodeIsLookedUpUnchanged) {
    host.rules.keySeparator = QStringLiteral(".");
    ASSERT_TRUE(check(COrderBuilder(23).line(QStringLiteral("SH600000"), 10.5, 100)));
    EXPECT_EQ(host.quotes.subscribed, std::vector<QString>{QStringLiteral("SH600000")});
}

TEST_F(StockCheck, BadCodesAreRefusedAsTheyCame) {
    host.addStock("SH", "60000", 10.5);
    host.types.types.erase({knservice::kTypeTradableStock, "SH60000"});
    for (const char* code : {"999999", "sh999999", "SH60000", "SH6000000", "x"}) {
        EXPECT_FALSE(check(COrderBuilder(23).line(QString::fromLatin1(code), 10.5, 100))) << code;
        EXPECT_EQ(host.errorTexts().back(),
                  QStringLiteral("[文件单]　通道号: 3, 下单代码 [%1] 不合法!").arg(QLatin1String(code)));
    }
    EXPECT_TRUE(codes.empty());
}

TEST_F(StockCheck, FullCodeOfAnotherTypeIsRefused) {
    host.types.types.erase({knservice::kTypeTradableStock, "SH600000"});
    EXPECT_FALSE(check(COrderBuilder(23).line(QStringLiteral("SH600000"), 10.5, 100)));
}

TEST_F(StockCheck, CodeOfTheStrategyIsUsedUnchanged) {
    ASSERT_TRUE(check(COrderBuilder(23).line(QString(), 10.5, 100), CStrategyBuilder().code(kCode)));
    EXPECT_EQ(host.quotes.subscribed, std::vector<QString>{kCode});
    EXPECT_EQ(codes.at(0).m_stock.m_strMarket, "");
}

TEST_F(StockCheck, LineWithACodeBringsItsPriceTypeAndFrequencyMode) {
    const auto withLine = [](const QString& code) {
        return COrderBuilder(23).line(code, 10.5, 100).set([](COrderParam& o) {
            o.m_orders[0].m_ePriceType = EPriceType::Latest;
            o.m_orders[0].m_nOverFreqMode = 2;
        });
    };
    ASSERT_TRUE(check(withLine(kCode)));
    EXPECT_EQ(codes.at(0).m_ePriceType, EPriceType::Latest);
    EXPECT_EQ(codes.at(0).m_nOverFreqMode, 2);
    codes.clear();
    ASSERT_TRUE(check(withLine(QString()), CStrategyBuilder().code(QStringLiteral("SH600000"))));
    EXPECT_EQ(codes.at(0).m_ePriceType, EPriceType::Specified);
    EXPECT_TRUE(isUnset(codes.at(0).m_nOverFreqMode));
}

TEST_F(StockCheck, SubscriptionIsHeldDuringTheCheckOnly) {
    int liveAtRead = -1;
    host.quotes.onRead = [&](const QString&, int) { liveAtRead = host.quotes.liveSubscriptions; };
    ASSERT_TRUE(check(COrderBuilder(23).line(kCode, 10.5, 100)));
    EXPECT_EQ(liveAtRead, 1);
    EXPECT_EQ(host.quotes.liveSubscriptions, 0);
}

// The wait for a quote.

TEST_F(StockCheck, QuoteThatNeverComesCostsTwoSecondsAndFails) {
    host.quotes.quotes.clear();
    EXPECT_FALSE(check(COrderBuilder(23).line(kCode, 10.5, 100), latestPrice()));
    EXPECT_EQ(clock.sleeps(), (std::vector<double>{1.0, 1.0}));
    EXPECT_EQ(host.quotes.reads[QStringLiteral("SH600000")], 3);
    EXPECT_EQ(onlyError(), QStringLiteral("[文件单]　证券 [SH600000] 价5(600000)无效, 无法下单!"));
}

TEST_F(StockCheck, QuoteThatComesLateEndsTheWait) {
    const auto late = host.quotes.quotes;
    host.quotes.quotes.clear();
    host.quotes.onRead = [&](const QString&, int count) {
        if (count == 2) host.quotes.quotes = late;
    };
    EXPECT_TRUE(check(COrderBuilder(23).line(kCode, 10.5, 100), latestPrice()));
    EXPECT_EQ(clock.sleeps().size(), 1u);
}

TEST_F(StockCheck, QuoteWithoutThePriceIsWaitedForToo) {
    quote()->otherOrigin = kUnsetDouble;
    EXPECT_TRUE(check(COrderBuilder(23).line(kCode, 10.5, 100), latestPrice()));
    EXPECT_EQ(clock.sleeps().size(), 2u);
}

TEST_F(StockCheck, SpecifiedPriceNeverWaits) {
    host.quotes.quotes.clear();
    EXPECT_TRUE(check(COrderBuilder(23).line(kCode, 10.5, 100)));
    EXPECT_TRUE(clock.sleeps().empty());
}

TEST_F(StockCheck, PriceTypeTwelveWaitsForAQuoteObjectOnly) {
    quote()->otherOrigin = kUnsetDouble;
    EXPECT_TRUE(
        check(COrderBuilder(23).line(kCode, 10.5, 100), CStrategyBuilder().price(EPriceType::NoQuote)));
    EXPECT_TRUE(clock.sleeps().empty());
}

TEST_F(StockCheck, PriceTypeTwelveWaitsUntilThereIsAQuoteObject) {
    const auto late = host.quotes.quotes;
    host.quotes.quotes.clear();
    host.quotes.onRead = [&](const QString&, int count) {
        if (count == 2) host.quotes.quotes = late;
    };
    EXPECT_TRUE(
        check(COrderBuilder(23).line(kCode, 10.5, 100), CStrategyBuilder().price(EPriceType::NoQuote)));
    EXPECT_EQ(clock.sleeps(), std::vector<double>{1.0});
}

TEST_F(StockCheck, PriceTypeTwelveWithoutAQuoteObjectFailsAfterTwoSeconds) {
    host.quotes.quotes.clear();
    EXPECT_FALSE(
        check(COrderBuilder(23).line(kCode, 10.5, 100), CStrategyBuilder().price(EPriceType::NoQuote)));
    EXPECT_EQ(clock.sleeps(), (std::vector<double>{1.0, 1.0}));
    EXPECT_EQ(onlyError(), QStringLiteral("[文件单]　证券 [SH600000] 价12(600000)无效, 无法下单!"));
}

TEST_F(StockCheck, UnusablePriceWithoutACodeHasItsOwnText) {
    EXPECT_FALSE(check(COrderBuilder(23).line(QString(), 0, 100)));
    EXPECT_EQ(onlyError(), QStringLiteral("[文件单]　证券代码为空, 无法下单!"));
}

// Prices and the split.

TEST_F(StockCheck, CalculationAndOrderPriceGoTheirOwnWays) {
    quote()->otherCalc = 10.2;
    quote()->otherOrder = 10.7;
    ASSERT_TRUE(check(COrderBuilder(23).line(kCode, 3.0, 100), latestPrice()));
    EXPECT_EQ(host.trade.splitCalls.at(0).price, 10.2);
    EXPECT_EQ(codes.at(0).m_dPrice, 10.7);
}

TEST_F(StockCheck, MissingCalculationPriceFallsBack) {
    quote()->otherCalc = kUnsetDouble;
    quote()->m_dFallbackPrice = 9.9;
    ASSERT_TRUE(check(COrderBuilder(23).line(kCode, 3.0, 100), latestPrice()));
    EXPECT_EQ(host.trade.splitCalls.at(0).price, 9.9);
}

TEST_F(StockCheck, SplitGetsTheWholeOrder) {
    const COrderStrategyParam strategy =
        CStrategyBuilder().set([](auto& s) { s.m_ePositionType = static_cast<EPositionType>(6); });
    ASSERT_TRUE(check(COrderBuilder(24).line(kCode, 10.5, 300), strategy));
    const fake::CSplitCall& call = host.trade.splitCalls.at(0);
    EXPECT_EQ(call.volume, 300);
    EXPECT_EQ(call.price, 10.5);
    EXPECT_EQ(call.priceType, EPriceType::Specified);
    EXPECT_EQ(call.accounts, (std::vector<std::string>{"A1", "A2"}));
    EXPECT_EQ(call.ratios, (std::vector<double>{0.6, 0.4}));
    EXPECT_EQ(call.positionType, static_cast<EPositionType>(6));
    EXPECT_EQ(call.market, "SH");
    EXPECT_EQ(call.code, "600000");
    EXPECT_EQ(call.operation, EOperationType::Sell);
    EXPECT_EQ(call.hedge, EHedge_Flag_Type::Speculation);
    EXPECT_EQ(codes.at(0).m_ePositionType, static_cast<EPositionType>(6));
}

TEST_F(StockCheck, FailedSplitIsReportedInTheHostsWords) {
    host.trade.split = [](const fake::CSplitCall&, utils::KNError& error) {
        error = utils::KNError(7, "资金不足");
        return std::vector<int>{};
    };
    EXPECT_FALSE(check(COrderBuilder(23).line(kCode, 10.5, 100)));
    EXPECT_EQ(onlyError(), QStringLiteral("[文件单]　分单失败: 资金不足"));
}

TEST_F(StockCheck, AccountsWithoutVolumeDropSilently) {
    host.trade.split = [](const fake::CSplitCall&, utils::KNError&) { return std::vector<int>{0, 100}; };
    ASSERT_TRUE(check(COrderBuilder(23).line(kCode, 10.5, 100)));
    ASSERT_EQ(codes.size(), 1u);
    EXPECT_EQ(codes[0].m_account->getKey(), "A2");
    codes.clear();
    host.trade.split = [](const fake::CSplitCall&, utils::KNError&) { return std::vector<int>{0, -1}; };
    EXPECT_TRUE(check(COrderBuilder(23).line(kCode, 10.5, 100)));
    EXPECT_TRUE(codes.empty());
    EXPECT_TRUE(host.errorTexts().empty());
}

TEST_F(StockCheck, NullAccountIsPassedOver) {
    host.user.nullAccount = true;
    host.trade.split = [](const fake::CSplitCall&, utils::KNError&) { return std::vector<int>{1, 2, 3}; };
    ASSERT_TRUE(check(COrderBuilder(23).line(kCode, 10.5, 100)));
    EXPECT_EQ(codes.size(), 2u);
}

TEST_F(StockCheck, ZeroPriceOnARecordRefusesTheOrder) {
    // The order's price is valid, but the trading layer sets another price on the record.
    host.rules.onFixTimeRange = [](CCodeOrderParam& record) { record.m_dPrice = 0; };
    EXPECT_FALSE(check(COrderBuilder(23).line(kCode, 10.5, 100)));
    EXPECT_EQ(onlyError(), QStringLiteral("[文件单]　不能以0为模型价报单!"));
}

TEST_F(StockCheck, ZeroPriceOnALaterRecordRefusesTheOrderToo) {
    host.rules.onFixTimeRange = [](CCodeOrderParam& record) {
        if (record.m_nVolume == 400) record.m_dPrice = 0;
    };
    EXPECT_FALSE(check(COrderBuilder(23).line(kCode, 10.5, 1000)));
    EXPECT_EQ(onlyError(), QStringLiteral("[文件单]　不能以0为模型价报单!"));
    ASSERT_EQ(codes.size(), 1u); // the caller must discard the remaining record
    EXPECT_EQ(codes[0].m_nVolume, 600);
}

TEST_F(StockCheck, RecordOfAnotherPriceTypeMayHaveNoPrice) {
    host.rules.marketPrices.insert(EPriceType::Latest);
    quote()->otherOrder = 0;
    EXPECT_TRUE(check(COrderBuilder(23).line(kCode, 10.5, 100), latestPrice()));
}

} // namespace
