#pragma once

#include "orderservice/socket/OrderSocketServerWrapper.h"
#include "tests/support/Builders.h"
#include "tests/support/DoorFakes.h"
#include "tests/support/FakeClock.h"
#include "tests/support/FakeHost.h"
#include "tests/support/TestSocket.h"

#include <gtest/gtest.h>

#include <pthread.h>
#include <time.h>

#include <atomic>
#include <chrono>
#include <cstddef>
#include <memory>
#include <string>
#include <thread>

/// The first reply on every connection.
inline const std::string kGreeting = "+OK Welcom to Lumo Order Server Version 0.0.3\r\n";
/// The replies that most tests wait for.
inline const std::string kOk = "+OK\r\n";
inline const std::string kBadLogin = "-ERR User or Pass is Not Right\r\n";
inline const std::string kNoLogin = "-ERR User Not Login\r\n";

/// A listener on a port that the system chooses. The login is "trader", "secret" unless a test changes it.
class SocketFixture : public testing::Test {
protected:
    void TearDown() override { stop(); }

    void start(const std::string& user = "trader", const std::string& pass = "secret") {
        m_wrapper = std::make_unique<TC::COrderSocketServerWrapper>("127.0.0.1", 0, user, pass, gateInUse(),
                                                                    registry, QStringLiteral("here:0"));
        m_wrapper->server()->start(false);
        m_nPort = m_wrapper->server()->port();
        m_thread = std::thread([this] { m_wrapper->run(); });
    }
    /// Ends the listener. After that the records of the gate may be read.
    void stop() {
        if (!m_thread.joinable()) return;
        m_wrapper->stop();
        m_thread.join();
        m_wrapper.reset();
    }
    TC::COrderSocketServer& server() { return *m_wrapper->server(); }
    /// Advances the clock and makes the listener look at it.
    void passTime(double seconds) {
        clock.sleep(seconds);
        server().clockMoved();
    }
    /// Sends a line and returns the reply. Advances the time until the reply arrives, as the guard may delay
    /// it.
    std::string askWaiting(CTestSocket& client, const std::string& line) {
        client.send(line + "\r\n");
        while (!client.waitForData(std::chrono::milliseconds(1)))
            passTime(0.1);
        return client.readLine();
    }
    virtual TC::IOrderGate& gateInUse() { return gate; }
    void guard() { host.switches.on.insert("mdl_order_socket_guard"); }

    /// Connects and reads the greeting.
    std::unique_ptr<CTestSocket> connect() {
        auto client = std::make_unique<CTestSocket>(m_nPort);
        EXPECT_EQ(client->readLine(), kGreeting);
        return client;
    }
    std::unique_ptr<CTestSocket> logIn() {
        auto client = connect();
        EXPECT_EQ(client->ask("user trader"), "+OK\r\n");
        EXPECT_EQ(client->ask("pass secret"), "+OK\r\n");
        return client;
    }

    /// The listener's number of connections, including the connection that asks. Asks again until the number
    /// is at most `few`, but gives up after more questions than a correct listener needs.
    std::size_t waitForConnections(std::size_t few) {
        constexpr int kQuestions = 20000;
        std::atomic<std::size_t> count{0};
        gate.onPlace = [&] { count = m_wrapper->server()->connectionCount(); };
        const auto probe = logIn();
        for (int i = 0; i < kQuestions && (i == 0 || count > few); ++i)
            EXPECT_EQ(probe->ask("placeorder 23,3"), "+OK\r\n");
        gate.onPlace = nullptr;
        return count;
    }
    /// The clock of the processor time of the listener's thread.
    clockid_t listenerClock() {
        clockid_t id{};
        EXPECT_EQ(::pthread_getcpuclockid(m_thread.native_handle(), &id), 0);
        return id;
    }

    CFakeClock clock;
    CFakeHost host;
    CRecordingGate gate;
    CPlainRegistry registry;
    unsigned short m_nPort = 0;

private:
    std::unique_ptr<TC::COrderSocketServerWrapper> m_wrapper;
    std::thread m_thread;
};
