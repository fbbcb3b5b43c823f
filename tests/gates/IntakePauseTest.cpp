#include "orderservice/gates/IntakePause.h"

#include <gtest/gtest.h>

#include <memory>
#include <optional>
#include <thread>
#include <vector>

namespace {

using TC::CIntakePause;

TEST(IntakePause, HoldsForAsLongAsItLives) {
    EXPECT_FALSE(CIntakePause::isPaused());
    {
        const CIntakePause pause;
        EXPECT_TRUE(CIntakePause::isPaused());
    }
    EXPECT_FALSE(CIntakePause::isPaused());
}

TEST(IntakePause, LastOfSeveralEndsIt) {
    std::optional<CIntakePause> first, second;
    first.emplace();
    second.emplace();
    first.reset();
    EXPECT_TRUE(CIntakePause::isPaused());
    second.reset();
    EXPECT_FALSE(CIntakePause::isPaused());
}

TEST(IntakePause, IsSeenAndMayEndOnAnotherThread) {
    auto pause = std::make_unique<CIntakePause>();
    bool seen = false;
    std::thread([&] {
        seen = CIntakePause::isPaused();
        pause.reset();
    }).join();
    EXPECT_TRUE(seen);
    EXPECT_FALSE(CIntakePause::isPaused());
}

TEST(IntakePause, ManyThreadsLeaveNoneBehind) {
    std::vector<std::thread> threads;
    std::vector<int> missed(4, 0);
    for (int& count : missed) {
        threads.emplace_back([&count] {
            for (int i = 0; i < 10000; ++i) {
                const CIntakePause pause;
                if (!CIntakePause::isPaused()) ++count;
            }
        });
    }
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_EQ(missed, std::vector<int>(4, 0));
    EXPECT_FALSE(CIntakePause::isPaused());
}

} // namespace
