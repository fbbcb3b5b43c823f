// The host calls for each row of a basket, and the contents of its records.
#include "tests/check/BasketFixture.h"

#include <cmath>
#include <limits>

namespace {

using namespace TC;

class BasketRows : public BasketFixture {
protected:
    boost::shared_ptr<fake::CQuote> quote(const char* key = "SH600001") {
        return host.quotes.quotes.at(QString::fromLatin1(key));
    }
    /// A basket whose only row sells. The order's number names no operation.
    static COrderBuilder ownSale() {
        return basket(33, {{"600001", 100}}).set([](auto& o) { o.m_orders[0].m_eOperationType = 19; });
    }
    static COrderBuilder priced(double price) {
        return basket(25, {{"600001", 100}}).set([=](auto& o) { o.m_orders[0].m_dPrice = price; });
    }
    /// A basket whose rows have weights and no volume.
    static COrderParam weighted(std::initializer_list<std::pair<const char*, double>> rows) {
        COrderParam order = COrderBuilder(25);
        for (const auto& [code, weight] : rows) {
            COrderSingleParam row;
            row.m_strCode = QString::fromLatin1(code);
            row.m_dWeight = weight;
            order.m_orders.push_back(row);
        }
        return order;
    }
    std::vector<fake::CPriceCall> asked(const char* kind) {
        std::vector<fake::CPriceCall> calls;
        for (const fake::CPriceCall& call : quote()->calls.all()) {
            if (call.kind == kind) calls.push_back(call);
        }
        return calls;
    }
    static QString unpriced(int priceType, const char* key = "SH600001") {
        return QStringLiteral("[文件单]　通道号 [3] 组合交易中, 证券 [%1] 价%2()无效, 修改下单量为0!")
            .arg(QString::fromLatin1(key))
            .arg(priceType);
    }
    int splitVolume() { return host.trade.splitCalls.at(host.trade.splitCalls.size() - 1).volume; }
    /// The volumes that the order's rows have when they reach the split.
    std::vector<int> splitVolumes(const COrderParam& order, const COrderStrategyParam& with) {
        host.trade.splitCalls.clear();
        EXPECT_TRUE(check(order, with));
        std::vector<int> volumes;
        for (const fake::CSplitCall& call : host.trade.splitCalls)
            volumes.push_back(call.volume);
        return volumes;
    }
};

TEST_F(BasketRows, PricesGoByTheOrdersOperationAndAllElseByTheRows) {
    const auto order = ownSale();
    ASSERT_TRUE(check(order, strategy().set([](auto& s) {
        s.setting(ESettingSlot::StockBasket).m_eOrderType = static_cast<EOrderType>(6);
    })));
    for (const char* kind : {"calc", "order"}) {
        const auto calls = asked(kind);
        ASSERT_EQ(calls.size(), 1u) << kind;
        EXPECT_TRUE(isUnset(calls[0].operation)) << kind;
        EXPECT_EQ(calls[0].number, 6) << kind;
        EXPECT_FALSE(calls[0].hasAutoPrice) << kind;
    }
    const auto origin = asked("origin");
    ASSERT_EQ(origin.size(), 2u); // one for the wait, one for the test of the price
    for (const fake::CPriceCall& call : origin)
        EXPECT_EQ(call.operation, EOperationType::Sell);
    EXPECT_EQ(host.trade.splitCalls.at(0).operation, EOperationType::Sell);
    EXPECT_EQ(host.rules.settingCalls.all().at(0).operation, EOperationType::Sell);
}

TEST_F(BasketRows, MissingCalculationPriceIsReadAgainForTheRowsOperation) {
    quote()->otherCalc = kUnsetDouble;
    ASSERT_TRUE(check(ownSale()));
    const auto calls = asked("calc");
    ASSERT_EQ(calls.size(), 2u);
    EXPECT_TRUE(isUnset(calls[0].operation));
    EXPECT_EQ(calls[1].operation, EOperationType::Sell);
    EXPECT_EQ(host.trade.splitCalls.at(0).price, kUnsetDouble);
}

TEST_F(BasketRows, RowWithoutAPriceIsSplitAtTheQuotesAndGoesOutWithNone) {
    quote()->otherCalc = 11;
    quote()->otherOrder = 12;
    ASSERT_TRUE(check(priced(kUnsetDouble), strategy(EPriceType::Specified)));
    EXPECT_EQ(asked("calc").size(), 1u);
    EXPECT_EQ(host.trade.splitCalls.at(0).price, 11);
    EXPECT_EQ(host.trade.splitCalls.at(0).volume, 100);
    EXPECT_EQ(codes.at(0).m_dPrice, kUnsetDouble);
}

TEST_F(BasketRows, SplitAndRecordHaveTheirOwnPrices) {
    quote()->otherCalc = 11;
    quote()->otherOrder = 12;
    ASSERT_TRUE(check(basket(25, {{"600001", 100}})));
    EXPECT_EQ(host.trade.splitCalls.at(0).price, 11);
    EXPECT_EQ(host.trade.splitCalls.at(0).market, "SH");
    EXPECT_EQ(host.trade.splitCalls.at(0).code, "600001");
    EXPECT_EQ(host.trade.splitCalls.at(0).hedge, EHedge_Flag_Type::Speculation);
    EXPECT_EQ(codes.at(0).m_dPrice, 12);
}

TEST_F(BasketRows, MoneyBuysAtTheLastPriceWhereThereIsNoOther) {
    quote()->otherCalc = 40;
    quote()->m_dLastPrice = 20;
    ASSERT_TRUE(check(basket(25, {{"600001", 0}}), strategy().amount(8000)));
    EXPECT_EQ(splitVolume(), 200);
    quote()->otherCalc = kUnsetDouble;
    ASSERT_TRUE(check(basket(25, {{"600001", 0}}), strategy().amount(8000)));
    EXPECT_EQ(splitVolume(), 400);
}

TEST_F(BasketRows, MoneyBuysAtTheLastPriceWhereTheRowHasNone) {
    quote()->otherCalc = 11;
    quote()->m_dLastPrice = 20;
    const COrderStrategyParam money = strategy(EPriceType::Specified).amount(8000);
    EXPECT_EQ(splitVolumes(priced(kUnsetDouble), money), std::vector<int>{400});
    EXPECT_EQ(splitVolumes(priced(16), money), std::vector<int>{500});
}

TEST_F(BasketRows, NegativeVolumeIsDroppedSilently) {
    quote()->otherOrigin = 0; // a row that is not dropped would cause a message
    ASSERT_TRUE(check(basket(25, {{"600001", 100}}), strategy().volume(-1)));
    EXPECT_TRUE(host.trade.splitCalls.empty());
    EXPECT_TRUE(codes.empty());
    EXPECT_TRUE(host.errorTexts().empty());
}

TEST_F(BasketRows, MarketPricesNeedAQuoteWithoutANumber) {
    quote()->otherOrigin = 0;
    host.rules.marketPrices = {EPriceType::Latest};
    ASSERT_TRUE(check(basket(25, {{"600001", 100}})));
    EXPECT_EQ(codes.size(), 2u);
    host.quotes.quotes.clear();
    ASSERT_TRUE(check(basket(25, {{"600001", 100}})));
    EXPECT_EQ(onlyError(), unpriced(5));
}

TEST_F(BasketRows, PriceOfTheRowNeedsAQuoteWithoutANumber) {
    quote()->otherOrigin = kUnsetDouble;
    ASSERT_TRUE(check(priced(9), strategy(EPriceType::Specified)));
    EXPECT_EQ(codes.size(), 2u);
    EXPECT_EQ(codes.at(0).m_dPrice, 9);
    EXPECT_EQ(host.trade.splitCalls.at(0).price, 9);
    EXPECT_TRUE(clock.sleeps().empty());
}

TEST_F(BasketRows, PriceTypeWithoutAWaitStillNeedsAPrice) {
    for (const double price : {0.0, 5e-6, -5e-6, kUnsetDouble}) {
        quote()->origin[EPriceType::NoQuote] = price;
        host.orders.errors.clear();
        ASSERT_TRUE(check(basket(25, {{"600001", 100}}), strategy(EPriceType::NoQuote))) << price;
        EXPECT_EQ(onlyError(), unpriced(12)) << price;
        EXPECT_EQ(splitVolume(), 0) << price;
        EXPECT_TRUE(codes.empty()) << price;
    }
    for (const double price : {2e-5, 9.0}) {
        quote()->origin[EPriceType::NoQuote] = price;
        ASSERT_TRUE(check(basket(25, {{"600001", 100}}), strategy(EPriceType::NoQuote))) << price;
        EXPECT_EQ(codes.size(), 2u) << price;
    }
    EXPECT_TRUE(clock.sleeps().empty());
}

TEST_F(BasketRows, PriceOfTheRowMustBeANumber) {
    for (const double price :
         {std::nan(""), std::numeric_limits<double>::infinity(), -std::numeric_limits<double>::infinity()}) {
        host.orders.errors.clear();
        ASSERT_TRUE(check(priced(price), strategy(EPriceType::Specified))) << price;
        EXPECT_EQ(onlyError(), unpriced(11)) << price;
        EXPECT_EQ(splitVolume(), 0) << price;
        EXPECT_TRUE(std::isfinite(host.trade.splitCalls.back().price)) << price;
        EXPECT_TRUE(codes.empty()) << price;
    }
}

TEST_F(BasketRows, PricesOfTheQuoteThatAreNotFiniteAreNone) {
    for (const double price : {std::nan(""), HUGE_VAL, -HUGE_VAL}) {
        host.orders.errors.clear();
        quote()->all(price);
        quote()->m_dLastPrice = price;
        ASSERT_TRUE(check(basket(25, {{"600001", 100}}))) << price;
        EXPECT_EQ(onlyError(), unpriced(5)) << price;
        EXPECT_TRUE(codes.empty()) << price;
        EXPECT_EQ(host.trade.splitCalls.back().price, kUnsetDouble) << price;
    }
}

TEST_F(BasketRows, PriceWithoutAQuoteIsReportedWithTheHostsKey) {
    host.rules.keySeparator = QStringLiteral(".");
    ASSERT_TRUE(check(basket(25, {{"600001", 100}})));
    EXPECT_EQ(host.quotes.subscribed, std::vector<QString>{QStringLiteral("SH600001")});
    EXPECT_EQ(onlyError(), unpriced(5, "SH.600001"));
    host.quotes.quotes[QStringLiteral("SH.600001")] = quote();
    ASSERT_TRUE(check(basket(25, {{"600001", 100}})));
    EXPECT_EQ(codes.size(), 2u);
}

TEST_F(BasketRows, QuotesAreWaitedForByTheRowsOfTheOrder) {
    quote()->otherOrigin = kUnsetDouble;
    ASSERT_TRUE(check(basket(25, {{"600001", 100}, {"600002", 100}})));
    EXPECT_EQ(clock.sleeps(), (std::vector<double>{1, 1}));
    EXPECT_EQ(onlyError(), unpriced(5));
    EXPECT_EQ(codes.size(), 2u);
}

TEST_F(BasketRows, PriceOfZeroLeavesLaterRowsAlone) {
    host.quotes.quotes.erase(QStringLiteral("SH600002")); // a check of this row would wait and report
    COrderParam order = basket(25, {{"600001", 100}, {"600002", 100}});
    order.m_orders[0].m_dPrice = 0;
    order.m_orders[1].m_dPrice = 9;
    EXPECT_FALSE(check(order, strategy(EPriceType::Specified)));
    EXPECT_EQ(onlyError(), QStringLiteral("[文件单]　不能以0为模型价报单!"));
    EXPECT_TRUE(clock.sleeps().empty());
    EXPECT_EQ(host.trade.splitCalls.size(), 1u);
}

TEST_F(BasketRows, CodeThatTheHostListsButCannotDescribeIsDroppedSilently) {
    host.exchange.stocks[QStringLiteral("SH600001")] = nullptr;
    ASSERT_TRUE(check(basket(25, {{"600001", 100}, {"600002", 100}})));
    EXPECT_EQ(records(), "A1 18 60 600002, A2 18 40 600002, ");
    EXPECT_EQ(host.quotes.subscribed, std::vector<QString>{QStringLiteral("SH600002")});
    EXPECT_TRUE(host.errorTexts().empty());
}

TEST_F(BasketRows, AnyOfFiveTypesMayStandInABasket) {
    host.types.types.erase({100003, "SH600001"});
    ASSERT_TRUE(check(basket(25, {{"600001", 100}})));
    EXPECT_TRUE(codes.empty());
    for (const int type : {100003, 100016, 100004, 100024, 100013}) {
        host.types.types.insert({type, "SH600001"});
        ASSERT_TRUE(check(basket(25, {{"600001", 100}})));
        EXPECT_EQ(codes.size(), 2u) << type;
        host.types.types.erase({type, "SH600001"});
    }
}

TEST_F(BasketRows, AccountThatIsMissingGetsNoRecord) {
    host.user.nullAccount = true;
    host.trade.split = [](const fake::CSplitCall&, utils::KNError&) { return std::vector<int>{1, 2, 3}; };
    ASSERT_TRUE(check(basket(25, {{"600001", 6}})));
    EXPECT_EQ(records(), "A1 18 1 600001, A2 18 2 600001, ");
}

TEST_F(BasketRows, RecordsCarryUserHedgePositionAndInstrument) {
    ASSERT_TRUE(check(basket(25, {{"600001", 100}}),
                      strategy().set([](auto& s) { s.m_ePositionType = static_cast<EPositionType>(3); })));
    for (const CCodeOrderParam& record : codes) {
        EXPECT_EQ(record.m_strUserId, "tester");
        EXPECT_EQ(record.m_eHedgeFlag, EHedge_Flag_Type::Speculation);
        EXPECT_EQ(static_cast<int>(record.m_ePositionType), 3);
        EXPECT_EQ(record.m_stock.m_strMarket, "SH");
        EXPECT_EQ(record.m_stock.m_strName, "name of 600001");
    }
    EXPECT_EQ(static_cast<int>(host.trade.splitCalls.at(0).positionType), 3);
}

TEST_F(BasketRows, HostSeesRecordsThatKnowTheirPositionAndInstrument) {
    EXPECT_EQ(seenByHost(ownSale()), std::vector<std::string>(4, "49 3 19 tester SH600001"));
}

TEST_F(BasketRows, OnlyTheFirstRecordsSideCounts) {
    COrderParam order = basket(33, {{"600001", 100}, {"600002", 100}});
    order.m_orders[0].m_eOperationType = 18;
    order.m_orders[1].m_eOperationType = 19;
    ASSERT_TRUE(check(order, strategy(EPriceType::Sell2)));
    EXPECT_EQ(codes.size(), 4u);
    std::swap(order.m_orders[0], order.m_orders[1]);
    EXPECT_FALSE(check(order, strategy(EPriceType::Sell2)));
}

TEST_F(BasketRows, FarSideOfTheBookIsTestedOnceAllRowsHaveHadTheirWait) {
    host.quotes.quotes.erase(QStringLiteral("SH600002"));
    EXPECT_FALSE(check(basket(25, {{"600001", 100}, {"600002", 100}}), strategy(EPriceType::Buy2)));
    EXPECT_EQ(clock.sleeps(), (std::vector<double>{1, 1}));
    EXPECT_EQ(
        host.errorTexts(),
        (std::vector<QString>{unpriced(7, "SH600002"),
                              QStringLiteral("[文件单]　通道号: 3, 组合交易买入不允许报买二到买五的价格!")}));
}

TEST_F(BasketRows, PriceTypeThatTheHostGaveTheRecordIsTested) {
    const auto withHostType = [&](EPriceType type) {
        host.rules.onFixTimeRange = [=](CCodeOrderParam& record) { record.m_ePriceType = type; };
    };
    withHostType(EPriceType::Latest);
    EXPECT_TRUE(check(basket(25, {{"600001", 100}}), strategy(EPriceType::Buy2)));
    withHostType(EPriceType::Buy2);
    EXPECT_FALSE(check(basket(25, {{"600001", 100}}), strategy(EPriceType::Latest)));
    EXPECT_EQ(onlyError(), QStringLiteral("[文件单]　通道号: 3, 组合交易买入不允许报买二到买五的价格!"));
}

TEST_F(BasketRows, SubscriptionsAreAllMadeBeforeTheFirstWaitAndHeldToTheEnd) {
    host.quotes.quotes.clear();
    std::vector<int> alive;
    host.quotes.onRead = [&](const QString&, int) { alive.push_back(host.quotes.liveSubscriptions); };
    ASSERT_TRUE(check(basket(25, {{"600001", 100}, {"600002", 100}})));
    EXPECT_EQ(alive, std::vector<int>(6, 2)); // three reads for each row
    EXPECT_EQ(host.quotes.liveSubscriptions, 0);
}

TEST_F(BasketRows, SettingTextIsReadWhateverTheKindAndTheSettingKeepsItsOwn) {
    host.rules.algoPlatforms[static_cast<EOrderType>(7)] = ETradePlatform::Plain;
    for (const int kind : {5, 7}) {
        ASSERT_TRUE(check(basket(25, {{"600001", 100}}).set([&](auto& o) {
            o.m_strOrderSetting = "price=6";
            o.m_eOrderType = static_cast<EOrderType>(kind);
        }),
                          strategy().set([](auto& s) {
                              s.setting(ESettingSlot::StockBasket).m_eOrderType = static_cast<EOrderType>(4);
                          })));
        EXPECT_EQ(static_cast<int>(codes.at(0).m_eOrderType), 4) << kind;
        EXPECT_EQ(codes.at(0).m_ePriceType, EPriceType::Buy1) << kind;
    }
}

// Volumes outside the range of int.

TEST_F(BasketRows, VolumeBeyondAnIntIsNone) {
    ASSERT_TRUE(check(basket(25, {{"600001", 2000000}}), strategy().volume(2000)));
    EXPECT_EQ(splitVolume(), kUnsetInt);
    EXPECT_TRUE(codes.empty());
    host.trade.splitCalls.clear();
    ASSERT_TRUE(check(basket(25, {{"600001", 2000000}}), strategy().volume(-2000)));
    EXPECT_TRUE(host.trade.splitCalls.empty()); // dropped as negative, although outside the range of int
}

TEST_F(BasketRows, WeightsThatNearlyCancelGiveNoVolume) {
    addInstrument("600003", 10);
    COrderParam order = basket(25, {{"600001", 0}, {"600002", 0}, {"600003", 0}});
    order.m_orders[0].m_dWeight = 0.1;
    order.m_orders[1].m_dWeight = 0.2;
    order.m_orders[2].m_dWeight = -0.3;
    ASSERT_NE(0.1 + 0.2 + -0.3, 0.0);
    ASSERT_TRUE(check(order, strategy().amount(1e6)));
    ASSERT_EQ(host.trade.splitCalls.size(), 2u); // the negative share is dropped
    EXPECT_EQ(host.trade.splitCalls[0].volume, kUnsetInt);
    EXPECT_EQ(host.trade.splitCalls[1].volume, kUnsetInt);
    EXPECT_TRUE(codes.empty());
}

TEST_F(BasketRows, PriceOfZeroBuysNoVolume) {
    host.rules.marketPrices = {EPriceType::Latest};
    quote()->otherCalc = 0;
    ASSERT_TRUE(check(basket(25, {{"600001", 0}}), strategy().amount(1e6)));
    EXPECT_EQ(splitVolume(), kUnsetInt);
    EXPECT_TRUE(codes.empty());
}

// Money.

TEST_F(BasketRows, MoneyIsSharedByTheNumbersOfListsOnly) {
    const auto order = [](int number) {
        return basket(number, {{"600001", 30}}).set([](auto& o) {
            o.m_orders[0].m_dWeight = 1;
            o.m_orders[0].m_eOperationType = 18;
        });
    };
    for (const int number : {25, 26, 33}) {
        ASSERT_TRUE(check(order(number), strategy().amount(1000).volume(2)));
        EXPECT_EQ(splitVolume(), 100) << number;
    }
    for (const int number : {36, 110, 119}) {
        ASSERT_TRUE(check(order(number), strategy().amount(1000).volume(2)));
        EXPECT_EQ(splitVolume(), 60) << number;
    }
}

TEST_F(BasketRows, UnknownCodesHaveNoShareOfTheMoney) {
    for (const double weight : {0.0, 1.0}) {
        EXPECT_EQ(splitVolumes(weighted({{"600001", weight}, {"600002", weight}, {"nobody", weight}}),
                               strategy().amount(9000)),
                  (std::vector<int>{450, 225}))
            << weight;
    }
}

TEST_F(BasketRows, SharesOfRowsThatAreDroppedAreNotSpentOnOthers) {
    for (const double weight : {0.0, 1.0}) {
        const COrderParam order = weighted({{"600001", weight}, {"600002", weight}});
        quote("SH600002")->m_nDayCount = 0;
        EXPECT_EQ(splitVolumes(order, strategy().amount(9000)), std::vector<int>{450}) << weight;
        quote("SH600002")->m_nDayCount = 1;
        host.types.types.erase({100003, "SH600002"});
        EXPECT_EQ(splitVolumes(order, strategy().amount(9000)), std::vector<int>{450}) << weight;
        host.types.types.insert({100003, "SH600002"});
    }
}

TEST_F(BasketRows, MoneyIsWeightedThenSharedThenPriced) {
    // Each case gives a whole number with this order of steps. Any other order is one too low in some case.
    struct CCase {
        double amount, weight, otherWeight, price;
        int volume;
    };
    for (const CCase& c :
         {CCase{4900, 1, 48, 1, 100}, CCase{40500, 1, 2, 2.7, 5000}, CCase{15000, 7, 7, 10, 750}}) {
        quote()->otherCalc = c.price;
        const auto volumes = splitVolumes(weighted({{"600001", c.weight}, {"600002", c.otherWeight}}),
                                          strategy().amount(c.amount));
        EXPECT_EQ(volumes.at(0), c.volume) << c.amount;
    }
}

TEST_F(BasketRows, EqualShareIsTakenBeforeItIsPriced) {
    addInstrument("600003", 10);
    quote()->otherCalc = 2.7; // another order of the steps would give 9999
    EXPECT_EQ(splitVolumes(weighted({{"600001", 0}, {"600002", 0}, {"600003", 0}}), strategy().amount(81000)),
              (std::vector<int>{10000, 1350, 2700}));
}

TEST_F(BasketRows, MoneyKeepsRowsOfNothingInTheCount) {
    ASSERT_TRUE(check(basket(25, {{"600001", 0}, {"600002", -5}}), strategy().amount(4000)));
    EXPECT_EQ(host.trade.splitCalls.at(0).volume, 200);
    EXPECT_EQ(host.trade.splitCalls.at(1).volume, 100);
    ASSERT_TRUE(check(basket(36, {{"600001", 0}}), strategy().amount(4000)));
    EXPECT_EQ(splitVolume(), 0);
}

} // namespace
