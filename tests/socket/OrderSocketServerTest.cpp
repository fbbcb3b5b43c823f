#include "orderservice/socket/OrderSocketServer.h"

#include "orderservice/base/Text.h"
#include "tests/socket/SocketFixture.h"
#include "tests/support/CommaLocale.h"
#include "tests/support/LogCapture.h"

#include <future>
#include <stdexcept>

namespace {

using namespace TC;

const std::string kBadCommand = "-ERR Bad Command\r\n";
const std::string kBadParam = "-ERR Bad Param\r\n";

class OrderSocketServer : public SocketFixture {};

TEST_F(OrderSocketServer, GreetsBeforeAnythingIsRead) {
    EXPECT_EQ(kGreeting.size(), 47u);
    start();
    connect();
}

TEST_F(OrderSocketServer, LineMayComeInPieces) {
    start();
    const auto client = connect();
    for (const char byte : std::string("user trader\r\n"))
        client->send(std::string(1, byte));
    EXPECT_EQ(client->readLine(), kOk);
    client->send("pass secret\r");
    client->send("\nuser x\r\n");
    EXPECT_EQ(client->readLine(), kOk);
    EXPECT_EQ(client->readLine(), kOk);
}

TEST_F(OrderSocketServer, LinesOfOnePacketAreServedInOrder) {
    start();
    const auto client = connect();
    client->send(
        "nonsense\r\nuser trader\r\npass wrong\r\npass secret\r\nplaceorder 23,3,10.5,600000,100\r\n");
    EXPECT_EQ(client->readLine(), kBadCommand);
    EXPECT_EQ(client->readLine(), kOk);
    EXPECT_EQ(client->readLine(), kBadLogin);
    EXPECT_EQ(client->readLine(), kOk);
    EXPECT_EQ(client->readLine(), kOk);
    stop();
    EXPECT_EQ(gate.batches.size(), 1u);
}

TEST_F(OrderSocketServer, AReplyHasNothingOfALongerReplyBeforeIt) {
    start("", "");
    const auto client = connect();
    client->send("placeorder 36,3,x\r\nuser a\r\nnonsense\r\nplaceorder 23,3,1\r\n");
    EXPECT_EQ(client->readLine(), "-ERR Bad Param" + utils::safeUtf82Gbk("参数有误") + "\r\n");
    EXPECT_EQ(client->readLine(), kOk);
    EXPECT_EQ(client->readLine(), kBadCommand);
    EXPECT_EQ(client->readLine(), kOk);
    stop();
    EXPECT_EQ(client->readAll(), "");
}

TEST_F(OrderSocketServer, LinesAfterAStopAreNotServed) {
    start("", "");
    gate.onPlace = [this] { server().stop(); };
    const auto client = connect();
    client->send("placeorder 23,3,10.5\r\nplaceorder 23,3,10.5\r\ncancel 42\r\n");
    EXPECT_EQ(client->readLine(), kOk);
    stop();
    EXPECT_EQ(client->readAll(), "");
    EXPECT_EQ(gate.batches.size(), 1u);
    EXPECT_TRUE(gate.cancelledTasks.empty());
}

TEST_F(OrderSocketServer, WhatIsNoCommandIsAnswered) {
    start();
    const auto client = connect();
    for (const char* line : {"", "USER trader", "Pass x", " user x", "\t", "usr", "cance"})
        EXPECT_EQ(client->ask(line), kBadCommand) << line;
}

TEST_F(OrderSocketServer, VerbsNeedNoBlankAfterThem) {
    start();
    const auto client = connect();
    EXPECT_EQ(client->ask("usertrader"), kOk);
    EXPECT_EQ(client->ask("passsecret"), kOk);
    EXPECT_EQ(client->ask("placeorder23,3,10.5"), kOk);
    EXPECT_EQ(client->ask("cancel42"), kOk);
    stop();
    EXPECT_EQ(gate.cancelledTasks, std::vector<int>{42});
}

TEST_F(OrderSocketServer, ArgumentsAreTrimmedAndEndAtAZeroByte) {
    start();
    const auto client = connect();
    EXPECT_EQ(client->ask("user \t trader \v\f"), kOk);
    EXPECT_EQ(client->ask(std::string("pass secret\0more", 16)), kOk);
    EXPECT_EQ(client->ask("cancel 7  "), kOk);
}

// Login.

TEST_F(OrderSocketServer, PassWithoutUserFailsAndSetsTheNamedState) {
    start("", "secret");
    const auto client = connect();
    EXPECT_EQ(client->ask("pass secret"), kBadLogin);
    EXPECT_EQ(client->ask("pass secret"), kOk); // here the correct name is empty
}

TEST_F(OrderSocketServer, PassMayBeTriedAgainWithoutTheName) {
    start();
    const auto client = connect();
    EXPECT_EQ(client->ask("user trader"), kOk);
    EXPECT_EQ(client->ask("pass wrong"), kBadLogin);
    EXPECT_EQ(client->ask("pass secret"), kOk);
    EXPECT_EQ(client->ask("cancel 1"), kOk);
}

TEST_F(OrderSocketServer, SecondPassLogsOut) {
    start();
    const auto client = logIn();
    EXPECT_EQ(client->ask("pass secret"), kBadLogin);
    EXPECT_EQ(client->ask("cancel 1"), kNoLogin);
    EXPECT_EQ(client->ask("pass secret"), kOk);
}

TEST_F(OrderSocketServer, UserLogsOut) {
    start();
    const auto client = logIn();
    EXPECT_EQ(client->ask("user trader"), kOk);
    EXPECT_EQ(client->ask("placeorder 23,3,10.5"), kNoLogin);
}

TEST_F(OrderSocketServer, LoginIsComparedByteForByte) {
    start();
    const auto client = connect();
    const std::pair<const char*, const char*> logins[] = {
        {"trader", "secre"},  {"trader", "secrets"}, {"trader", ""},
        {"trader", "Secret"}, {"trade", "secret"},   {"traders", "secret"},
        {"", "secret"},       {"Trader", "secret"},  {"tradertrader", "secretsecret"}};
    for (const auto& [user, pass] : logins) {
        EXPECT_EQ(client->ask(std::string("user ") + user), kOk);
        EXPECT_EQ(client->ask(std::string("pass ") + pass), kBadLogin) << user << '/' << pass;
    }
}

TEST_F(OrderSocketServer, WithoutAUserNoLoginIsNeeded) {
    start("", "");
    const auto client = connect();
    EXPECT_EQ(client->ask("placeorder 23,3,10.5,600000,100"), kOk);
    EXPECT_EQ(client->ask("cancel 5"), kOk);
    EXPECT_EQ(client->ask("user"), kOk);
    EXPECT_EQ(client->ask("pass"), kOk);
}

TEST_F(OrderSocketServer, LoginsOfConnectionsAreTheirOwn) {
    start();
    const auto one = logIn();
    const auto other = connect();
    EXPECT_EQ(other->ask("cancel 1"), kNoLogin);
    EXPECT_EQ(one->ask("cancel 1"), kOk);
}

// Orders and cancels.

TEST_F(OrderSocketServer, OrderReachesTheGateAndTheAudit) {
    start();
    const auto client = logIn();
    EXPECT_EQ(client->ask("placeorder 23,3,10.5,600000,100"), kOk);
    stop();
    ASSERT_EQ(gate.batches.size(), 1u);
    EXPECT_EQ(gate.batches[0][0].toQString(),
              QStringLiteral("order_type=23 channel=3 strategy_type=1 {code=600000 volume=100 price=10.5}"));
    ASSERT_EQ(host.audit.reports.size(), 1u);
    EXPECT_EQ(host.audit.reports[0].m_eStrategyType, EOrderStrategyType::Signal);
    EXPECT_EQ(host.audit.reports[0].m_nChannel, 3);
    EXPECT_EQ(host.audit.reports[0].m_strSource, QStringLiteral("here:0"));
    EXPECT_EQ(host.audit.reports[0].m_nOrders, 1);
}

TEST_F(OrderSocketServer, NumbersOfALineHaveAPointWhateverTheLocale) {
    const CCommaLocale comma;
    start();
    const auto client = logIn();
    EXPECT_EQ(client->ask("placeorder 23,3,+10.5,600000,1234500"), kOk);
    EXPECT_EQ(client->ask("placeorder 23,3,10.5,600000,1.234"), kBadParam);
    EXPECT_EQ(client->ask("cancel 1.000"), kBadParam);
    stop();
    ASSERT_EQ(gate.batches.size(), 1u);
    EXPECT_EQ(
        gate.batches[0][0].toQString(),
        QStringLiteral("order_type=23 channel=3 strategy_type=1 {code=600000 volume=1234500 price=10.5}"));
}

TEST_F(OrderSocketServer, BadOrdersAreAnsweredAndTheConnectionGoesOn) {
    start();
    const auto client = logIn();
    for (const char* line : {"placeorder", "placeorder 23", "placeorder 23,,3", "placeorder 23,3,x",
                             "placeorder x,3", "placeorder 23,3,1e", "placeorder 99999999999,3"})
        EXPECT_EQ(client->ask(line), kBadParam) << line;
    EXPECT_EQ(client->ask("placeorder 23,3"), kOk);
    stop();
    EXPECT_EQ(gate.batches.size(), 1u);
}

TEST_F(OrderSocketServer, ErrorTextsGoOutInGbk) {
    registry.strategies.insert(3, CStrategyBuilder().set([](auto& s) {
        s.setting(ESettingSlot::StockBasket).m_ePriceType = EPriceType::Specified;
    }));
    start();
    const auto client = logIn();
    EXPECT_EQ(client->ask("placeorder 36,3,12"), utils::safeUtf82Gbk("-ERR Bad Param参数有误\r\n"));
    EXPECT_EQ(client->ask("placeorder 25,3,none"),
              utils::safeUtf82Gbk("-ERR Bad Param 指定的篮子不存在\r\n"));
    EXPECT_EQ(client->ask("placeorder 25,3,600000|100"),
              utils::safeUtf82Gbk("-ERR Bad Param 缺少指定价参数\r\n"));
}

TEST_F(OrderSocketServer, GateThatThrowsIsAnsweredAsABadParameter) {
    gate.onPlace = [] { throw std::runtime_error("full"); };
    start();
    const auto client = logIn();
    EXPECT_EQ(client->ask("placeorder 23,3,10.5"), kBadParam);
    EXPECT_EQ(client->ask("cancel 1"), kOk);
}

/// A registry that throws, as a faulty host may do.
class CThrowingRegistry final : public IStrategyRegistry {
public:
    void visitStrategies(const std::function<void(int, const COrderStrategyParam&)>&) override { throw 1; }
    COrderStrategyPtr strategyOf(int) override { throw 1; }
    std::uint64_t revision() const override { throw 1; }
};

TEST_F(OrderSocketServer, WhateverIsThrownTheListenerGoesOn) {
    start();
    const auto client = logIn();
    gate.onPlace = [] { throw 1; };
    EXPECT_EQ(client->ask("placeorder 23,3,10.5"), kBadParam);
    gate.onPlace = nullptr;
    host.audit.onRecord = [] { throw "an audit that errs"; };
    EXPECT_EQ(client->ask("placeorder 23,3,10.5"), kOk);
    EXPECT_EQ(client->ask("cancel 1"), kOk);
}

TEST_F(OrderSocketServer, RegistryThatThrowsIsAnsweredAsABadParameter) {
    CThrowingRegistry throwing;
    const auto wrapper = std::make_unique<COrderSocketServerWrapper>("127.0.0.1", 0, "", "", gate, throwing,
                                                                     QStringLiteral("here:0"));
    wrapper->server()->start(false);
    m_nPort = wrapper->server()->port();
    std::thread thread([&] { wrapper->run(); });
    {
        const auto client = connect();
        EXPECT_EQ(client->ask("placeorder 25,3,600000|100"), kBadParam);
        EXPECT_EQ(client->ask("placeorder 26,3,all"), kBadParam);
        EXPECT_EQ(client->ask("placeorder 23,3,10.5"), kOk);
    }
    wrapper->stop();
    thread.join();
}

TEST_F(OrderSocketServer, CancelTakesOneNumber) {
    start();
    const auto client = logIn();
    EXPECT_EQ(client->ask("cancel 42"), kOk);
    EXPECT_EQ(client->ask("cancel -1"), kOk);
    for (const char* line : {"cancel", "cancel 1 2", "cancel x", "cancel 1.5", "cancel 2147483648"})
        EXPECT_EQ(client->ask(line), kBadParam) << line;
    stop();
    EXPECT_EQ(gate.cancelledTasks, (std::vector<int>{42, -1}));
}

// The end of connections.

TEST_F(OrderSocketServer, QuitDropsTheLinesAfterIt) {
    start();
    const auto client = logIn();
    client->send("quit\r\ncancel 1\r\n");
    EXPECT_EQ(client->readAll(), kOk);
    stop();
    EXPECT_TRUE(gate.cancelledTasks.empty());
}

TEST_F(OrderSocketServer, QuitNeedsNoLoginAndNoBlank) {
    start();
    const auto client = connect();
    EXPECT_EQ(client->ask("quitting"), kOk);
    EXPECT_TRUE(client->isClosedByServer());
}

TEST_F(OrderSocketServer, HalfALineAtTheEndIsDropped) {
    start();
    {
        const auto client = logIn();
        client->send("cancel 1\r\ncancel 2");
        client->finishSending();
        EXPECT_EQ(client->readAll(), kOk);
    }
    const auto next = logIn();
    stop();
    EXPECT_EQ(gate.cancelledTasks, std::vector<int>{1});
}

TEST_F(OrderSocketServer, StoppingClosesTheConnections) {
    start();
    const auto client = logIn();
    stop();
    EXPECT_TRUE(client->isClosedByServer());
}

// Odd bytes.

TEST_F(OrderSocketServer, ZeroBytesAndBadGbkAreAnswered) {
    start();
    const auto client = logIn();
    EXPECT_EQ(client->ask(std::string("\0user", 5)), kBadCommand);
    EXPECT_EQ(client->ask(std::string("placeorder 23,3,10.5\0,x", 23)), kOk);
    EXPECT_EQ(client->ask("placeorder 23,3,10.5,\xff\xfe\x80"), kOk);
    EXPECT_EQ(client->ask("placeorder 25,3,\xff\xfe\x80"),
              utils::safeUtf82Gbk("-ERR Bad Param 指定的篮子不存在\r\n"));
}

TEST_F(OrderSocketServer, CarriageReturnAloneEndsNoLine) {
    start();
    const auto client = connect();
    client->send("user a\rb\r\r\n");
    EXPECT_EQ(client->readLine(), kOk);
    EXPECT_EQ(client->ask("x"), kBadCommand);
}

TEST_F(OrderSocketServer, TenThousandLinesInOnePiece) {
    start("", "");
    const auto client = connect();
    constexpr int kLines = 10000;
    std::string lines;
    for (int i = 0; i < kLines; ++i)
        lines += "cancel " + std::to_string(i) + "\r\n";
    std::thread sender([&] { client->send(lines); });
    for (int i = 0; i < kLines; ++i)
        ASSERT_EQ(client->readLine(), kOk) << i;
    sender.join();
    stop();
    ASSERT_EQ(gate.cancelledTasks.size(), std::size_t{kLines});
    EXPECT_EQ(gate.cancelledTasks.back(), kLines - 1);
}

TEST_F(OrderSocketServer, LineOfAHundredMegabytesIsOneLine) {
    start("", "");
    const auto client = connect();
    const std::string block(1'000'000, 'x');
    for (int i = 0; i < 100; ++i)
        client->send(block);
    EXPECT_EQ(client->ask(""), kBadCommand);
    EXPECT_EQ(client->ask("cancel 1"), kOk);
}

TEST_F(OrderSocketServer, LoneLineFeedStopsTheListenerUntilItIsStopped) {
    std::promise<void> stuck;
    host.audit.onRecord = [&] { stuck.set_value(); };
    start();
    const auto other = logIn();
    const auto client = logIn();
    client->send("user trader\r\nfoo\ncancel 1\r\n");
    EXPECT_EQ(client->readLine(), kOk); // the line before it was served
    stuck.get_future().wait();
    other->send("cancel 2\r\n");
    stop();
    EXPECT_TRUE(other->isClosedByServer());
    EXPECT_TRUE(client->isClosedByServer());
    EXPECT_TRUE(gate.cancelledTasks.empty());
    ASSERT_EQ(host.audit.doors.size(), 1u);
    EXPECT_EQ(host.audit.doors[0].m_eEvent, EDoorEvent::Stuck);
    EXPECT_FALSE(host.audit.doors[0].m_strPeer.isEmpty());
}

TEST_F(OrderSocketServer, LineFeedAsTheFirstByteIsALoneOneToo) {
    start();
    const auto client = connect();
    client->send("user a\r\n\nuser b\r\n");
    EXPECT_EQ(client->readLine(), kOk);
    stop();
    EXPECT_TRUE(client->isClosedByServer());
    ASSERT_EQ(host.audit.doors.size(), 1u);
    EXPECT_EQ(host.audit.doors[0].m_eEvent, EDoorEvent::Stuck);
    EXPECT_EQ(host.audit.doors[0].m_strSource, QStringLiteral("here:0"));
}

TEST_F(OrderSocketServer, QuitOfACrowdedConnectionStillAnswersEverything) {
    start("", "");
    const auto client = connect();
    constexpr int kLines = 50000;
    std::string lines;
    for (int i = 0; i < kLines; ++i)
        lines += "x\r\n";
    std::thread sender([&] {
        client->send(lines + "quit\r\n");
        client->send(lines); // after the end: read, but ignored
        client->finishSending();
    });
    const std::string replies = client->readAll();
    sender.join();
    EXPECT_EQ(replies.size(), kLines * kBadCommand.size() + kOk.size());
}

// The log.

TEST_F(OrderSocketServer, VerbsButQuitAreLoggedWithTheWholeReply) {
    start("", "");
    CLogCapture log;
    utils::CLogCenter::setLogEnabled(true);
    const auto client = connect();
    client->ask("cancel 1");
    client->ask("nonsense");
    client->ask("quit");
    stop();
    ASSERT_EQ(log.lines().size(), 1u);
    EXPECT_EQ(log.lines()[0].level, 20000);
    EXPECT_EQ(log.lines()[0].logger, "KNStdFile");
    const std::string text = "socket receive: cancel 1\r\n, reply: +OK\r\n";
    const std::size_t begin = log.lines()[0].text.find(text);
    ASSERT_NE(begin, std::string::npos);
    EXPECT_EQ(log.lines()[0].text.substr(begin + text.size()), std::string(1024 - 5, '\0'));
}

} // namespace
