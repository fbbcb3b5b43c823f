// Baskets with no row, one row and thousands of rows. Some rows are repeated or cannot be traded.
#include "tests/check/CheckFixture.h"

namespace {

using namespace TC;

class BasketSizes : public CheckFixture {
protected:
    static QString codeOf(int index) { return QString::number(600100 + index); }
    static QString keyOf(int index) { return QStringLiteral("SH") + codeOf(index); }

    void addInstruments(int count) {
        for (int i = 0; i < count; ++i) {
            host.addStock("SH", codeOf(i).toStdString(), 10);
            host.types.types.insert({knservice::kBasketTypes[0], "SH" + codeOf(i).toStdString()});
            host.quotes.quotes.at(keyOf(i))->m_nDayCount = 1;
        }
    }
    static COrderBuilder basket(int rows, int number = 25) {
        COrderBuilder builder(number);
        for (int i = 0; i < rows; ++i)
            builder.line(codeOf(i), kUnsetDouble, 100 * (i % 9 + 1));
        return builder;
    }
    static CStrategyBuilder strategy() {
        return CStrategyBuilder().family(EOrderStrategyTradeType::Basket).volume(1);
    }
    bool check(COrderParam order, const COrderStrategyParam& with = strategy()) {
        codes.clear();
        weights.clear();
        return service.checkAndFillOrderCompose(order, with, codes, weights);
    }
    /// Code and volume of every record.
    std::vector<std::pair<std::string, int>> records() const {
        std::vector<std::pair<std::string, int>> found;
        for (const CCodeOrderParam& code : codes)
            found.emplace_back(code.m_stock.m_strCode, code.m_nVolume);
        return found;
    }

    std::vector<CCodeOrderParam> codes;
    std::map<std::string, double> weights;
};

TEST_F(BasketSizes, NoRowIsRefusedOnceForEveryNumberButSales) {
    host.switches.on.insert("mdl_order_compose_basket_buy_sell");
    for (const int number : {25, 33, 34, 35, 36, 110, 119}) {
        host.orders.errors.clear();
        EXPECT_FALSE(check(COrderBuilder(number))) << number;
        EXPECT_EQ(onlyError(), QStringLiteral("[文件单]　通道号: 3, 下单指令不合法!")) << number;
    }
    EXPECT_TRUE(check(COrderBuilder(26)));
    EXPECT_TRUE(codes.empty());
}

TEST_F(BasketSizes, OneRow) {
    addInstruments(1);
    ASSERT_TRUE(check(basket(1)));
    EXPECT_EQ(records(), (std::vector<std::pair<std::string, int>>{{"600100", 60}, {"600100", 40}}));
    EXPECT_TRUE(clock.sleeps().empty());
}

TEST_F(BasketSizes, ThousandsOfRowsKeepTheirOrderAndTheirQuotes) {
    constexpr int kRows = 5000;
    addInstruments(kRows);
    int fewest = kRows;
    host.quotes.onRead = [&](const QString&, int) {
        fewest = std::min(fewest, host.quotes.liveSubscriptions.load());
    };
    ASSERT_TRUE(check(basket(kRows)));
    ASSERT_EQ(codes.size(), 2u * kRows);
    for (int i = 0; i < kRows; ++i) {
        const auto first = static_cast<std::size_t>(2 * i);
        EXPECT_EQ(codes[first].m_stock.m_strCode, codeOf(i).toStdString());
        EXPECT_EQ(codes[first].m_account->getKey(), "A1");
        EXPECT_EQ(codes[first + 1].m_account->getKey(), "A2");
        EXPECT_EQ(codes[first].m_nVolume + codes[first + 1].m_nVolume, 100 * (i % 9 + 1));
    }
    EXPECT_EQ(fewest, kRows); // all quotes are subscribed before the first row reads its quote
    EXPECT_EQ(host.quotes.liveSubscriptions, 0);
}

TEST_F(BasketSizes, RepeatedCodesAreRowsOfTheirOwn) {
    addInstruments(2);
    const auto both = [&](int number) {
        return COrderBuilder(number)
            .line(codeOf(0), kUnsetDouble, 100)
            .line(codeOf(1), kUnsetDouble, 10)
            .line(codeOf(0), kUnsetDouble, 200);
    };
    ASSERT_TRUE(check(both(25), strategy().account(QStringLiteral("A1"))));
    EXPECT_EQ(records(),
              (std::vector<std::pair<std::string, int>>{{"600100", 100}, {"600101", 10}, {"600100", 200}}));
    // As targets, repeated codes add up: the first is compared with the held volume, the second is bought.
    host.tasks.addPosition(host.user.accounts.at("A1"), "SH", "600100", 150);
    ASSERT_TRUE(check(both(35), strategy().account(QStringLiteral("A1"))));
    EXPECT_EQ(records(),
              (std::vector<std::pair<std::string, int>>{{"600100", 50}, {"600100", 200}, {"600101", 10}}));
    EXPECT_EQ(codes[0].m_eOperationType, EOperationType::Sell);
    EXPECT_EQ(codes[1].m_eOperationType, EOperationType::Buy);
}

TEST_F(BasketSizes, OnlyUnknownCodesGiveNothingAndWaitForNothing) {
    ASSERT_TRUE(check(basket(200)));
    EXPECT_TRUE(codes.empty());
    EXPECT_TRUE(host.errorTexts().empty());
    EXPECT_TRUE(clock.sleeps().empty());
    EXPECT_TRUE(host.quotes.subscribed.empty());
}

TEST_F(BasketSizes, UnknownAndSuspendedRowsCostTheOthersNothing) {
    addInstruments(300);
    std::vector<std::pair<std::string, int>> expected;
    for (int i = 0; i < 300; ++i) {
        if (i % 3 == 0) host.exchange.stocks.erase(keyOf(i));
        if (i % 3 == 1) host.quotes.quotes.at(keyOf(i))->m_nDayCount = 0;
        if (i % 3 == 2) expected.emplace_back(codeOf(i).toStdString(), 100 * (i % 9 + 1));
    }
    ASSERT_TRUE(check(basket(300), strategy().account(QStringLiteral("A1"))));
    EXPECT_EQ(records(), expected);
    EXPECT_TRUE(host.errorTexts().empty());
    EXPECT_TRUE(clock.sleeps().empty());
}

TEST_F(BasketSizes, NoQuotesAtAllCostTwoSecondsARow) {
    constexpr int kRows = 25;
    addInstruments(kRows);
    host.quotes.quotes.clear();
    ASSERT_TRUE(check(basket(kRows)));
    EXPECT_TRUE(codes.empty());
    EXPECT_EQ(clock.time(), 2.0 * kRows);
    const auto errors = host.errorTexts();
    ASSERT_EQ(errors.size(), static_cast<std::size_t>(kRows));
    for (int i = 0; i < kRows; ++i) {
        const QString text =
            QStringLiteral("[文件单]　通道号 [3] 组合交易中, 证券 [%1] 价5()无效, 修改下单量为0!")
                .arg(keyOf(i));
        EXPECT_EQ(errors[static_cast<std::size_t>(i)], text);
    }
}

TEST_F(BasketSizes, OneRowWithoutAQuoteDelaysTheOthersAndNoMore) {
    addInstruments(10);
    host.quotes.quotes.erase(keyOf(4));
    ASSERT_TRUE(check(basket(10), strategy().account(QStringLiteral("A1"))));
    EXPECT_EQ(codes.size(), 9u);
    EXPECT_EQ(clock.sleeps(), (std::vector<double>{1.0, 1.0}));
}

} // namespace
