#include "tests/check/FamilyFixture.h"

namespace {

using namespace TC;

const QString kCode = QStringLiteral("IF2601");

class FutureCheck : public FamilyFixture {
protected:
    FutureCheck() : FutureCheck(EOrderStrategyTradeType::Future, &COrderServiceBase::checkAndFillOrderSpec) {}
    FutureCheck(EOrderStrategyTradeType family, CCheck operation) : FamilyFixture(family, operation) {
        host.exchange.addOther("future", kCode);
        addQuote(kCode, 3500);
    }
};

TEST_F(FutureCheck, OrderBecomesARecordForEachAccount) {
    ASSERT_TRUE(check(COrderBuilder(0).line(kCode, 3501, 10)));
    ASSERT_EQ(codes.size(), 2u);
    EXPECT_EQ(codes[0].m_nVolume, 6);
    EXPECT_EQ(codes[0].m_dPrice, 3501);
    EXPECT_EQ(codes[0].m_stock.m_strCode, "IF2601");
    EXPECT_EQ(host.trade.splitCalls[0].code, "IF2601");
    EXPECT_TRUE(isUnset(codes[0].m_nQuantityKind));
    EXPECT_EQ(weights.size(), 2u);
}

TEST_F(FutureCheck, TakesItsNumbers) {
    EXPECT_EQ(acceptedNumbers(kCode), numbers({{0, 15}}));
}

TEST_F(FutureCheck, SeveralLinesAreRefused) {
    EXPECT_FALSE(check(COrderBuilder(0).line(kCode, 1, 1).line(kCode, 1, 1)));
    EXPECT_EQ(onlyError(), QStringLiteral("[文件单]　通道号: 3, 下单参数不合法!"));
}

TEST_F(FutureCheck, UnknownCodeShowsTheChannelTwice) {
    EXPECT_FALSE(check(COrderBuilder(0).line(QStringLiteral("if2601"), 1, 1)));
    EXPECT_EQ(onlyError(), QStringLiteral("[文件单]　通道号: 3, 下单代码 [3] 不合法!"));
}

TEST_F(FutureCheck, CodeOfTheStrategyIsTestedToo) {
    EXPECT_FALSE(check(COrderBuilder(0), strategy().code(QStringLiteral("none"))));
    EXPECT_EQ(onlyError(), QStringLiteral("[文件单]　通道号: 3, 下单代码 [3] 不合法!"));
    EXPECT_TRUE(check(COrderBuilder(0).line(QString(), 3500, 1), strategy().code(kCode)));
}

TEST_F(FutureCheck, LimitsOfTheLineGoIntoTheSetting) {
    COrderSetting seen;
    host.rules.onSetting = [&](const COrderSetting& setting) { seen = setting; };
    const auto limits = [](double first, double second) {
        return COrderBuilder(0).line(kCode, 3500, 1).set([=](auto& o) {
            o.m_orders[0].m_bHasFirstLimit = o.m_orders[0].m_bHasSecondLimit = true;
            o.m_orders[0].m_dFirstLimit = first;
            o.m_orders[0].m_dSecondLimit = second;
        });
    };
    ASSERT_TRUE(check(limits(3490, kUnsetDouble)));
    EXPECT_TRUE(seen.m_bFirstLimitOn);
    EXPECT_EQ(seen.m_dFirstLimit, 3490);
    EXPECT_FALSE(seen.m_bSecondLimitOn);
    ASSERT_TRUE(check(limits(kUnsetDouble, 3600), strategy().set([](auto& s) {
        auto& setting = s.setting(ESettingSlot::Future);
        setting.m_bFirstLimitOn = true;
        setting.m_dFirstLimit = 5;
    })));
    EXPECT_FALSE(seen.m_bFirstLimitOn);
    EXPECT_EQ(seen.m_dFirstLimit, kUnsetDouble); // overwritten all the same
    EXPECT_TRUE(seen.m_bSecondLimitOn);
}

TEST_F(FutureCheck, SettingTextIsReadUnlessItIsAnAlgorithms) {
    const COrderParam order =
        COrderBuilder(0).line(kCode, 3500, 1).set([](auto& o) { o.m_strOrderSetting = "text"; });
    ASSERT_TRUE(check(order));
    EXPECT_EQ(host.rules.settingTexts, std::vector<QString>{QStringLiteral("text")});
    COrderParam algo = order;
    algo.m_eOrderType = static_cast<EOrderType>(7);
    host.rules.algoPlatforms[algo.m_eOrderType] = ETradePlatform::Plain;
    ASSERT_TRUE(check(algo));
    EXPECT_EQ(host.rules.settingTexts.size(), 1u);
}

TEST_F(FutureCheck, MissingQuoteFailsAlsoWhereThePriceIsGiven) {
    host.quotes.quotes.clear();
    EXPECT_FALSE(check(COrderBuilder(0).line(kCode, 3500, 1)));
    EXPECT_EQ(clock.sleeps(), (std::vector<double>{1, 1}));
    EXPECT_TRUE(onlyError().startsWith(QStringLiteral("[文件单]　合约 [IF2601] ")));
    EXPECT_TRUE(onlyError().endsWith(QStringLiteral("无效, 无法下单!")));
}

TEST_F(FutureCheck, PriceTypeNeedsItsNumber) {
    host.quotes.quotes[kCode]->otherOrigin = kUnsetDouble;
    host.quotes.quotes[kCode]->origin.clear();
    EXPECT_FALSE(check(COrderBuilder(0).line(kCode, 3500, 1), priced(EPriceType::Latest)));
    EXPECT_TRUE(check(COrderBuilder(0).line(kCode, 3500, 1), priced(EPriceType::NoQuote)));
    EXPECT_TRUE(check(COrderBuilder(0).line(kCode, 3500, 1)));
}

TEST_F(FutureCheck, UsersPriceTypesHaveNoSay) {
    host.user.invalidPriceTypes = {EPriceType::Latest};
    EXPECT_TRUE(check(COrderBuilder(0).line(kCode, 3500, 1), priced(EPriceType::Latest)));
}

TEST_F(FutureCheck, AmountHasNoEffect) {
    ASSERT_TRUE(check(COrderBuilder(0).line(kCode, 3500), strategy().amount(1e6).volume(4)));
    EXPECT_EQ(splitVolume(), 4);
}

TEST_F(FutureCheck, ClosingWithoutPositionIsToldAsSuch) {
    host.rules.closes = {6};
    host.trade.split = [](const fake::CSplitCall&, utils::KNError&) { return std::vector<int>{0, 100}; };
    EXPECT_FALSE(check(COrderBuilder(6).line(kCode, 3500, 1)));
    EXPECT_EQ(onlyError(), QStringLiteral("平仓仓位不足"));
    host.orders.errors.clear();
    host.trade.split = [](const fake::CSplitCall&, utils::KNError&) { return std::vector<int>{}; };
    EXPECT_FALSE(check(COrderBuilder(6).line(kCode, 3500, 1)));
    EXPECT_EQ(onlyError(), QStringLiteral("平仓仓位不足"));
}

TEST_F(FutureCheck, OpeningWithoutVolumePassesOn) {
    host.trade.split = [](const fake::CSplitCall&, utils::KNError&) { return std::vector<int>{0, 100}; };
    ASSERT_TRUE(check(COrderBuilder(0).line(kCode, 3500, 1)));
    EXPECT_EQ(codes.size(), 1u);
    host.trade.split = [](const fake::CSplitCall&, utils::KNError& error) {
        error = utils::KNError(1, "why");
        return std::vector<int>{};
    };
    EXPECT_FALSE(check(COrderBuilder(0).line(kCode, 3500, 1)));
    EXPECT_EQ(onlyError(), QStringLiteral("[文件单]　分单失败: why"));
}

TEST_F(FutureCheck, ZeroPriceIsRefused) {
    EXPECT_FALSE(check(COrderBuilder(0).line(kCode, 0, 1)));
    EXPECT_EQ(onlyError(), QStringLiteral("[文件单]　不能以0为模型价报单!"));
}

class FutureOptionCheck : public FutureCheck {
protected:
    FutureOptionCheck()
        : FutureCheck(EOrderStrategyTradeType::FutureOption,
                      &COrderServiceBase::checkAndFillOrderFutureOption) {
        host.exchange.addOther("future option", kCode);
        host.exchange.lists.erase({"future", kCode});
    }
};

TEST_F(FutureOptionCheck, TakesItsNumbersAndCodes) {
    EXPECT_EQ(acceptedNumbers(kCode), numbers({{0, 15}, {100, 100}}));
    EXPECT_TRUE(check(COrderBuilder(100).line(kCode, 3500, 10)));
    EXPECT_FALSE(check(COrderBuilder(100).line(QStringLiteral("x"), 3500, 10)));
    EXPECT_EQ(lastError(), QStringLiteral("[文件单]　通道号: 3, 下单代码 [3] 不合法!"));
}

TEST_F(FutureOptionCheck, SettingTextIsReadWhateverTheKind) {
    host.rules.algoPlatforms[static_cast<EOrderType>(7)] = ETradePlatform::Plain;
    ASSERT_TRUE(check(COrderBuilder(0).line(kCode, 3500, 1).set([](auto& o) {
        o.m_strOrderSetting = "text";
        o.m_eOrderType = static_cast<EOrderType>(7);
    })));
    EXPECT_EQ(host.rules.settingTexts.size(), 1u);
}

TEST_F(FutureOptionCheck, ClosingWithoutPositionIsToldAsSuch) {
    host.rules.closes = {6};
    host.trade.split = [](const fake::CSplitCall&, utils::KNError&) { return std::vector<int>{0, 0}; };
    EXPECT_FALSE(check(COrderBuilder(6).line(kCode, 3500, 1)));
    EXPECT_EQ(onlyError(), QStringLiteral("平仓仓位不足"));
}

} // namespace
