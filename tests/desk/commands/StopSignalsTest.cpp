#include "desk/commands/StopSignals.h"

#include <gtest/gtest.h>

#include <csignal>
#include <cstdlib>

namespace desk {
namespace {

/// Each test runs in a process of its own: signals are the process's.
constexpr int kAsExpected = 7;

TEST(StopSignalsDeathTest, ThirdCtrlCEndsTheProcessAtOnce) {
    EXPECT_EXIT(
        {
            CStopSignals stop;
            std::raise(SIGINT);
            if (stop.keepGoing() || !stop.keepWaiting()) std::_Exit(1);
            std::raise(SIGINT);
            if (stop.keepWaiting()) std::_Exit(2);
            std::raise(SIGINT);
            std::_Exit(3);
        },
        testing::KilledBySignal(SIGINT), "");
}

TEST(StopSignalsDeathTest, OneCtrlCAfterSigtermEndsTheWait) {
    EXPECT_EXIT(
        {
            CStopSignals stop;
            std::raise(SIGTERM);
            if (stop.keepGoing() || !stop.keepWaiting()) std::_Exit(1);
            std::raise(SIGINT);
            std::_Exit(stop.keepWaiting() ? 2 : kAsExpected);
        },
        testing::ExitedWithCode(kAsExpected), "");
}

TEST(StopSignalsDeathTest, SigtermOnceMoreDoesNotEndTheWait) {
    EXPECT_EXIT(
        {
            CStopSignals stop;
            std::raise(SIGTERM);
            if (stop.keepGoing()) std::_Exit(1);
            std::raise(SIGTERM);
            std::_Exit(stop.keepWaiting() ? kAsExpected : 2);
        },
        testing::ExitedWithCode(kAsExpected), "");
}

} // namespace
} // namespace desk
