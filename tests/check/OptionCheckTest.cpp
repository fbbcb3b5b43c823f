#include "tests/check/FamilyFixture.h"

namespace {

using namespace TC;

class OptionCheck : public FamilyFixture {
protected:
    inline static const QString kCode = QStringLiteral("10000001");

    OptionCheck()
        : FamilyFixture(EOrderStrategyTradeType::StockOption, &COrderServiceBase::checkAndFillOrderOption) {
        host.exchange.addOther("option", kCode);
        addQuote(kCode, 0.05);
    }
};

TEST_F(OptionCheck, TakesItsNumbers) {
    EXPECT_EQ(acceptedNumbers(kCode), numbers({{48, 57}}));
}

TEST_F(OptionCheck, OptionsAreKnownByHasOption) {
    ASSERT_TRUE(check(COrderBuilder(48).line(kCode, 0.05, 10)));
    EXPECT_EQ(codes.size(), 2u);
    EXPECT_EQ(static_cast<int>(codes[0].m_eOperationType), 32);
    EXPECT_FALSE(check(COrderBuilder(48).line(QStringLiteral("600000"), 0.05, 10)));
    EXPECT_EQ(onlyError(), QStringLiteral("[文件单]　通道号: 3, 下单代码 [SH600000] 不合法!"));
}

TEST_F(OptionCheck, LockingNamesTheUnderlyingStock) {
    EXPECT_TRUE(check(COrderBuilder(56).line(QStringLiteral("600000"), 10.5, 100)));
    EXPECT_EQ(host.trade.splitCalls.back().code, "600000");
    EXPECT_TRUE(check(COrderBuilder(57).line(QStringLiteral("sz000001"), 10.5, 100)));
    EXPECT_FALSE(check(COrderBuilder(57).line(kCode, 10.5, 100)));
    EXPECT_EQ(onlyError(), QStringLiteral("[文件单]　通道号: 3, 下单代码 [10000001] 不合法!"));
}

TEST_F(OptionCheck, FullCodeThatDoesNotTradeStaysAsItCame) {
    host.exchange.addOther("option", QStringLiteral("ab123456"));
    ASSERT_TRUE(check(COrderBuilder(48).line(QStringLiteral("ab123456"), 0.05, 10)));
    EXPECT_EQ(host.quotes.subscribed, std::vector<QString>{QStringLiteral("ab123456")});
    host.addStock("SH", "600999", 10.5);
    host.types.types.erase({knservice::kTypeTradableStock, "SH600999"});
    EXPECT_TRUE(check(COrderBuilder(56).line(QStringLiteral("SH600999"), 10.5, 100)));
    EXPECT_FALSE(check(COrderBuilder(56).line(QStringLiteral("sh600999"), 10.5, 100)));
    EXPECT_EQ(onlyError(), QStringLiteral("[文件单]　通道号: 3, 下单代码 [sh600999] 不合法!"));
}

TEST_F(OptionCheck, CodeOfTheStrategyIsNotTested) {
    EXPECT_TRUE(check(COrderBuilder(48).line(QString(), 0.05, 10), strategy().code(QStringLiteral("none"))));
}

TEST_F(OptionCheck, AmountIsNotRounded) {
    ASSERT_TRUE(check(COrderBuilder(48).line(kCode, 0.3), strategy().amount(100)));
    EXPECT_EQ(splitVolume(), 333);
}

TEST_F(OptionCheck, AmountBuysAtTheRealPriceWhereStocksHaveAParPrice) {
    host.addStock("SH", "204001", 50, 10);
    host.types.types.insert({knservice::kTypeParPriced, "SH204001"});
    ASSERT_TRUE(check(COrderBuilder(56).line(QStringLiteral("204001"), 50), strategy().amount(100000)));
    EXPECT_EQ(splitVolume(), 2000);
}

TEST_F(OptionCheck, UnusablePriceNamesTheCodeAlsoWhereItIsEmpty) {
    host.user.invalidPriceTypes = {EPriceType::Latest};
    EXPECT_FALSE(check(COrderBuilder(48), priced(EPriceType::Latest)));
    EXPECT_EQ(onlyError(), QStringLiteral("[文件单]　证券 [] 价5()无效, 无法下单!"));
    host.orders.errors.clear();
    EXPECT_FALSE(check(COrderBuilder(48).line(kCode, 0.05, 1), priced(EPriceType::Latest)));
    EXPECT_EQ(onlyError(), QStringLiteral("[文件单]　证券 [10000001] 价5(10000001)无效, 无法下单!"));
    host.orders.errors.clear();
    EXPECT_FALSE(
        check(COrderBuilder(56).line(QStringLiteral("600000"), 10.5, 1), priced(EPriceType::Latest)));
    EXPECT_EQ(onlyError(), QStringLiteral("[文件单]　证券 [SH600000] 价5(600000)无效, 无法下单!"));
}

TEST_F(OptionCheck, SettingTextIsReadWhateverTheKindAndTheSettingKeepsItsOwn) {
    host.rules.algoPlatforms[static_cast<EOrderType>(7)] = ETradePlatform::Plain;
    ASSERT_TRUE(check(COrderBuilder(48).line(kCode, 0.05, 1).set([](auto& o) {
        o.m_strOrderSetting = "text";
        o.m_eOrderType = static_cast<EOrderType>(7);
    }),
                      strategy().set([](auto& s) {
                          s.setting(ESettingSlot::StockOption).m_eOrderType = static_cast<EOrderType>(4);
                      })));
    EXPECT_EQ(host.rules.settingTexts.size(), 1u);
    EXPECT_EQ(static_cast<int>(codes.at(0).m_eOrderType), 4);
}

TEST_F(OptionCheck, OnlyQuotedPricesAreWaitedFor) {
    host.quotes.quotes.clear();
    EXPECT_TRUE(check(COrderBuilder(48).line(kCode, 0.05, 1)));
    EXPECT_TRUE(clock.sleeps().empty());
    EXPECT_FALSE(check(COrderBuilder(48).line(kCode, 0.05, 1), priced(EPriceType::Latest)));
    EXPECT_EQ(clock.sleeps(), (std::vector<double>{1, 1}));
}

TEST_F(OptionCheck, StocksAreLookedUpByMarketAndCodeWithNothingBetween) {
    host.rules.keySeparator = QStringLiteral(".");
    EXPECT_TRUE(check(COrderBuilder(56).line(QStringLiteral("600000"), 10.5, 100)));
    EXPECT_EQ(host.quotes.subscribed, std::vector<QString>{QStringLiteral("SH600000")});
    host.exchange.stocks = {{QStringLiteral("SH.600000"), boost::make_shared<CInstrumentDetail>()}};
    EXPECT_FALSE(check(COrderBuilder(56).line(QStringLiteral("600000"), 10.5, 100)));
    EXPECT_EQ(onlyError(), QStringLiteral("[文件单]　通道号: 3, 下单代码 [600000] 不合法!"));
}

} // namespace
