// A client that sends orders faster than the service processes them, and the effect on other clients.
#include "orderservice/socket/OrderCredit.h"
#include "orderservice/socket/SocketListeners.h"
#include "tests/socket/SlowGate.h"
#include "tests/socket/SocketFixture.h"

#include <memory>
#include <string>
#include <thread>
#include <vector>

namespace {

using namespace TC;

constexpr std::size_t kRoom = COrderCredit::kMostRoom;
constexpr std::size_t kShare = kRoom / 2;

std::string orderLine(int volume) {
    return "placeorder 23,3,10.5,600000," + std::to_string(volume) + "\r\n";
}

std::vector<std::string> numbers(int first, int count) {
    std::vector<std::string> names;
    for (int i = 0; i < count; ++i)
        names.push_back(std::to_string(first + i));
    return names;
}

std::string orderLines(int first, int count) {
    std::string lines;
    for (int i = 0; i < count; ++i)
        lines += orderLine(first + i);
    return lines;
}

/// A client that sends everything at once. It uses its own thread, because the listener may read slowly.
class CFlooder {
public:
    CFlooder(std::unique_ptr<CTestSocket> client, std::string lines)
        : m_client(std::move(client)), m_sender([this, bytes = std::move(lines)] {
              boost::system::error_code ignored; // the listener may stop meanwhile
              boost::asio::write(m_client->socket(), boost::asio::buffer(bytes), ignored);
          }) {}
    ~CFlooder() {
        boost::system::error_code ignored;
        m_client->socket().shutdown(boost::asio::ip::tcp::socket::shutdown_both, ignored);
        m_sender.join();
    }
    CTestSocket& client() { return *m_client; }
    std::size_t readReplies(int count) {
        std::size_t good = 0;
        for (int i = 0; i < count; ++i)
            good += client().readLine() == kOk ? 1 : 0;
        return good;
    }

private:
    std::unique_ptr<CTestSocket> m_client;
    std::thread m_sender;
};

class OrderFlood : public SocketFixture {
protected:
    OrderFlood() { guard(); }
    void TearDown() override {
        stop();
        slow.processOrders(1'000'000);
    }
    IOrderGate& gateInUse() override { return slow; }

    /// Returns when the listener has read everything that was sent before.
    void settle(CTestSocket& bystander) { EXPECT_EQ(bystander.ask("nonsense"), "-ERR Bad Command\r\n"); }

    CSlowGate slow;
};

TEST_F(OrderFlood, FloodIsHeldBackAndNothingOfItIsLost) {
    constexpr int kOrders = 5000;
    start();
    const auto bystander = logIn();
    CFlooder flooder(logIn(), orderLines(1, kOrders));
    slow.waitForQueue(kShare);
    settle(*bystander);
    settle(*bystander);
    EXPECT_EQ(slow.queue().size(), kShare);
    slow.processUntil(kOrders);
    EXPECT_EQ(flooder.readReplies(kOrders), std::size_t{kOrders});
    EXPECT_EQ(slow.processed(), numbers(1, kOrders));
    EXPECT_EQ(slow.longestQueue(), kShare);
}

TEST_F(OrderFlood, WithoutTheGuardEverythingIsQueued) {
    constexpr int kOrders = 5000;
    host.switches.on.erase("mdl_order_socket_guard");
    start();
    CFlooder flooder(logIn(), orderLines(1, kOrders));
    EXPECT_EQ(flooder.readReplies(kOrders), std::size_t{kOrders});
    EXPECT_EQ(slow.queue().size(), std::size_t{kOrders});
}

TEST_F(OrderFlood, OrderOfAnotherClientHasFewInFrontOfIt) {
    start();
    const auto other = logIn();
    CFlooder flooder(logIn(), orderLines(1, 20000));
    for (int round = 0; round < 50; ++round) {
        slow.waitForQueue(kShare / 2);
        const std::string name = std::to_string(1'000'000 + round);
        EXPECT_EQ(other->ask("placeorder 23,3,10.5,600000," + name), kOk);
        EXPECT_LE(slow.placeOf(name), kShare);
        slow.processOrders(2 * kShare);
    }
}

TEST_F(OrderFlood, CancelOfAnotherClientHasFewInFrontOfIt) {
    start();
    const auto other = logIn();
    CFlooder flooder(logIn(), orderLines(1, 20000));
    slow.waitForQueue(kShare);
    EXPECT_EQ(other->ask("cancel 7"), kOk);
    EXPECT_LE(slow.placeOf("cancel 7"), kShare);
}

TEST_F(OrderFlood, ManyFloodersShareTheRoom) {
    constexpr std::size_t kFlooders = 20;
    start();
    const auto other = logIn(), bystander = logIn();
    std::vector<std::unique_ptr<CFlooder>> flooders;
    for (std::size_t i = 0; i < kFlooders; ++i)
        flooders.push_back(std::make_unique<CFlooder>(logIn(), orderLines(1, 5000)));
    slow.waitForQueue(kRoom);
    for (int round = 0; round < 5; ++round) {
        const std::size_t before = slow.processed().size();
        const std::string name = std::to_string(1'000'000 + round);
        other->send(orderLine(1'000'000 + round));
        settle(*bystander);
        while (!other->waitForData(std::chrono::milliseconds(0))) {
            slow.processOrders(1);
            settle(*bystander);
        }
        EXPECT_EQ(other->readLine(), kOk);
        const std::size_t place = slow.processed().size() - before + slow.placeOf(name);
        // The queued orders, and a turn of one order for each other client. Some clients may end a turn
        // twice.
        EXPECT_LE(place, kRoom + 2 * kFlooders);
    }
    EXPECT_LE(slow.longestQueue(), kRoom + 1);
}

TEST_F(OrderFlood, CancelsAreHeldBackInTheirOrder) {
    std::string lines;
    std::vector<std::string> names;
    for (int i = 1; i <= 500; ++i) {
        lines += orderLine(i) + "cancel " + std::to_string(i) + "\r\n";
        names.push_back(std::to_string(i));
        names.push_back("cancel " + std::to_string(i));
    }
    start();
    CFlooder flooder(logIn(), lines);
    slow.waitForQueue(kShare);
    slow.processUntil(names.size());
    EXPECT_EQ(slow.processed(), names);
    EXPECT_EQ(slow.longestQueue(), kShare);
}

TEST_F(OrderFlood, LinesAfterAHeldOrderWaitForIt) {
    start();
    const auto bystander = logIn();
    CFlooder flooder(logIn(), orderLines(1, 100) + "nonsense\r\nquit\r\n");
    slow.waitForQueue(kShare);
    EXPECT_EQ(flooder.readReplies(kShare), kShare);
    settle(*bystander);
    EXPECT_FALSE(flooder.client().waitForData(std::chrono::milliseconds(0)));
    slow.processUntil(100);
    EXPECT_EQ(flooder.readReplies(100 - kShare), 100 - kShare);
    EXPECT_EQ(flooder.client().readAll(), "-ERR Bad Command\r\n" + kOk);
}

TEST_F(OrderFlood, BrokenOrdersTakeNoRoom) {
    start();
    const auto client = logIn();
    for (std::size_t i = 0; i < 3 * kRoom; ++i)
        EXPECT_EQ(client->ask("placeorder 23,3,x"), "-ERR Bad Param\r\n");
    EXPECT_EQ(client->ask("cancel 1"), kOk);
}

TEST_F(OrderFlood, HalfClosedClientGetsAllItsReplies) {
    start();
    const auto client = logIn();
    client->send(orderLines(1, 1000));
    client->finishSending();
    slow.processUntil(1000);
    EXPECT_EQ(client->readAll().size(), 1000 * kOk.size());
}

/// The server's first read takes 1024 bytes. After exactly 1024 bytes it may see the end of the stream at
/// once.
TEST_F(OrderFlood, EndOfTheStreamWaitsForTheOrdersBeforeIt) {
    constexpr std::size_t kFirstRead = 1024;
    constexpr int kOrders = 40, kRounds = 30;
    start();
    for (int round = 0; round < kRounds; ++round) {
        const auto client = logIn();
        std::string lines;
        for (int i = 1; i < kOrders; ++i)
            lines += "placeorder 23,3,9,1,7\r\n";
        lines += "placeorder 23,3,9,1,7";
        lines += std::string(kFirstRead - 2 - lines.size(), ' ') + "\r\n";
        client->send(lines);
        client->finishSending();
        slow.processUntil(static_cast<std::size_t>((round + 1) * kOrders));
        EXPECT_EQ(client->readAll().size(), kOrders * kOk.size());
    }
}

TEST_F(OrderFlood, WholeLinesOfABrokenConnectionAreServed) {
    constexpr int kOrders = 500;
    start();
    const auto bystander = logIn();
    {
        const auto client = logIn();
        client->send(orderLines(1, kOrders) + "placeorder 23,3,10.5,600000,9");
        slow.waitForQueue(kShare);
        settle(*bystander);
        client->reset();
    }
    slow.processUntil(kOrders);
    settle(*bystander);
    EXPECT_EQ(slow.processed(), numbers(1, kOrders));
    EXPECT_TRUE(slow.queue().empty());
    EXPECT_EQ(slow.longestQueue(), kShare);
}

TEST_F(OrderFlood, ListenerStopsWhileConnectionsAreHeld) {
    start();
    CFlooder flooder(logIn(), orderLines(1, 1000));
    slow.waitForQueue(kShare);
    EXPECT_EQ(flooder.readReplies(kShare), kShare);
    stop();
    EXPECT_EQ(flooder.client().readAll(), "");
    slow.processOrders(1000); // room that is returned after the end of the listener
    EXPECT_EQ(slow.processed().size(), kShare);
}

TEST_F(OrderFlood, BasketNeedsRoomForEachOfItsRows) {
    registry.strategies.insert(3, CStrategyBuilder());
    start();
    const auto bystander = logIn();
    std::string basket = "placeorder 25,3,";
    for (std::size_t i = 0; i < 2 * kRoom; ++i)
        basket += (i > 0 ? ";600000|" : "600000|") + std::to_string(i + 1);
    CFlooder flooder(logIn(), basket + "\r\n" + orderLines(1000, 10));
    slow.waitForQueue(1);
    settle(*bystander);
    EXPECT_EQ(slow.queue(), std::vector<std::string>{"1"});
    slow.processUntil(11);
    EXPECT_EQ(slow.processed().back(), "1009");
}

TEST_F(OrderFlood, ListenersShareTheRoom) {
    const unsigned short ports[] = {freePort(), freePort()};
    CSocketListeners listeners(slow, registry);
    QString error;
    for (const unsigned short port : ports) {
        COrderStrategyParam strategy = CStrategyBuilder().channel(port).source(EOrderStrategyType::Signal);
        strategy.m_strSignalSource = QStringLiteral("127.0.0.1:%1").arg(port);
        strategy.m_strUser = QStringLiteral("trader");
        strategy.m_strPass = QStringLiteral("secret");
        ASSERT_TRUE(listeners.join(strategy, error)) << error.toStdString();
    }
    std::vector<std::unique_ptr<CFlooder>> flooders;
    for (int i = 0; i < 6; ++i) {
        m_nPort = ports[i % 2];
        flooders.push_back(std::make_unique<CFlooder>(logIn(), orderLines(1, 1000)));
    }
    slow.waitForQueue(kRoom);
    slow.processUntil(2000);
    // Two listeners may both see the last free place and use it.
    EXPECT_LE(slow.longestQueue(), kRoom + 1);
    flooders.clear();
    listeners.closeAll();
    listeners.joinAll();
}

} // namespace
