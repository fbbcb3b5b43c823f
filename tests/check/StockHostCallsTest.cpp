// The arguments of the host calls for a stock order. Each argument has a different value, so that a mix-up is
// detected.
#include "tests/check/StockCheckFixture.h"

namespace {

using namespace TC;

class StockHostCalls : public StockCheckFixture {
protected:
    StockHostCalls() { host.user.addGroup(EQDBrokerType::Credit, "G", {{"A1", 0.6}, {"A2", 0.4}}); }

    /// A strategy of a family whose broker type is not that of stocks. Its setting has an order kind.
    static CStrategyBuilder otherFamily() {
        return latestPrice().family(EOrderStrategyTradeType::Credit).set([](auto& s) {
            s.m_stockSetting.m_eOrderType = static_cast<EOrderType>(4);
        });
    }
};

TEST_F(StockHostCalls, AccountsAreAskedForUnderTheStrategysFamily) {
    ASSERT_TRUE(check(COrderBuilder(24).line(kCode, 10.5, 100), otherFamily()));
    const auto calls = host.user.accountsCalls.all();
    ASSERT_EQ(calls.size(), 1u);
    EXPECT_EQ(calls[0].broker, EQDBrokerType::Credit);
    EXPECT_EQ(calls[0].kind, ESelectedAccountType::Group);
    EXPECT_EQ(calls[0].name, QStringLiteral("G"));
    EXPECT_FALSE(calls[0].simple);
}

TEST_F(StockHostCalls, PriceTypeIsAskedForWithTheWholeOrder) {
    ASSERT_TRUE(check(COrderBuilder(24).line(kCode, 10.5, 100), otherFamily()));
    const auto calls = host.user.priceTypeCalls.all();
    ASSERT_EQ(calls.size(), 1u);
    EXPECT_EQ(calls[0].type, EPriceType::Latest);
    EXPECT_EQ(calls[0].operation, EOperationType::Sell);
    EXPECT_EQ(calls[0].broker, EQDBrokerType::Credit);
    EXPECT_EQ(calls[0].market, "SH");
    EXPECT_EQ(calls[0].code, "600000");
    EXPECT_EQ(calls[0].orderType, static_cast<EOrderType>(4));
}

TEST_F(StockHostCalls, EveryPriceIsReadForTheOrdersOperation) {
    const std::map<int, EOperationType> operations{{23, EOperationType::Buy}, {24, EOperationType::Sell}};
    for (const auto& [number, operation] : operations) {
        host.setPrice(QStringLiteral("SH600000"), 10.5); // a new quote without recorded requests
        ASSERT_TRUE(check(COrderBuilder(number).line(kCode), latestPrice().amount(100000)));
        std::set<std::string> kinds;
        for (const fake::CPriceCall& call : quote()->calls.all()) {
            kinds.insert(call.kind);
            EXPECT_EQ(call.type, EPriceType::Latest) << call.kind;
            EXPECT_EQ(call.operation, operation) << call.kind;
            EXPECT_EQ(call.number, 0) << call.kind;
            EXPECT_FALSE(call.hasAutoPrice) << call.kind;
        }
        EXPECT_EQ(kinds, (std::set<std::string>{"origin", "calc", "order"})) << number;
    }
}

TEST_F(StockHostCalls, AmountReadsTheCalculationPriceAnew) {
    ASSERT_TRUE(check(COrderBuilder(23).line(kCode), latestPrice().amount(100000)));
    int reads = 0;
    for (const fake::CPriceCall& call : quote()->calls.all())
        reads += call.kind == "calc" ? 1 : 0;
    EXPECT_EQ(reads, 2);
}

TEST_F(StockHostCalls, SettingBecomesEachAccountsRecord) {
    quote()->otherCalc = 10.2;
    quote()->otherOrder = 10.7;
    ASSERT_TRUE(check(COrderBuilder(24).line(kCode, 3.0, 1000), otherFamily()));
    const auto calls = host.rules.settingCalls.all();
    ASSERT_EQ(calls.size(), 2u);
    EXPECT_EQ(calls[0].volume, 600);
    EXPECT_EQ(calls[1].volume, 400);
    for (const fake::CSettingCall& call : calls) {
        EXPECT_EQ(call.setting.m_ePriceType, EPriceType::Latest);
        EXPECT_EQ(call.setting.m_eOrderType, static_cast<EOrderType>(4));
        EXPECT_EQ(call.operation, EOperationType::Sell);
        EXPECT_EQ(call.price, 10.7);
        EXPECT_EQ(call.quote, quote());
    }
}

} // namespace
