#include "orderservice/socket/SocketListeners.h"

#include "tests/support/Builders.h"
#include "tests/support/DoorFakes.h"
#include "tests/support/FakeClock.h"
#include "tests/support/FakeHost.h"
#include "tests/support/TestSocket.h"

#include <gtest/gtest.h>

namespace {

using namespace TC;

const QString kPortTaken = QStringLiteral("启动socket服务失败（可能因为端口被占用或其它原因）");

class SocketListeners : public testing::Test {
protected:
    COrderStrategyParam onPort(int channel, unsigned short number,
                               const QString& pass = QStringLiteral("p")) {
        return CStrategyBuilder().channel(channel).source(EOrderStrategyType::Signal).set([&](auto& s) {
            s.m_strSignalSource = QStringLiteral("127.0.0.1:%1").arg(number);
            s.m_strUser = QStringLiteral("u");
            s.m_strPass = pass;
        });
    }
    bool join(const COrderStrategyParam& strategy) {
        error.clear();
        return listeners.join(strategy, error);
    }
    static bool isListening(unsigned short number) {
        boost::asio::io_service io;
        boost::asio::ip::tcp::socket socket(io);
        boost::system::error_code failure;
        socket.connect({boost::asio::ip::address_v4::loopback(), number}, failure);
        return !failure;
    }

    CFakeHost host;
    CRecordingGate gate;
    CPlainRegistry registry;
    QString error;
    CSocketListeners listeners{gate, registry};
    const unsigned short port = freePort();
};

TEST_F(SocketListeners, StrategiesOfOneAddressShareAListener) {
    ASSERT_TRUE(join(onPort(1, port)));
    ASSERT_TRUE(join(onPort(2, port)));
    EXPECT_TRUE(error.isEmpty());
    EXPECT_TRUE(listeners.leave(onPort(1, port), error));
    EXPECT_TRUE(isListening(port));
    EXPECT_TRUE(listeners.leave(onPort(2, port), error));
    EXPECT_FALSE(isListening(port));
    ASSERT_EQ(host.audit.doors.size(), 2u);
    EXPECT_EQ(host.audit.doors[0].m_eEvent, EDoorEvent::Opened);
    EXPECT_EQ(host.audit.doors[1].m_eEvent, EDoorEvent::Closed);
    EXPECT_EQ(host.audit.doors[1].m_strSource, QStringLiteral("127.0.0.1:%1").arg(port));
}

TEST_F(SocketListeners, OtherCredentialsAreRefused) {
    ASSERT_TRUE(join(onPort(1, port)));
    EXPECT_FALSE(join(onPort(2, port, QStringLiteral("P"))));
    EXPECT_EQ(error,
              QStringLiteral("127.0.0.1:%1已绑定一个正在监听的口服务, 请将用户名和密码设置成统一的配置后再试")
                  .arg(port));
    COrderStrategyParam user = onPort(2, port);
    user.m_strUser = QStringLiteral("U");
    EXPECT_FALSE(join(user));
    EXPECT_TRUE(listeners.leave(onPort(1, port), error)); // refused strategies are not counted
    EXPECT_FALSE(isListening(port));
}

TEST_F(SocketListeners, AddressMustBeTwoParts) {
    for (const char* text : {"127.0.0.1", "127.0.0.1:1:2", "::1:15150", "127.0.0.1:", "127.0.0.1:x",
                             "127.0.0.1:0", "127.0.0.1:65536"}) {
        COrderStrategyParam strategy = onPort(1, port);
        strategy.m_strSignalSource = QString::fromLatin1(text);
        EXPECT_FALSE(join(strategy)) << text;
        EXPECT_EQ(error, QStringLiteral("IP与端口格式不正确")) << text;
    }
}

TEST_F(SocketListeners, PortIsNarrowedToSixteenBits) {
    COrderStrategyParam strategy = onPort(1, port);
    strategy.m_strSignalSource = QStringLiteral("127.0.0.1:%1").arg(port + 65536);
    ASSERT_TRUE(join(strategy));
    EXPECT_TRUE(isListening(port));
}

TEST_F(SocketListeners, TakenPortAndBadAddressAreOneError) {
    boost::asio::io_service io;
    const boost::asio::ip::tcp::acceptor other(io, {boost::asio::ip::address_v4::loopback(), 0});
    EXPECT_FALSE(join(onPort(1, other.local_endpoint().port())));
    EXPECT_EQ(error, kPortTaken);
    COrderStrategyParam nowhere = onPort(1, port);
    nowhere.m_strSignalSource = QStringLiteral("localhost:%1").arg(port);
    EXPECT_FALSE(join(nowhere));
    EXPECT_EQ(error, kPortTaken);
    EXPECT_TRUE(host.audit.doors.empty());
}

TEST_F(SocketListeners, TextsThatDifferAreListenersOfTheirOwn) {
    ASSERT_TRUE(join(onPort(1, port)));
    COrderStrategyParam same = onPort(2, port);
    same.m_strSignalSource = QStringLiteral("127.0.0.1:0%1").arg(port);
    EXPECT_FALSE(join(same)); // another spelling of an address in use
    EXPECT_EQ(error, kPortTaken);
}

TEST_F(SocketListeners, ListenerMayBeOpenedAgainAtOnce) {
    for (int i = 0; i < 50; ++i) {
        ASSERT_TRUE(join(onPort(1, port))) << i;
        CTestSocket client(port);
        EXPECT_FALSE(client.readLine().empty());
        ASSERT_TRUE(listeners.leave(onPort(1, port), error));
        EXPECT_TRUE(client.isClosedByServer());
    }
}

TEST_F(SocketListeners, LeavingWhatNeverListenedIsNoError) {
    EXPECT_TRUE(listeners.leave(onPort(1, port), error));
    EXPECT_TRUE(error.isEmpty());
}

TEST_F(SocketListeners, CountedRefusalsAreReportedBeforeTheDoorCloses) {
    const CFakeClock clock;
    host.switches.on.insert("mdl_order_socket_guard");
    ASSERT_TRUE(join(onPort(1, port)));
    for (int i = 0; i < 15; ++i) {
        CTestSocket client(port);
        client.send("\n");
        client.readAll();
    }
    EXPECT_TRUE(listeners.leave(onPort(1, port), error));
    listeners.joinAll();
    ASSERT_EQ(host.audit.doors.size(), 13u);
    EXPECT_EQ(host.audit.doors[11].m_eEvent, EDoorEvent::Refused);
    EXPECT_EQ(host.audit.doors[11].m_strCause, QStringLiteral("5 others"));
    EXPECT_EQ(host.audit.doors[12].m_eEvent, EDoorEvent::Closed);
}

TEST_F(SocketListeners, ShutdownEndsAStuckListener) {
    ASSERT_TRUE(join(onPort(1, port)));
    CTestSocket client(port);
    client.readLine();
    client.send("\n");
    listeners.closeAll();
    listeners.joinAll();
    EXPECT_TRUE(client.isClosedByServer());
    EXPECT_FALSE(isListening(port));
}

} // namespace
