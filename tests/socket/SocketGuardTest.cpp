#include "orderservice/socket/SocketGuard.h"

#include "tests/socket/SocketFixture.h"

#include <sys/resource.h>

#include <thread>
#include <vector>

namespace {

using namespace TC;

/// Raises the limit of descriptors. Both ends of a thousand connections are in this process.
void allowManyDescriptors() {
    rlimit limit{};
    ASSERT_EQ(::getrlimit(RLIMIT_NOFILE, &limit), 0);
    limit.rlim_cur = limit.rlim_max;
    ASSERT_EQ(::setrlimit(RLIMIT_NOFILE, &limit), 0);
}

class SocketGuard : public SocketFixture {
protected:
    SocketGuard() { guard(); }

    /// Stops the listener and returns the audit's reports of refused connections.
    std::vector<std::string> refusals() {
        stop();
        std::vector<std::string> causes;
        for (const CDoorReport& report : host.audit.doors) {
            EXPECT_EQ(report.m_eEvent, EDoorEvent::Refused);
            const bool isCount = report.m_strCause.endsWith(QStringLiteral(" others"));
            EXPECT_EQ(report.m_strPeer.startsWith(QStringLiteral("127.0.0.1:")), !isCount);
            EXPECT_EQ(report.m_strPeer.isEmpty(), isCount);
            causes.push_back(report.m_strCause.toStdString());
        }
        return causes;
    }
    /// Connects this number of clients, one after the other. Each is refused.
    void refuse(int clients) {
        for (int i = 0; i < clients; ++i) {
            CTestSocket client(m_nPort);
            client.send("\n");
            client.readAll();
        }
    }
};

TEST_F(SocketGuard, LoneLineFeedCostsItsConnectionOnly) {
    start();
    const auto other = logIn();
    const auto client = connect();
    client->send("user trader\r\nfoo\nuser x\r\n");
    EXPECT_EQ(client->readLine(), "+OK\r\n");
    EXPECT_EQ(client->readAll(), "-ERR Line Not Ended By CR LF\r\n");
    EXPECT_EQ(other->ask("cancel 1"), "+OK\r\n");
    EXPECT_EQ(refusals(), std::vector<std::string>{"Line Not Ended By CR LF"});
}

TEST_F(SocketGuard, RepliesOfOrdersInFrontOfARefusalArrive) {
    start();
    const auto client = logIn();
    constexpr int kOrders = 2000;
    std::string lines;
    for (int i = 0; i < kOrders; ++i)
        lines += "cancel 1\r\n";
    std::thread sender([&] {
        client->send(lines + "x\n" + std::string(1'000'000, 'y'));
        client->finishSending();
    });
    const std::string replies = client->readAll();
    sender.join();
    EXPECT_EQ(replies.size(), kOrders * 5 + std::string("-ERR Line Not Ended By CR LF\r\n").size());
}

TEST_F(SocketGuard, FloodOfRefusalsIsCountedAndNotReportedOneByOne) {
    start();
    const auto trader = logIn();
    refuse(50);
    clock.sleep(2);
    refuse(1);
    EXPECT_EQ(trader->ask("cancel 1"), "+OK\r\n");
    const auto reported = refusals();
    ASSERT_EQ(reported.size(), 11u);
    EXPECT_EQ(reported.back(), "Line Not Ended By CR LF, and 40 others before it");
}

TEST_F(SocketGuard, CountedRefusalsAreReportedWhenTheListenerCloses) {
    start();
    refuse(50);
    const auto reported = refusals();
    ASSERT_EQ(reported.size(), 11u);
    EXPECT_EQ(reported[9], "Line Not Ended By CR LF");
    EXPECT_EQ(reported.back(), "40 others");
}

TEST_F(SocketGuard, AReportedRefusalIsNotReportedAgain) {
    start();
    refuse(11);
    clock.sleep(1);
    refuse(1);
    const auto reported = refusals();
    ASSERT_EQ(reported.size(), 11u);
    EXPECT_EQ(reported.back(), "Line Not Ended By CR LF, and 1 others before it");
}

TEST_F(SocketGuard, WhoLogsOutHasAMinuteAgain) {
    start();
    const auto client = logIn();
    clock.sleep(100);
    EXPECT_EQ(client->ask("user trader"), "+OK\r\n");
    clock.sleep(59);
    EXPECT_EQ(client->ask("user trader"), "+OK\r\n");
    clock.sleep(2);
    EXPECT_EQ(client->readAll(), "-ERR No Login In Time\r\n");
}

TEST_F(SocketGuard, LongLineCostsItsConnectionOnly) {
    start();
    const auto other = logIn();
    const auto client = logIn();
    // The verb, the argument and the line end have 64 KiB in total.
    EXPECT_EQ(client->ask("cancel " + std::string(64 * 1024 - 9, ' ')), "-ERR Bad Param\r\n");
    client->send(std::string(64 * 1024 + 1, 'x'));
    EXPECT_EQ(client->readAll(), "-ERR Line Too Long\r\n");
    EXPECT_EQ(other->ask("cancel 1"), "+OK\r\n");
    EXPECT_EQ(refusals(), std::vector<std::string>{"Line Too Long"});
}

TEST_F(SocketGuard, WholeLineOverTheLimitIsRefusedToo) {
    start();
    const auto client = connect();
    client->send(std::string(64 * 1024 - 1, 'x') + "\r\n");
    EXPECT_EQ(client->readAll(), "-ERR Line Too Long\r\n");
}

TEST_F(SocketGuard, TenFailedLoginsInARowEndTheConnection) {
    start();
    const auto client = connect();
    client->ask("user trader");
    for (int round = 0; round < 2; ++round) {
        for (int i = 0; i < 9; ++i)
            ASSERT_EQ(askWaiting(*client, "pass wrong"), "-ERR User or Pass is Not Right\r\n");
        if (round == 0) {
            ASSERT_EQ(askWaiting(*client, "pass secret"), "+OK\r\n"); // a successful login resets the count
        }
    }
    EXPECT_EQ(askWaiting(*client, "pass wrong"), "-ERR Too Many Failed Logins\r\n");
    EXPECT_TRUE(client->isClosedByServer());
    EXPECT_EQ(refusals(), std::vector<std::string>{"Too Many Failed Logins"});
}

TEST_F(SocketGuard, LineWithAZeroByteIsNoCommand) {
    start();
    const auto client = logIn();
    const std::string zero(1, '\0');
    for (const std::string& line : {"placeorder 23,3,10.5,600000,100" + zero + "000", "cancel 1" + zero + "2",
                                    "user trader" + zero, "pass secret" + zero, "quit" + zero, zero})
        EXPECT_EQ(client->ask(line), "-ERR Bad Command\r\n") << line;
    EXPECT_EQ(client->ask("cancel 3"), "+OK\r\n"); // still logged in
    stop();
    EXPECT_TRUE(gate.batches.empty());
    EXPECT_EQ(gate.cancelledTasks, std::vector<int>{3});
}

TEST_F(SocketGuard, RefusedConnectionsThatDoNotCloseAreBounded) {
    constexpr std::ptrdiff_t kMost = CSocketGuard::kMaxEnding, kRefused = kMost + 30;
    start();
    const auto trader = logIn();
    const std::ptrdiff_t before = openSockets();
    std::vector<std::unique_ptr<CTestSocket>> clients;
    for (std::ptrdiff_t i = 0; i < kRefused; ++i) {
        clients.push_back(connect());
        clients.back()->send("\n");
        EXPECT_EQ(clients.back()->readAll(), "-ERR Line Not Ended By CR LF\r\n");
    }
    EXPECT_EQ(trader->ask("cancel 1"), "+OK\r\n");
    EXPECT_EQ(openSockets() - before, kRefused + kMost);
}

TEST_F(SocketGuard, AThousandConnectionsFit) {
    allowManyDescriptors();
    start();
    std::vector<std::unique_ptr<CTestSocket>> clients;
    for (int i = 0; i < 1000; ++i)
        clients.push_back(connect());
    CTestSocket late(m_nPort);
    EXPECT_EQ(late.readAll(), "-ERR Too Many Connections\r\n");
    EXPECT_EQ(clients.front()->ask("user trader"), "+OK\r\n");
    clients.front()->send("quit\r\n");
    EXPECT_EQ(clients.front()->readAll(), "+OK\r\n");
    connect();
    EXPECT_EQ(refusals(), std::vector<std::string>{"Too Many Connections"});
}

TEST_F(SocketGuard, WhoDoesNotLogInForAMinuteIsClosed) {
    start();
    const auto silent = connect();
    const auto trader = logIn();
    clock.sleep(59.9);
    EXPECT_EQ(trader->ask("cancel 1"), "+OK\r\n");
    EXPECT_EQ(silent->ask("user trader"), "+OK\r\n");
    clock.sleep(0.1);
    EXPECT_EQ(trader->ask("cancel 1"), "+OK\r\n");
    EXPECT_EQ(silent->readAll(), "-ERR No Login In Time\r\n");
    EXPECT_EQ(trader->ask("cancel 1"), "+OK\r\n");
    EXPECT_EQ(refusals(), std::vector<std::string>{"No Login In Time"});
}

TEST_F(SocketGuard, SilenceIsSeenWithoutAnyTraffic) {
    start();
    const auto silent = connect();
    clock.sleep(61);
    EXPECT_EQ(silent->readAll(), "-ERR No Login In Time\r\n");
}

TEST_F(SocketGuard, WithoutALoginNobodyIsSilentTooLong) {
    start("", "");
    const auto client = connect();
    clock.sleep(3600);
    EXPECT_EQ(client->ask("cancel 1"), "+OK\r\n");
}

TEST(SocketGuardSwitch, OffNothingIsRefused) {
    const CFakeHost host;
    const CSocketGuard guard(true);
    EXPECT_FALSE(guard.isOn());
    EXPECT_EQ(guard.refuseConnection(1'000'000), nullptr);
    EXPECT_EQ(guard.refuseLine(1'000'000), nullptr);
    EXPECT_EQ(guard.refuseLineFeed(), nullptr);
    ConnData data;
    data.m_nFailedLogins = 1000;
    EXPECT_EQ(guard.refuseLogins(data), nullptr);
    EXPECT_EQ(guard.refuseDelay(true), nullptr);
    EXPECT_FALSE(guard.hasZeroByte(std::string_view("\0", 1)));
    EXPECT_EQ(guard.refuseSilence(data, 1e9), nullptr);
}

} // namespace
