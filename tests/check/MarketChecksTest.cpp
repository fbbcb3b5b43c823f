#include "tests/check/FamilyFixture.h"

#include <ostream>

namespace {

using namespace TC;

/// A market with its own list of instruments.
struct CMarketCase {
    const char* name;
    EOrderStrategyTradeType family;
    bool (COrderServiceBase::*check)(COrderParam, COrderStrategyParam, std::vector<CCodeOrderParam>&,
                                     std::map<std::string, double>&) const;
    const char* list;
    const char* word;
    std::vector<int> accepted;
};

void PrintTo(const CMarketCase& market, std::ostream* out) {
    *out << market.name;
}

class MarketCheck : public FamilyFixture, public testing::WithParamInterface<CMarketCase> {
protected:
    MarketCheck() : FamilyFixture(GetParam().family, GetParam().check) {
        host.exchange.addOther(GetParam().list, key());
        addQuote(key(), 10.5);
    }
    QString key() const { return QString::fromLatin1(GetParam().word) + QStringLiteral("00001"); }
};

TEST_P(MarketCheck, TakesItsNumbers) {
    EXPECT_EQ(acceptedNumbers(QStringLiteral("00001")), GetParam().accepted);
}

TEST_P(MarketCheck, CodeGetsTheMarketsWordInFront) {
    ASSERT_TRUE(check(COrderBuilder(23).line(QStringLiteral("00001"), 10.5, 100)));
    ASSERT_EQ(codes.size(), 2u);
    EXPECT_EQ(codes[0].m_stock.m_strCode, key().toStdString());
    EXPECT_EQ(host.trade.splitCalls.back().code, key().toStdString());
}

TEST_P(MarketCheck, FullCodeOfEightCharactersIsTakenInAnyCase) {
    const bool isEight = key().size() == 8;
    EXPECT_EQ(check(COrderBuilder(23).line(key().toLower(), 10.5, 100)), isEight);
    if (!isEight) {
        EXPECT_EQ(onlyError(),
                  QStringLiteral("[文件单]　通道号: 3, 下单代码 [%1] 不合法!").arg(key().toLower()));
    }
}

TEST_P(MarketCheck, UnknownCodeIsRefused) {
    EXPECT_FALSE(check(COrderBuilder(23).line(QStringLiteral("600000"), 10.5, 100)));
    EXPECT_EQ(onlyError(), QStringLiteral("[文件单]　通道号: 3, 下单代码 [600000] 不合法!"));
}

TEST_P(MarketCheck, AmountIsNotRounded) {
    ASSERT_TRUE(check(COrderBuilder(23).line(QStringLiteral("00001"), 10.5), strategy().amount(1000)));
    EXPECT_EQ(splitVolume(), 95);
}

TEST_P(MarketCheck, UnusablePriceNamesTheCodeAlsoWhereItIsEmpty) {
    host.user.invalidPriceTypes = {EPriceType::Latest};
    EXPECT_FALSE(check(COrderBuilder(23), priced(EPriceType::Latest)));
    EXPECT_EQ(onlyError(), QStringLiteral("[文件单]　证券 [] 价5()无效, 无法下单!"));
    host.orders.errors.clear();
    EXPECT_FALSE(check(COrderBuilder(23).line(QStringLiteral("00001"), 10.5, 1), priced(EPriceType::Latest)));
    EXPECT_EQ(onlyError(), QStringLiteral("[文件单]　证券 [%1] 价5(%1)无效, 无法下单!").arg(key()));
}

TEST_P(MarketCheck, SettingTextIsReadWhateverTheKindAndTheSettingKeepsItsOwn) {
    host.rules.algoPlatforms[static_cast<EOrderType>(7)] = ETradePlatform::Plain;
    for (const int kind : {5, 7}) {
        ASSERT_TRUE(check(COrderBuilder(23).line(QStringLiteral("00001"), 10.5, 1).set([&](auto& o) {
            o.m_strOrderSetting = "text";
            o.m_eOrderType = static_cast<EOrderType>(kind);
        }),
                          strategy().set([](auto& s) {
                              s.setting(findFamily(GetParam().family)->m_eSlot).m_eOrderType =
                                  static_cast<EOrderType>(4);
                          })));
        EXPECT_EQ(static_cast<int>(codes.at(0).m_eOrderType), 4);
    }
    EXPECT_EQ(host.rules.settingTexts.size(), 2u);
}

TEST_P(MarketCheck, OnlyQuotedPricesAreWaitedFor) {
    host.quotes.quotes.clear();
    const COrderParam order = COrderBuilder(23).line(QStringLiteral("00001"), 10.5, 1);
    EXPECT_TRUE(check(order));
    EXPECT_TRUE(clock.sleeps().empty());
    EXPECT_FALSE(check(order, priced(EPriceType::Latest)));
    EXPECT_EQ(clock.sleeps(), (std::vector<double>{1, 1}));
}

TEST_P(MarketCheck, KeyIsJoinedAsTheHostJoinsIt) {
    host.rules.keySeparator = QStringLiteral(".");
    const QString joined = QString::fromLatin1(GetParam().word) + QStringLiteral(".00001");
    EXPECT_FALSE(check(COrderBuilder(23).line(QStringLiteral("00001"), 10.5, 100)));
    host.exchange.addOther(GetParam().list, joined);
    ASSERT_TRUE(check(COrderBuilder(23).line(QStringLiteral("00001"), 10.5, 100)));
    EXPECT_EQ(host.quotes.subscribed, std::vector<QString>{joined});
    EXPECT_EQ(codes.at(0).m_stock.m_strCode, joined.toStdString());
}

TEST_P(MarketCheck, KeyGoesBeforeTheFullCode) {
    const QString word = QString::fromLatin1(GetParam().word);
    const QString full = word.toLower() + QStringLiteral("12345").left(8 - word.size());
    ASSERT_EQ(full.size(), 8);
    host.exchange.addOther(GetParam().list, full.toUpper());
    ASSERT_TRUE(check(COrderBuilder(23).line(full, 10.5, 100)));
    EXPECT_EQ(codes.at(0).m_stock.m_strCode, full.toUpper().toStdString());
    host.exchange.addOther(GetParam().list, word + full);
    ASSERT_TRUE(check(COrderBuilder(23).line(full, 10.5, 100)));
    EXPECT_EQ(codes.at(0).m_stock.m_strCode, (word + full).toStdString());
}

TEST_P(MarketCheck, KeyOfAnotherLengthIsNotUsedUnchanged) {
    const QString word = QString::fromLatin1(GetParam().word);
    for (const int length : {7, 9}) {
        const QString key = word + QStringLiteral("987654").left(length - word.size());
        host.exchange.addOther(GetParam().list, key);
        host.orders.errors.clear();
        EXPECT_FALSE(check(COrderBuilder(23).line(key, 10.5, 100))) << length;
        EXPECT_EQ(onlyError(), QStringLiteral("[文件单]　通道号: 3, 下单代码 [%1] 不合法!").arg(key));
    }
}

TEST_P(MarketCheck, CodeOfTheStrategyIsNotTested) {
    const auto named = strategy().code(QStringLiteral("none"));
    EXPECT_TRUE(check(COrderBuilder(23).line(QString(), 10.5, 100), named));
    EXPECT_EQ(host.quotes.subscribed, std::vector<QString>{QStringLiteral("none")});
}

INSTANTIATE_TEST_SUITE_P(Markets, MarketCheck,
                         testing::Values(CMarketCase{"Sgt",
                                                     EOrderStrategyTradeType::SGT,
                                                     &COrderServiceBase::checkAndFillOrderSGT,
                                                     "sgt",
                                                     "SGT",
                                                     {23, 24}},
                                         CMarketCase{"Hgt",
                                                     EOrderStrategyTradeType::HGT,
                                                     &COrderServiceBase::checkAndFillOrderHGT,
                                                     "hgt",
                                                     "HGT",
                                                     {23, 24}},
                                         CMarketCase{"Gold",
                                                     EOrderStrategyTradeType::Gold,
                                                     &COrderServiceBase::checkAndFillOrderGold,
                                                     "gold",
                                                     "GOLD",
                                                     {0, 1, 3, 4, 23, 24}}),
                         [](const auto& market) { return market.param.name; });

class NeeqCheck : public FamilyFixture {
protected:
    NeeqCheck() : FamilyFixture(EOrderStrategyTradeType::Neeq, &COrderServiceBase::checkAndFillOrderNeeq) {
        setKind(0);
    }
    void setKind(int kind) {
        const auto detail = boost::make_shared<CInstrumentDetail>();
        detail->m_tradeInfo.m_nTransferKind = kind;
        host.exchange.others[QStringLiteral("NEEQ430001")] = detail;
        host.exchange.lists.insert({"neeq", QStringLiteral("NEEQ430001")});
    }
    bool place(int number) { return check(COrderBuilder(number).line(QStringLiteral("430001"), 1, 100)); }
};

TEST_F(NeeqCheck, TakesItsNumbers) {
    EXPECT_EQ(acceptedNumbers(QStringLiteral("600000")), numbers({{23, 24}, {66, 91}}));
}

TEST_F(NeeqCheck, OnlyValidates) {
    EXPECT_TRUE(place(66));
    EXPECT_TRUE(codes.empty());
    EXPECT_TRUE(host.trade.splitCalls.empty());
    EXPECT_TRUE(host.quotes.reads.empty());
}

TEST_F(NeeqCheck, TradesNameTheStocksOfTheExchanges) {
    EXPECT_TRUE(check(COrderBuilder(23).line(QStringLiteral("600000"), 1, 100)));
    EXPECT_FALSE(check(COrderBuilder(23).line(QStringLiteral("SH600000"), 1, 100))); // full codes are refused
    EXPECT_EQ(onlyError(), QStringLiteral("[文件单]　通道号: 3, 下单代码 [SH600000] 不合法!"));
    EXPECT_FALSE(place(24));
    EXPECT_FALSE(check(COrderBuilder(66).line(QStringLiteral("600000"), 1, 100)));
}

TEST_F(NeeqCheck, TransferMethodMustFitTheNumber) {
    for (const int kind : {0, 1, 2, 4}) {
        setKind(kind);
        for (int number = 66; number <= 91; ++number) {
            const bool is74 = number == 74;
            const bool is4 = number == 72 || number == 73 || number == 76 || number == 77;
            const bool isEither = number == 78 || number == 79;
            const bool expected = is74 ? kind == 2 : is4 ? kind == 4 : !isEither || kind == 2 || kind == 4;
            EXPECT_EQ(place(number), expected) << number << " of kind " << kind;
            if (expected) continue;
            EXPECT_EQ(lastError(), QStringLiteral("[文件单]　通道号: 3, [NEEQ]下单代码 [NEEQ430001] "
                                                  "该交易方式对此代码已过滤!"));
        }
    }
}

TEST_F(NeeqCheck, InstrumentIsSubscribedAndItsSettingTextRead) {
    ASSERT_TRUE(check(COrderBuilder(66).line(QStringLiteral("430001"), 1, 100).set([](auto& o) {
        o.m_strOrderSetting = "text";
    })));
    EXPECT_EQ(host.quotes.subscribed, std::vector<QString>{QStringLiteral("NEEQ430001")});
    EXPECT_EQ(host.rules.settingTexts.size(), 1u);
    EXPECT_EQ(weights.size(), 2u);
}

TEST_F(NeeqCheck, InstrumentWithoutARecordHasNoWayOfTransfer) {
    const auto named = strategy().code(QStringLiteral("none"));
    EXPECT_TRUE(check(COrderBuilder(66), named));
    EXPECT_FALSE(check(COrderBuilder(74), named));
    EXPECT_EQ(onlyError(),
              QStringLiteral("[文件单]　通道号: 3, [NEEQ]下单代码 [none] 该交易方式对此代码已过滤!"));
}

TEST_F(NeeqCheck, FullCodeOfEightCharactersIsTakenInAnyCase) {
    host.exchange.addOther("neeq", QStringLiteral("NEEQ4300"));
    EXPECT_TRUE(check(COrderBuilder(66).line(QStringLiteral("neeq4300"), 1, 100)));
    EXPECT_EQ(host.quotes.subscribed, std::vector<QString>{QStringLiteral("NEEQ4300")});
}

TEST_F(NeeqCheck, KeysAreJoinedByTheHostButForStocks) {
    host.rules.keySeparator = QStringLiteral(".");
    EXPECT_TRUE(check(COrderBuilder(23).line(QStringLiteral("600000"), 1, 100)));
    EXPECT_FALSE(place(66));
    host.exchange.addOther("neeq", QStringLiteral("NEEQ.430001"));
    EXPECT_TRUE(place(66));
    EXPECT_EQ(host.quotes.subscribed.back(), QStringLiteral("NEEQ.430001"));
}

TEST_F(NeeqCheck, SeveralLinesAreRefused) {
    EXPECT_FALSE(check(COrderBuilder(66).line(QStringLiteral("430001")).line(QStringLiteral("430001"))));
    EXPECT_EQ(onlyError(), QStringLiteral("[文件单]　通道号: 3, 下单参数不合法!"));
}

} // namespace
