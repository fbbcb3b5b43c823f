#include "orderservice/base/Clock.h"
#include "orderservice/base/StopRequest.h"
#include "tests/support/FakeClock.h"

#include <gtest/gtest.h>

#include <chrono>
#include <cmath>
#include <cstdlib>
#include <future>
#include <memory>
#include <string>
#include <thread>

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

TEST(Clock, TimeTextIsTheLocalTimeWithMilliseconds) {
    CFakeClock clock;
    utils::sleep(1.5);
    EXPECT_EQ(utils::currentTimeText(), "2026-01-05T09:30:01.500");
}

TEST(Clock, MachineClocksTimeTextIsThatOfItsDateTime) {
    const auto textNow = [] { return utils::currentDateTime().toString(Qt::ISODateWithMs).toStdString(); };
    std::string before, text, after;
    for (int i = 0; i < 1000; ++i) {
        before = textNow();
        text = utils::currentTimeText();
        after = textNow();
        ASSERT_LE(before, text);
        ASSERT_LE(text, after);
    }
}

TEST(Clock, TimeTextFollowsAChangeOfTheZone) {
    const char* old = std::getenv("TZ");
    const std::string kept = old != nullptr ? old : "";
    // Each thread keeps the text of a second. A new thread has none.
    const auto inZone = [](const char* zone) {
        ::setenv("TZ", zone, 1);
        return std::async(std::launch::async, [] { return utils::currentTimeText(); }).get();
    };
    const std::string west = inZone("WEST11"), east = inZone("EAST-13");
    if (old != nullptr)
        ::setenv("TZ", kept.c_str(), 1);
    else
        ::unsetenv("TZ");
    ::tzset();
    EXPECT_NE(west.substr(0, 10), east.substr(0, 10)) << "the two zones never have the same date";
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

TEST(Clock, InstalledClockTakesSleepsThatCanBeStopped) {
    CFakeClock clock;
    utils::CStopRequest stop;
    utils::sleepUnlessStopped(1.5, stop);
    EXPECT_EQ(clock.sleeps(), std::vector<double>{1.5});
    stop.make();
    utils::sleepUnlessStopped(3, stop);
    EXPECT_EQ(clock.sleeps(), std::vector<double>{1.5}); // the second sleep does not start
}

TEST(Clock, MachineClockWakesUpAtARequestToStop) {
    constexpr double kDay = 86400;
    // The sleeping thread shares the ownership. If the test fails, it must not use a destroyed request.
    const auto stop = std::make_shared<utils::CStopRequest>();
    std::packaged_task<void()> sleep([stop] { utils::sleepUnlessStopped(kDay, *stop); });
    std::future<void> woken = sleep.get_future();
    std::thread(std::move(sleep)).detach();
    stop->make();
    EXPECT_EQ(woken.wait_for(std::chrono::minutes(1)), std::future_status::ready);
}

TEST(Clock, MachineClockSleepsOutWithoutARequest) {
    const utils::CStopRequest stop;
    const double before = utils::getTime();
    utils::sleepUnlessStopped(1e-6, stop);
    EXPECT_GE(utils::getTime() - before, 1e-6 - 1e-9);
}

TEST(StopRequest, StaysMade) {
    utils::CStopRequest stop;
    EXPECT_FALSE(stop.isMade());
    stop.make();
    stop.make();
    EXPECT_TRUE(stop.isMade());
    stop.waitFor(86400);
}

} // namespace
