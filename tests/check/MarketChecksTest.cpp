#include "tests/check/FamilyFixture.h"

namespace {

using namespace TC;

/// A market with a list of instruments of its own.
struct CMarketCase {
    const char* name;
    EOrderStrategyTradeType family;
    bool (COrderServiceBase::*check)(COrderParam, COrderStrategyParam, std::vector<CCodeOrderParam>&,
                                     std::map<std::string, double>&) const;
    const char* list;
    const char* word;
    std::vector<int> accepted;
};

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
    EXPECT_TRUE(onlyError().startsWith(QStringLiteral("[文件单]　证券 [] ")));
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
    EXPECT_FALSE(check(COrderBuilder(23).line(QStringLiteral("SH600000"), 1, 100))); // no full codes here
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

TEST_F(NeeqCheck, SeveralLinesAreRefused) {
    EXPECT_FALSE(check(COrderBuilder(66).line(QStringLiteral("430001")).line(QStringLiteral("430001"))));
    EXPECT_EQ(onlyError(), QStringLiteral("[文件单]　通道号: 3, 下单参数不合法!"));
}

} // namespace
