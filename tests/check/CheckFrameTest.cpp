#include "orderservice/check/CheckFrame.h"

#include "tests/check/CheckFixture.h"

namespace {

using namespace TC;

/// A test family with the order numbers and the setting of stocks, and without any optional step.
class CheckFrame : public CheckFixture {
protected:
    inline static const QString kCode = QStringLiteral("SH600000");

    bool check(const COrderParam& order, const COrderStrategyParam& strategy = CStrategyBuilder()) {
        return runFamilyCheck(family, order, strategy, codes, weights);
    }

    CFamilyCheck family{EOrderStrategyTradeType::Stock,
                        "lines %1 %2",
                        ESettingText::PlainOnly,
                        EQuoteWait::UnlessSpecified,
                        ESplitInstrument::Named,
                        nullptr,
                        nullptr,
                        nullptr,
                        nullptr,
                        nullptr,
                        nullptr,
                        nullptr};
    std::vector<CCodeOrderParam> codes;
    std::map<std::string, double> weights;
};

TEST_F(CheckFrame, FamilyWithoutCodeResolutionUsesTheCodeUnchanged) {
    ASSERT_TRUE(check(COrderBuilder(23).line(QStringLiteral("600000"), 10.5, 100)));
    EXPECT_EQ(host.quotes.subscribed, std::vector<QString>{QStringLiteral("600000")});
    EXPECT_EQ(codes.at(0).m_stock.m_strCode, "");
    EXPECT_TRUE(host.errorTexts().empty());
}

TEST_F(CheckFrame, FamilyWithoutCodeResolutionStillTakesTheRestOfTheLine) {
    const COrderParam order = COrderBuilder(23).line(kCode, 10.5, 100).set([](COrderParam& o) {
        o.m_orders[0].m_ePriceType = EPriceType::Latest;
        o.m_orders[0].m_nOverFreqMode = 2;
    });
    ASSERT_TRUE(check(order));
    EXPECT_EQ(codes.at(0).m_ePriceType, EPriceType::Latest);
    EXPECT_EQ(codes.at(0).m_nOverFreqMode, 2);
}

TEST_F(CheckFrame, FamilyWithoutAPriceCheckTakesAnyPrice) {
    host.user.invalidPriceTypes.insert(EPriceType::Latest);
    ASSERT_TRUE(check(COrderBuilder(23).line(kCode, 3.0, 100), CStrategyBuilder().price(EPriceType::Latest)));
    EXPECT_EQ(codes.at(0).m_dPrice, 10.5);
    EXPECT_TRUE(host.errorTexts().empty());
}

TEST_F(CheckFrame, FamilyWithoutAPriceCheckStillRefusesZeroOnARecord) {
    EXPECT_FALSE(check(COrderBuilder(23).line(kCode, 0.0, 100)));
    EXPECT_EQ(onlyError(), QStringLiteral("[文件单]　不能以0为模型价报单!"));
}

TEST_F(CheckFrame, SeveralLinesAreReportedInTheFamilysWords) {
    const COrderParam order = COrderBuilder(23).line(kCode, 10.5, 100).line(kCode, 10.5, 100);
    EXPECT_FALSE(check(order));
    EXPECT_EQ(onlyError(), QStringLiteral("lines 文件单 3"));
}

TEST_F(CheckFrame, FamilyWithoutAmountsUsesTheStrategysVolume) {
    ASSERT_TRUE(check(COrderBuilder(23).line(kCode, 10.5), CStrategyBuilder().volume(700).amount(100000)));
    EXPECT_EQ(host.trade.splitCalls.at(0).volume, 700);
}

// The setting text.

class SettingText : public CheckFrame {
protected:
    static constexpr auto kSettingKind = static_cast<EOrderType>(4);
    static constexpr auto kOrderKind = static_cast<EOrderType>(7);

    static constexpr auto kStrategyKind = static_cast<EOrderType>(8);
    static constexpr ESettingText kRules[] = {ESettingText::OrderKindThenPlain, ESettingText::PlainOnly,
                                              ESettingText::Always};

    /// Sends an order with a setting text through the check. The returned record shows the resulting setting.
    CCodeOrderParam send(ESettingText rule, EOrderType orderKind = kOrderKind, const char* text = "price=5") {
        family.m_eSettingText = rule;
        codes.clear();
        const COrderParam order = COrderBuilder(23).line(kCode, 10.5, 100).set([=](COrderParam& o) {
            o.m_strOrderSetting = text;
            o.m_eOrderType = orderKind;
        });
        EXPECT_TRUE(check(order, CStrategyBuilder().set([](auto& s) {
            s.m_eOrderType = kStrategyKind;
            s.m_stockSetting.m_eOrderType = kSettingKind;
        })));
        return codes.at(0);
    }
};

TEST_F(SettingText, OfAPlainOrderIsReadUnderEveryRule) {
    const std::map<ESettingText, EOrderType> kinds{{ESettingText::OrderKindThenPlain, kOrderKind},
                                                   {ESettingText::PlainOnly, kSettingKind},
                                                   {ESettingText::Always, kSettingKind}};
    for (const auto& [rule, kind] : kinds) {
        const CCodeOrderParam record = send(rule);
        EXPECT_EQ(record.m_ePriceType, EPriceType::Latest) << static_cast<int>(rule);
        EXPECT_EQ(record.m_eOrderType, kind) << static_cast<int>(rule);
    }
}

TEST_F(SettingText, OfAnAlgorithmOrderIsReadOnlyWhereTheFamilyAlwaysReadsIt) {
    host.rules.algoPlatforms[kOrderKind] = ETradePlatform::Plain;
    EXPECT_EQ(send(ESettingText::OrderKindThenPlain).m_ePriceType, EPriceType::Specified);
    EXPECT_EQ(send(ESettingText::PlainOnly).m_ePriceType, EPriceType::Specified);
    EXPECT_EQ(send(ESettingText::Always).m_ePriceType, EPriceType::Latest);
}

TEST_F(SettingText, OfAnOrderWithoutAKindIsReadThoughTheStrategysKindIsAnAlgorithm) {
    host.rules.algoPlatforms[kStrategyKind] = ETradePlatform::Plain;
    for (const ESettingText rule : kRules) {
        const CCodeOrderParam record = send(rule, unsetEnum<EOrderType>());
        EXPECT_EQ(record.m_ePriceType, EPriceType::Latest) << static_cast<int>(rule);
        EXPECT_NE(record.m_eOrderType, kStrategyKind) << static_cast<int>(rule);
    }
}

TEST_F(SettingText, OverridesTheKindUnderEveryRule) {
    for (const ESettingText rule : kRules)
        EXPECT_EQ(static_cast<int>(send(rule, kOrderKind, "kind=9").m_eOrderType), 9)
            << static_cast<int>(rule);
}

} // namespace
