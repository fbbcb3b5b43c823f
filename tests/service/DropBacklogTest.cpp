#include "tests/service/ServiceFixture.h"

#include <future>
#include <vector>

namespace {

using namespace TC;

/// The host blocks the first command until the test releases it. All later orders form a backlog.
class DropBacklog : public ServiceFixture {
protected:
    void SetUp() override {
        ServiceFixture::SetUp();
        addFileStrategy(3);
        addFileStrategy(4);
        host.orders.onCommand = [this](const COrderComandParamPtr&) {
            if (m_calls++ != 0) return;
            m_inHand.set_value();
            m_go.get_future().wait();
        };
        service().loadFromConfig(false);
    }

    static COrderParam order(int channel, int volume) {
        return COrderBuilder(23).channel(channel).line(QStringLiteral("600000"), 10.5, volume);
    }
    void waitForTheFirst() { m_inHand.get_future().wait(); }
    void letGo() { m_go.set_value(); }

    /// Volumes of the orders that the audit received, grouped by batch.
    std::vector<std::vector<int>> unplaced() {
        std::vector<std::vector<int>> batches;
        for (const QVector<COrderParam>& orders : host.audit.unplaced) {
            batches.emplace_back();
            for (const COrderParam& dropped : orders)
                batches.back().push_back(dropped.m_orders.at(0).m_nVolume);
        }
        return batches;
    }

private:
    int m_calls = 0; ///< used only on the service's thread
    std::promise<void> m_inHand, m_go;
};

TEST_F(DropBacklog, OrderInHandIsFinishedAndAllBehindItIsReported) {
    service().placeOrders({order(3, 100), order(3, 200), order(4, 300)});
    service().placeOrders({order(4, 400)});
    service().placeOrders({});
    waitForTheFirst();
    service().dropBacklog();
    letGo();
    service().shutdown();
    EXPECT_EQ(host.commands().size(), 1u);
    EXPECT_EQ(unplaced(), (std::vector<std::vector<int>>{{200, 300}, {400}}));
    EXPECT_EQ(host.audit.unplaced.at(0).at(1).m_nChannel, 4);
    EXPECT_TRUE(host.audit.incidents.empty()) << "the same orders are not reported twice";
    EXPECT_TRUE(host.messageTexts().size() <= 1) << "what is dropped is no failure of a check";
}

TEST_F(DropBacklog, ShutdownThatWaitsIsEndedFromAnotherThread) {
    service().placeOrders({order(3, 100), order(3, 200)});
    waitForTheFirst();
    auto ended = std::async(std::launch::async, [this] { service().shutdown(); });
    service().dropBacklog();
    letGo();
    ended.get();
    EXPECT_EQ(host.commands().size(), 1u);
    EXPECT_EQ(unplaced(), (std::vector<std::vector<int>>{{200}}));
}

TEST_F(DropBacklog, CancelsAreStillCarriedOut) {
    service().placeOrders({order(3, 100)});
    service().placeOrders({order(3, 200)});
    service().cancelOrder(7);
    waitForTheFirst();
    service().dropBacklog();
    letGo();
    service().shutdown();
    EXPECT_EQ(unplaced(), (std::vector<std::vector<int>>{{200}}));
    ASSERT_EQ(host.trade.cancelled.size(), 1u);
    EXPECT_EQ(host.trade.cancelled[0].taskId, 7);
}

TEST_F(DropBacklog, BatchThatWasProcessedIsNotReported) {
    service().placeOrders({order(3, 100)});
    waitForTheFirst();
    service().dropBacklog();
    letGo();
    service().shutdown();
    EXPECT_EQ(host.commands().size(), 1u);
    EXPECT_TRUE(host.audit.unplaced.empty());
}

/// The missing strategy ends its batch without a report, even if the backlog is dropped at the same time.
TEST_F(DropBacklog, BatchThatEndedByAMissingStrategyIsNotReported) {
    service().placeOrders({order(3, 100)});
    service().placeOrders({order(9, 200), order(3, 300)});
    waitForTheFirst();
    letGo();
    service().shutdown();
    service().dropBacklog();
    EXPECT_TRUE(host.audit.unplaced.empty());
}

} // namespace
