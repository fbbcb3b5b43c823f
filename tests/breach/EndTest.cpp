// The end of the service, asked for where it cannot be, and receivers of signals that fail.
#include "tests/breach/BreachRows.h"

#include <atomic>
#include <stdexcept>

namespace {

using namespace breach;
using TC::COrderService;

constexpr const char* kNoEndHere = "不能在下单服务的线程或回调中关闭下单服务";

struct CForeign {};

class BreachEnd : public testing::Test {
protected:
    void SetUp() override { road.load(); }

    template<typename Signal, typename Receiver>
    void onSignal(Signal signal, Receiver receiver, Qt::ConnectionType type = Qt::DirectConnection) {
        QObject::connect(&road.service(), signal, &road.service(), receiver, type);
    }
    void endHere() {
        COrderService::instance()->shutdown();
        COrderService::release();
    }
    void expectGoodOrder() {
        ASSERT_NE(COrderService::instance(), nullptr);
        const std::size_t before = road.commandCount();
        road.place(CBreachRoad::order(3));
        EXPECT_TRUE(road.waitForCommands(before + 1));
    }

    CBreachRoad road;
};

TEST_F(BreachEnd, IsRefusedInAReceiverOfCancelsByOrder) {
    onSignal(&COrderService::sigCancelOrders, [this] { endHere(); });
    road.drop("cancel_order A1 7\n23,0,10.5,600000,100\n");
    EXPECT_TRUE(road.waitForCommands(1));
    EXPECT_TRUE(road.host.waitForReport(kNoEndHere));
    expectGoodOrder();
}

TEST_F(BreachEnd, IsRefusedInAReceiverOfTheStatus) {
    onSignal(&COrderService::sigSetStatus, [this] { endHere(); });
    road.start(5);
    EXPECT_EQ(road.startResult, 0);
    EXPECT_TRUE(road.host.waitForReport(kNoEndHere));
    expectGoodOrder();
}

/// Such a receiver runs on the service's thread, outside of its slots.
TEST_F(BreachEnd, IsRefusedInAReceiverThatIsConnectedAutomatically) {
    onSignal(
        &COrderService::sigSetStatus, [this] { endHere(); }, Qt::AutoConnection);
    road.start(5);
    EXPECT_TRUE(road.host.waitForReport(kNoEndHere));
    expectGoodOrder();
}

TEST_F(BreachEnd, IsRefusedInACallThatTheHostPostsToTheService) {
    QMetaObject::invokeMethod(
        &road.service(), [this] { endHere(); }, Qt::QueuedConnection);
    EXPECT_TRUE(road.host.waitForReport(kNoEndHere));
    expectGoodOrder();
}

TEST_F(BreachEnd, ReceiverOnTheServicesThreadThatThrowsIsReported) {
    onSignal(
        &COrderService::sigSetStatus, [] { throw CForeign(); }, Qt::AutoConnection);
    road.start(5);
    EXPECT_TRUE(road.host.waitForReport("下单服务线程中的调用异常"));
    expectGoodOrder();
}

TEST_F(BreachEnd, IsRefusedInAReceiverOfOrders) {
    onSignal(&COrderService::sigPlaceOrders, [this] { endHere(); });
    expectGoodOrder();
    EXPECT_TRUE(road.host.waitForReport(kNoEndHere));
}

TEST_F(BreachEnd, IsRefusedWhileStrategiesAreVisited) {
    road.service().visitStrategies([this](int, const TC::COrderStrategyParam&) { endHere(); });
    EXPECT_TRUE(road.host.waitForReport(kNoEndHere));
    expectGoodOrder();
}

TEST_F(BreachEnd, IsRefusedInsideTheEndItself) {
    road.start(4);
    std::atomic<int> calls{0};
    road.host.breaches.arm("CIntakeAudit::recordDoor", [&] { // the listener is closed
        ++calls;
        endHere();
    });
    road.service().shutdown();
    EXPECT_EQ(calls, 1);
    EXPECT_TRUE(road.host.waitForReport(kNoEndHere));
}

TEST_F(BreachEnd, ReceiversThatThrowUndoNothing) {
    onSignal(&COrderService::sigSetStatus, [](bool) { throw CForeign(); });
    onSignal(&COrderService::sigPlaceOrders, [] { throw std::runtime_error("broken"); });
    onSignal(&COrderService::sigCancelOrder, [](int) { throw CForeign(); });
    road.start(5);
    EXPECT_EQ(road.startResult, 0);
    EXPECT_TRUE(road.service().getStrategyMap()[5].isRunning());
    EXPECT_TRUE(road.host.waitForReport("sigSetStatus的接收者异常"));
    QString error;
    EXPECT_EQ(road.service().stopOrderStrategy(5, error), 0);
    EXPECT_FALSE(road.service().getStrategyMap()[5].isRunning());
    expectGoodOrder();
    EXPECT_TRUE(road.host.waitForReport("sigPlaceOrders的接收者异常: broken"));
    road.cancel();
    EXPECT_TRUE(road.host.waitForReport("sigCancelOrder的接收者异常"));
    road.waitForService();
    EXPECT_EQ(road.host.trade.cancelled.size(), 1u);
}

/// The orders behind a cancel that failed may rely on it.
TEST_F(BreachEnd, CancelByOrderThatFailsEndsItsFile) {
    onSignal(&COrderService::sigCancelOrders, [] { throw CForeign(); });
    road.drop("23,0,10.5,600000,100\ncancel_order A1 7\n23,0,10.5,600000,200\n");
    EXPECT_TRUE(road.waitForCommands(1));
    EXPECT_TRUE(road.host.waitForReport("未读完: sigCancelOrders: an exception of an unknown type"));
    road.waitForService();
    EXPECT_EQ(road.commandCount(), 1u);
}

TEST_F(BreachEnd, OneOrderOfABatchIsDroppedAndTheOthersGoOut) {
    for (const bool isForeign : {false, true}) {
        std::atomic<int> calls{0};
        road.host.breaches.arm("CTradeClient::splitEntrusts", [&] {
            if (++calls != 2) return;
            if (isForeign) throw CForeign();
            throw std::runtime_error("broken");
        });
        const std::size_t before = road.commandCount();
        road.service().placeOrders({CBreachRoad::order(3), CBreachRoad::order(3), CBreachRoad::order(3)});
        EXPECT_TRUE(road.waitForCommands(before + 2));
        road.waitForService();
        EXPECT_EQ(road.commandCount(), before + 2);
        EXPECT_TRUE(road.host.waitForReport(isForeign ? "CTradeClient::splitEntrusts: an exception of an"
                                                      : "CTradeClient::splitEntrusts: broken"));
        road.host.breaches.disarm();
    }
}

TEST_F(BreachEnd, AListenerAnswersBadParamAndServesOn) {
    road.host.breaches.arm("CUserConfig::getBaskets", [] { throw CForeign(); });
    road.ask("placeorder 25,4,core");
    EXPECT_EQ(road.reply, "-ERR Bad Param\r\n");
    EXPECT_TRUE(road.host.waitForReport("CUserConfig::getBaskets"));
    road.ask("placeorder 23,4,10.5,600000,100");
    EXPECT_EQ(road.reply, "+OK\r\n");
    EXPECT_TRUE(road.waitForCommands(1));
}

TEST_F(BreachEnd, AStartThatFailsNamesTheServiceAndLeavesTheStrategyStopped) {
    road.host.breaches.arm("CTradeClient::getLoginStatus", [] { throw CForeign(); });
    road.start(5);
    EXPECT_EQ(road.startResult, -1);
    EXPECT_TRUE(road.startError.contains(QStringLiteral("CTradeClient::getLoginStatus")));
    EXPECT_FALSE(road.service().getStrategyMap()[5].isRunning());
    road.host.breaches.disarm();
    road.start(5);
    EXPECT_EQ(road.startResult, 0);
}

} // namespace
