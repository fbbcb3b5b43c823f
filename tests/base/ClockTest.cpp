#include "base/Clock.h"
#include "tests/support/FakeClock.h"

#include <gtest/gtest.h>

#include <cmath>

namespace {

TEST(Clock, InstalledClockAnswers) {
    CFakeClock clock;
    EXPECT_EQ(utils::getTime(), 0.0);
    utils::sleep(1.5);
    EXPECT_EQ(utils::getTime(), 1.5);
    EXPECT_EQ(clock.sleeps(), std::vector<double>{1.5});
    EXPECT_EQ(utils::currentDateTime(), QDateTime(QDate(2026, 1, 5), QTime(9, 30, 1, 500)));
}

TEST(Clock, ALaterClockTakesThePlace) {
    CFakeClock first;
    utils::sleep(3);
    CFakeClock second;
    EXPECT_EQ(utils::getTime(), 0.0);
    utils::sleep(1);
    EXPECT_EQ(first.sleeps(), std::vector<double>{3.0});
    EXPECT_EQ(second.sleeps(), std::vector<double>{1.0});
}

TEST(Clock, MachineClockComesBack) {
    {
        const CFakeClock clock;
        EXPECT_EQ(utils::currentDateTime().date(), QDate(2026, 1, 5));
    }
    const QDateTime before = QDateTime::currentDateTime();
    const QDateTime now = utils::currentDateTime();
    EXPECT_LE(before, now);
    EXPECT_LE(now, QDateTime::currentDateTime());
}

TEST(Clock, MachineClockNeverRunsBackwards) {
    double last = utils::getTime();
    for (int i = 0; i < 100000; ++i) {
        const double now = utils::getTime();
        ASSERT_GE(now, last);
        last = now;
    }
}

TEST(Clock, MachineClockSleepsAtLeastAsLongAsAsked) {
    const double before = utils::getTime();
    utils::sleep(0.0);
    utils::sleep(1e-6);
    EXPECT_GE(utils::getTime() - before, 1e-6 - 1e-9);
}

} // namespace
