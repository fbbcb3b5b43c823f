#include "orderservice/service/OrderService.h"

#include "orderservice/check/OrderServiceBase.h"
#include "orderservice/service/OrderServiceAdapter.h"
#include "tests/service/ServiceFixture.h"
#include "tests/support/ServicePeer.h"

#include <QMetaMethod>
#include <QThread>

#include <atomic>
#include <filesystem>
#include <fstream>
#include <future>
#include <sstream>
#include <stdexcept>
#include <thread>
#include <type_traits>

namespace {

using namespace TC;

class OrderService : public ServiceFixture {
protected:
    static COrderParam good(int channel = 3) {
        return COrderBuilder(23).channel(channel).line(QStringLiteral("600000"), 10.5, 100);
    }
};

/// The number of threads of this process with this name. Ending threads are not counted: the system may list
/// a thread for a moment after it was joined.
int threadsNamed(const std::string& name) {
    constexpr unsigned kExiting = 4; // the kernel's flag of an ending thread, set before a join returns
    int count = 0;
    for (const auto& task : std::filesystem::directory_iterator("/proc/self/task")) {
        std::ifstream file(task.path() / "stat");
        std::string line;
        if (!std::getline(file, line)) continue; // this thread has ended meanwhile
        const std::size_t begin = line.find('(') + 1, end = line.rfind(')');
        if (line.substr(begin, end - begin) != name) continue;
        std::istringstream rest(line.substr(end + 1));
        std::string state, parent, group, session, terminal, foreground;
        unsigned flags = 0;
        if (rest >> state >> parent >> group >> session >> terminal >> foreground >> flags &&
            (flags & kExiting) == 0)
            ++count;
    }
    return count;
}

TEST_F(OrderService, FileOrderBecomesACommandOnTheServiceThread) {
    addFileStrategy(3);
    std::atomic<QThread*> issuer{nullptr};
    host.orders.onCommand = [&](const COrderComandParamPtr&) { issuer = QThread::currentThread(); };
    service().loadFromConfig(false);
    drop(3, "23,0,10.5,600000,100\n");
    ASSERT_TRUE(host.waitForCommands(1));
    EXPECT_EQ(issuer.load(), service().thread());
    EXPECT_NE(issuer.load(), QThread::currentThread());
}

TEST_F(OrderService, BatchesAreProcessedInTheOrderOfTheCalls) {
    addFileStrategy(3);
    service().loadFromConfig(false);
    for (int i = 1; i <= 50; ++i) {
        service().placeorder(COrderBuilder(23).line(QStringLiteral("600000"), 10.5, i * 100));
    }
    service().shutdown();
    const auto commands = host.commands();
    ASSERT_EQ(commands.size(), 50u);
    for (int i = 1; i <= 50; ++i) {
        int sum = 0;
        for (const auto& code : commands[static_cast<std::size_t>(i) - 1]->m_codes)
            sum += code.m_nVolume;
        EXPECT_EQ(sum, i * 100);
    }
}

TEST_F(OrderService, PositionsAreExchangedWithoutAMultiplier) {
    const auto account = host.user.accounts.at("A1");
    COrderSingleParam target;
    target.m_strCode = QStringLiteral("600000");
    target.m_nVolume = 300;
    QVector<COrderSingleParam> rows{target};
    COrderServicePeer::exchangePosition(service(), account, rows); // the account has no data yet
    EXPECT_EQ(rows.at(0).m_nVolume, 300);
    EXPECT_EQ(rows.at(0).m_eOperationType, -1);
    host.tasks.addPosition(account, "SH", "600000", 1000);
    COrderServicePeer::exchangePosition(service(), account, rows);
    ASSERT_EQ(rows.size(), 1);
    EXPECT_EQ(rows.at(0).m_nVolume, 700);
    EXPECT_EQ(rows.at(0).m_eOperationType, static_cast<int>(EOperationType::Sell));
    EXPECT_FALSE(host.tasks.readUnlocked);
}

template<typename Service, typename = void>
struct HasPublicExchange : std::false_type {};
template<typename Service>
struct HasPublicExchange<Service, std::void_t<decltype(&Service::exchangePosition)>> : std::true_type {};

TEST_F(OrderService, PositionExchangeIsPrivateAndTheUniversalChannelPublic) {
    EXPECT_FALSE(HasPublicExchange<COrderService>::value);
    EXPECT_TRUE(service().isUniversal(0));
    EXPECT_FALSE(service().isUniversal(1));
    EXPECT_FALSE(service().isUniversal(-1));
}

TEST_F(OrderService, OrdersBeforeTheConfigurationAreDropped) {
    service().placeorder(good());
    service().shutdown();
    EXPECT_TRUE(host.commands().empty());
    EXPECT_TRUE(host.messageTexts().empty());
}

TEST_F(OrderService, OrdersMayComeFromAnyThread) {
    addFileStrategy(3);
    service().loadFromConfig(false);
    std::vector<std::thread> producers;
    for (int i = 0; i < 4; ++i) {
        producers.emplace_back([this] {
            for (int n = 0; n < 25; ++n)
                service().placeOrders({good()});
        });
    }
    for (std::thread& producer : producers)
        producer.join();
    service().shutdown();
    EXPECT_EQ(host.commands().size(), 100u);
}

TEST_F(OrderService, DirectReceiversOfOrdersAndCancelsAreCalledWithoutALock) {
    addFileStrategy(3);
    service().loadFromConfig(false);
    // Another thread places an order while it holds the registry lock, like a pass of the file loop. The
    // receiver waits for that thread, as if it needed a strategy that the pass has locked.
    const auto waitForAPass = [this] {
        auto passed = std::async(std::launch::async, [this] {
            service().visitStrategies([this](int, const COrderStrategyParam&) {
                service().placeOrders({});
                service().cancelOrder(9);
            });
        });
        EXPECT_EQ(passed.wait_for(std::chrono::seconds(60)), std::future_status::ready);
    };
    const QThread* const mine = QThread::currentThread();
    const auto isMine = [mine] { return QThread::currentThread() == mine; };
    QObject::connect(
        &service(), &COrderService::sigPlaceOrders, &service(), [&] { isMine() ? waitForAPass() : void(); },
        Qt::DirectConnection);
    QObject::connect(
        &service(), &COrderService::sigCancelOrder, &service(), [&] { isMine() ? waitForAPass() : void(); },
        Qt::DirectConnection);
    service().placeorder(good());
    service().cancelOrder(7);
    service().shutdown();
    EXPECT_EQ(host.commands().size(), 1u);
    EXPECT_EQ(host.trade.cancelled.size(), 3u);
}

TEST_F(OrderService, StrategyMayChangeWhileItsOrdersWaitForAQuote) {
    addFileStrategy(3);
    host.user.strategies[3].m_stockSetting.m_ePriceType = EPriceType::Latest;
    std::atomic<bool> entered{false};
    host.quotes.onRead = [&](const QString&, int) {
        if (entered.exchange(true)) return;
        QString error;
        std::thread([this, &error] { service().stopOrderStrategy(3, error); }).join();
    };
    service().loadFromConfig(false);
    service().placeOrders({good(), good()});
    service().shutdown();
    EXPECT_EQ(host.commands().size(), 1u); // the current order is finished, the next one is refused
    EXPECT_EQ(host.messageTexts().back(), QStringLiteral("[文件单]　通道号: 3, 对应的策略未启动!"));
    EXPECT_FALSE(service().hasRunning());
}

TEST_F(OrderService, RemovedStrategyEndsItsBatch) {
    addFileStrategy(3);
    host.orders.onCommand = [&](const COrderComandParamPtr&) { service().removeOrderStrategy(3); };
    service().loadFromConfig(false);
    service().placeOrders({good(), good(), good()});
    service().shutdown();
    EXPECT_EQ(host.commands().size(), 1u);
    EXPECT_EQ(host.messageTexts().back(), QStringLiteral("[文件单]　通道号: 3, 找不到对应的策略!"));
}

TEST_F(OrderService, OrdersFromTheServicesOwnThreadAreProcessedAtOnce) {
    addFileStrategy(3);
    std::atomic<int> depth{0};
    host.orders.onCommand = [&](const COrderComandParamPtr&) {
        if (depth++ == 0) service().placeorder(good());
    };
    service().loadFromConfig(false);
    service().placeOrders({good(), good()});
    service().shutdown();
    EXPECT_EQ(host.commands().size(), 3u);
}

TEST_F(OrderService, ExceptionOfTheHostCostsOneOrder) {
    addFileStrategy(3);
    std::atomic<int> calls{0};
    host.orders.onCommand = [&](const COrderComandParamPtr&) {
        if (calls++ == 0) throw std::runtime_error("no line");
    };
    service().loadFromConfig(false);
    service().placeOrders({good(), good()});
    service().shutdown();
    EXPECT_EQ(calls, 2);
    EXPECT_EQ(host.errorTexts(), std::vector<QString>{QStringLiteral(
                                     "[文件单]　通道号: 3, 下单异常: COrderClient::orderCommands: no line")});
}

TEST_F(OrderService, NothingIsAcceptedAfterTheShutdown) {
    addFileStrategy(3);
    service().loadFromConfig(false);
    service().shutdown();
    service().placeOrders({good(), good()});
    EXPECT_EQ(host.messageTexts(),
              std::vector<QString>{QStringLiteral("[接口单]　下单服务已关闭, 2条指令未执行!")});
    service().loadFromConfig(false);
    EXPECT_EQ(threadsNamed("orderservice"), 0);
    folder.write(fileOf(3), "23,0,10.5,600000,100\n");
    QString error;
    EXPECT_EQ(service().startOrderStrategy(3, error, true), -1);
    EXPECT_EQ(error, QStringLiteral("下单服务已关闭"));
    EXPECT_TRUE(folder.exists(fileOf(3)));
    emit host.exchange.sigNewTradingDate("20260106");
    EXPECT_TRUE(host.framework.dates.empty());
}

TEST_F(OrderService, ParentDoesNotKeepTheServiceFromItsThread) {
    service().shutdown();
    COrderService::release();
    QObject parent;
    COrderService::initInstance(new COrderService(&parent));
    EXPECT_NE(service().thread(), QThread::currentThread());
}

TEST_F(OrderService, UserMayComeAndGoBetweenLoads) {
    addFileStrategy(3);
    host.user.loggedIn = false;
    service().loadFromConfig(false);
    host.user.loggedIn = true;
    service().loadFromConfig(false);
    drop(3, "23,0,10.5,600000,100\n");
    ASSERT_TRUE(host.waitForCommands(1));
    host.user.loggedIn = false;
    service().loadFromConfig(false);
    EXPECT_TRUE(service().getStrategyMap().isEmpty());
    service().placeorder(good());
    service().cancelOrder(7);
    service().shutdown();
    EXPECT_EQ(host.commands().size(), 1u);
    EXPECT_EQ(host.trade.cancelled.at(0).remark, "用户接口单撤销指令7");
}

TEST_F(OrderService, SecondLoadStartsAgainWhatRuns) {
    addFileStrategy(3);
    service().loadFromConfig(false);
    drop(3, ""); // afterwards the file no longer exists
    service().loadFromConfig(false);
    EXPECT_FALSE(service().hasRunning());
}

TEST_F(OrderService, StrategiesOverTheLimitAreNotEvenStarted) {
    addFileStrategy(1);
    addFileStrategy(2);
    addFileStrategy(3);
    host.user.maxStrategies = 2;
    service().loadFromConfig(true);
    EXPECT_TRUE(folder.exists(fileOf(3)));
    EXPECT_EQ(host.messageTexts(), (std::vector<QString>{QStringLiteral("[标题2]　策略1: 启动成功!"),
                                                         QStringLiteral("[标题2]　策略2: 启动成功!")}));
}

TEST_F(OrderService, UserWithoutAnyRightGetsNoVariant) {
    addFileStrategy(3);
    host.user.orderService = false;
    host.user.rights.clear();
    service().loadFromConfig(false);
    EXPECT_EQ(service().getOrderService(), nullptr);
    drop(3, "23,0,10.5,600000,100\norderParam=x\n");
    service().placeLegalOrders({orderParamForOrderService(good())});
    service().shutdown();
    EXPECT_TRUE(host.commands().empty());
    EXPECT_TRUE(host.errorTexts().empty());
    EXPECT_TRUE(host.messageTexts().empty());
}

TEST_F(OrderService, TradeFrameworkIsRefusedWithAMessage) {
    host.user.framework = true;
    service().loadFromConfig(false);
    EXPECT_EQ(host.messageTexts(),
              std::vector<QString>{QStringLiteral("[接口单]　此版本尚不支持交易框架接口!")});
}

TEST_F(OrderService, SecondLoadKeepsVariantAndFileThread) {
    addFileStrategy(3);
    service().loadFromConfig(false);
    const COrderServiceBase* variant = service().getOrderService();
    drop(3, "");
    folder.write(fileOf(3), "");
    service().loadFromConfig(false);
    EXPECT_EQ(service().getOrderService(), variant);
    drop(3, "");
    EXPECT_EQ(threadsNamed("orderservice"), 1);
}

TEST_F(OrderService, LoadWithoutAUserBindsNothing) {
    host.user.loggedIn = false;
    service().loadFromConfig(true);
    EXPECT_EQ(service().addOrderStrategy(EOrderStrategyType::File), -1);
    EXPECT_TRUE(service().getStrategyMap().isEmpty());
    EXPECT_FALSE(service().hasRunning());
    EXPECT_EQ(threadsNamed("orderservice"), 0);
}

TEST_F(OrderService, LoadFiltersTheStrategiesOverTheLimit) {
    addFileStrategy(1);
    addFileStrategy(2);
    host.user.maxStrategies = 1;
    service().loadFromConfig(false);
    EXPECT_EQ(service().getStrategyMap().keys(), QList<int>{1});
}

TEST_F(OrderService, LoadStartsWhatIsRememberedAsRunningAndDropsErrors) {
    addFileStrategy(1);
    addFileStrategy(2, false);
    host.user.addStrategy(CStrategyBuilder().channel(4).file(folder.path("missing.txt")));
    folder.write(fileOf(1), "23,0,10.5,600000,100\n");
    service().loadFromConfig(true);
    const auto strategies = service().getStrategyMap();
    EXPECT_TRUE(strategies[1].isRunning());
    EXPECT_FALSE(strategies[2].isRunning());
    EXPECT_FALSE(strategies[4].isRunning());
    EXPECT_FALSE(folder.exists(fileOf(1))); // a file from before the start is deleted unread
    EXPECT_EQ(host.messageTexts(), std::vector<QString>{QStringLiteral("[标题2]　策略1: 启动成功!")});
}

TEST_F(OrderService, ShutdownProcessesWhatWasTaken) {
    addFileStrategy(3);
    service().loadFromConfig(false);
    std::string file;
    for (int i = 0; i < 2000; ++i)
        file += "23,0,10.5,600000,100\n";
    drop(3, file);
    service().shutdown();
    service().shutdown();
    EXPECT_EQ(host.commands().size(), 2000u);
    EXPECT_EQ(threadsNamed("orderservice"), 0);
}

/// Without the wake-up this test would take a day.
TEST_F(OrderService, ShutdownDoesNotWaitOutThePollingInterval) {
    host.user.interval = 24 * 60 * 60 * 1000;
    service().loadFromConfig(false);
    service().shutdown();
    EXPECT_EQ(threadsNamed("orderservice"), 0);
}

TEST_F(OrderService, CancelGoesToTheTradeClientWithTheUsersReason) {
    service().loadFromConfig(false);
    service().cancelOrder(42);
    host.records.waitUntil([this] { return !host.trade.cancelled.empty(); });
    host.user.rights.clear();
    service().cancelOrder(0);
    service().shutdown();
    ASSERT_EQ(host.trade.cancelled.size(), 2u);
    const fake::CCancelledTask& first = host.trade.cancelled[0];
    EXPECT_EQ(first.taskId, 42);
    EXPECT_EQ(first.operation, 5);
    EXPECT_EQ(first.text, "");
    EXPECT_EQ(first.remark, "用户tester信号单撤销指令42");
    EXPECT_EQ(first.tradingDay, "20260105");
    EXPECT_FALSE(first.hasCallback);
    EXPECT_EQ(first.flag, 0);
    EXPECT_EQ(host.trade.cancelled[1].remark, "用户tester接口单撤销指令0");
}

TEST_F(OrderService, CancelOfAnOrderReachesTheHostAtOnce) {
    std::vector<std::string> seen;
    QObject::connect(
        &service(), &COrderService::sigCancelOrders, &service(),
        [&](std::vector<std::string>& fields) { seen = fields; }, Qt::DirectConnection);
    std::vector<std::string> fields{"cancel_order", "A1", "77"};
    service().cancelOrders(fields);
    EXPECT_EQ(seen, fields);
}

TEST_F(OrderService, NewTradingDateGoesToTheFramework) {
    emit host.exchange.sigNewTradingDate("20260106");
    service().shutdown();
    EXPECT_EQ(host.framework.dates, std::vector<std::string>{"20260106"});
}

TEST_F(OrderService, AnswerToACancelThatNoTableAskedForHasNoEffect) {
    emit host.trade.sigCancelOrder({}, true, "done");
    service().shutdown();
    EXPECT_TRUE(host.messageTexts().empty());
}

TEST_F(OrderService, CancelOfAnOrderThatFailedGoesToTheAudit) {
    emit host.trade.sigCancelOrder({}, false, "no such order");
    service().shutdown();
    EXPECT_TRUE(host.messageTexts().empty());
    ASSERT_EQ(host.audit.incidents.size(), 1u);
    EXPECT_EQ(host.audit.incidents[0].m_eIncident, EIncident::CancelNotDone);
    EXPECT_EQ(host.audit.incidents[0].m_strCause, QStringLiteral("no such order"));
}

TEST_F(OrderService, StatusBarNamesTheRunningStrategiesInKeyOrder) {
    EXPECT_EQ(service().getStatusBarTip(), QStringLiteral("没有正在运行的策略"));
    addFileStrategy(2);
    addFileStrategy(1);
    addFileStrategy(5, false);
    service().loadFromConfig(false);
    EXPECT_EQ(service().getStatusBarTip(), QStringLiteral("策略1正在运行\n策略2正在运行"));
}

TEST_F(OrderService, SignalsAndSlotsKeepTheirPlacesInTheMetaObject) {
    const QMetaObject* meta = service().metaObject();
    const char* methods[] = {
        ("sigPlaceLegalOrders(QVector<TC::orderParamForOrderService>,const "
         "QMap<int,TC::COrderStrategyParam>*)"),
        "sigSetStatus(bool)",
        "sigPlaceOrders(QVector<TC::COrderParam>)",
        "sigCancelOrder(int)",
        "sigStopStrategy(int,int)",
        "sigCancelOrders(std::vector<std::string>&)",
        "slotNewTradingDate(std::string)",
        "slotPlaceOrders(QVector<TC::COrderParam>)",
        "slotCancelOrder(int)",
        "slotDbfCancelOrder(knservice::COrderInfoPtr,bool,std::string)",
    };
    for (int i = 0; i < 10; ++i) {
        EXPECT_EQ(meta->method(meta->methodOffset() + i).methodSignature().toStdString(), methods[i]);
    }
}

TEST_F(OrderService, DbfStrategiesAreRefusedWithAMessage) {
    service().loadFromConfig(false);
    COrderStrategyParam param;
    EXPECT_EQ(service().addDbfStrategy(param), -1);
    EXPECT_EQ(host.messageTexts(),
              std::vector<QString>{QStringLiteral("[批量埋单]　此版本尚不支持DBF委托表!")});
}

TEST_F(OrderService, AdapterWithoutAServiceStaysUnconnected) {
    service().shutdown();
    COrderService::release();
    COrderServiceAdapter adapter;
    const COrderStrategyMap strategies;
    adapter.slotPlaceLegalOrders({orderParamForOrderService(good())}, &strategies);
    COrderService::initInstance(new COrderService);
    emit service().sigPlaceLegalOrders({orderParamForOrderService(good())}, &strategies);
    EXPECT_TRUE(host.commands().empty());
}

TEST_F(OrderService, AdapterHandsCheckedOrdersToTheVariant) {
    service().loadFromConfig(false);
    const COrderServiceAdapter adapter;
    const COrderStrategyMap strategies;
    emit service().sigPlaceLegalOrders({orderParamForOrderService(good())}, &strategies);
    EXPECT_TRUE(host.commands().empty()); // this variant has no second pass
    EXPECT_TRUE(host.messageTexts().empty());
}

} // namespace
