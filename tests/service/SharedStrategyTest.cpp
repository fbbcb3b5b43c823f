// The records of strategies that orders, doors and passes of the file loop share, and the registry's
// revision.
#include "tests/service/RegistryFixture.h"

#include <atomic>
#include <chrono>
#include <cstdint>
#include <future>
#include <thread>
#include <vector>

namespace {

using namespace TC;

class SharedStrategy : public CRegistryFixture {
protected:
    COrderStrategyPtr shared(int id = 3) { return service().strategyOf(id); }
    int volume(int id = 3) { return shared(id)->m_nVolume; }
    /// Whether the change gives the registry a greater revision.
    template<typename Change>
    bool isNewRevision(const Change& change) {
        const std::uint64_t before = service().revision();
        change();
        return service().revision() > before;
    }
};

TEST_F(SharedStrategy, OrdersOfAStrategyShareOneRecord) {
    add(stoppedFile());
    const COrderStrategyPtr first = shared();
    ASSERT_NE(first, nullptr);
    EXPECT_EQ(shared(), first);
    (void)service().getStrategyConst(3);
    (void)service().getStrategyMap();
    EXPECT_EQ(shared(), first);
    service().visitStrategies([&](int, const COrderStrategyParam& strategy) {
        EXPECT_EQ(&strategy, first.get()); // a pass of the file loop copies nothing either
    });
    EXPECT_EQ(shared(9), nullptr);
}

TEST_F(SharedStrategy, ChangeGivesANewRecordAndLeavesTheOldOneAlone) {
    add(stoppedFile());
    addFileStrategy(4);
    const COrderStrategyPtr before = shared();
    ASSERT_EQ(service().updateOrderStrategy(3, CStrategyBuilder().stopped().volume(77)), 0);
    EXPECT_NE(shared(), before);
    EXPECT_EQ(volume(), 77);
    EXPECT_EQ(before->m_nVolume, 1000);
    ASSERT_EQ(service().removeOrderStrategy(3), 0);
    EXPECT_EQ(shared(), nullptr);
    EXPECT_EQ(before->m_nVolume, 1000);
}

TEST_F(SharedStrategy, StartAndStopGiveANewRecord) {
    add(stoppedFile());
    EXPECT_FALSE(shared()->isRunning());
    ASSERT_EQ(start(), 0);
    const COrderStrategyPtr running = shared();
    EXPECT_TRUE(running->isRunning());
    ASSERT_EQ(service().stopOrderStrategy(3, error), 0);
    EXPECT_FALSE(shared()->isRunning());
    EXPECT_TRUE(running->isRunning());
}

TEST_F(SharedStrategy, ChangeOfOneStrategyKeepsTheRecordsOfTheOthers) {
    addFileStrategy(4);
    add(stoppedFile());
    const COrderStrategyPtr other = shared(4);
    ASSERT_EQ(service().updateOrderStrategy(3, CStrategyBuilder().stopped().volume(77)), 0);
    EXPECT_EQ(shared(4), other);
}

TEST_F(SharedStrategy, LoadTakesWhatTheHostHasWrittenToItsMap) {
    add(stoppedFile());
    EXPECT_EQ(volume(), 1000);
    changeMap([this] { host.user.strategies[3].m_nVolume = 77; });
    EXPECT_EQ(volume(), 77);
    writeWhileLocked([this] {
        host.user.strategies[3].m_nVolume = 78;
        load(); // the same map as before
    });
    EXPECT_EQ(volume(), 78);
}

/// A host must not do this: its change is visible in the map, but orders use the strategy as it was.
TEST_F(SharedStrategy, ChangeOfTheHostInItsOwnMapIsNotSeenByOrders) {
    add(stoppedFile());
    EXPECT_EQ(volume(), 1000);
    writeWhileLocked([this] { host.user.strategies[3].m_nVolume = 77; });
    EXPECT_EQ(volume(), 1000);
    EXPECT_EQ(service().getStrategyMap()[3].m_nVolume, 77);
    writeWhileLocked([this] { host.user.strategies.remove(3); });
    EXPECT_NE(shared(), nullptr);
    EXPECT_TRUE(service().getStrategyMap().isEmpty());
}

TEST_F(SharedStrategy, UserThatIsUnboundLeavesNoRecord) {
    add(stoppedFile());
    const COrderStrategyPtr before = shared();
    host.user.loggedIn = false;
    load();
    EXPECT_EQ(shared(), nullptr);
    EXPECT_EQ(before->m_nVolume, 1000);
}

TEST_F(SharedStrategy, WriteThroughThePointerOfTheHostIsSeen) {
    add(stoppedFile());
    const COrderStrategyPtr before = shared();
    COrderStrategyParam* mine = service().getStrategy(3);
    writeWhileLocked([&] { mine->m_nVolume = 77; });
    EXPECT_EQ(volume(), 77);
    writeWhileLocked([&] { mine->m_nVolume = 78; });
    EXPECT_EQ(volume(), 78);
    EXPECT_EQ(before->m_nVolume, 1000);
}

/// The pointer stays valid until the strategy is removed.
TEST_F(SharedStrategy, WriteThroughAnOlderPointerIsSeenToo) {
    add(stoppedFile());
    COrderStrategyParam* mine = service().getStrategy(3);
    ASSERT_EQ(service().updateOrderStrategy(3, CStrategyBuilder().stopped().volume(77)), 0);
    EXPECT_EQ(volume(), 77);
    writeWhileLocked([&] { mine->m_nVolume = 78; });
    EXPECT_EQ(volume(), 78);
    load();
    EXPECT_EQ(volume(), 78);
    writeWhileLocked([&] { mine->m_nVolume = 79; });
    EXPECT_EQ(volume(), 79);
}

TEST_F(SharedStrategy, EveryChangeRaisesTheRevision) {
    load();
    int id = 0;
    folder.write("a.txt", "");
    EXPECT_TRUE(isNewRevision([&] { id = service().addOrderStrategy(EOrderStrategyType::File); }));
    COrderStrategyParam changed = stoppedFile();
    changed.m_nChannel = id;
    EXPECT_TRUE(isNewRevision([&] { EXPECT_EQ(service().updateOrderStrategy(id, changed), 0); }));
    EXPECT_TRUE(isNewRevision([&] { EXPECT_EQ(start(id), 0) << error.toStdString(); }));
    EXPECT_TRUE(isNewRevision([&] { EXPECT_EQ(service().stopOrderStrategy(id, error), 0); }));
    EXPECT_TRUE(isNewRevision([&] { EXPECT_EQ(service().removeOrderStrategy(id), 0); }));
    EXPECT_TRUE(isNewRevision([&] { load(); }));
}

TEST_F(SharedStrategy, StrategyOverTheLimitLeavesNoRecord) {
    for (const int channel : {1, 2})
        host.user.addStrategy(CStrategyBuilder().channel(channel).stopped());
    load();
    ASSERT_NE(shared(2), nullptr);
    host.user.maxStrategies = 1;
    load();
    EXPECT_EQ(shared(2), nullptr);
}

TEST_F(SharedStrategy, ReadingLeavesTheRevisionAlone) {
    add(stoppedFile());
    EXPECT_FALSE(isNewRevision([this] {
        (void)shared();
        (void)service().getStrategyMap();
        (void)service().getStrategyConst(3);
        (void)service().getStatusBarTip();
        service().visitStrategies([](int, const COrderStrategyParam&) {});
        EXPECT_EQ(service().stopOrderStrategy(3, error), 0); // it does not run
        EXPECT_EQ(service().updateOrderStrategy(9, CStrategyBuilder().channel(9)), -1);
    }));
}

TEST_F(SharedStrategy, RevisionIsGivenWhileAPassHoldsTheRegistry) {
    add(stoppedFile());
    service().visitStrategies([this](int, const COrderStrategyParam&) {
        auto read = std::async(std::launch::async, [this] { return service().revision(); });
        EXPECT_EQ(read.wait_for(std::chrono::seconds(60)), std::future_status::ready);
    });
}

/// Readers take records while a strategy changes: the change must never reach a record that they hold.
TEST_F(SharedStrategy, RecordsStayAsTheyAreWhileOtherThreadsChangeTheStrategy) {
    constexpr int kChanges = 200;
    add(stoppedFile());
    std::atomic<bool> isOver{false};
    const auto readRecords = [&] {
        int torn = 0;
        while (!isOver) {
            const COrderStrategyPtr strategy = shared();
            const QString name = QString::number(strategy->m_nVolume);
            torn += strategy->m_strName != name && strategy->m_nVolume != 1000;
        }
        return torn;
    };
    auto first = std::async(std::launch::async, readRecords);
    auto second = std::async(std::launch::async, readRecords);
    for (int i = 1; i <= kChanges; ++i) {
        COrderStrategyParam changed = CStrategyBuilder().stopped().volume(i);
        changed.m_strName = QString::number(i);
        EXPECT_EQ(service().updateOrderStrategy(3, changed), 0);
    }
    isOver = true;
    EXPECT_EQ(first.get() + second.get(), 0);
    EXPECT_EQ(volume(), kChanges);
}

} // namespace
