// Calls that end the service at a forbidden moment, and receivers of signals that fail.
#include "tests/breach/BreachRows.h"

#include <algorithm>
#include <atomic>
#include <future>
#include <mutex>
#include <stdexcept>
#include <string>
#include <thread>

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
        // The thread sanitizer does not see Qt's locks. This call takes a lock that each file pass takes too,
        // so the sanitizer knows that the receiver was connected before the next pass.
        (void)road.service().getStrategyMap();
    }
    void endHere() {
        COrderService::instance()->shutdown();
        COrderService::release();
    }
    void endAtTheNextMessage() {
        road.host.breaches.arm("CMsgService::showMsg", [this] {
            road.host.breaches.disarm();
            endHere();
        });
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

/// Such a receiver runs on the service's thread, but not inside one of its slots.
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

TEST_F(BreachEnd, IsRefusedInTheGuardOfAChange) {
    road.service().setStrategyGuard([this](const auto&, const auto&) {
        endHere();
        return QString();
    });
    EXPECT_EQ(road.service().updateOrderStrategy(5, road.service().getStrategyMap()[5]), 0);
    EXPECT_TRUE(road.host.waitForReport(kNoEndHere));
    expectGoodOrder();
}

TEST_F(BreachEnd, IsRefusedInTheMessageOfARefusedChange) {
    road.service().setStrategyGuard([](const auto&, const auto&) { return QStringLiteral("refused"); });
    endAtTheNextMessage();
    EXPECT_EQ(road.service().updateOrderStrategy(5, road.service().getStrategyMap()[5]), -1);
    expectGoodOrder();
}

TEST_F(BreachEnd, IsRefusedInTheMessagesOfOtherOperations) {
    endAtTheNextMessage();
    TC::COrderStrategyParam table;
    EXPECT_EQ(road.service().addDbfStrategy(table), -1);
    expectGoodOrder();
    road.host.breaches.arm("CUserManager::getUserConfig", [this] { endHere(); }); // called to check the right
    (void)road.service().getOrderStrategyText(TC::EOrderStrategyType::File);
    road.host.breaches.disarm();
    expectGoodOrder();
}

TEST_F(BreachEnd, IsRefusedInsideTheEndItself) {
    road.start(4);
    std::atomic<int> calls{0};
    road.host.breaches.arm("CIntakeAudit::recordDoor", [&] { // called when the listener is closed
        ++calls;
        endHere();
    });
    road.service().shutdown();
    EXPECT_EQ(calls, 1);
    EXPECT_TRUE(road.host.waitForReport(kNoEndHere));
}

/// Otherwise the next call of a host service would end the process.
TEST_F(BreachEnd, HostStaysInstalledWhileTheServiceLives) {
    TC::releaseHost();
    EXPECT_TRUE(TC::isHostInstalled());
    EXPECT_TRUE(road.host.waitForReport("下单服务仍在使用主机服务"));
    expectGoodOrder();
}

TEST_F(BreachEnd, HostStaysInstalledInACallBackOfTheServicesEnd) {
    road.start(4);
    std::atomic<int> calls{0};
    road.host.breaches.arm("CIntakeAudit::recordDoor", [&] {
        ++calls;
        TC::releaseHost();
    });
    COrderService::release();
    EXPECT_EQ(calls, 1);
    EXPECT_TRUE(TC::isHostInstalled());
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

/// The orders after a failed cancel may depend on it.
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

/// An operation that a start or stop calls, and the strategy that the host removes inside this call.
struct CRemoval {
    const char* m_pszOperation;
    int m_nChannel;
};

class BreachRemoval : public BreachEnd, public testing::WithParamInterface<CRemoval> {};

TEST_P(BreachRemoval, HostMayRemoveTheStrategyThatIsStartedOrStopped) {
    const CRemoval removal = GetParam();
    std::atomic<int> removed{0};
    const auto remove = [&] {
        if (road.service().removeOrderStrategy(removal.m_nChannel) == 0) ++removed;
    };
    road.host.breaches.arm(removal.m_pszOperation, remove);
    road.start(removal.m_nChannel);
    QString error;
    EXPECT_EQ(road.service().stopOrderStrategy(removal.m_nChannel, error), 0);
    EXPECT_EQ(removed, 1);
    EXPECT_FALSE(road.service().getStrategyMap().contains(removal.m_nChannel));
    road.host.breaches.disarm();
    expectGoodOrder();
}

INSTANTIATE_TEST_SUITE_P(Operations, BreachRemoval,
                         testing::Values(CRemoval{"CUserManager::getUserConfig", 5},
                                         CRemoval{"CUserConfig::getAccountGroupConst", 5},
                                         CRemoval{"CTradeClient::getLoginStatus", 5},
                                         CRemoval{"CUserConfig::hasOrderEncryptionService", 5},
                                         CRemoval{"CTradingRules::orderStrategyTypeToOrderTitle", 5},
                                         CRemoval{"LuaModuleCtrl::checkModule", 4},
                                         CRemoval{"CIntakeAudit::recordDoor", 4}),
                         [](const auto& row) {
                             const std::string name = row.param.m_pszOperation;
                             return name.substr(name.rfind(':') + 1);
                         });

TEST_F(BreachEnd, StrategyThatIsGoneIsNotStartedAndItsFileStays) {
    road.folder.write("5.txt", "old");
    road.host.breaches.arm("CTradeClient::getLoginStatus", [this] { road.service().removeOrderStrategy(5); });
    road.start(5);
    EXPECT_EQ(road.startResult, -1);
    EXPECT_EQ(road.startError, QStringLiteral("策略5不存在"));
    EXPECT_EQ(road.folder.read("5.txt"), "old");
}

TEST_F(BreachEnd, HostMayRemoveASocketStrategyWhenItsDoorIsClosed) {
    road.start(4);
    road.host.breaches.arm("CIntakeAudit::recordDoor", [this] { road.service().removeOrderStrategy(4); });
    QString error;
    EXPECT_EQ(road.service().stopOrderStrategy(4, error), 0);
    EXPECT_FALSE(road.service().getStrategyMap().contains(4));
    expectGoodOrder();
}

TEST_F(BreachEnd, HostMayRemoveStrategiesThatTheLimitLeavesOut) {
    road.start(4);
    road.host.user.maxStrategies = 1;
    road.host.breaches.arm("CIntakeAudit::recordDoor", [this] { // called when the strategy's door is closed
        road.service().removeOrderStrategy(4);
        road.service().removeOrderStrategy(5);
    });
    road.load();
    EXPECT_EQ(road.service().getStrategyMap().keys(), QList<int>{3});
    expectGoodOrder();
}

TEST_F(BreachEnd, StrategyThatTheHostAddsWhileOthersAreLeftOutStays) {
    road.host.user.maxStrategies = 1;
    std::atomic<int> added{-1};
    road.host.breaches.arm("CUserConfig::getMaxOrderServerNum",
                           [&] { added = road.service().addOrderStrategy(TC::EOrderStrategyType::File); });
    road.load();
    EXPECT_TRUE(road.service().getStrategyMap().contains(added));
    EXPECT_EQ(road.service().getStrategyMap().size(), 2);
    expectGoodOrder();
}

/// Sets the flag at the end of the thread that created the object.
class CAtThreadEnd {
public:
    explicit CAtThreadEnd(std::atomic<bool>& flag) : m_flag(flag) {}
    ~CAtThreadEnd() { m_flag = true; }

private:
    std::atomic<bool>& m_flag;
};

/// The last pass may contain a cancel that fails. Its answer must reach the audit.
TEST_F(BreachEnd, AnswersToCancelsAreTakenUntilTheFileThreadHasEnded) {
    std::atomic<bool> hasEnded{false};
    onSignal(&COrderService::sigCancelOrders, [&] { thread_local const CAtThreadEnd end(hasEnded); });
    bool hadEnded = false;
    road.host.trade.onDisconnect = [&] { hadEnded = hasEnded; };
    road.drop("cancel_order A1 7\n23,0,10.5,600000,100\n");
    EXPECT_TRUE(road.waitForCommands(1));
    road.service().shutdown();
    EXPECT_TRUE(hadEnded);
    road.host.trade.onDisconnect = nullptr;
}

/// The trading layer may answer late, even when the service accepts no more orders.
TEST_F(BreachEnd, AnswerToACancelIsTakenWhileTheBacklogIsWorkedOff) {
    std::once_flag first;
    std::promise<void> isHeld;
    const auto isClosed = [this] {
        const auto reports = road.host.reports();
        return std::any_of(reports.begin(), reports.end(), [](const std::string& report) {
            return report.find("下单服务已关闭") != std::string::npos;
        });
    };
    const auto answerAfterTheEnd = [&] {
        while (!isClosed())
            road.service().cancelOrder(7);
        emit road.host.trade.sigCancelOrder(nullptr, false, "the answer came late");
    };
    road.host.breaches.arm("COrderClient::orderCommands", [&] {
        std::call_once(first, [&] {
            isHeld.set_value();
            std::thread(answerAfterTheEnd).join();
        });
    });
    road.drop("23,0,10.5,600000,100\n");
    isHeld.get_future().wait();
    road.service().shutdown();
    EXPECT_TRUE(road.host.waitForReport("the answer came late"));
}

} // namespace
