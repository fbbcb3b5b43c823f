// Baskets whose quotes do not arrive: how long they block the service's thread, and what happens to the
// orders after them.
#include "orderservice/platform/InstrumentTypes.h"
#include "tests/service/ServiceFixture.h"
#include "tests/support/FakeClock.h"

#include <QThread>

#include <algorithm>
#include <atomic>
#include <future>

namespace {

using namespace TC;

constexpr int kStockChannel = 3;
constexpr int kBasketChannel = 4;
constexpr int kCallChannel = 5;
constexpr int kSpareChannel = 6;
constexpr double kQuoteWait = 1.0;

class BasketQueue : public ServiceFixture {
protected:
    BasketQueue() {
        clock.onSleep = [this] {
            if (QThread::currentThread() != service().thread()) return;
            if (++serviceSleeps == 1) {
                held.set_value();
                released.get_future().wait();
            }
        };
    }
    void SetUp() override {
        ServiceFixture::SetUp();
        addFileStrategy(kStockChannel);
        addFileStrategy(kSpareChannel);
        host.user.addStrategy(CStrategyBuilder()
                                  .channel(kBasketChannel)
                                  .family(EOrderStrategyTradeType::Basket)
                                  .volume(1)
                                  .file(folder.path(fileOf(kBasketChannel))));
        folder.write(fileOf(kBasketChannel), "");
        host.user.addStrategy(CStrategyBuilder().channel(kCallChannel).source(EOrderStrategyType::Interface));
    }
    void TearDown() override {
        release();
        ServiceFixture::TearDown();
    }

    static std::string codeOf(int index) { return std::to_string(600100 + index); }
    /// Adds instruments that are allowed in baskets, with or without quotes.
    void addInstruments(int first, int count, bool hasQuotes) {
        for (int i = first; i < first + count; ++i) {
            host.addStock("SH", codeOf(i), 10);
            host.types.types.insert({knservice::kBasketTypes[0], "SH" + codeOf(i)});
            const QString key = QString::fromStdString("SH" + codeOf(i));
            host.quotes.quotes.at(key)->m_nDayCount = 1;
            if (!hasQuotes) host.quotes.quotes.erase(key);
        }
    }
    static std::string basketFile(int first, int count) {
        std::string bytes = "25,0\n";
        for (int i = first; i < first + count; ++i)
            bytes += codeOf(i) + "\t100\n";
        return bytes;
    }
    static COrderParam call(int volume) {
        return COrderBuilder(23)
            .channel(kCallChannel)
            .source(EOrderStrategyType::Interface)
            .line(QStringLiteral("600000"), 10.5, volume);
    }
    /// Returns when all files that were dropped before are in the service's queue. The file thread queues the
    /// orders of one file before it reports the next file.
    void waitForQueue() { drop(kSpareChannel, ""); }
    void waitUntilHeld() { held.get_future().wait(); }
    void release() {
        if (!isReleased) released.set_value();
        isReleased = true;
    }
    /// The channel, number of records and volume of every command.
    std::vector<std::string> commandTexts() const {
        std::vector<std::string> texts;
        for (const COrderComandParamPtr& command : host.commands()) {
            int volume = 0;
            for (const CCodeOrderParam& code : command->m_codes)
                volume += code.m_nVolume;
            texts.push_back(command->m_strTag + ": " + std::to_string(command->m_codes.size()) +
                            " records, volume " + std::to_string(volume));
        }
        return texts;
    }
    /// The number of waits for quotes on all threads.
    int quoteWaits() {
        const std::vector<double> sleeps = clock.sleeps();
        return static_cast<int>(std::count(sleeps.begin(), sleeps.end(), kQuoteWait));
    }

    CFakeClock clock;
    std::atomic<int> serviceSleeps{0};
    std::promise<void> held, released;
    bool isReleased = false;
};

TEST_F(BasketQueue, RowsWithoutQuotesHoldTheServicesThreadTwoSecondsEach) {
    constexpr int kRows = 40;
    addInstruments(0, kRows, false);
    release();
    service().loadFromConfig(false);
    drop(kBasketChannel, basketFile(0, kRows));
    ASSERT_TRUE(host.waitForCommands(1));
    EXPECT_EQ(serviceSleeps, 2 * kRows);
    EXPECT_EQ(quoteWaits(), 2 * kRows); // no other thread waits for a quote
    EXPECT_EQ(commandTexts(), std::vector<std::string>{"4: 0 records, volume 0"});
    EXPECT_EQ(host.errorTexts().size(), static_cast<std::size_t>(kRows));
}

TEST_F(BasketQueue, OrdersBehindAWaitingBasketAreServedInOrder) {
    addInstruments(0, 5, false);
    addInstruments(5, 3, true);
    service().loadFromConfig(false);
    drop(kBasketChannel, basketFile(0, 6)); // its last row has a quote
    waitUntilHeld();

    drop(kBasketChannel, basketFile(5, 2));
    drop(kStockChannel, "23,0,10.5,600000,100\n23,0,10.5,600000,200\n24,0,10.5,000001,300\n");
    waitForQueue();
    service().placeorder(call(400));
    drop(kBasketChannel, basketFile(6, 2));
    waitForQueue();
    service().placeorder(call(500));
    EXPECT_TRUE(host.commands().empty());

    release();
    service().shutdown();
    EXPECT_EQ(commandTexts(), (std::vector<std::string>{
                                  "4: 2 records, volume 100",
                                  "4: 4 records, volume 200",
                                  "3: 2 records, volume 100",
                                  "3: 2 records, volume 200",
                                  "3: 2 records, volume 300",
                                  "5: 2 records, volume 400",
                                  "4: 4 records, volume 200",
                                  "5: 2 records, volume 500",
                              }));
    EXPECT_EQ(serviceSleeps, 2 * 5);
    EXPECT_EQ(host.errorTexts().size(), 5u);
}

TEST_F(BasketQueue, NothingOfALongQueueIsLost) {
    constexpr int kFiles = 50;
    constexpr int kCalls = 200;
    addInstruments(0, 1, false);
    service().loadFromConfig(false);
    drop(kBasketChannel, basketFile(0, 1));
    waitUntilHeld();
    for (int i = 1; i <= kFiles; ++i)
        drop(kStockChannel, "23,0,10.5,600000," + std::to_string(100 * i) + "\n");
    waitForQueue();
    for (int i = 1; i <= kCalls; ++i)
        service().placeorder(call(100 * i));
    release();
    service().shutdown();
    std::vector<std::string> expected{"4: 0 records, volume 0"};
    for (int i = 1; i <= kFiles; ++i)
        expected.push_back("3: 2 records, volume " + std::to_string(100 * i));
    for (int i = 1; i <= kCalls; ++i)
        expected.push_back("5: 2 records, volume " + std::to_string(100 * i));
    EXPECT_EQ(commandTexts(), expected);
}

TEST_F(BasketQueue, StrategiesCanBeStoppedWhileABasketWaits) {
    addInstruments(0, 3, false);
    service().loadFromConfig(false);
    drop(kBasketChannel, basketFile(0, 3));
    waitUntilHeld();
    service().placeorder(call(100));
    QString error;
    EXPECT_EQ(service().stopOrderStrategy(kCallChannel, error), 0);
    drop(kStockChannel, "23,0,10.5,600000,200\n");
    release();
    service().shutdown();
    // The order of the stopped strategy is refused with a message when its turn comes. The next order is
    // executed.
    EXPECT_EQ(commandTexts(),
              (std::vector<std::string>{"4: 0 records, volume 0", "3: 2 records, volume 200"}));
    const QString refusal = QStringLiteral("[接口单]　通道号: 5, 对应的策略未启动!");
    const std::vector<QString> messages = host.messageTexts();
    EXPECT_EQ(std::count(messages.begin(), messages.end(), refusal), 1);
}

TEST_F(BasketQueue, ThousandsOfRowsBecomeOneCommandAheadOfWhatFollows) {
    constexpr int kRows = 5000;
    addInstruments(0, kRows, true);
    release();
    service().loadFromConfig(false);
    drop(kBasketChannel, basketFile(0, kRows));
    waitForQueue();
    service().placeorder(call(100));
    service().shutdown();
    EXPECT_EQ(commandTexts(),
              (std::vector<std::string>{"4: 10000 records, volume 500000", "5: 2 records, volume 100"}));
    EXPECT_EQ(serviceSleeps, 0);
}

} // namespace
