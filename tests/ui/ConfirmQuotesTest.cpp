// Quotes come on a thread of the host and change records only. The timer writes them into the table.
#include "orderservice/platform/Host.h"
#include "orderservice/ui/QuoteRows.h"
#include "tests/ui/ConfirmFixture.h"

#include <gtest/gtest.h>

#include <atomic>
#include <limits>
#include <thread>

namespace {

using namespace TC;

const QString kKey = QStringLiteral("SH600000");

class ConfirmQuotes : public testing::Test {
protected:
    void SetUp() override { host.quotes.quotes.clear(); }
    void quote(const QString& key, double price) { host.quotes.callbacks.at(key)(makeQuote(price)); }

    CFakeHost host;
};

TEST_F(ConfirmQuotes, OneRequestForEachInstrument) {
    CConfirmTable table;
    table.widget.setOrders({makeRecord(1, "600000"), makeRecord(2, "600001"), makeRecord(3, "600000")});
    EXPECT_EQ(host.quotes.subscribed, (std::vector<QString>{kKey, QStringLiteral("SH600001")}));
    EXPECT_EQ(host.quotes.liveSubscriptions, 2);
}

TEST_F(ConfirmQuotes, QuoteChangesAllRowsOfItsInstrument) {
    CConfirmTable table;
    table.widget.setOrders({makeRecord(100), makeRecord(200, "600001"), makeRecord(300)});
    EXPECT_EQ(table.sum(7), QStringLiteral("-"));
    quote(kKey, 10);
    EXPECT_EQ(table.cell(0, 7), QStringLiteral("-")) << "only the timer touches the table";
    table.widget.slotTimeout();
    EXPECT_EQ(table.cell(0, 7), QStringLiteral("1000.00"));
    EXPECT_EQ(table.cell(1, 7), QStringLiteral("-"));
    EXPECT_EQ(table.cell(2, 7), QStringLiteral("3000.00"));
    EXPECT_EQ(table.sum(7), QStringLiteral("4000.00"));
}

TEST_F(ConfirmQuotes, KnownQuoteIsShownAtOnce) {
    host.setPrice(kKey, 12);
    CConfirmTable table;
    table.widget.setOrders({makeRecord(100)});
    EXPECT_EQ(table.cell(0, 7), QStringLiteral("1200.00"));
    EXPECT_EQ(table.sum(7), QStringLiteral("1200.00"));
}

TEST_F(ConfirmQuotes, InvalidQuoteLeavesTheLastValue) {
    CConfirmTable table;
    table.widget.setOrders({makeRecord(100)});
    quote(kKey, 10);
    for (const double price : {kUnsetDouble, 0.0, -1.0, std::numeric_limits<double>::quiet_NaN(),
                               std::numeric_limits<double>::infinity()})
        quote(kKey, price);
    host.quotes.callbacks.at(kKey)(nullptr);
    table.widget.slotTimeout();
    EXPECT_EQ(table.cell(0, 7), QStringLiteral("1000.00"));
}

TEST_F(ConfirmQuotes, FuturesAreMultiplied) {
    const auto detail = boost::make_shared<CInstrumentDetail>();
    detail->m_dMultiplier = 300;
    host.exchange.stocks[kKey] = detail;
    CConfirmTable table(EQdTraderType::FutureSpeculation);
    table.widget.setOrders({makeRecord(2)});
    quote(kKey, 4000);
    table.widget.slotTimeout();
    EXPECT_EQ(table.cell(0, 7), QStringLiteral("2400000.00"));
}

TEST_F(ConfirmQuotes, ContractWithoutAMultiplierHasNoMarketValue) {
    for (const int type : {2, 16, 32, 1024}) {
        CConfirmTable table(static_cast<EQdTraderType>(type));
        table.widget.setOrders({makeRecord(2)});
        quote(kKey, 4000);
        table.widget.slotTimeout();
        EXPECT_EQ(table.cell(0, 7), QStringLiteral("-")) << type;
        EXPECT_EQ(table.sum(7), QStringLiteral("-")) << type;
    }
}

TEST_F(ConfirmQuotes, FirstQuoteFillsThePricesOfItsRows) {
    CConfirmTable table;
    CCodeOrderParam latest = makeRecord(100);
    latest.m_ePriceType = EPriceType::Latest;
    latest.m_dPrice = kUnsetDouble;
    int changes = 0;
    QObject::connect(&table.widget, &COrdersConfirmWidget::sigTotalChanged, [&] { ++changes; });
    table.widget.setOrders({latest, makeRecord(100)});
    EXPECT_EQ(table.cell(0, 8), QStringLiteral("-"));
    EXPECT_EQ(table.cell(0, 10), QStringLiteral("-"));
    EXPECT_EQ(table.widget.total().m_nWithAmount, 1);
    quote(kKey, 10);
    EXPECT_EQ(table.cell(0, 8), QStringLiteral("-")) << "only the timer touches the table";
    table.widget.slotTimeout();
    EXPECT_EQ(table.cell(0, 8), QStringLiteral("10.00"));
    EXPECT_EQ(table.cell(0, 10), QStringLiteral("1000.00"));
    EXPECT_EQ(table.sum(10), QStringLiteral("1950.00"));
    EXPECT_DOUBLE_EQ(table.widget.total().m_dAmount, 1950.0);
    quote(kKey, 12);
    table.widget.slotTimeout();
    EXPECT_EQ(table.cell(0, 8), QStringLiteral("10.00")) << "the base price does not follow the quotes";
    EXPECT_EQ(changes, 1);
}

boost::shared_ptr<fake::CQuote> makeBid(double last, double bid) {
    const auto quote = makeQuote(last);
    quote->origin[EPriceType::Buy1] = bid;
    return quote;
}

TEST_F(ConfirmQuotes, BasePriceIsTheOneOfThePriceType) {
    CCodeOrderParam bid = makeRecord(100);
    bid.m_ePriceType = EPriceType::Buy1;
    bid.m_dPrice = kUnsetDouble;
    host.quotes.quotes[kKey] = makeBid(10, 9.98);
    CConfirmTable table;
    table.widget.setOrders({bid});
    EXPECT_EQ(table.cell(0, 8), QStringLiteral("9.98"));
    EXPECT_EQ(table.cell(0, 10), QStringLiteral("998.00"));
    EXPECT_EQ(table.cell(0, 7), QStringLiteral("1000.00"));
}

TEST_F(ConfirmQuotes, PriceTypeThatNobodyQuotesHasNoBasePriceUntilSomebodyDoes) {
    CCodeOrderParam bid = makeRecord(100);
    bid.m_ePriceType = EPriceType::Buy1;
    bid.m_dPrice = kUnsetDouble;
    host.quotes.quotes[kKey] = makeBid(10, 0);
    CConfirmTable table;
    table.widget.setOrders({bid});
    const auto expectNone = [&] {
        EXPECT_EQ(table.cell(0, 8), QStringLiteral("-"));
        EXPECT_EQ(table.cell(0, 10), QStringLiteral("-"));
        EXPECT_EQ(table.cell(0, 7), QStringLiteral("1000.00"));
    };
    expectNone();
    const auto none = makeBid(10, 0);
    host.quotes.callbacks.at(kKey)(none);
    table.widget.slotTimeout();
    table.widget.slotTimeout();
    expectNone();
    EXPECT_EQ(none->calls.all().size(), 1u) << "a quote is asked once";
    host.quotes.callbacks.at(kKey)(makeBid(10, 9.97));
    table.widget.slotTimeout();
    EXPECT_EQ(table.cell(0, 8), QStringLiteral("9.97"));
    EXPECT_EQ(table.cell(0, 10), QStringLiteral("997.00"));
}

TEST_F(ConfirmQuotes, ContractInABatchOfStocksNeedsItsMultiplier) {
    CCodeOrderParam future = makeRecord(2, "IF2601");
    for (const int operation : {0, 13, 32, 41, 50}) {
        future.m_eOperationType = static_cast<EOperationType>(operation);
        CConfirmTable table;
        table.widget.setOrders({makeRecord(100), future});
        EXPECT_EQ(table.cell(0, 10), QStringLiteral("950.00"));
        host.quotes.callbacks.at(QStringLiteral("SHIF2601"))(makeQuote(4000));
        table.widget.slotTimeout();
        EXPECT_EQ(table.cell(1, 7), QStringLiteral("-")) << operation;
        EXPECT_EQ(table.cell(1, 10), QStringLiteral("-")) << operation;
    }
}

TEST_F(ConfirmQuotes, AllDigitsOfASpecifiedPriceAreShown) {
    CCodeOrderParam exact = makeRecord(100), large = makeRecord(1);
    exact.m_dPrice = 9.99996;
    large.m_dPrice = 12345.6785;
    CConfirmTable table;
    table.widget.setOrders({exact, large, makeRecord(100)});
    EXPECT_EQ(table.cell(0, 9), QStringLiteral("9.99996"));
    EXPECT_EQ(table.cell(0, 8), QStringLiteral("9.99996"));
    EXPECT_EQ(table.cell(1, 9), QStringLiteral("12345.67850"));
    EXPECT_EQ(table.cell(2, 9), QStringLiteral("9.50000")) << "the points are below each other";
}

TEST_F(ConfirmQuotes, LaterQuoteWithMoreDigitsChangesAllPrices) {
    CCodeOrderParam latest = makeRecord(100, "600001");
    latest.m_ePriceType = EPriceType::Latest;
    latest.m_dPrice = kUnsetDouble;
    CConfirmTable table;
    table.widget.setOrders({makeRecord(100), latest});
    EXPECT_EQ(table.cell(0, 9), QStringLiteral("9.50"));
    quote(QStringLiteral("SH600001"), 1.2345);
    table.widget.slotTimeout();
    EXPECT_EQ(table.cell(1, 8), QStringLiteral("1.2345"));
    EXPECT_EQ(table.cell(0, 8), QStringLiteral("9.5000"));
    EXPECT_EQ(table.cell(0, 9), QStringLiteral("9.5000"));
}

TEST_F(ConfirmQuotes, CallBackCallsNoOperationOfTheHost) {
    CConfirmTable table;
    table.widget.setOrders({makeRecord(100)});
    const auto callback = host.quotes.callbacks.at(kKey);
    const auto price = makeQuote(10);
    releaseHost(); // a call of the host would fail now
    callback(price);
    table.widget.slotTimeout();
    EXPECT_EQ(table.cell(0, 7), QStringLiteral("1000.00"));
    EXPECT_TRUE(price->calls.all().empty());
    ASSERT_TRUE(installHost(host.services()).isSuccess());
    EXPECT_TRUE(host.messageTexts().empty());
}

/// A quote that uses the rows when it is destroyed, on another thread.
class CUsingQuote : public fake::CQuote {
public:
    explicit CUsingQuote(CQuoteRows& rows) : m_rows(rows) { all(10); }
    ~CUsingQuote() override {
        std::thread([this] { (void)m_rows.values(); }).join(); // blocks for ever if the lock is held
    }

private:
    CQuoteRows& m_rows;
};

TEST_F(ConfirmQuotes, QuotesAreDestroyedWithoutTheLock) {
    CQuoteRows rows;
    const std::vector<CQuoteRows::CInstrument> instruments{{kKey, CMoneyRule{}}};
    rows.setOrders({makeRecord(100)}, instruments);
    rows.setQuote(kKey, boost::make_shared<CUsingQuote>(rows));
    rows.setQuote(kKey, boost::make_shared<CUsingQuote>(rows));
    rows.setOrders({makeRecord(100)}, instruments);
    EXPECT_FALSE(rows.values().at(0).m_bValid);
}

TEST_F(ConfirmQuotes, ParPricedInstrumentOfShanghaiIsVolumeTimesHundred) {
    host.types.types.insert({126, "SH600000"});
    host.types.types.insert({126, "SZ000001"});
    CCodeOrderParam other = makeRecord(10, "000001");
    other.m_stock.m_strMarket = "SZ";
    CConfirmTable table;
    table.widget.setOrders({makeRecord(10), other});
    quote(kKey, 2.5);
    quote(QStringLiteral("SZ000001"), 2.5);
    table.widget.slotTimeout();
    EXPECT_EQ(table.cell(0, 7), QStringLiteral("1000.00"));
    EXPECT_EQ(table.cell(1, 7), QStringLiteral("25.00"));
}

TEST_F(ConfirmQuotes, RepaymentOfMoneyHasNoMarketValueAndNoRequest) {
    CCodeOrderParam record = makeRecord();
    record.m_eOperationType = EOperationType::RepayMoney;
    record.m_dQuantity = 500;
    CConfirmTable table(EQdTraderType::Credit);
    table.widget.setOrders({record});
    EXPECT_TRUE(host.quotes.subscribed.empty());
    EXPECT_EQ(table.cell(0, 7), QStringLiteral("-"));
}

TEST_F(ConfirmQuotes, RowWithoutInstrumentHasNoRequest) {
    CConfirmTable table;
    table.widget.setOrders({makeRecord(100, "")});
    EXPECT_TRUE(host.quotes.subscribed.empty());
}

TEST_F(ConfirmQuotes, OtherKindsShowNoMarketValues) {
    CConfirmTable table;
    table.widget.setOrderKind(17);
    table.widget.setOrders({makeRecord(100)});
    quote(kKey, 10);
    table.widget.slotTimeout();
    EXPECT_EQ(table.cell(0, 7), QStringLiteral("-"));
}

TEST_F(ConfirmQuotes, RequestsEndWithTheTableAndALateCallBackIsSafe) {
    {
        CConfirmTable table;
        table.widget.setOrders({makeRecord(100)});
        EXPECT_EQ(host.quotes.liveSubscriptions, 1);
    }
    EXPECT_EQ(host.quotes.liveSubscriptions, 0);
    quote(kKey, 10);
    EXPECT_TRUE(host.messageTexts().empty());
}

TEST_F(ConfirmQuotes, CallBackOfEarlierOrdersDoesNotReachOtherInstruments) {
    CConfirmTable table;
    table.widget.setOrders({makeRecord(100)});
    const auto earlier = host.quotes.callbacks.at(kKey);
    table.widget.setOrders({makeRecord(200, "600001")});
    earlier(makeQuote(10));
    table.widget.slotTimeout();
    EXPECT_EQ(table.cell(0, 7), QStringLiteral("-"));
}

TEST_F(ConfirmQuotes, FiveHundredRowsChangeInOneTick) {
    std::vector<CCodeOrderParam> records;
    for (int i = 0; i < 500; ++i)
        records.push_back(makeRecord(100, std::to_string(600000 + i)));
    CConfirmTable table;
    table.widget.setOrders(records);
    ASSERT_EQ(host.quotes.subscribed.size(), 500u);
    for (int tick = 1; tick <= 3; ++tick) {
        for (const QString& key : host.quotes.subscribed)
            quote(key, tick);
        table.widget.slotTimeout();
        EXPECT_EQ(table.sum(7), QString::number(tick * 50000.0, 'f', 2));
    }
}

TEST_F(ConfirmQuotes, CallBacksOfOtherThreadsAndTheTimerDoNotDisturbEachOther) {
    CConfirmTable table;
    table.widget.setOrders(std::vector<CCodeOrderParam>(50, makeRecord(100)));
    const auto callback = host.quotes.callbacks.at(kKey);
    std::atomic<bool> isEnd{false};
    std::vector<std::thread> threads;
    for (int i = 0; i < 2; ++i) {
        threads.emplace_back([&] {
            while (!isEnd)
                callback(makeQuote(10));
        });
    }
    for (int tick = 0; tick < 200; ++tick) {
        table.widget.slotTimeout();
        if (tick % 50 == 0) table.widget.setOrders(std::vector<CCodeOrderParam>(50, makeRecord(100)));
    }
    isEnd = true;
    for (std::thread& thread : threads)
        thread.join();
    callback(makeQuote(11));
    table.widget.slotTimeout();
    EXPECT_EQ(table.sum(7), QStringLiteral("55000.00"));
}

TEST_F(ConfirmQuotes, CallBacksMayComeWhileTheTableIsDestroyed) {
    std::atomic<bool> isEnd{false};
    auto table = std::make_unique<CConfirmTable>();
    table->widget.setOrders({makeRecord(100)});
    const auto callback = host.quotes.callbacks.at(kKey);
    std::atomic<int> calls{0};
    std::thread thread([&] {
        while (!isEnd) {
            callback(makeQuote(10));
            ++calls;
        }
    });
    while (calls < 10)
        std::this_thread::yield();
    table.reset();
    const int atEnd = calls;
    while (calls < atEnd + 10)
        std::this_thread::yield();
    isEnd = true;
    thread.join();
    EXPECT_EQ(host.quotes.liveSubscriptions, 0);
}

} // namespace
