// Checked orders on their way from a variant to the main thread: each batch is placed by its variant or
// reported as dropped.
#include "orderservice/service/LegalBatches.h"

#include "orderservice/check/OrderServiceBase.h"
#include "orderservice/platform/Host.h"
#include "orderservice/service/OrderServiceAdapter.h"
#include "tests/service/ServiceFixture.h"

#include <QCoreApplication>
#include <QThread>

#include <cstdlib>
#include <functional>
#include <memory>
#include <new>
#include <stdexcept>
#include <thread>
#include <utility>
#include <vector>

namespace {

thread_local int t_nFailingNews = 0;

} // namespace

/// Throws as often as t_nFailingNews says, on the thread that has set it.
void* operator new(std::size_t size) {
    if (t_nFailingNews > 0) {
        --t_nFailingNews;
        throw std::bad_alloc();
    }
    if (void* memory = std::malloc(size == 0 ? 1 : size)) return memory;
    throw std::bad_alloc();
}

void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
    return std::malloc(size == 0 ? 1 : size);
}

void operator delete(void* memory) noexcept {
    std::free(memory);
}

void operator delete(void* memory, std::size_t) noexcept {
    std::free(memory);
}

namespace {

using namespace TC;

/// A variant whose signal the tests emit. It remembers the volume of the strategy of each placed batch.
class CTwoPassVariant final : public COrderServiceBase {
public:
    void filterStrategies(COrderStrategyMap*) override {}
    void placeOrders(QVector<COrderParam>, const COrderStrategyMap*) override {}
    void placeLegalOrders(QVector<orderParamForOrderService> orders,
                          const COrderStrategyMap* strategies) override {
        EXPECT_EQ(orders.size(), 2);
        EXPECT_EQ(QThread::currentThread(), QCoreApplication::instance()->thread());
        channel = orders[0].m_nChannel;
        std::exchange(onPlace, [] {})();
        placed.push_back(strategies->value(3).m_nVolume); // after onPlace: the map must still live
    }

    std::vector<int> placed;
    int channel = 0;                       ///< of the first order that was placed last
    std::function<void()> onPlace = [] {}; ///< called once
};

class LegalBatches : public ServiceFixture {
protected:
    void SetUp() override {
        ServiceFixture::SetUp();
        forwardLegalOrders(variant, service());
        adapter = std::make_unique<COrderServiceAdapter>();
    }
    void TearDown() override {
        if (ownsSingleton) (void)adapter.release(); // the singleton deletes it
        COrderServiceAdapter::release();
        adapter.reset();
        ServiceFixture::TearDown();
        QCoreApplication::processEvents();
        EXPECT_EQ(CLegalBatches::instance().size(), 0u) << "a batch was not released";
    }
    void makeAdapterTheSingleton() {
        COrderServiceAdapter::initInstance(adapter.get());
        ownsSingleton = true;
    }

    static COrderStrategyMap strategiesOf(int volume) {
        COrderStrategyMap strategies;
        strategies.insert(3, CStrategyBuilder().volume(volume));
        return strategies;
    }
    static QVector<orderParamForOrderService> orders() {
        const orderParamForOrderService order(COrderBuilder(23).line(QStringLiteral("600000"), 10.5, 100));
        return {order, order};
    }
    /// Emits on a thread that ends together with its map before the call returns.
    void emitOnAThread(int volume = 77) {
        std::thread([this, volume] {
            COrderStrategyMap own = strategiesOf(volume);
            emit variant.sigPlaceLegalOrders(orders(), &own);
            own[3].m_nVolume = -1;
        }).join();
    }
    template<typename Receiver>
    void connectDirect(const Receiver& receiver) {
        QObject::connect(&service(), &COrderService::sigPlaceLegalOrders, &service(), receiver,
                         Qt::DirectConnection);
    }
    /// Expects that exactly one batch was dropped, for this reason, and that nothing was placed.
    void expectDropped(const QString& message, const QString& auditCause) {
        EXPECT_EQ(host.messageTexts(), std::vector<QString>{QStringLiteral("[文件单]　通道号: 3, ") +
                                                            message + QStringLiteral(", 2条指令未执行!")});
        expectIncident(auditCause);
        EXPECT_TRUE(variant.placed.empty());
    }
    void expectIncident(const QString& cause, EIncident event = EIncident::OrdersDropped) {
        ASSERT_EQ(host.audit.incidents.size(), 1u);
        EXPECT_EQ(host.audit.incidents[0].m_eIncident, event);
        EXPECT_EQ(host.audit.incidents[0].m_nChannel, 3);
        EXPECT_EQ(host.audit.incidents[0].m_nOrders, 2);
        EXPECT_EQ(host.audit.incidents[0].m_strCause, cause);
    }
    void expectPlaced(const std::vector<int>& volumes) {
        EXPECT_EQ(variant.placed, volumes);
        EXPECT_TRUE(host.audit.incidents.empty());
    }

    CTwoPassVariant variant;
    std::unique_ptr<COrderServiceAdapter> adapter;
    bool ownsSingleton = false;
};

TEST_F(LegalBatches, VariantThatCheckedTheOrdersPlacesThemOnTheMainThread) {
    service().loadFromConfig(false);
    emitOnAThread(77);
    emitOnAThread(78);
    EXPECT_TRUE(variant.placed.empty());
    QCoreApplication::processEvents();
    expectPlaced({77, 78});
    EXPECT_TRUE(host.messageTexts().empty());
}

TEST_F(LegalBatches, EmissionOnTheMainThreadIsPlacedAtOnce) {
    const COrderStrategyMap strategies = strategiesOf(77);
    emit variant.sigPlaceLegalOrders(orders(), &strategies);
    expectPlaced({77});
    QCoreApplication::processEvents();
    expectPlaced({77});
}

TEST_F(LegalBatches, QueuedReceiverOfTheHostCanUseTheMap) {
    QObject receiver;
    std::vector<int> volumes;
    QObject::connect(
        &service(), &COrderService::sigPlaceLegalOrders, &receiver,
        [&](const QVector<orderParamForOrderService>& batch, const COrderStrategyMap* strategies) {
            EXPECT_EQ(batch.size(), 2);
            volumes.push_back(strategies->value(3).m_nVolume);
        },
        Qt::QueuedConnection);
    emitOnAThread(77);
    emitOnAThread(78);
    QCoreApplication::processEvents();
    EXPECT_EQ(volumes, (std::vector<int>{77, 78}));
    expectPlaced({77, 78});
}

TEST_F(LegalBatches, SeveralConnectionsToTheAdapterPlaceABatchOnce) {
    QObject::connect(&service(), &COrderService::sigPlaceLegalOrders, adapter.get(),
                     &COrderServiceAdapter::slotPlaceLegalOrders);
    const COrderServiceAdapter second;
    emitOnAThread();
    QCoreApplication::processEvents();
    expectPlaced({77});
}

TEST_F(LegalBatches, AdapterThatTheHostConnectsItselfPlacesTheBatch) {
    QObject::disconnect(&service(), nullptr, adapter.get(), nullptr);
    QObject::connect(&service(), &COrderService::sigPlaceLegalOrders, adapter.get(),
                     &COrderServiceAdapter::slotPlaceLegalOrders, Qt::QueuedConnection);
    emitOnAThread();
    QCoreApplication::processEvents();
    expectPlaced({77});
}

TEST_F(LegalBatches, BatchWithoutAnAdapterIsReported) {
    adapter.reset();
    emitOnAThread();
    QCoreApplication::processEvents();
    expectDropped(QStringLiteral("主线程未接收待确认指令"),
                  QStringLiteral("no adapter received the checked orders"));
}

TEST_F(LegalBatches, BatchOfABlockedSignalIsReported) {
    service().blockSignals(true);
    emitOnAThread();
    QCoreApplication::processEvents();
    expectDropped(QStringLiteral("主线程未接收待确认指令"),
                  QStringLiteral("no adapter received the checked orders"));
}

TEST_F(LegalBatches, BatchThatWaitsWhenTheAdapterIsDeletedIsReported) {
    emitOnAThread();
    adapter.reset();
    const QString message = QStringLiteral("主线程已停止接收待确认指令");
    const QString cause = QStringLiteral("the adapter was deleted before it received the checked orders");
    expectDropped(message, cause);
    QCoreApplication::processEvents();
    expectDropped(message, cause);
}

TEST_F(LegalBatches, EndOfAnAdapterWithoutAConnectionDropsNothing) {
    auto other = std::make_unique<COrderServiceAdapter>();
    QObject::disconnect(&service(), nullptr, other.get(), nullptr);
    emitOnAThread();
    other.reset();
    QCoreApplication::processEvents();
    expectPlaced({77});
}

TEST_F(LegalBatches, BatchIsPlacedAfterShutdownWhileTheAdapterLives) {
    emitOnAThread();
    service().shutdown();
    QCoreApplication::processEvents();
    expectPlaced({77});
}

TEST_F(LegalBatches, BatchThatIsLeftAfterShutdownIsReported) {
    emitOnAThread();
    service().shutdown();
    adapter.reset();
    expectDropped(QStringLiteral("主线程已停止接收待确认指令"),
                  QStringLiteral("the adapter was deleted before it received the checked orders"));
}

TEST_F(LegalBatches, BatchOfAReleasedServiceIsReportedAndNotPlacedByANewOne) {
    emitOnAThread();
    COrderService::release();
    const QString cause =
        QStringLiteral("the order service was deleted before the checked orders were placed");
    expectDropped(QStringLiteral("下单服务已关闭"), cause);
    COrderService::initInstance(new COrderService);
    service().loadFromConfig(false);
    QCoreApplication::processEvents();
    expectDropped(QStringLiteral("下单服务已关闭"), cause);
}

TEST_F(LegalBatches, BatchOfADeletedVariantIsReported) {
    auto other = std::make_unique<CTwoPassVariant>();
    forwardLegalOrders(*other, service());
    std::thread([&] {
        const COrderStrategyMap strategies = strategiesOf(77);
        emit other->sigPlaceLegalOrders(orders(), &strategies);
    }).join();
    other.reset();
    QCoreApplication::processEvents();
    expectDropped(QStringLiteral("下单服务已关闭"),
                  QStringLiteral("the order service was deleted before the checked orders were placed"));
}

TEST_F(LegalBatches, ReceiverThatThrowsBeforeTheAdapterDoesNotStopTheBatch) {
    adapter.reset();
    connectDirect([] { throw std::runtime_error("broken"); });
    adapter = std::make_unique<COrderServiceAdapter>();
    makeAdapterTheSingleton();
    emitOnAThread();
    QCoreApplication::processEvents();
    expectPlaced({77});
    EXPECT_EQ(host.messageTexts(),
              std::vector<QString>{QStringLiteral("[接口单]　sigPlaceLegalOrders的接收者异常: broken")});
}

TEST_F(LegalBatches, ReceiverThatThrowsBehindTheAdapterDoesNotDoubleTheBatch) {
    makeAdapterTheSingleton();
    connectDirect([] { throw std::runtime_error("broken"); });
    emitOnAThread();
    QCoreApplication::processEvents();
    expectPlaced({77});
}

/// The host has disconnected the adapter, perhaps because it places the batch itself.
TEST_F(LegalBatches, ReceiverThatThrowsDoesNotBringTheBatchToADisconnectedAdapter) {
    makeAdapterTheSingleton();
    QObject::disconnect(&service(), nullptr, adapter.get(), nullptr);
    connectDirect([] { throw std::runtime_error("broken"); });
    emitOnAThread();
    QCoreApplication::processEvents();
    EXPECT_TRUE(variant.placed.empty());
    expectIncident(QStringLiteral("no adapter received the checked orders"));
}

TEST_F(LegalBatches, BatchThatCannotBeKeptIsReported) {
    const COrderStrategyMap strategies = strategiesOf(77);
    const auto batch = orders();
    t_nFailingNews = 1;
    emit variant.sigPlaceLegalOrders(batch, &strategies);
    EXPECT_EQ(t_nFailingNews, 0);
    expectDropped(QStringLiteral("待确认指令无法保存"),
                  QStringLiteral("the checked orders could not be kept: std::bad_alloc"));
    emit variant.sigPlaceLegalOrders(batch, &strategies);
    EXPECT_EQ(variant.placed, std::vector<int>{77});
}

TEST_F(LegalBatches, MemoryThatIsMissingForTheReportTooDoesNotEndTheProcess) {
    const COrderStrategyMap strategies = strategiesOf(77);
    const auto batch = orders();
    t_nFailingNews = 3;
    emit variant.sigPlaceLegalOrders(batch, &strategies);
    t_nFailingNews = 0;
    EXPECT_TRUE(variant.placed.empty());
    emit variant.sigPlaceLegalOrders(batch, &strategies);
    EXPECT_EQ(variant.placed, std::vector<int>{77});
}

TEST_F(LegalBatches, ListThatTheHostHasChangedIsPlaced) {
    QObject::disconnect(&service(), nullptr, adapter.get(), nullptr);
    connectDirect([this](QVector<orderParamForOrderService> batch, const COrderStrategyMap* strategies) {
        batch[0].m_nChannel = 7;
        adapter->slotPlaceLegalOrders(batch, strategies);
    });
    const COrderStrategyMap strategies = strategiesOf(77);
    emit variant.sigPlaceLegalOrders(orders(), &strategies);
    QCoreApplication::processEvents();
    expectPlaced({77});
    EXPECT_EQ(variant.channel, 7);
}

TEST_F(LegalBatches, BatchThatTheHostPlacesItselfIsNeitherReportedNorPlacedAgain) {
    service().loadFromConfig(false); // the one-pass variant, which ignores checked orders
    connectDirect(
        [this](const QVector<orderParamForOrderService>& batch) { service().placeLegalOrders(batch); });
    emitOnAThread();
    QCoreApplication::processEvents();
    expectPlaced({});
    EXPECT_TRUE(host.messageTexts().empty());
}

TEST_F(LegalBatches, RecordsOfAReleasedServiceAreDestroyedWithIt) {
    QVector<orderParamForOrderService> batch = orders();
    const auto account = boost::make_shared<CAccountInfo>();
    batch[0].m_codes.resize(1);
    batch[0].m_codes[0].m_account = account;
    std::thread([&] {
        const COrderStrategyMap own = strategiesOf(77);
        emit variant.sigPlaceLegalOrders(batch, &own);
    }).join();
    batch.clear();
    QCoreApplication::removePostedEvents(adapter.get());
    COrderService::release();
    EXPECT_EQ(account.use_count(), 1);
    COrderService::initInstance(new COrderService);
}

TEST_F(LegalBatches, BatchWhoseEndCannotBeQueuedIsReported) {
    adapter.reset();
    connectDirect([] { t_nFailingNews = 1; });
    emitOnAThread();
    ASSERT_EQ(host.messageTexts().size(), 2u);
    EXPECT_EQ(host.messageTexts()[0], QStringLiteral("[接口单]　待确认指令无法排队: std::bad_alloc"));
    EXPECT_EQ(host.messageTexts()[1],
              QStringLiteral("[文件单]　通道号: 3, 主线程未接收待确认指令, 2条指令未执行!"));
    expectIncident(QStringLiteral("no adapter received the checked orders"));
}

TEST_F(LegalBatches, BatchWithoutStrategiesIsReported) {
    emit variant.sigPlaceLegalOrders(orders(), nullptr);
    expectDropped(QStringLiteral("待确认指令没有策略"),
                  QStringLiteral("the checked orders came without their strategies"));
}

TEST_F(LegalBatches, ExceptionOfTheVariantStaysInTheSlotAndIsReported) {
    variant.onPlace = [] { throw std::runtime_error("no dialog"); };
    emitOnAThread();
    QCoreApplication::processEvents();
    EXPECT_EQ(host.messageTexts(), std::vector<QString>{QStringLiteral("[接口单]　批次中断: no dialog")});
    expectIncident(QStringLiteral("no dialog"), EIncident::OrdersInterrupted);
}

TEST_F(LegalBatches, BatchThatArrivesWhileAnotherIsPlacedWaitsForItsEnd) {
    variant.onPlace = [this] {
        emitOnAThread(78);
        QCoreApplication::processEvents(); // the event loop of a service of the host
        EXPECT_TRUE(variant.placed.empty());
    };
    emitOnAThread(77);
    QCoreApplication::processEvents();
    QCoreApplication::processEvents();
    expectPlaced({77, 78});
}

TEST_F(LegalBatches, ServiceCannotEndDuringADialog) {
    variant.onPlace = [] {
        COrderService::instance()->shutdown();
        COrderService::release();
    };
    emitOnAThread();
    QCoreApplication::processEvents();
    expectPlaced({77});
    ASSERT_NE(COrderService::instance(), nullptr);
    EXPECT_EQ(host.messageTexts().size(), 2u);
}

TEST_F(LegalBatches, CallOfTheSlotWithoutAServiceIsReported) {
    COrderService::release();
    const COrderStrategyMap strategies = strategiesOf(77);
    adapter->slotPlaceLegalOrders(orders(), &strategies);
    expectDropped(QStringLiteral("没有下单服务"),
                  QStringLiteral("there is no order service that can place checked orders"));
    COrderService::initInstance(new COrderService);
}

TEST_F(LegalBatches, CallOfTheSlotWithoutAVariantIsReported) {
    const COrderStrategyMap strategies = strategiesOf(77);
    adapter->slotPlaceLegalOrders(orders(), &strategies);
    expectDropped(QStringLiteral("没有下单服务"),
                  QStringLiteral("there is no order service that can place checked orders"));
}

TEST_F(LegalBatches, CallOfTheSlotWithoutStrategiesIsReported) {
    service().loadFromConfig(false);
    adapter->slotPlaceLegalOrders(orders(), nullptr);
    expectDropped(QStringLiteral("待确认指令没有策略"),
                  QStringLiteral("the checked orders came without their strategies"));
}

TEST(LegalBatchesWithoutAHost, CallOfTheSlotIsReportedOnTheErrorStream) {
    ASSERT_FALSE(isHostInstalled());
    COrderServiceAdapter adapter;
    const COrderStrategyMap strategies;
    testing::internal::CaptureStderr();
    adapter.slotPlaceLegalOrders({orderParamForOrderService(COrderBuilder(23))}, &strategies);
    EXPECT_EQ(
        testing::internal::GetCapturedStderr(),
        "order service: 1 checked orders were dropped: there is no order service that can place checked "
        "orders\n");
}

/// Records of a host may need the host in their destructors. At the end of the process it does not exist any
/// more.
TEST(LegalBatchesWithoutAHost, LeftBatchIsNotDestroyedAtTheEndOfTheProcess) {
    const auto endProcess = [] {
        COrderStrategyMap strategies;
        strategies[3].m_algoSetting = CAlgorithmOrderSettingPtr(
            new CAlgorithmOrderSetting, [](const CAlgorithmOrderSetting*) { std::abort(); });
        CLegalBatches::instance().keep({{}, strategies, {}, nullptr});
        strategies.clear();
        std::exit(0);
    };
    EXPECT_EXIT(endProcess(), testing::ExitedWithCode(0), "");
}

} // namespace
