#include "orderservice/net/NetServer.h"

#include "tests/support/TestSocket.h"

#include <boost/make_shared.hpp>
#include <gtest/gtest.h>

#include <netinet/in.h>
#include <netinet/tcp.h>
#include <sys/socket.h>

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <filesystem>
#include <memory>
#include <mutex>
#include <stdexcept>
#include <thread>

namespace {

/// Sends back what it receives, and records the events.
class CEchoServer : public net::NetServer {
public:
    using net::NetServer::NetServer;

    void onConnected(net::NetConnectionPtr conn) override {
        note("connected");
        if (greeting.empty()) return;
        const std::vector<unsigned char> bytes(greeting.begin(), greeting.end());
        conn->send(bytes, static_cast<int>(bytes.size()), true);
    }
    void onDisconnected(int code, net::NetConnectionPtr) override { note(code == 0 ? "ended" : "broken"); }
    void onDataReceived(const std::vector<unsigned char>& data, int length,
                        net::NetConnectionPtr conn) override {
        const std::string text(data.begin(), data.begin() + length);
        if (text == "hold") return hold(conn);
        if (text == "throw") throw std::runtime_error("of the handler");
        conn->send(data, length, true);
        if (text == "quit") removeConnection(conn);
    }

    void onReleased(net::NetConnectionPtr) override { note("released"); }

    void hold(const net::NetConnectionPtr& conn) {
        conn->hold();
        held = conn;
        note("held");
    }
    void releaseHeld() {
        boost::asio::post(ioService(), [this] { held->release(); });
    }
    using NetServer::limitEnding;

    void note(const std::string& event) {
        const std::lock_guard lock(m_mutex);
        m_events.push_back(event);
        m_changed.notify_all();
    }
    /// Waits for this number of events and returns all events.
    std::vector<std::string> waitForEvents(std::size_t count) {
        std::unique_lock lock(m_mutex);
        m_changed.wait(lock, [&] { return m_events.size() >= count; });
        return m_events;
    }

    std::string greeting;
    net::NetConnectionPtr held; ///< the last connection; used on the server's thread

private:
    std::mutex m_mutex;
    std::condition_variable m_changed;
    std::vector<std::string> m_events;
};

class NetServer : public testing::Test {
protected:
    void SetUp() override {
        m_server = boost::make_shared<CEchoServer>(m_io, "127.0.0.1", 0, false, false);
        m_server->start(false);
        m_thread = std::thread([this] { m_io.run(); });
    }
    void TearDown() override { stop(); }
    void stop() {
        if (!m_thread.joinable()) return;
        m_server->stop();
        m_io.stop();
        m_thread.join();
    }
    unsigned short port() { return m_server->port(); }

    boost::asio::io_service m_io;
    boost::shared_ptr<CEchoServer> m_server;
    std::thread m_thread;
};

TEST_F(NetServer, ServesSeveralConnections) {
    CTestSocket a(port()), b(port());
    b.send("second\n");
    a.send("first\n");
    EXPECT_EQ(b.readLine(), "second\n");
    EXPECT_EQ(a.readLine(), "first\n");
}

TEST_F(NetServer, GreetingIsSentBeforeAnythingIsRead) {
    stop();
    boost::asio::io_service io;
    const auto server = boost::make_shared<CEchoServer>(io, "127.0.0.1", 0, false, false);
    server->greeting = "hello\n";
    server->start(false);
    std::thread thread([&] { io.run(); });
    CTestSocket client(server->port());
    EXPECT_EQ(client.readLine(), "hello\n");
    server->stop();
    io.stop();
    thread.join();
}

TEST_F(NetServer, OrderlyEndAndBrokenConnectionAreReported) {
    {
        CTestSocket orderly(port());
        orderly.send("x\n");
        orderly.readLine();
    }
    EXPECT_EQ(m_server->waitForEvents(2).back(), "ended");
    CTestSocket broken(port());
    broken.send("x\n");
    broken.readLine();
    broken.reset();
    EXPECT_EQ(m_server->waitForEvents(4).back(), "broken");
}

TEST_F(NetServer, HalfClosedPeerStillGetsItsReplies) {
    CTestSocket client(port());
    client.send("last words");
    client.finishSending();
    EXPECT_EQ(client.readAll(), "last words");
}

TEST_F(NetServer, LongDataArrivesWholeInOrderAndBeforeItsEnd) {
    std::string bytes;
    for (int i = 0; i < 20000; ++i)
        bytes += std::to_string(i) + ",";
    for (const std::size_t length : {std::size_t{1023}, std::size_t{1024}, std::size_t{1025}, bytes.size()}) {
        CTestSocket client(port());
        client.send(bytes.substr(0, length));
        client.finishSending();
        EXPECT_EQ(client.readAll(), bytes.substr(0, length));
    }
}

TEST_F(NetServer, RemovedConnectionGetsWhatWasSentAndNoFurtherCallBack) {
    CTestSocket client(port());
    client.send("quit");
    EXPECT_EQ(client.readAll(), "quit");
    CTestSocket other(port());
    other.send("x\n");
    other.readLine();
    EXPECT_EQ(m_server->waitForEvents(2), (std::vector<std::string>{"connected", "connected"}));
}

TEST_F(NetServer, HandlerThatThrowsCostsItsConnectionOnly) {
    CTestSocket other(port());
    CTestSocket client(port());
    client.send("throw");
    EXPECT_TRUE(client.isClosedByServer());
    other.send("x\n");
    EXPECT_EQ(other.readLine(), "x\n");
}

TEST_F(NetServer, SlowReaderHoldsUpItselfOnly) {
    CTestSocket slow(port());
    // Far more than the system's buffers of both directions can hold, so the sender is blocked in the end.
    const std::string block(1 << 20, 'x');
    std::thread sender([&] {
        for (int i = 0; i < 32; ++i)
            slow.send(block);
        slow.finishSending();
    });
    CTestSocket quick(port());
    for (int i = 0; i < 100; ++i) {
        quick.send("ping\n");
        ASSERT_EQ(quick.readLine(), "ping\n");
    }
    EXPECT_EQ(slow.readAll().size(), 32 * block.size());
    sender.join();
}

/// The socket of this process that is connected to the client.
int acceptedSocketOf(CTestSocket& client) {
    const auto endpoint = client.socket().local_endpoint();
    for (const auto& entry : std::filesystem::directory_iterator("/proc/self/fd")) {
        const int descriptor = std::stoi(entry.path().filename());
        sockaddr_in peer{};
        socklen_t size = sizeof peer;
        if (::getpeername(descriptor, reinterpret_cast<sockaddr*>(&peer), &size) != 0) continue;
        if (peer.sin_family == AF_INET && ntohs(peer.sin_port) == endpoint.port()) return descriptor;
    }
    return -1;
}

TEST_F(NetServer, RepliesAreNotHeldBackToBeGathered) {
    CTestSocket client(port());
    client.send("x\n");
    client.readLine();
    const int accepted = acceptedSocketOf(client);
    ASSERT_GE(accepted, 0);
    int isOn = 0;
    socklen_t size = sizeof isOn;
    ASSERT_EQ(::getsockopt(accepted, IPPROTO_TCP, TCP_NODELAY, &isOn, &size), 0);
    EXPECT_NE(isOn, 0);
}

TEST_F(NetServer, ConnectionMayBreakWhileItsRepliesWait) {
    stop();
    boost::asio::io_service io;
    const auto server = boost::make_shared<CEchoServer>(io, "127.0.0.1", 0, false, false);
    server->greeting = std::string(64 << 20, 'x'); // far more than the system's buffers hold
    server->start(false);
    std::thread thread([&] { io.run(); });
    const auto readByte = [](CTestSocket& client) {
        char byte = 0;
        boost::asio::read(client.socket(), boost::asio::buffer(&byte, 1));
        return byte;
    };
    CTestSocket broken(server->port());
    EXPECT_EQ(readByte(broken), 'x');
    // When the server serves another client, the first client's bytes already wait for room.
    CTestSocket other(server->port());
    EXPECT_EQ(readByte(other), 'x');
    broken.reset();
    EXPECT_EQ(server->waitForEvents(3), (std::vector<std::string>{"connected", "connected", "broken"}));
    EXPECT_EQ(readByte(other), 'x');
    server->stop();
    io.stop();
    thread.join();
}

TEST_F(NetServer, HeldConnectionIsReadAgainAfterItsRelease) {
    CTestSocket client(port()), other(port());
    client.send("hold");
    m_server->waitForEvents(3);
    client.send("more\n");
    other.send("x\n");
    EXPECT_EQ(other.readLine(), "x\n");
    EXPECT_FALSE(client.waitForData(std::chrono::milliseconds(0)));
    m_server->releaseHeld();
    EXPECT_EQ(client.readLine(), "more\n");
    EXPECT_EQ(m_server->waitForEvents(4).back(), "released");
}

TEST_F(NetServer, EndOfAHeldConnectionIsReportedAfterItsRelease) {
    CTestSocket client(port());
    client.send("hold");
    m_server->waitForEvents(2);
    client.send("last words");
    client.finishSending();
    m_server->releaseHeld();
    EXPECT_EQ(client.readAll(), "last words");
    EXPECT_EQ(m_server->waitForEvents(4),
              (std::vector<std::string>{"connected", "held", "released", "ended"}));
}

TEST_F(NetServer, ConnectionsThatWaitForTheirPeersToCloseAreBounded) {
    constexpr int kMost = 5, kClients = 20;
    m_server->limitEnding(kMost);
    const std::ptrdiff_t before = openSockets();
    std::vector<std::unique_ptr<CTestSocket>> clients;
    for (int i = 0; i < kClients; ++i) {
        clients.push_back(std::make_unique<CTestSocket>(port()));
        clients.back()->send("quit");
        EXPECT_EQ(clients.back()->readAll(), "quit"); // the client does not close its side
    }
    CTestSocket other(port());
    other.send("x\n");
    EXPECT_EQ(other.readLine(), "x\n");
    EXPECT_EQ(openSockets() - before, kClients + kMost + 2);
}

TEST_F(NetServer, WhatIsLeftToSendIsNotCutOffForOthersThatEnd) {
    m_server->greeting = std::string(16 << 20, 'x'); // more than the system's buffers hold
    m_server->limitEnding(1);
    CTestSocket slow(port());
    slow.send("quit");
    for (int i = 0; i < 2; ++i) {
        CTestSocket other(port());
        other.send("quit");
        EXPECT_EQ(other.readAll().size(), m_server->greeting.size() + 4);
    }
    EXPECT_EQ(slow.readAll().size(), m_server->greeting.size() + 4);
}

TEST_F(NetServer, TakenAddressThrows) {
    boost::asio::io_service io;
    const auto second = boost::make_shared<CEchoServer>(io, "127.0.0.1", port(), false, false);
    EXPECT_THROW(second->start(false), boost::system::system_error);
    const auto nonsense = boost::make_shared<CEchoServer>(io, "no address", port(), false, false);
    EXPECT_THROW(nonsense->start(false), boost::system::system_error);
}

TEST_F(NetServer, AddressIsFreeAsSoonAsTheServerStops) {
    CTestSocket client(port());
    client.send("x\n");
    client.readLine();
    const unsigned short taken = port();
    m_server->stop();
    boost::asio::io_service io;
    const auto second = boost::make_shared<CEchoServer>(io, "127.0.0.1", taken, false, false);
    EXPECT_NO_THROW(second->start(false));
    second->stop();
}

TEST_F(NetServer, StopMayBeCalledTwiceAndBeforeStart) {
    m_server->stop();
    m_server->stop();
    boost::asio::io_service io;
    const auto idle = boost::make_shared<CEchoServer>(io, "127.0.0.1", 0, false, false);
    EXPECT_EQ(idle->stop(), 0);
}

TEST_F(NetServer, PeerIsKnownByAddressAndPort) {
    CTestSocket client(port());
    const auto endpoint = client.socket().local_endpoint();
    class CPeerServer : public CEchoServer {
    public:
        using CEchoServer::CEchoServer;
        void onConnected(net::NetConnectionPtr conn) override {
            note(conn->peerAddress() + ":" + std::to_string(conn->peerPort()));
        }
    };
    stop();
    boost::asio::io_service io;
    const auto server = boost::make_shared<CPeerServer>(io, "127.0.0.1", 0, false, false);
    server->start(false);
    std::thread thread([&] { io.run(); });
    CTestSocket peer(server->port());
    const auto local = peer.socket().local_endpoint();
    EXPECT_EQ(server->waitForEvents(1).front(), "127.0.0.1:" + std::to_string(local.port()));
    EXPECT_NE(local.port(), endpoint.port());
    server->stop();
    io.stop();
    thread.join();
}

} // namespace
