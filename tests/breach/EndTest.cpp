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
    void SetUp() override { run.load(); }

    template<typename Signal, typename Receiver>
    void onSignal(Signal signal, Receiver receiver, Qt::ConnectionType type = Qt::DirectConnection) {
        QObject::connect(&run.service(), signal, &run.service(), receiver, type);
        // The thread sanitizer does not see Qt's locks. This call takes a lock that each file pass takes too,
        // so the sanitizer knows that the receiver was connected before the next pass.
        (void)run.service().getStrategyMap();
    }
    void endHere() {
        COrderService::instance()->shutdown();
        COrderService::release();
    }
    void endAtTheNextMessage() {
        run.host.breaches.arm("CMsgService::showMsg", [this] {
            run.host.breaches.disarm();
            endHere();
        });
    }
    void expectGoodOrder() {
        ASSERT_NE(COrderService::instance(), nullptr);
        const std::size_t before = run.commandCount();
        run.place(CBreachRun::order(3));
        EXPECT_TRUE(run.waitForCommands(before + 1));
    }

    CBreachRun run;
};

TEST_F(BreachEnd, IsRefusedInAReceiverOfCancelsByOrder) {
    onSignal(&COrderService::sigCancelOrders, [this] { endHere(); });
    run.drop("cancel_order A1 7\n23,0,10.5,600000,100\n");
    EXPECT_TRUE(run.waitForCommands(1));
    EXPECT_TRUE(run.host.waitForReport(kNoEndHere));
    expectGoodOrder();
}

TEST_F(BreachEnd, IsRefusedInAReceiverOfTheStatus) {
    onSignal(&COrderService::sigSetStatus, [this] { endHere(); });
    run.start(5);
    EXPECT_EQ(run.startResult, 0);
    EXPECT_TRUE(run.host.waitForReport(kNoEndHere));
    expectGoodOrder();
}

/// Such a receiver runs on the service's thread, but not inside one of its slots.
TEST_F(BreachEnd, IsRefusedInAReceiverThatIsConnectedAutomatically) {
    onSignal(
        &COrderService::sigSetStatus, [this] { endHere(); }, Qt::AutoConnection);
    run.start(5);
    EXPECT_TRUE(run.host.waitForReport(kNoEndHere));
    expectGoodOrder();
}

TEST_F(BreachEnd, IsRefusedInACallThatTheHostPostsToTheService) {
    QMetaObject::invokeMethod(
        &run.service(), [this] { endHere(); }, Qt::QueuedConnection);
    EXPECT_TRUE(run.host.waitForReport(kNoEndHere));
    expectGoodOrder();
}

TEST_F(BreachEnd, ReceiverOnTheServicesThreadThatThrowsIsReported) {
    onSignal(
        &COrderService::sigSetStatus, [] { throw CForeign(); }, Qt::AutoConnection);
    run.start(5);
    EXPECT_TRUE(run.host.waitForReport("下单服务线程中的调用异常"));
    expectGoodOrder();
}

TEST_F(BreachEnd, IsRefusedInAReceiverOfOrders) {
    onSignal(&COrderService::sigPlaceOrders, [this] { endHere(); });
    expectGoodOrder();
    EXPECT_TRUE(run.host.waitForReport(kNoEndHere));
}

TEST_F(BreachEnd, IsRefusedWhileStrategiesAreVisited) {
    run.service().visitStrategies([this](int, const TC::COrderStrategyParam&) { endHere(); });
    EXPECT_TRUE(run.host.waitForReport(kNoEndHere));
    expectGoodOrder();
}

TEST_F(BreachEnd, IsRefusedInTheGuardOfAChange) {
    run.service().setStrategyGuard([this](const auto&, const auto&) {
        endHere();
        return QString();
    });
    EXPECT_EQ(run.service().updateOrderStrategy(5, run.service().getStrategyMap()[5]), 0);
    EXPECT_TRUE(run.host.waitForReport(kNoEndHere));
    expectGoodOrder();
}

TEST_F(BreachEnd, IsRefusedInTheMessageOfARefusedChange) {
    run.service().setStrategyGuard([](const auto&, const auto&) { return QStringLiteral("refused"); });
    endAtTheNextMessage();
    EXPECT_EQ(run.service().updateOrderStrategy(5, run.service().getStrategyMap()[5]), -1);
    expectGoodOrder();
}

TEST_F(BreachEnd, IsRefusedInTheMessagesOfOtherOperations) {
    endAtTheNextMessage();
    TC::COrderStrategyParam table;
    EXPECT_EQ(run.service().addDbfStrategy(table), -1);
    expectGoodOrder();
    run.host.breaches.arm("CUserManager::getUserConfig", [this] { endHere(); }); // called to check the right
    (void)run.service().getOrderStrategyText(TC::EOrderStrategyType::File);
    run.host.breaches.disarm();
    expectGoodOrder();
}

TEST_F(BreachEnd, IsRefusedInsideTheEndItself) {
    run.start(4);
    std::atomic<int> calls{0};
    run.host.breaches.arm("CIntakeAudit::recordDoor", [&] { // called when the listener is closed
        ++calls;
        endHere();
    });
    run.service().shutdown();
    EXPECT_EQ(calls, 1);
    EXPECT_TRUE(run.host.waitForReport(kNoEndHere));
}

/// Otherwise the next call of a host service would end the process.
TEST_F(BreachEnd, HostStaysInstalledWhileTheServiceLives) {
    TC::releaseHost();
    EXPECT_TRUE(TC::isHostInstalled());
    EXPECT_TRUE(run.host.waitForReport("下单服务仍在使用主机服务"));
    expectGoodOrder();
}

TEST_F(BreachEnd, HostStaysInstalledInACallBackOfTheServicesEnd) {
    run.start(4);
    std::atomic<int> calls{0};
    run.host.breaches.arm("CIntakeAudit::recordDoor", [&] {
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
    run.start(5);
    EXPECT_EQ(run.startResult, 0);
    EXPECT_TRUE(run.service().getStrategyMap()[5].isRunning());
    EXPECT_TRUE(run.host.waitForReport("sigSetStatus的接收者异常"));
    QString error;
    EXPECT_EQ(run.service().stopOrderStrategy(5, error), 0);
    EXPECT_FALSE(run.service().getStrategyMap()[5].isRunning());
    expectGoodOrder();
    EXPECT_TRUE(run.host.waitForReport("sigPlaceOrders的接收者异常: broken"));
    run.cancel();
    EXPECT_TRUE(run.host.waitForReport("sigCancelOrder的接收者异常"));
    run.waitForService();
    EXPECT_EQ(run.host.trade.cancelled.size(), 1u);
}

/// The orders after a failed cancel may depend on it.
TEST_F(BreachEnd, CancelByOrderThatFailsEndsItsFile) {
    onSignal(&COrderService::sigCancelOrders, [] { throw CForeign(); });
    run.drop("23,0,10.5,600000,100\ncancel_order A1 7\n23,0,10.5,600000,200\n");
    EXPECT_TRUE(run.waitForCommands(1));
    EXPECT_TRUE(run.host.waitForReport("未读完: sigCancelOrders: an exception of an unknown type"));
    run.waitForService();
    EXPECT_EQ(run.commandCount(), 1u);
}

TEST_F(BreachEnd, OneOrderOfABatchIsDroppedAndTheOthersGoOut) {
    for (const bool isForeign : {false, true}) {
        std::atomic<int> calls{0};
        run.host.breaches.arm("CTradeClient::splitEntrusts", [&] {
            if (++calls != 2) return;
            if (isForeign) throw CForeign();
            throw std::runtime_error("broken");
        });
        const std::size_t before = run.commandCount();
        run.service().placeOrders({CBreachRun::order(3), CBreachRun::order(3), CBreachRun::order(3)});
        EXPECT_TRUE(run.waitForCommands(before + 2));
        run.waitForService();
        EXPECT_EQ(run.commandCount(), before + 2);
        EXPECT_TRUE(run.host.waitForReport(isForeign ? "CTradeClient::splitEntrusts: an exception of an"
                                                     : "CTradeClient::splitEntrusts: broken"));
        run.host.breaches.disarm();
    }
}

TEST_F(BreachEnd, AListenerAnswersBadParamAndServesOn) {
    run.host.breaches.arm("CUserConfig::getBaskets", [] { throw CForeign(); });
    run.ask("placeorder 25,4,core");
    EXPECT_EQ(run.reply, "-ERR Bad Param\r\n");
    EXPECT_TRUE(run.host.waitForReport("CUserConfig::getBaskets"));
    run.ask("placeorder 23,4,10.5,600000,100");
    EXPECT_EQ(run.reply, "+OK\r\n");
    EXPECT_TRUE(run.waitForCommands(1));
}

TEST_F(BreachEnd, AStartThatFailsNamesTheServiceAndLeavesTheStrategyStopped) {
    run.host.breaches.arm("CTradeClient::getLoginStatus", [] { throw CForeign(); });
    run.start(5);
    EXPECT_EQ(run.startResult, -1);
    EXPECT_TRUE(run.startError.contains(QStringLiteral("CTradeClient::getLoginStatus")));
    EXPECT_FALSE(run.service().getStrategyMap()[5].isRunning());
    run.host.breaches.disarm();
    run.start(5);
    EXPECT_EQ(run.startResult, 0);
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
        if (run.service().removeOrderStrategy(removal.m_nChannel) == 0) ++removed;
    };
    run.host.breaches.arm(removal.m_pszOperation, remove);
    run.start(removal.m_nChannel);
    QString error;
    EXPECT_EQ(run.service().stopOrderStrategy(removal.m_nChannel, error), 0);
    EXPECT_EQ(removed, 1);
    EXPECT_FALSE(run.service().getStrategyMap().contains(removal.m_nChannel));
    run.host.breaches.disarm();
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
    run.folder.write("5.txt", "old");
    run.host.breaches.arm("CTradeClient::getLoginStatus", [this] { run.service().removeOrderStrategy(5); });
    run.start(5);
    EXPECT_EQ(run.startResult, -1);
    EXPECT_EQ(run.startError, QStringLiteral("策略5不存在"));
    EXPECT_EQ(run.folder.read("5.txt"), "old");
}

TEST_F(BreachEnd, HostMayRemoveASocketStrategyWhenItsDoorIsClosed) {
    run.start(4);
    run.host.breaches.arm("CIntakeAudit::recordDoor", [this] { run.service().removeOrderStrategy(4); });
    QString error;
    EXPECT_EQ(run.service().stopOrderStrategy(4, error), 0);
    EXPECT_FALSE(run.service().getStrategyMap().contains(4));
    expectGoodOrder();
}

TEST_F(BreachEnd, HostMayRemoveStrategiesThatTheLimitLeavesOut) {
    run.start(4);
    run.host.user.maxStrategies = 1;
    run.host.breaches.arm("CIntakeAudit::recordDoor", [this] { // called when the strategy's door is closed
        run.service().removeOrderStrategy(4);
        run.service().removeOrderStrategy(5);
    });
    run.load();
    EXPECT_EQ(run.service().getStrategyMap().keys(), QList<int>{3});
    expectGoodOrder();
}

TEST_F(BreachEnd, StrategyThatTheHostAddsWhileOthersAreLeftOutStays) {
    run.host.user.maxStrategies = 1;
    std::atomic<int> added{-1};
    run.host.breaches.arm("CUserConfig::getMaxOrderServerNum",
                          [&] { added = run.service().addOrderStrategy(TC::EOrderStrategyType::File); });
    run.load();
    EXPECT_TRUE(run.service().getStrategyMap().contains(added));
    EXPECT_EQ(run.service().getStrategyMap().size(), 2);
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
    run.host.trade.onDisconnect = [&] { hadEnded = hasEnded; };
    run.drop("cancel_order A1 7\n23,0,10.5,600000,100\n");
    EXPECT_TRUE(run.waitForCommands(1));
    run.service().shutdown();
    EXPECT_TRUE(hadEnded);
    run.host.trade.onDisconnect = nullptr;
}

/// The trading layer may answer late, even when the service accepts no more orders.
TEST_F(BreachEnd, AnswerToACancelIsTakenWhileTheBacklogIsProcessed) {
    std::once_flag first;
    std::promise<void> isHeld;
    const auto isClosed = [this] {
        const auto reports = run.host.reports();
        return std::any_of(reports.begin(), reports.end(), [](const std::string& report) {
            return report.find("下单服务已关闭") != std::string::npos;
        });
    };
    const auto answerAfterTheEnd = [&] {
        while (!isClosed())
            run.service().cancelOrder(7);
        emit run.host.trade.sigCancelOrder(nullptr, false, "the answer came late");
    };
    run.host.breaches.arm("COrderClient::orderCommands", [&] {
        std::call_once(first, [&] {
            isHeld.set_value();
            std::thread(answerAfterTheEnd).join();
        });
    });
    run.drop("23,0,10.5,600000,100\n");
    isHeld.get_future().wait();
    run.service().shutdown();
    EXPECT_TRUE(run.host.waitForReport("the answer came late"));
}

} // namespace
