// Socket strategies in the service: their start and stop with every message, and the complete path of an
// order line.
#include "orderservice/base/StopRequest.h"
#include "orderservice/service/StrategyRegistry.h"
#include "orderservice/socket/OrderSocketServerWrapper.h"
#include "orderservice/socket/SocketListeners.h"
#include "tests/service/ServiceFixture.h"
#include "tests/support/DoorFakes.h"
#include "tests/support/FakeClock.h"
#include "tests/support/TestSocket.h"

#include <chrono>
#include <future>
#include <stdexcept>
#include <thread>
#include <vector>

namespace {

using namespace TC;

class SocketStrategy : public ServiceFixture {
protected:
    void SetUp() override {
        ServiceFixture::SetUp();
        QObject::connect(
            &service(), &COrderService::sigSetStatus, &service(),
            [this](bool running) { statuses.push_back(running); }, Qt::DirectConnection);
    }
    CStrategyBuilder onPort(int channel, unsigned short number) {
        return CStrategyBuilder()
            .channel(channel)
            .source(EOrderStrategyType::Signal)
            .code(QStringLiteral("SH600000"))
            .stopped()
            .set([&](auto& s) {
                s.m_strSignalSource = QStringLiteral("127.0.0.1:%1").arg(number);
                s.m_strUser = QStringLiteral("交易员");
                s.m_strPass = QStringLiteral("secret");
            });
    }
    void add(const COrderStrategyParam& strategy) {
        host.user.addStrategy(strategy);
        service().loadFromConfig(false);
        statuses.clear();
    }
    int start(int id = 3) {
        error.clear();
        return service().startOrderStrategy(id, error, true);
    }
    bool isRunning(int id = 3) { return service().getStrategyMap()[id].isRunning(); }
    /// Connects and logs in. Names and passwords are compared in UTF-8.
    std::unique_ptr<CTestSocket> logIn() {
        auto client = std::make_unique<CTestSocket>(port);
        client->readLine();
        EXPECT_EQ(client->ask("user 交易员"), "+OK\r\n");
        EXPECT_EQ(client->ask("pass secret"), "+OK\r\n");
        return client;
    }

    QString error;
    std::vector<bool> statuses;
    const unsigned short port = freePort();
};

TEST_F(SocketStrategy, StartListensAndStopEnds) {
    add(onPort(3, port));
    ASSERT_EQ(start(), 0);
    EXPECT_TRUE(isRunning());
    logIn();
    EXPECT_EQ(service().stopOrderStrategy(3, error), 0);
    EXPECT_FALSE(isRunning());
    EXPECT_THROW(CTestSocket gone(port), boost::system::system_error);
    EXPECT_EQ(statuses, (std::vector<bool>{true, false}));
    EXPECT_EQ(host.messageTexts(), (std::vector<QString>{QStringLiteral("[标题1]　策略3: 启动成功!"),
                                                         QStringLiteral("[标题1]　策略3: 停止运行!")}));
}

TEST_F(SocketStrategy, OrderLineBecomesACommand) {
    add(onPort(3, port));
    ASSERT_EQ(start(), 0);
    const auto client = logIn();
    EXPECT_EQ(client->ask("placeorder 23,3,10.5,600000,100"), "+OK\r\n");
    EXPECT_EQ(client->ask("cancel 42"), "+OK\r\n");
    service().shutdown();
    ASSERT_EQ(host.commands().size(), 1u);
    EXPECT_EQ(host.commands()[0]->m_eStrategyType, EOrderStrategyType::Signal);
    ASSERT_EQ(host.trade.cancelled.size(), 1u);
    EXPECT_EQ(host.trade.cancelled[0].taskId, 42);
}

TEST_F(SocketStrategy, TakenPortLeavesTheStrategyStopped) {
    boost::asio::io_service io;
    const boost::asio::ip::tcp::acceptor other(io, {boost::asio::ip::address_v4::loopback(), port});
    add(onPort(3, port));
    EXPECT_EQ(start(), -1);
    EXPECT_EQ(error, QStringLiteral("启动socket服务失败（可能因为端口被占用或其它原因）"));
    EXPECT_FALSE(isRunning());
    EXPECT_TRUE(statuses.empty());
    EXPECT_TRUE(host.messageTexts().empty());
}

TEST_F(SocketStrategy, SourceMustBeThereAndWellFormed) {
    add(onPort(3, port).file(""));
    EXPECT_EQ(start(), -1);
    EXPECT_EQ(error, QStringLiteral("信号来源为空"));
    host.user.strategies.clear();
    add(onPort(3, port).file("127.0.0.1"));
    EXPECT_EQ(start(), -1);
    EXPECT_EQ(error, QStringLiteral("IP与端口格式不正确"));
}

TEST_F(SocketStrategy, TwoStrategiesShareAListener) {
    host.user.addStrategy(onPort(4, port));
    add(onPort(3, port));
    ASSERT_EQ(start(3), 0);
    ASSERT_EQ(start(4), 0);
    const auto client = logIn();
    EXPECT_EQ(service().stopOrderStrategy(3, error), 0);
    EXPECT_EQ(client->ask("placeorder 23,4,10.5,600000,100"), "+OK\r\n");
    EXPECT_EQ(service().stopOrderStrategy(4, error), 0);
    EXPECT_TRUE(client->isClosedByServer());
}

TEST_F(SocketStrategy, OtherCredentialsOnOneAddressAreRefused) {
    host.user.addStrategy(onPort(4, port).set([](auto& s) { s.m_strPass = QStringLiteral("other"); }));
    add(onPort(3, port));
    ASSERT_EQ(start(3), 0);
    EXPECT_EQ(start(4), -1);
    EXPECT_EQ(error,
              QStringLiteral("127.0.0.1:%1已绑定一个正在监听的口服务, 请将用户名和密码设置成统一的配置后再试")
                  .arg(port));
    EXPECT_FALSE(isRunning(4));
}

TEST_F(SocketStrategy, StoppedStrategyOfALiveListenerIsRefusedByTheCheck) {
    host.user.addStrategy(onPort(4, port));
    add(onPort(3, port));
    ASSERT_EQ(start(3), 0);
    EXPECT_EQ(logIn()->ask("placeorder 23,4,10.5,600000,100"), "+OK\r\n");
    service().shutdown();
    EXPECT_TRUE(host.commands().empty());
    EXPECT_EQ(host.messageTexts().back(), QStringLiteral("[信号单]　通道号: 4, 对应的策略未启动!"));
}

TEST_F(SocketStrategy, RemovedStrategyLeavesItsListenerAsItIs) {
    add(onPort(3, port));
    ASSERT_EQ(start(), 0);
    EXPECT_EQ(service().removeOrderStrategy(3), 0);
    EXPECT_EQ(logIn()->ask("cancel 1"), "+OK\r\n");
    service().shutdown();
    EXPECT_THROW(CTestSocket gone(port), boost::system::system_error);
}

TEST_F(SocketStrategy, RememberedAsRunningItListensFromTheLoadOn) {
    host.user.addStrategy(onPort(3, port).set([](auto& s) { s.m_nStatus = COrderStrategyParam::kRunning; }));
    service().loadFromConfig(false);
    EXPECT_EQ(logIn()->ask("cancel 1"), "+OK\r\n");
    // A second load restarts the strategy on its existing listener.
    service().loadFromConfig(false);
    EXPECT_TRUE(isRunning());
    EXPECT_EQ(logIn()->ask("cancel 1"), "+OK\r\n");
    EXPECT_EQ(service().stopOrderStrategy(3, error), 0);
    EXPECT_THROW(CTestSocket gone(port), boost::system::system_error);
}

TEST_F(SocketStrategy, FailedRestartClosesTheDoor) {
    add(onPort(3, port));
    ASSERT_EQ(start(), 0);
    host.trade.loginStatus["A2"] = 3;
    service().loadFromConfig(false);
    EXPECT_FALSE(isRunning());
    EXPECT_THROW(CTestSocket gone(port), boost::system::system_error);
}

TEST_F(SocketStrategy, StrategyOverTheLimitLosesItsListener) {
    addFileStrategy(1);
    add(onPort(3, port));
    ASSERT_EQ(start(), 0);
    host.user.maxStrategies = 1;
    service().loadFromConfig(false);
    EXPECT_THROW(CTestSocket gone(port), boost::system::system_error);
}

TEST_F(SocketStrategy, ListenersOfOneUserEndWithTheNext) {
    add(onPort(3, port));
    ASSERT_EQ(start(), 0);
    const auto client = logIn();
    host.user.loggedIn = false;
    service().loadFromConfig(false);
    EXPECT_TRUE(client->isClosedByServer());
    EXPECT_THROW(CTestSocket gone(port), boost::system::system_error);
}

TEST_F(SocketStrategy, NothingListensAfterTheShutdown) {
    add(onPort(3, port));
    service().shutdown();
    EXPECT_EQ(start(), -1);
    EXPECT_EQ(error, QStringLiteral("下单服务已关闭"));
    service().cancelOrder(7);
    EXPECT_EQ(host.messageTexts().back(), QStringLiteral("[接口单]　下单服务已关闭, 1条指令未执行!"));
}

TEST_F(SocketStrategy, StartsDuringAShutdownEndInOrder) {
    add(onPort(3, port));
    std::thread starter([this] {
        QString text;
        for (int i = 0; i < 200; ++i) {
            service().startOrderStrategy(3, text, false);
            service().stopOrderStrategy(3, text);
        }
    });
    service().shutdown();
    starter.join();
    EXPECT_THROW(CTestSocket gone(port), boost::system::system_error);
}

TEST_F(SocketStrategy, EveryAcknowledgedOrderIsProcessed) {
    add(onPort(3, port));
    ASSERT_EQ(start(), 0);
    const auto client = logIn();
    std::string lines;
    for (int i = 0; i < 500; ++i)
        lines += "placeorder 23,3,10.5,600000,100\r\n";
    std::thread sender([&] {
        boost::system::error_code ended; // the server may close the connection during this write
        boost::asio::write(client->socket(), boost::asio::buffer(lines), ended);
    });
    client->readLine();
    service().shutdown();
    sender.join();
    std::size_t acknowledged = 1;
    while (client->readLine() == "+OK\r\n")
        ++acknowledged;
    EXPECT_LE(acknowledged, host.commands().size());
}

TEST_F(SocketStrategy, NoteOnAnEmptyCodeOutlivesASuccessfulStart) {
    add(onPort(3, port).code(QString()));
    ASSERT_EQ(start(), 0);
    EXPECT_EQ(error, QStringLiteral("代码不能为空"));
}

TEST_F(SocketStrategy, HostMayRemoveTheStrategyWhenItHearsOfTheDoor) {
    add(onPort(3, port));
    host.audit.onRecord = [this] { service().removeOrderStrategy(3); };
    EXPECT_EQ(start(), 0);
    EXPECT_TRUE(service().getStrategyMap().isEmpty());
    host.audit.onRecord = nullptr;
}

TEST_F(SocketStrategy, PortThatIsNarrowedIsNamedToTheAudit) {
    add(onPort(3, port).set(
        [this](auto& s) { s.m_strSignalSource = QStringLiteral("127.0.0.1:%1").arg(65536 + port); }));
    ASSERT_EQ(start(), 0);
    logIn();
    ASSERT_EQ(host.audit.doors.size(), 1u);
    EXPECT_EQ(host.audit.doors[0].m_strCause, QStringLiteral("listens on port %1").arg(port));
    add(onPort(4, freePort()));
    ASSERT_EQ(start(4), 0);
    EXPECT_TRUE(host.audit.doors.back().m_strCause.isEmpty());
}

TEST_F(SocketStrategy, StuckListenerStillStops) {
    add(onPort(3, port));
    ASSERT_EQ(start(), 0);
    const auto client = logIn();
    client->send("x\n");
    EXPECT_EQ(service().stopOrderStrategy(3, error), 0);
    EXPECT_TRUE(client->isClosedByServer());
    ASSERT_EQ(start(), 0);
    EXPECT_EQ(logIn()->ask("cancel 1"), "+OK\r\n");
}

/// Listeners that cannot be stopped while refusesToStop is set.
class CStuckListeners : public CSocketListeners {
public:
    using CSocketListeners::CSocketListeners;
    bool refusesToStop = false;

protected:
    void stopListener(COrderSocketServerWrapper& wrapper) override {
        if (refusesToStop) throw std::runtime_error("the listener does not stop");
        CSocketListeners::stopListener(wrapper);
    }
};

TEST_F(SocketStrategy, StopThatFailsLeavesTheStrategyRunningUntilTheNext) {
    CRecordingGate gate;
    CPlainRegistry strategies;
    CStuckListeners listeners(gate, strategies);
    CStrategyRegistry registry([this](bool running) { statuses.push_back(running); }, listeners);
    COrderStrategyMap map{{3, onPort(3, port)}};
    registry.bind(&map);
    ASSERT_EQ(registry.start(3, error, false), 0);
    listeners.refusesToStop = true;
    EXPECT_EQ(registry.stop(3, error), -1);
    EXPECT_EQ(error, QStringLiteral("停止socket服务失败"));
    EXPECT_TRUE(registry.find(3)->isRunning());
    EXPECT_EQ(logIn()->ask("cancel 1"), "+OK\r\n"); // the listener still works
    listeners.refusesToStop = false;
    EXPECT_EQ(registry.stop(3, error), 0);
    EXPECT_FALSE(registry.find(3)->isRunning());
    EXPECT_THROW(CTestSocket gone(port), boost::system::system_error);
    EXPECT_EQ(statuses, (std::vector<bool>{true, false}));
}

TEST_F(SocketStrategy, OrdersFlowWhileTheRegistryIsHeld) {
    addFileStrategy(5);
    add(onPort(3, port));
    ASSERT_EQ(start(), 0);
    const auto client = logIn();
    service().visitStrategies([&](int channel, const COrderStrategyParam&) {
        if (channel != 5) return;
        EXPECT_EQ(client->ask("placeorder 26,3,all"), "+OK\r\n"); // this order needs a copy of the strategy
        EXPECT_EQ(client->ask("placeorder 23,3,10.5,600000,100"), "+OK\r\n");
        EXPECT_TRUE(host.waitForCommands(1));
    });
}

/// Makes a ticket and tells when its last copy is destroyed.
class CTicket {
public:
    std::shared_ptr<const void> make() {
        return {this, [this](const void*) { m_gone.set_value(); }};
    }
    bool isGone() { return m_future.wait_for(std::chrono::seconds(0)) == std::future_status::ready; }
    bool waitUntilGone() { return m_future.wait_for(std::chrono::seconds(60)) == std::future_status::ready; }

private:
    std::promise<void> m_gone;
    std::future<void> m_future = m_gone.get_future();
};

TEST_F(SocketStrategy, TicketGoesWhenWhatWasQueuedBeforeItIsProcessed) {
    add(onPort(3, port));
    ASSERT_EQ(start(), 0) << error.toStdString();
    std::promise<void> mayGoOn;
    const auto goOn = mayGoOn.get_future().share();
    std::promise<void> inHand;
    host.orders.onCommand = [&](const COrderComandParamPtr&) {
        inHand.set_value();
        goOn.wait();
    };
    CTicket ticket;
    service().placeorder(
        COrderBuilder(23).source(EOrderStrategyType::Signal).line(QStringLiteral("600000"), 10.5, 100));
    service().holdUntilProcessed(ticket.make());
    inHand.get_future().wait();
    EXPECT_FALSE(ticket.isGone());
    mayGoOn.set_value();
    EXPECT_TRUE(ticket.waitUntilGone());
    EXPECT_EQ(host.commands().size(), 1u);
}

TEST_F(SocketStrategy, TicketGoesAtOnceBehindTheEnd) {
    service().shutdown();
    CTicket ticket;
    service().holdUntilProcessed(ticket.make());
    EXPECT_TRUE(ticket.isGone());
}

TEST_F(SocketStrategy, HeldBackFloodBecomesCommandsInItsOrder) {
    constexpr int kOrders = 500;
    host.switches.on.insert("mdl_order_socket_guard");
    add(onPort(3, port));
    ASSERT_EQ(start(), 0) << error.toStdString();
    const auto client = logIn();
    std::string lines;
    for (int i = 1; i <= kOrders; ++i)
        lines += "placeorder 23,3,10.5,600000," + std::to_string(i * 100) + "\r\n";
    client->send(lines + "quit\r\n");
    EXPECT_EQ(client->readAll().size(), (kOrders + 1) * std::string("+OK\r\n").size());
    service().shutdown();
    const auto commands = host.commands();
    ASSERT_EQ(commands.size(), std::size_t{kOrders});
    for (int i = 1; i <= kOrders; ++i) {
        int sum = 0;
        for (const auto& code : commands[static_cast<std::size_t>(i) - 1]->m_codes)
            sum += code.m_nVolume;
        EXPECT_EQ(sum, i * 100);
    }
}

/// The waits of two seconds for a quote end at once. The file loop sleeps until it is stopped.
class CQuoteClock final : public CFakeClock {
public:
    void sleepUnlessStopped(double, const utils::CStopRequest& stop) override { stop.waitFor(60); }
};

class SocketStrategyQuotes : public SocketStrategy {
protected:
    CQuoteClock clock;
};

TEST_F(SocketStrategyQuotes, FewOrdersWithoutAQuoteAreInFrontOfAnotherClients) {
    constexpr int kReadsOfAnOrder = 3;
    constexpr int kMostOfOneClient = 4;
    const QString unquoted = QStringLiteral("SH600001");
    host.switches.on.insert("mdl_order_socket_guard");
    host.addStock("SH", "600001", 10);
    host.quotes.quotes.erase(unquoted);
    std::promise<void> firstInHand, mayGoOn;
    std::promise<int> readsInFront;
    const auto goOn = mayGoOn.get_future().share();
    int reads = 0;
    host.quotes.onRead = [&](const QString& key, int) {
        if (key != unquoted) return readsInFront.set_value(reads);
        if (reads++ == 0) {
            firstInHand.set_value();
            goOn.wait();
        }
    };
    add(onPort(3, port).price(EPriceType::Latest));
    ASSERT_EQ(start(), 0) << error.toStdString();
    const auto flooder = logIn();
    std::string lines;
    for (int i = 0; i < 200; ++i)
        lines += "placeorder 23,3,10.5,600001,100\r\n";
    flooder->send(lines);
    firstInHand.get_future().wait();
    const auto other = logIn();
    EXPECT_EQ(other->ask("placeorder 23,3,10.5,600000,100"), "+OK\r\n");
    mayGoOn.set_value();
    EXPECT_EQ(readsInFront.get_future().get(), kMostOfOneClient * kReadsOfAnOrder);
    service().shutdown();
}

} // namespace
