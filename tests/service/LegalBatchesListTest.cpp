// The list of checked orders that are not finished, without a service.
#include "orderservice/service/LegalBatches.h"

#include "tests/support/Builders.h"

#include <gtest/gtest.h>

#include <thread>
#include <vector>

namespace {

using namespace TC;

/// The host keeps pointers to the records of its map. A copy that shared the map's data would move them at
/// the next change.
TEST(LegalBatchesList, KeptMapSharesNothingWithTheOriginal) {
    CLegalBatches batches;
    COrderStrategyMap original;
    original.insert(3, CStrategyBuilder().volume(77));
    const COrderStrategyParam* record = &original.find(3).value();
    const COrderStrategyMap* kept = batches.keep({{}, original, {}, nullptr});
    ASSERT_NE(kept, &original);
    original[3].m_nVolume = 78;
    EXPECT_EQ(&original.find(3).value(), record);
    EXPECT_EQ(kept->value(3).m_nVolume, 77);
}

TEST(LegalBatchesList, BatchIsTakenOnceAndKeptUntilItsRelease) {
    CLegalBatches batches;
    COrderStrategyMap strategies;
    strategies.insert(3, CStrategyBuilder());
    const COrderStrategyMap* kept = batches.keep({{}, strategies, {}, nullptr});
    EXPECT_TRUE(batches.take(kept));
    EXPECT_FALSE(batches.take(kept));
    EXPECT_FALSE(batches.takeAny(nullptr));
    EXPECT_EQ(kept->size(), 1);
    EXPECT_EQ(batches.size(), 1u);
    batches.release(kept);
    batches.release(kept);
    EXPECT_EQ(batches.size(), 0u);
    EXPECT_TRUE(batches.isOwn(kept)) << "a signal that comes late must still find its address";
    EXPECT_EQ(batches.keep({}), kept);
}

/// Signals of such a batch may still be queued. They must not find another batch at their address.
TEST(LegalBatchesList, AddressOfABatchThatEndedAtOnceIsNotUsedAgain) {
    CLegalBatches batches;
    const COrderStrategyMap* kept = batches.keep({});
    batches.finishAtOnce(kept);
    EXPECT_EQ(batches.size(), 0u);
    EXPECT_TRUE(batches.isOwn(kept));
    EXPECT_NE(batches.keep({}), kept);
}

TEST(LegalBatchesList, BatchesOfAnotherServiceAreNotTaken) {
    CLegalBatches batches;
    const char services[2] = {}; // the pointers are only compared
    const auto* mine = reinterpret_cast<const COrderService*>(&services[0]);
    const auto* other = reinterpret_cast<const COrderService*>(&services[1]);
    batches.keep({{}, {}, {}, mine});
    EXPECT_FALSE(batches.takeAny(other));
    EXPECT_TRUE(batches.takeAny(mine));
}

TEST(LegalBatchesList, OtherMapsAreIgnored) {
    CLegalBatches batches;
    const COrderStrategyMap foreign;
    batches.keep({});
    for (const COrderStrategyMap* map : {&foreign, static_cast<const COrderStrategyMap*>(nullptr)}) {
        EXPECT_FALSE(batches.isOwn(map));
        EXPECT_FALSE(batches.take(map));
        batches.release(map);
    }
    EXPECT_EQ(batches.size(), 1u);
}

TEST(LegalBatchesList, BatchesAreKeptAndReleasedOnAnyThread) {
    constexpr int kThreads = 4;
    constexpr int kMaps = 100;
    CLegalBatches batches;
    COrderStrategyMap original;
    original.insert(3, CStrategyBuilder());
    std::vector<std::thread> threads;
    for (int i = 0; i < kThreads; ++i) {
        threads.emplace_back([&] {
            for (int n = 0; n < kMaps; ++n) {
                const COrderStrategyMap* kept = batches.keep({{}, original, {}, nullptr});
                EXPECT_TRUE(batches.take(kept));
                batches.release(kept);
            }
        });
    }
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_EQ(batches.size(), 0u);
}

} // namespace
