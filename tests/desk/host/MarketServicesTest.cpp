#include "desk/host/DeskExchangeClient.h"
#include "desk/host/DeskInstrumentTypes.h"
#include "desk/host/DeskLuaModuleCtrl.h"
#include "desk/host/DeskQuoteClient.h"
#include "desk/market/Market.h"
#include "tests/support/FakeClock.h"

#include <gtest/gtest.h>

namespace desk {
namespace {

CInstrumentEntry makeInstrument() {
    CInstrumentEntry entry;
    entry.market = "SH";
    entry.code = "688105";
    entry.name = "新辰芯片";
    entry.productId = "STOCK";
    entry.types = {100028, 1172};
    entry.unit = 1;
    entry.uiUnit = 200;
    entry.referencePrice = 50;
    entry.transferKind = 2;
    entry.multiplier = 10;
    return entry;
}

class MarketServices : public testing::Test {
protected:
    MarketServices() {
        m_quote.stockKey = "SH688105";
        m_quote.last = 51;
    }
    const QString m_key = QStringLiteral("SH688105");
    const QString m_unknown = QStringLiteral("SH688106");
    CQuoteEntry m_quote;
    CFakeClock m_clock;
};

TEST_F(MarketServices, ExchangeClientKnowsTheFoldersInstruments) {
    CDeskExchangeClient exchange({makeInstrument()});
    EXPECT_TRUE(exchange.hasStock(m_key));
    EXPECT_FALSE(exchange.hasStock(m_unknown));
    EXPECT_FALSE(exchange.getCodeInfo(m_unknown));
    const TC::CInstrumentDetailPtr detail = exchange.getCodeInfo(m_key);
    ASSERT_TRUE(detail);
    EXPECT_EQ(detail->m_strMarket, "SH");
    EXPECT_EQ(detail->m_strCode, "688105");
    EXPECT_EQ(detail->m_strName, "新辰芯片");
    EXPECT_EQ(detail->m_strProductId, "STOCK");
    EXPECT_EQ(detail->m_dReferencePrice, 50);
    EXPECT_EQ(detail->m_tradeInfo.m_nTransferKind, 2);
    EXPECT_EQ(detail->m_dMultiplier, 10);
}

CInstrumentEntry makeKind(EInstrumentKind kind, const std::string& market, const std::string& code) {
    CInstrumentEntry entry;
    entry.market = market;
    entry.code = code;
    entry.kind = kind;
    return entry;
}

/// Calls every query of the exchange client with the name. Returns one letter for each query that is true.
std::string marketsOf(CDeskExchangeClient& exchange, const char* name) {
    const QString text = QString::fromLatin1(name);
    std::string markets;
    const auto note = [&](bool has, char letter) {
        if (has) markets += letter;
    };
    note(exchange.hasStock(text), 's');
    note(exchange.hasFuture(text), 'f');
    note(exchange.hasOption(text), 'o');
    note(exchange.hasFutureOption(text), 'p');
    note(exchange.hasSkstock(text), 'z');
    note(exchange.hasHkstock(text), 'h');
    note(exchange.hasGold(text), 'g');
    note(exchange.hasNeeq(text), 'n');
    return markets;
}

TEST_F(MarketServices, EachMarketHasOneKindAndDerivativesHaveTheirPlainCodeToo) {
    using Kind = EInstrumentKind;
    CDeskExchangeClient exchange(
        {makeInstrument(), makeKind(Kind::Future, "CF", "IF2609"),
         makeKind(Kind::FutureOption, "CF", "IO2609-C-4000"), makeKind(Kind::StockOption, "SHO", "10005001"),
         makeKind(Kind::Sgt, "SGT", "00001"), makeKind(Kind::Hgt, "HGT", "00001"),
         makeKind(Kind::Gold, "GOLD", "AU99"), makeKind(Kind::Neeq, "NEEQ", "430001")});
    const std::pair<const char*, const char*> rows[] = {
        {"SH688105", "s"},    {"688105", ""},         {"IF2609", "f"},
        {"CFIF2609", "f"},    {"if2609", ""},         {"10005001", "o"},
        {"SHO10005001", "o"}, {"IO2609-C-4000", "p"}, {"SGT00001", "z"},
        {"HGT00001", "h"},    {"00001", ""},          {"GOLDAU99", "g"},
        {"AU99", ""},         {"NEEQ430001", "n"},    {"", ""}};
    for (const auto& [name, markets] : rows)
        EXPECT_EQ(marketsOf(exchange, name), markets) << name;
    EXPECT_EQ(exchange.getCodeInfo(QStringLiteral("IF2609")),
              exchange.getCodeInfo(QStringLiteral("CFIF2609")));
}

TEST_F(MarketServices, TheTradingDayIsTheClocksDate) {
    CDeskExchangeClient exchange({});
    EXPECT_EQ(exchange.getMaxTradingDay(), "20260105");
}

TEST_F(MarketServices, TypesAndUnitsAreTheInstruments) {
    const CMarket market({makeInstrument()}, {}, {});
    CDeskInstrumentTypes types(market);
    EXPECT_TRUE(types.isTypedStock(1172, "SH", "688105"));
    EXPECT_FALSE(types.isTypedStock(126, "SH", "688105"));
    EXPECT_EQ(types.getTradeMinUnit("SH", "688105", TC::EOperationType::Buy), 1);
    EXPECT_EQ(types.getUiMinUnit("SH", "688105", true), 200);
}

TEST_F(MarketServices, AnUnknownInstrumentHasNoTypeAndAUnitOfOne) {
    const CMarket market({}, {}, {});
    CDeskInstrumentTypes types(market);
    EXPECT_FALSE(types.isTypedStock(100028, "SH", "688105"));
    EXPECT_EQ(types.getTradeMinUnit("SH", "688105", TC::EOperationType::Sell), 1);
    EXPECT_EQ(types.getUiMinUnit("SH", "688105", false), 1);
}

TEST_F(MarketServices, QuoteClientGivesTheLatestQuote) {
    CQuoteEntry later = m_quote;
    later.last = 52;
    CMarket market({makeInstrument()}, {m_quote}, {{1, later}});
    CDeskQuoteClient quotes(market);
    ASSERT_TRUE(quotes.getStockPrice(m_key));
    const TC::CPriceDataPtr before = quotes.getStockPrice(m_key);
    market.applyChanges(1, [](const std::string&) {});
    EXPECT_EQ(quotes.getStockPrice(m_key)->m_dLastPrice, 52);
    EXPECT_EQ(before->m_dLastPrice, 51) << "a quote that was given out never changes";
    EXPECT_FALSE(quotes.getStockPrice(m_unknown));
}

TEST_F(MarketServices, ASubscriptionIsNeverEmpty) {
    const CMarket market({}, {}, {});
    CDeskQuoteClient quotes(market);
    EXPECT_TRUE(quotes.subscribe(m_unknown, {}, TC::ESubscribeType::Plain));
}

TEST_F(MarketServices, SubscriptionsGetTheChangesOfTheirInstrumentUntilTheyEnd) {
    CMarket market({makeInstrument()}, {m_quote}, {});
    CDeskQuoteClient quotes(market);
    std::vector<double> prices;
    const auto take = [&](const TC::CPriceDataPtr& price) { prices.push_back(price->m_dLastPrice); };
    auto first = quotes.subscribe(m_key, take, TC::ESubscribeType::Plain);
    const auto second = quotes.subscribe(m_key, take, TC::ESubscribeType::Plain);
    const auto other = quotes.subscribe(m_unknown, take, TC::ESubscribeType::Plain);
    const auto silent = quotes.subscribe(m_key, {}, TC::ESubscribeType::Plain);
    quotes.publish("SH688105");
    EXPECT_EQ(prices, std::vector<double>(2, 51));
    first.reset();
    quotes.publish("SH688105");
    EXPECT_EQ(prices, std::vector<double>(3, 51));
}

TEST_F(MarketServices, ASubscriptionMayEndDuringItsCall) {
    CMarket market({makeInstrument()}, {m_quote}, {});
    CDeskQuoteClient quotes(market);
    boost::shared_ptr<TC::CQuoteRequest> request;
    int calls = 0;
    const auto take = [&](const TC::CPriceDataPtr&) {
        ++calls;
        request.reset();
    };
    request = quotes.subscribe(m_key, take, TC::ESubscribeType::Plain);
    quotes.publish("SH688105");
    quotes.publish("SH688105");
    EXPECT_EQ(calls, 1);
}

TEST_F(MarketServices, OnlyTheFoldersSwitchesAreOn) {
    CDeskLuaModuleCtrl switches({"one"});
    EXPECT_TRUE(switches.checkModule({"mdl_order", "one"}));
    EXPECT_FALSE(switches.checkModule({"mdl_order", "two"}));
    EXPECT_FALSE(switches.checkModule({"mdl_other", "one"}));
    EXPECT_FALSE(switches.checkModule({"mdl_order", "one", "more"}));
    EXPECT_FALSE(switches.checkModule({}));
}

} // namespace
} // namespace desk
