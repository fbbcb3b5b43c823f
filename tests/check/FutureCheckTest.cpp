#include "tests/check/FamilyFixture.h"

#include <cmath>
#include <limits>
#include <ostream>

namespace {

using namespace TC;

constexpr double kInfinity = std::numeric_limits<double>::infinity();

/// The two families whose contracts are opened and closed.
struct CContractCase {
    const char* name;
    EOrderStrategyTradeType family;
    bool (COrderServiceBase::*check)(COrderParam, COrderStrategyParam, std::vector<CCodeOrderParam>&,
                                     std::map<std::string, double>&) const;
    const char* list;
    std::vector<int> accepted;
    bool readsAlgorithmText;
};

void PrintTo(const CContractCase& contract, std::ostream* out) {
    *out << contract.name;
}

class FutureCheck : public FamilyFixture, public testing::WithParamInterface<CContractCase> {
protected:
    inline static const QString kCode = QStringLiteral("IF2601");

    FutureCheck() : FamilyFixture(GetParam().family, GetParam().check) {
        host.exchange.addOther(GetParam().list, kCode);
        addQuote(kCode, 3500);
    }
    static COrderParam order() { return COrderBuilder(0).line(kCode, 3501, 10); }
    /// An order whose line has both limits.
    static COrderBuilder limits(double first, double second) {
        return COrderBuilder(0).line(kCode, 3500, 1).set([=](auto& o) {
            o.m_orders[0].m_bHasFirstLimit = o.m_orders[0].m_bHasSecondLimit = true;
            o.m_orders[0].m_dFirstLimit = first;
            o.m_orders[0].m_dSecondLimit = second;
        });
    }
    static QString unusable(int priceType) {
        return QStringLiteral("[文件单]　合约 [IF2601] 价%1(IF2601)无效, 无法下单!").arg(priceType);
    }
};

TEST_P(FutureCheck, OrderBecomesARecordForEachAccount) {
    ASSERT_TRUE(check(COrderBuilder(0).line(kCode, 3501, 10)));
    ASSERT_EQ(codes.size(), 2u);
    EXPECT_EQ(codes[0].m_nVolume, 6);
    EXPECT_EQ(codes[0].m_dPrice, 3501);
    EXPECT_EQ(codes[0].m_stock.m_strCode, "IF2601");
    EXPECT_EQ(host.trade.splitCalls[0].code, "IF2601");
    EXPECT_TRUE(isUnset(codes[0].m_nQuantityKind));
    EXPECT_EQ(weights.size(), 2u);
}

TEST_P(FutureCheck, SeveralLinesAreRefused) {
    EXPECT_FALSE(check(COrderBuilder(0).line(kCode, 1, 1).line(kCode, 1, 1)));
    EXPECT_EQ(onlyError(), QStringLiteral("[文件单]　通道号: 3, 下单参数不合法!"));
}

TEST_P(FutureCheck, UnknownCodeShowsTheChannelTwice) {
    EXPECT_FALSE(check(COrderBuilder(0).line(QStringLiteral("if2601"), 1, 1)));
    EXPECT_EQ(onlyError(), QStringLiteral("[文件单]　通道号: 3, 下单代码 [3] 不合法!"));
}

TEST_P(FutureCheck, CodeOfTheStrategyIsTestedToo) {
    EXPECT_FALSE(check(COrderBuilder(0), strategy().code(QStringLiteral("none"))));
    EXPECT_EQ(onlyError(), QStringLiteral("[文件单]　通道号: 3, 下单代码 [3] 不合法!"));
    EXPECT_TRUE(check(COrderBuilder(0).line(QString(), 3500, 1), strategy().code(kCode)));
}

TEST_P(FutureCheck, LimitsOfTheLineGoIntoTheSetting) {
    COrderSetting seen;
    host.rules.onSetting = [&](const COrderSetting& setting) { seen = setting; };
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
    EXPECT_EQ(seen.m_dFirstLimit, kUnsetDouble); // overwritten although the limit is off
    EXPECT_TRUE(seen.m_bSecondLimitOn);
}

TEST_P(FutureCheck, LimitsThatTheLineDoesNotGiveStayTheStrategys) {
    const auto with = strategy().set([](auto& s) {
        auto& setting = s.setting(ESettingSlot::Future);
        setting.m_bFirstLimitOn = setting.m_bSecondLimitOn = true;
        setting.m_dFirstLimit = 5;
        setting.m_dSecondLimit = 6;
    });
    for (const bool hasFirst : {false, true}) {
        for (const bool hasSecond : {false, true}) {
            ASSERT_TRUE(check(limits(3490, 3600).set([=](auto& o) {
                o.m_orders[0].m_bHasFirstLimit = hasFirst;
                o.m_orders[0].m_bHasSecondLimit = hasSecond;
            }),
                              with));
            const COrderSetting setting = host.rules.settingCalls.all().back().setting;
            EXPECT_EQ(setting.m_dFirstLimit, hasFirst ? 3490 : 5) << hasSecond;
            EXPECT_EQ(setting.m_dSecondLimit, hasSecond ? 3600 : 6) << hasFirst;
            EXPECT_TRUE(setting.m_bFirstLimitOn && setting.m_bSecondLimitOn);
        }
    }
}

TEST_P(FutureCheck, UsersPriceTypesHaveNoSay) {
    host.user.invalidPriceTypes = {EPriceType::Latest};
    EXPECT_TRUE(check(COrderBuilder(0).line(kCode, 3500, 1), priced(EPriceType::Latest)));
}

TEST_P(FutureCheck, AmountHasNoEffect) {
    ASSERT_TRUE(check(COrderBuilder(0).line(kCode, 3500), strategy().amount(1e6).volume(4)));
    EXPECT_EQ(splitVolume(), 4);
}

TEST_P(FutureCheck, ClosingWithoutPositionIsReportedAsSuch) {
    host.rules.closes = {6};
    host.trade.split = [](const fake::CSplitCall&, utils::KNError&) { return std::vector<int>{0, 100}; };
    EXPECT_FALSE(check(COrderBuilder(6).line(kCode, 3500, 1)));
    EXPECT_EQ(onlyError(), QStringLiteral("平仓仓位不足"));
    host.orders.errors.clear();
    host.trade.split = [](const fake::CSplitCall&, utils::KNError&) { return std::vector<int>{}; };
    EXPECT_FALSE(check(COrderBuilder(6).line(kCode, 3500, 1)));
    EXPECT_EQ(onlyError(), QStringLiteral("平仓仓位不足"));
}

TEST_P(FutureCheck, OpeningWithoutVolumePassesOn) {
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

TEST_P(FutureCheck, ZeroPriceIsRefused) {
    EXPECT_FALSE(check(COrderBuilder(0).line(kCode, 0, 1)));
    EXPECT_EQ(onlyError(), QStringLiteral("[文件单]　不能以0为模型价报单!"));
}

TEST_P(FutureCheck, TakesItsNumbers) {
    EXPECT_EQ(acceptedNumbers(kCode), GetParam().accepted);
}

TEST_P(FutureCheck, CodesOfOtherListsAreUnknown) {
    host.exchange.lists = {{"option", kCode}, {"gold", kCode}};
    EXPECT_FALSE(check(order()));
    EXPECT_EQ(onlyError(), QStringLiteral("[文件单]　通道号: 3, 下单代码 [3] 不合法!"));
}

TEST_P(FutureCheck, LimitsThatAreNoNumbersAreOff) {
    for (const double limit : {std::nan(""), kInfinity, -kInfinity, kUnsetDouble}) {
        ASSERT_TRUE(check(limits(limit, limit)));
        const COrderSetting setting = host.rules.settingCalls.all().back().setting;
        EXPECT_FALSE(setting.m_bFirstLimitOn) << limit;
        EXPECT_FALSE(setting.m_bSecondLimitOn) << limit;
        EXPECT_EQ(setting.m_dFirstLimit, kUnsetDouble) << limit;
        EXPECT_EQ(setting.m_dSecondLimit, kUnsetDouble) << limit;
    }
}

TEST_P(FutureCheck, LimitsOfTheStrategyThatAreNoNumbersAreOff) {
    for (const double limit : {std::nan(""), kInfinity, -kInfinity}) {
        ASSERT_TRUE(check(order(), priced(EPriceType::Latest).set([&](auto& s) {
            COrderSetting& setting = s.setting(ESettingSlot::Future);
            setting.m_dFirstLimit = setting.m_dSecondLimit = limit;
            setting.m_bFirstLimitOn = setting.m_bSecondLimitOn = true;
        })));
        const COrderSetting setting = host.rules.settingCalls.all().back().setting;
        EXPECT_FALSE(setting.m_bFirstLimitOn || setting.m_bSecondLimitOn) << limit;
        EXPECT_EQ(setting.m_dFirstLimit, kUnsetDouble) << limit;
        EXPECT_EQ(setting.m_dSecondLimit, kUnsetDouble) << limit;
    }
}

TEST_P(FutureCheck, PriceOfTheQuoteMustBeANumber) {
    for (const double price : {std::nan(""), kInfinity, -kInfinity}) {
        host.orders.errors.clear();
        host.quotes.quotes[kCode]->all(price);
        EXPECT_FALSE(check(order(), priced(EPriceType::Latest))) << price;
        EXPECT_EQ(onlyError(), unusable(5)) << price;
        EXPECT_TRUE(host.trade.splitCalls.empty());
        // This price type does not read the quote, so the quote's price must not reach the host either.
        host.quotes.quotes[kCode]->m_dFallbackPrice = price;
        EXPECT_TRUE(check(order(), priced(EPriceType::NoQuote))) << price;
        EXPECT_EQ(host.trade.splitCalls.back().price, kUnsetDouble) << price;
        EXPECT_EQ(host.rules.settingCalls.all().back().price, kUnsetDouble) << price;
        host.trade.splitCalls.clear();
    }
}

TEST_P(FutureCheck, SettingTextOverridesTheLimits) {
    ASSERT_TRUE(check(limits(3490, 3600).set([](auto& o) { o.m_strOrderSetting = "limit=3400"; })));
    const COrderSetting setting = host.rules.settingCalls.all().back().setting;
    EXPECT_EQ(setting.m_dFirstLimit, 3400);
    EXPECT_EQ(setting.m_dSecondLimit, 3600);
}

TEST_P(FutureCheck, LineOverridesThePriceType) {
    ASSERT_TRUE(check(COrderBuilder(0).line(kCode, 3500, 1).set([](auto& o) {
        o.m_strOrderSetting = "price=6";
        o.m_orders[0].m_ePriceType = EPriceType::Latest;
    })));
    EXPECT_EQ(host.rules.settingTexts.size(), 1u);
    EXPECT_EQ(codes.at(0).m_ePriceType, EPriceType::Latest);
}

TEST_P(FutureCheck, SettingKeepsItsOrderKindBesideTheText) {
    const auto plain = COrderBuilder(0).line(kCode, 3500, 1).set([](auto& o) {
        o.m_strOrderSetting = "text";
        o.m_eOrderType = static_cast<EOrderType>(4);
    });
    ASSERT_TRUE(check(plain, strategy().set([](auto& s) {
        s.setting(ESettingSlot::Future).m_eOrderType = static_cast<EOrderType>(7);
    })));
    EXPECT_EQ(host.rules.settingTexts, std::vector<QString>{QStringLiteral("text")});
    EXPECT_EQ(static_cast<int>(codes.at(0).m_eOrderType), 7);
}

TEST_P(FutureCheck, AlgorithmsTextIsReadByFutureOptionsOnly) {
    host.rules.algoPlatforms[static_cast<EOrderType>(7)] = ETradePlatform::Plain;
    ASSERT_TRUE(check(COrderBuilder(0).line(kCode, 3500, 1).set([](auto& o) {
        o.m_strOrderSetting = "price=12";
        o.m_eOrderType = static_cast<EOrderType>(7);
    })));
    EXPECT_EQ(host.rules.settingTexts.size(), GetParam().readsAlgorithmText ? 1u : 0u);
    EXPECT_EQ(codes.at(0).m_ePriceType,
              GetParam().readsAlgorithmText ? EPriceType::NoQuote : EPriceType::Specified);
}

TEST_P(FutureCheck, MissingQuoteFailsAlsoWhereThePriceIsGiven) {
    host.quotes.quotes.clear();
    EXPECT_FALSE(check(COrderBuilder(0).line(kCode, 3500, 1)));
    EXPECT_EQ(clock.sleeps(), (std::vector<double>{1, 1}));
    EXPECT_EQ(onlyError(), unusable(11));
}

TEST_P(FutureCheck, QuoteWithoutThePriceIsWaitedForAndFails) {
    host.quotes.quotes[kCode]->otherOrigin = kUnsetDouble;
    EXPECT_FALSE(check(order(), priced(EPriceType::Latest)));
    EXPECT_EQ(clock.sleeps(), (std::vector<double>{1, 1}));
    EXPECT_EQ(onlyError(), unusable(5));
}

TEST_P(FutureCheck, PriceTypesWithoutANumberNeedTheQuoteOnly) {
    host.quotes.quotes[kCode]->otherOrigin = kUnsetDouble;
    EXPECT_TRUE(check(order(), priced(EPriceType::NoQuote)));
    EXPECT_TRUE(check(order()));
    EXPECT_TRUE(clock.sleeps().empty());
}

TEST_P(FutureCheck, PriceOfTheOrderMustBeANumber) {
    for (const double price : {std::nan(""), kInfinity, -kInfinity}) {
        host.orders.errors.clear();
        EXPECT_FALSE(check(COrderBuilder(0).line(kCode, price, 1))) << price;
        EXPECT_EQ(onlyError(), unusable(11)) << price;
        EXPECT_TRUE(host.trade.splitCalls.empty());
    }
    EXPECT_TRUE(check(COrderBuilder(0).line(kCode, std::nan(""), 1), priced(EPriceType::Latest)));
}

TEST_P(FutureCheck, PricesAreAskedForWithoutAnOrderKind) {
    ASSERT_TRUE(check(order(), priced(EPriceType::Latest)));
    for (const fake::CPriceCall& call : host.quotes.quotes[kCode]->calls.all()) {
        EXPECT_EQ(call.type, EPriceType::Latest);
        EXPECT_EQ(call.operation, orderTypeToOperationType(0));
        EXPECT_EQ(call.number, 0);
    }
    EXPECT_EQ(host.trade.splitCalls.at(0).operation, orderTypeToOperationType(0));
}

INSTANTIATE_TEST_SUITE_P(Contracts, FutureCheck,
                         testing::Values(CContractCase{"Future", EOrderStrategyTradeType::Future,
                                                       &COrderServiceBase::checkAndFillOrderSpec, "future",
                                                       numbers({{0, 15}}), false},
                                         CContractCase{"FutureOption", EOrderStrategyTradeType::FutureOption,
                                                       &COrderServiceBase::checkAndFillOrderFutureOption,
                                                       "future option", numbers({{0, 15}, {100, 100}}),
                                                       true}),
                         [](const auto& contract) { return contract.param.name; });

} // namespace
