#include "desk/commands/StopSignals.h"

#include "tests/support/FakeClock.h"

#include <gtest/gtest.h>

#include <csignal>
#include <cstdlib>

namespace desk {
namespace {

/// Each test runs in a separate process, because signals affect the whole process.
constexpr int kAsExpected = 7;

void press(CFakeClock& clock) {
    clock.sleep(0.2);
    std::raise(SIGINT);
}

/// Acts like a sender that sends each signal twice.
void pressTwiceAtOnce(CFakeClock& clock) {
    press(clock);
    clock.sleep(0.05);
    std::raise(SIGINT);
}

TEST(StopSignalsDeathTest, ThirdCtrlCEndsTheProcessAtOnce) {
    EXPECT_EXIT(
        {
            CFakeClock clock;
            const CStopSignals stop;
            if (!stop.keepGoing() || !stop.keepWaiting()) std::_Exit(1);
            press(clock);
            if (stop.keepGoing() || !stop.keepWaiting()) std::_Exit(2);
            press(clock);
            if (stop.keepGoing() || stop.keepWaiting()) std::_Exit(3);
            press(clock);
            std::_Exit(4);
        },
        testing::KilledBySignal(SIGINT), "");
}

TEST(StopSignalsDeathTest, AfterAClosedWindowTheFirstCtrlCDiscardsTheBacklog) {
    EXPECT_EXIT(
        {
            CFakeClock clock;
            CStopSignals stop;
            stop.requestEnd();
            if (stop.keepGoing() || !stop.keepWaiting() || stop.hasSignal()) std::_Exit(1);
            std::raise(SIGTERM);
            if (!stop.keepWaiting() || !stop.hasSignal()) std::_Exit(2);
            press(clock);
            if (stop.keepWaiting()) std::_Exit(3);
            std::_Exit(kAsExpected);
        },
        testing::ExitedWithCode(kAsExpected), "");
}

TEST(StopSignalsDeathTest, ThirdCtrlCEndsTheProcessWhileNobodyAsks) {
    EXPECT_EXIT(
        {
            CFakeClock clock;
            const CStopSignals stop;
            for (int i = 0; i < 3; ++i)
                press(clock);
            std::_Exit(1);
        },
        testing::KilledBySignal(SIGINT), "");
}

TEST(StopSignalsDeathTest, CtrlCThatIsSentTwiceIsOneRequest) {
    EXPECT_EXIT(
        {
            CFakeClock clock;
            const CStopSignals stop;
            pressTwiceAtOnce(clock);
            if (stop.keepGoing() || !stop.keepWaiting()) std::_Exit(1);
            pressTwiceAtOnce(clock);
            std::_Exit(stop.keepWaiting() ? 2 : kAsExpected);
        },
        testing::ExitedWithCode(kAsExpected), "");
}

/// The first repeat of a held key comes after a pause, so it is a separate request. The other repeats are
/// not.
TEST(StopSignalsDeathTest, CtrlCThatIsHeldDownDoesNotEndTheProcess) {
    EXPECT_EXIT(
        {
            CFakeClock clock;
            const CStopSignals stop;
            press(clock);
            press(clock);
            for (int i = 0; i < 100; ++i) {
                clock.sleep(0.03);
                std::raise(SIGINT);
            }
            std::_Exit(stop.keepWaiting() ? 2 : kAsExpected);
        },
        testing::ExitedWithCode(kAsExpected), "");
}

TEST(StopSignalsDeathTest, OneCtrlCAfterSigtermEndsTheWait) {
    EXPECT_EXIT(
        {
            const CStopSignals stop;
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
            const CStopSignals stop;
            for (int i = 0; i < 3; ++i)
                std::raise(SIGTERM);
            if (stop.keepGoing()) std::_Exit(1);
            std::_Exit(stop.keepWaiting() ? kAsExpected : 2);
        },
        testing::ExitedWithCode(kAsExpected), "");
}

} // namespace
} // namespace desk
