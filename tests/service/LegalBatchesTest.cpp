// Checked orders on their way to the main thread, with the strategies that their signal points to.
#include "orderservice/service/LegalBatches.h"

#include "orderservice/check/OrderServiceBase.h"
#include "orderservice/service/OrderServiceAdapter.h"
#include "tests/service/ServiceFixture.h"

#include <QCoreApplication>

#include <stdexcept>
#include <thread>
#include <vector>

namespace {

using namespace TC;

/// A variant whose signal the tests emit.
class CEmittingVariant final : public COrderServiceBase {
public:
    void filterStrategies(COrderStrategyMap*) override {}
    void placeOrders(QVector<COrderParam>, const COrderStrategyMap*) override {}
};

class LegalBatches : public ServiceFixture {
protected:
    void SetUp() override {
        ServiceFixture::SetUp();
        forwardLegalOrders(variant, service());
    }
    static COrderStrategyMap strategiesOf(int volume) {
        COrderStrategyMap strategies;
        strategies.insert(3, CStrategyBuilder().volume(volume));
        return strategies;
    }
    static QVector<orderParamForOrderService> orders() {
        return {orderParamForOrderService(COrderBuilder(23).line(QStringLiteral("600000"), 10.5, 100))};
    }
    /// Emits on a thread that ends together with its map before the call returns.
    void emitOnAThread(int volume) {
        std::thread([this, volume] {
            COrderStrategyMap own = strategiesOf(volume);
            emit variant.sigPlaceLegalOrders(orders(), &own);
            own[3].m_nVolume = -1;
        }).join();
    }
    /// The number of maps that were held since the test began.
    std::size_t heldMaps() const { return CLegalBatches::instance().size() - m_nBefore; }

    CEmittingVariant variant;

private:
    const std::size_t m_nBefore = CLegalBatches::instance().size();
};

TEST_F(LegalBatches, QueuedStrategiesOutliveTheirEmitter) {
    QObject receiver;
    std::vector<int> volumes;
    QObject::connect(
        &service(), &COrderService::sigPlaceLegalOrders, &receiver,
        [&](const QVector<orderParamForOrderService>& batch, const COrderStrategyMap* strategies) {
            EXPECT_EQ(batch.size(), 1);
            volumes.push_back(strategies->value(3).m_nVolume);
        },
        Qt::QueuedConnection);
    emitOnAThread(77);
    emitOnAThread(78);
    EXPECT_TRUE(volumes.empty());
    QCoreApplication::processEvents();
    EXPECT_EQ(volumes, (std::vector<int>{77, 78}));
}

TEST_F(LegalBatches, StrategiesEndWhenTheAdapterHasPlacedTheOrders) {
    service().loadFromConfig(false);
    const COrderServiceAdapter adapter;
    emitOnAThread(77);
    emitOnAThread(78);
    EXPECT_EQ(heldMaps(), 2u);
    QCoreApplication::processEvents();
    EXPECT_EQ(heldMaps(), 0u);
}

TEST_F(LegalBatches, StrategiesOutliveTheService) {
    const COrderServiceAdapter adapter;
    emitOnAThread(77);
    service().shutdown();
    COrderService::release();
    EXPECT_EQ(heldMaps(), 1u);
    COrderService::initInstance(new COrderService); // the orders of the old service must not disturb it
    service().loadFromConfig(false);
    QCoreApplication::processEvents();
    EXPECT_EQ(heldMaps(), 0u);
}

TEST_F(LegalBatches, MissingMapStaysMissing) {
    int calls = 0;
    QObject::connect(
        &service(), &COrderService::sigPlaceLegalOrders, &service(),
        [&](const QVector<orderParamForOrderService>&, const COrderStrategyMap* strategies) {
            ++calls;
            EXPECT_EQ(strategies, nullptr);
        },
        Qt::DirectConnection);
    emit variant.sigPlaceLegalOrders(orders(), nullptr);
    EXPECT_EQ(calls, 1);
    EXPECT_EQ(heldMaps(), 0u);
}

TEST_F(LegalBatches, ReceiverThatThrowsIsReported) {
    QObject::connect(
        &service(), &COrderService::sigPlaceLegalOrders, &service(),
        [] { throw std::runtime_error("broken"); }, Qt::DirectConnection);
    emit variant.sigPlaceLegalOrders(orders(), nullptr);
    ASSERT_EQ(host.messageTexts().size(), 1u);
    EXPECT_TRUE(host.messageTexts()[0].contains(QStringLiteral("sigPlaceLegalOrders的接收者异常")));
}

/// The host keeps pointers to the records of its map. A copy that shared the map's data would move them at
/// the next change.
TEST_F(LegalBatches, HeldMapSharesNothingWithTheOriginal) {
    CLegalBatches batches;
    COrderStrategyMap original = strategiesOf(77);
    const COrderStrategyParam* record = &original.find(3).value();
    const COrderStrategyMap* held = batches.hold(&original);
    ASSERT_NE(held, &original);
    original[3].m_nVolume = 78;
    EXPECT_EQ(&original.find(3).value(), record);
    EXPECT_EQ(held->value(3).m_nVolume, 77);
}

TEST_F(LegalBatches, ReleaseIgnoresMapsThatAreNotHeld) {
    CLegalBatches batches;
    const COrderStrategyMap foreign = strategiesOf(1);
    const COrderStrategyMap* held = batches.hold(&foreign);
    batches.release(nullptr);
    batches.release(&foreign);
    EXPECT_EQ(batches.size(), 1u);
    batches.release(held);
    batches.release(held);
    EXPECT_EQ(batches.size(), 0u);
}

TEST_F(LegalBatches, MapsAreHeldAndReleasedOnAnyThread) {
    constexpr int kThreads = 4;
    constexpr int kMaps = 100;
    CLegalBatches batches;
    const COrderStrategyMap original = strategiesOf(77);
    std::vector<std::thread> threads;
    for (int i = 0; i < kThreads; ++i) {
        threads.emplace_back([&] {
            for (int n = 0; n < kMaps; ++n)
                batches.release(batches.hold(&original));
        });
    }
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_EQ(batches.size(), 0u);
}

} // namespace
