#include "desk/market/Market.h"

#include <gtest/gtest.h>

#include <thread>

namespace desk {
namespace {

CInstrumentEntry instrument(const std::string& market, const std::string& code) {
    CInstrumentEntry entry;
    entry.market = market;
    entry.code = code;
    return entry;
}

CQuoteEntry quote(const std::string& key, double last) {
    CQuoteEntry entry;
    entry.stockKey = key;
    entry.last = last;
    return entry;
}

/// Two instruments, one of them without a quote so far, and three changes.
CMarket makeMarket() {
    return {{instrument("SH", "600000"), instrument("SZ", "000001")},
            {quote("SH600000", 10)},
            {{1, quote("SH600000", 11)}, {2, quote("SZ000001", 20)}, {2, quote("SH600000", 12)}}};
}

TEST(Market, KnowsItsInstrumentsAndQuotesAndNoOthers) {
    const CMarket market = makeMarket();
    ASSERT_TRUE(market.instrument("SH600000").has_value());
    EXPECT_EQ(market.instrument("SH600000")->code, "600000");
    EXPECT_FALSE(market.instrument("SH600001").has_value());
    EXPECT_EQ(market.quote("SH600000")->last, 10);
    EXPECT_FALSE(market.quote("SZ000001").has_value());
}

TEST(Market, FindsADerivativeByItsPlainCode) {
    CInstrumentEntry future = instrument("CF", "IF2609");
    future.kind = EInstrumentKind::Future;
    const CMarket market({future, instrument("SH", "600000")}, {quote("CFIF2609", 4000)}, {});
    ASSERT_TRUE(market.instrument("IF2609").has_value());
    EXPECT_EQ(market.instrument("IF2609")->key(), "CFIF2609");
    EXPECT_EQ(market.quote("IF2609")->last, 4000);
    EXPECT_EQ(market.quote("CFIF2609")->last, 4000);
    EXPECT_FALSE(market.instrument("600000").has_value());
}

TEST(Market, AppliesChangesInOrderAsTheyFallDue) {
    CMarket market = makeMarket();
    std::vector<std::string> changed;
    const auto note = [&](const std::string& key) { changed.push_back(key); };
    EXPECT_TRUE(market.applyChanges(0.999, note));
    EXPECT_TRUE(changed.empty());
    EXPECT_TRUE(market.applyChanges(1, note)) << "a change is due at its very second";
    EXPECT_EQ(changed, std::vector<std::string>{"SH600000"});
    EXPECT_EQ(market.quote("SH600000")->last, 11);
    EXPECT_FALSE(market.applyChanges(60, note));
    EXPECT_EQ(changed, (std::vector<std::string>{"SH600000", "SZ000001", "SH600000"}));
    EXPECT_EQ(market.quote("SZ000001")->last, 20);
    EXPECT_EQ(market.quote("SH600000")->last, 12);
}

TEST(Market, AppliesEachChangeOnce) {
    CMarket market = makeMarket();
    int calls = 0;
    market.applyChanges(60, [&](const std::string&) { ++calls; });
    EXPECT_FALSE(market.applyChanges(60, [&](const std::string&) { ++calls; }));
    EXPECT_EQ(calls, 3);
}

TEST(Market, TheListenerSeesTheNewQuoteAndMayAskForIt) {
    CMarket market = makeMarket();
    std::vector<double> seen;
    market.applyChanges(60, [&](const std::string& key) { seen.push_back(market.quote(key)->last); });
    EXPECT_EQ(seen, (std::vector<double>{11, 20, 12}));
}

TEST(Market, QuotesAreWholeWhileTheyChange) {
    std::vector<CQuoteChange> changes;
    constexpr int kChangeCount = 2000;
    for (int i = 1; i <= kChangeCount; ++i) {
        CQuoteEntry entry = quote("SH600000", i);
        entry.previousClose = i;
        changes.push_back({static_cast<double>(i), entry});
    }
    CQuoteEntry first = quote("SH600000", 0.5);
    first.previousClose = 0.5;
    CMarket market({instrument("SH", "600000")}, {first}, changes);
    int torn = 0;
    std::thread reader([&] {
        for (auto now = market.quote("SH600000"); now->last < kChangeCount; now = market.quote("SH600000")) {
            if (now->last != now->previousClose) ++torn;
        }
    });
    for (int i = 1; i <= kChangeCount; ++i)
        market.applyChanges(i, [](const std::string&) {});
    reader.join();
    EXPECT_EQ(torn, 0);
}

} // namespace
} // namespace desk
