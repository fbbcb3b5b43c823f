// The steps that need only an instrument: no order, strategy or list of accounts is made here.
#include "orderservice/check/InstrumentSteps.h"

#include "tests/support/FakeClock.h"
#include "tests/support/FakeHost.h"

#include <boost/make_shared.hpp>
#include <gtest/gtest.h>

#include <cmath>
#include <vector>

namespace {

using namespace TC;

class InstrumentSteps : public testing::Test {
protected:
    inline static const QString kKey = QStringLiteral("SH600000");
    static constexpr auto kBuy = EOperationType::Buy;

    CInstrumentRun loaded() const {
        CInstrumentRun run;
        run.op = kBuy;
        run.code = kKey;
        loadInstrument(run);
        return run;
    }
    /// A run for stock SH600000 whose setting has the price type and whose price is 10.
    CInstrumentRun priced(EPriceType type) const {
        CInstrumentRun run = loaded();
        run.setting.m_ePriceType = type;
        run.calcPrice = run.orderPrice = 10.0;
        return run;
    }
    boost::shared_ptr<fake::CQuote> quote() const { return host.quotes.quotes.at(kKey); }

    CFakeClock clock;
    CFakeHost host;
};

TEST_F(InstrumentSteps, LoadingSubscribesAndStartsTheRecord) {
    const CInstrumentRun run = loaded();
    EXPECT_EQ(host.quotes.subscribed, std::vector<QString>{kKey});
    EXPECT_EQ(host.quotes.liveSubscriptions, 1);
    ASSERT_TRUE(run.detail);
    EXPECT_EQ(run.stock().m_strMarket, "SH");
    EXPECT_EQ(run.stock().m_strCode, "600000");
    EXPECT_EQ(run.record.m_eOperationType, kBuy);
    EXPECT_EQ(run.record.m_strUserId, "tester");
}

TEST_F(InstrumentSteps, SubscriptionEndsWithTheRun) {
    loaded();
    EXPECT_EQ(host.quotes.liveSubscriptions, 0);
}

TEST_F(InstrumentSteps, UnknownInstrumentGetsARecordWithoutMarketAndCode) {
    CInstrumentRun run;
    run.code = QStringLiteral("SH999999");
    loadInstrument(run);
    EXPECT_FALSE(run.detail);
    EXPECT_EQ(run.stock().m_strMarket + run.stock().m_strCode, "");
    EXPECT_EQ(run.record.m_strUserId, "tester");
}

TEST_F(InstrumentSteps, PricesThatAreNotFiniteAreNotSet) {
    for (const double price : {std::nan(""), HUGE_VAL, -HUGE_VAL}) {
        quote()->all(price);
        quote()->m_dFallbackPrice = price;
        EXPECT_EQ(originPriceOf(quote(), EPriceType::Latest, kBuy), kUnsetDouble);
        EXPECT_EQ(calcPriceOf(quote(), EPriceType::Latest, kBuy, 0), kUnsetDouble);
        EXPECT_EQ(orderPriceOf(quote(), EPriceType::Latest, kBuy, 0), kUnsetDouble);
        EXPECT_EQ(fallbackPriceOf(quote()), kUnsetDouble);
        EXPECT_FALSE(isPriceGiven(price));
    }
}

TEST_F(InstrumentSteps, PricesWithoutAQuoteAreNotSet) {
    EXPECT_EQ(originPriceOf(nullptr, EPriceType::Latest, kBuy), kUnsetDouble);
    EXPECT_EQ(calcPriceOf(nullptr, EPriceType::Latest, kBuy, 0), kUnsetDouble);
    EXPECT_EQ(orderPriceOf(nullptr, EPriceType::Latest, kBuy, 0), kUnsetDouble);
    EXPECT_EQ(fallbackPriceOf(nullptr), kUnsetDouble);
}

TEST_F(InstrumentSteps, PriceIsGivenUnlessItIsZeroOrExactlyNotSet) {
    for (const double price : {0.0, 1e-5, -1e-5, kUnsetDouble})
        EXPECT_FALSE(isPriceGiven(price)) << price;
    for (const double price : {2e-5, -2e-5, 10.5, std::nextafter(kUnsetDouble, 0.0)})
        EXPECT_TRUE(isPriceGiven(price)) << price;
}

TEST_F(InstrumentSteps, QuoteIsUsableIfItHasAPriceOfTheTypeOrTheTypeNeedsNone) {
    EXPECT_TRUE(isQuoteUsable(quote(), EPriceType::Latest, kBuy));
    quote()->all(kUnsetDouble);
    EXPECT_FALSE(isQuoteUsable(quote(), EPriceType::Latest, kBuy));
    for (const EPriceType type : {EPriceType::Specified, EPriceType::NoQuote}) {
        EXPECT_TRUE(isQuoteUsable(quote(), type, kBuy));
        EXPECT_FALSE(isQuoteUsable(nullptr, type, kBuy));
    }
}

TEST_F(InstrumentSteps, UsableQuoteIsReadOnce) {
    EXPECT_EQ(waitForQuote(kKey, EPriceType::Latest, kBuy, EQuoteWait::UnlessSpecified), quote());
    EXPECT_EQ(host.quotes.reads[kKey], 1);
    EXPECT_TRUE(clock.sleeps().empty());
}

TEST_F(InstrumentSteps, MissingQuoteIsWaitedForTwoSeconds) {
    const QString missing = QStringLiteral("SH999999");
    EXPECT_FALSE(waitForQuote(missing, EPriceType::Latest, kBuy, EQuoteWait::UnlessSpecified));
    EXPECT_EQ(clock.sleeps(), (std::vector<double>{1.0, 1.0}));
    EXPECT_EQ(host.quotes.reads[missing], 3);
}

TEST_F(InstrumentSteps, SpecifiedPriceWaitsOnlyUnderTheRuleAlsoSpecified) {
    const QString missing = QStringLiteral("SH999999");
    EXPECT_FALSE(waitForQuote(missing, EPriceType::Specified, kBuy, EQuoteWait::UnlessSpecified));
    EXPECT_TRUE(clock.sleeps().empty());
    EXPECT_FALSE(waitForQuote(missing, EPriceType::Specified, kBuy, EQuoteWait::AlsoSpecified));
    EXPECT_EQ(clock.sleeps().size(), 2u);
}

TEST_F(InstrumentSteps, LimitThatIsNotFiniteIsSwitchedOff) {
    COrderSetting setting;
    setting.m_bFirstLimitOn = setting.m_bSecondLimitOn = true;
    setting.m_dFirstLimit = std::nan("");
    setting.m_dSecondLimit = 9.5;
    clearUnusableLimits(setting);
    EXPECT_EQ(setting.m_dFirstLimit, kUnsetDouble);
    EXPECT_FALSE(setting.m_bFirstLimitOn);
    EXPECT_EQ(setting.m_dSecondLimit, 9.5);
    EXPECT_TRUE(setting.m_bSecondLimitOn);
    setting.m_dSecondLimit = HUGE_VAL;
    clearUnusableLimits(setting);
    EXPECT_EQ(setting.m_dSecondLimit, kUnsetDouble);
    EXPECT_FALSE(setting.m_bSecondLimitOn);
}

TEST_F(InstrumentSteps, MoneyIsDividedByTheSpecifiedPriceOrItsFallback) {
    CInstrumentRun run = priced(EPriceType::Specified);
    EXPECT_EQ(volumeForMoney(run, 1005), 100);
    run.calcPrice = kUnsetDouble;
    EXPECT_EQ(volumeForMoney(run, 1005), kUnsetInt);
    quote()->m_dFallbackPrice = 5.0;
    run.priceData = quote();
    EXPECT_EQ(volumeForMoney(run, 1005), 201);
}

TEST_F(InstrumentSteps, MoneyIsDividedByACalculationPriceThatIsReadAgain) {
    CInstrumentRun run = priced(EPriceType::Latest);
    run.priceData = quote();
    quote()->all(20.0);
    EXPECT_EQ(volumeForMoney(run, 1005), 50);
    quote()->all(0.0);
    EXPECT_EQ(volumeForMoney(run, 1005), kUnsetInt);
}

TEST_F(InstrumentSteps, FixedPriceReplacesAPriceThatCanBeUsed) {
    CInstrumentRun run = priced(EPriceType::Specified);
    EXPECT_EQ(volumeForMoney(run, 1005, 100.0), 10);
    run.calcPrice = kUnsetDouble;
    EXPECT_EQ(volumeForMoney(run, 1005, 100.0), kUnsetInt);
}

TEST_F(InstrumentSteps, MissingMoneyBuysNothing) {
    const CInstrumentRun run = priced(EPriceType::Specified);
    for (const double amount : {kUnsetDouble, std::nan(""), HUGE_VAL, 2147483647.5})
        EXPECT_EQ(volumeForMoney(run, amount), kUnsetInt) << amount;
    EXPECT_EQ(volumeForMoney(run, 3e9), 300000000);
}

TEST_F(InstrumentSteps, VolumeIsRoundedDownToTheUnit) {
    const CInstrumentRun run = loaded();
    EXPECT_EQ(roundToUnit(run, 199), 100);
    EXPECT_EQ(roundToUnit(run, 99), 0);
    EXPECT_EQ(roundToUnit(run, kUnsetInt), kUnsetInt);
}

TEST_F(InstrumentSteps, RecordIsFilledForOneAccount) {
    CInstrumentRun run = priced(EPriceType::Specified);
    host.rules.onFixTimeRange = [](CCodeOrderParam& record) { record.m_stock.m_strCode = "of the host"; };
    const auto account = boost::make_shared<CAccountInfo>();
    CCodeOrderParam record = run.record;
    stampRecord(run, kBuy, account, 300, static_cast<EPositionType>(2), record);
    EXPECT_EQ(record.m_account, account);
    EXPECT_EQ(record.m_nVolume, 300);
    EXPECT_EQ(record.m_dPrice, 10.0);
    EXPECT_EQ(record.m_ePriceType, EPriceType::Specified);
    EXPECT_EQ(record.m_eHedgeFlag, EHedge_Flag_Type::Speculation);
    EXPECT_EQ(record.m_ePositionType, static_cast<EPositionType>(2));
    EXPECT_EQ(record.m_stock.m_strCode, "600000");
    EXPECT_EQ(host.rules.settingCalls.all().at(0).operation, kBuy);
}

} // namespace
