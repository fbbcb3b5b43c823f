// Connections that break, many simultaneous connections, and a listener that hangs.
#include "tests/socket/SocketFixture.h"

#include <algorithm>
#include <future>
#include <memory>
#include <string>
#include <vector>

namespace {

class SocketConnections : public SocketFixture {};

TEST_F(SocketConnections, ConnectionsMayBreakAtAnyByte) {
    start();
    const std::string talk = "user trader\r\npass secret\r\nplaceorder 23,3,10.5,600000,100\r\ncancel 5\r\n";
    for (std::size_t length = 0; length <= talk.size(); ++length) {
        CTestSocket client(m_nPort);
        client.send(talk.substr(0, length));
        client.reset();
    }
    EXPECT_EQ(waitForConnections(1), 1u);
    EXPECT_EQ(logIn()->ask("cancel 1"), kOk);
}

TEST_F(SocketConnections, ConnectionMayBreakWithinALineOfMegabytes) {
    start();
    for (const bool isOrderly : {true, false}) {
        const auto client = logIn();
        client->send("placeorder 23,3,10.5");
        const std::string block(1 << 20, 'x');
        for (int i = 0; i < 8; ++i)
            client->send(block);
        if (!isOrderly) {
            client->reset();
            continue;
        }
        client->finishSending();
        EXPECT_TRUE(client->isClosedByServer());
    }
    EXPECT_EQ(waitForConnections(1), 1u);
    stop();
    for (const auto& batch : gate.batches)
        EXPECT_EQ(batch[0].toQString(), QStringLiteral("order_type=23 channel=3 strategy_type=1"));
}

/// Many simultaneous connections on some threads. Connections with even numbers have the right password, the
/// others a wrong one. All connections of a thread take one step of the login before any takes the next step.
class CLoginCrowd {
public:
    CLoginCrowd(unsigned short port, int first, int count) : m_nFirst(first) {
        for (int i = 0; i < count; ++i)
            m_clients.push_back(std::make_unique<CTestSocket>(port));
    }
    void run() {
        for (const auto& client : m_clients)
            EXPECT_EQ(client->readLine(), kGreeting);
        askAll([](int) { return "user trader"; }, kOk, kOk);
        askAll([](int number) { return isRight(number) ? "pass secret" : "pass wrong"; }, kOk, kBadLogin);
        askAll([](int number) { return "cancel " + std::to_string(number); }, kOk, kNoLogin);
    }
    static bool isRight(int number) { return number % 2 == 0; }

private:
    template<typename LineOf>
    void askAll(const LineOf& lineOf, const std::string& right, const std::string& wrong) {
        int number = m_nFirst;
        for (const auto& client : m_clients)
            client->send(lineOf(number++) + std::string("\r\n"));
        number = m_nFirst;
        for (const auto& client : m_clients)
            EXPECT_EQ(client->readLine(), isRight(number++) ? right : wrong);
    }

    const int m_nFirst;
    std::vector<std::unique_ptr<CTestSocket>> m_clients;
};

TEST_F(SocketConnections, LoginsOfTwoHundredConnectionsAtOnceAreTheirOwn) {
    constexpr int kThreads = 10;
    constexpr int kOfAThread = 20;
    start();
    std::vector<std::future<void>> crowds;
    for (int i = 0; i < kThreads; ++i) {
        crowds.push_back(std::async(std::launch::async,
                                    [this, i] { CLoginCrowd(m_nPort, i * kOfAThread, kOfAThread).run(); }));
    }
    for (std::future<void>& crowd : crowds)
        crowd.get();
    EXPECT_EQ(waitForConnections(1), 1u);
    stop();
    std::sort(gate.cancelledTasks.begin(), gate.cancelledTasks.end());
    std::vector<int> expected;
    for (int number = 0; number < kThreads * kOfAThread; ++number) {
        if (CLoginCrowd::isRight(number)) expected.push_back(number);
    }
    EXPECT_EQ(gate.cancelledTasks, expected);
}

double threadTime(clockid_t id = CLOCK_THREAD_CPUTIME_ID) {
    timespec time{};
    EXPECT_EQ(::clock_gettime(id, &time), 0);
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) / 1e9;
}

/// Uses the processor for this many seconds of the thread's processor time.
void workFor(double seconds) {
    for (const double end = threadTime() + seconds; threadTime() < end;) {
    }
}

TEST_F(SocketConnections, StuckListenerTakesNoProcessorTime) {
    constexpr double kWatched = 0.2;
    std::promise<void> stuck;
    host.audit.onRecord = [&] { stuck.set_value(); };
    start();
    const auto client = connect();
    client->send("\n");
    stuck.get_future().wait();
    const double before = threadTime(listenerClock());
    workFor(kWatched);
    EXPECT_LT(threadTime(listenerClock()) - before, kWatched / 10);
}

} // namespace
