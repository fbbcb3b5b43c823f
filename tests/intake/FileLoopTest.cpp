#include "orderservice/base/Clock.h"
#include "orderservice/base/StopRequest.h"
#include "orderservice/gates/IntakePause.h"
#include "tests/intake/FileServiceFixture.h"

#include <atomic>
#include <future>
#include <stdexcept>
#include <thread>

namespace {

using namespace TC;

class FileLoop : public CFileServiceFixture {};

TEST_F(FileLoop, PausedIntakeLeavesFilesAndSleeps) {
    addStrategy(3, "a.txt");
    folder.write("a.txt", "23,0,10.5,600000,100");
    {
        const CIntakePause pause;
        service.tryOrder();
        EXPECT_TRUE(gate.batches.empty());
        EXPECT_TRUE(folder.exists("a.txt"));
        EXPECT_EQ(registry.visits, 0);
        EXPECT_EQ(clock.sleeps(), std::vector<double>{0.8});
    }
    service.tryOrder();
    EXPECT_EQ(gate.batches.size(), 1u);
}

TEST_F(FileLoop, LoopSleepsTheIntervalBetweenPasses) {
    addStrategy(3, "a.txt");
    folder.write("a.txt", "23,0,10.5,600000,100");
    host.user.interval = 50;
    gate.onPlace = [this] { service.stop(); };
    service.startFileServer();
    // The first look comes after more than one interval.
    EXPECT_EQ(clock.sleeps(), (std::vector<double>{0.05, 0.05}));
    EXPECT_EQ(gate.batches.size(), 1u);
}

TEST_F(FileLoop, LoopReadsTheIntervalAgainAndMeasuresFromTheLastPass) {
    addStrategy(3, "a.txt");
    folder.write("a.txt", "");
    host.user.interval = 50;
    gate.onPlace = [this] {
        if (gate.batches.size() == 2) return service.stop();
        host.user.interval = 20;
        folder.write("a.txt", "");
    };
    service.startFileServer();
    // The pass ends its own round with the old interval, which was read before the pass.
    EXPECT_EQ(clock.sleeps(), (std::vector<double>{0.05, 0.05, 0.05}));
    EXPECT_EQ(registry.visits, 2);
}

TEST_F(FileLoop, PausedLoopLooksAgainAfterItsPauseAndTheInterval) {
    addStrategy(3, "a.txt");
    folder.write("a.txt", "");
    host.user.interval = 50;
    auto pause = std::make_unique<CIntakePause>();
    clock.onSleep = [&] {
        if (clock.sleeps().size() == 4) pause.reset();
    };
    gate.onPlace = [this] { service.stop(); };
    service.startFileServer();
    EXPECT_EQ(clock.sleeps(), (std::vector<double>{0.05, 0.05, 0.8, 0.05}));
    EXPECT_EQ(registry.visits, 1);
}

TEST_F(FileLoop, LoopOutlivesAnExceptionOfAPass) {
    addStrategy(3, "a.txt");
    addStrategy(4, "b.txt");
    folder.write("a.txt", "");
    folder.write("b.txt", "");
    int calls = 0;
    gate.onPlace = [&] {
        if (++calls == 1) throw std::runtime_error("first");
        service.stop();
    };
    service.startFileServer();
    EXPECT_EQ(gate.batches.size(), 2u);
    EXPECT_FALSE(folder.exists("b.txt"));
}

TEST_F(FileLoop, AStopBeforeASleepIsNotSleptOut) {
    addStrategy(3, "a.txt");
    folder.write("a.txt", "");
    host.user.interval = 15000;
    gate.onPlace = [this] { service.stop(); };
    service.startFileServer();
    // Both sleeps are before the pass. The sleep after the pass does not start.
    EXPECT_EQ(clock.sleeps(), (std::vector<double>{15, 15}));
}

TEST_F(FileLoop, ShortIntervalSpinsOnTheClock) {
    host.user.interval = 10;
    addStrategy(3, "a.txt");
    folder.write("a.txt", "");
    std::atomic<bool> placed{false};
    gate.onPlace = [&] {
        service.stop();
        placed = true;
    };
    std::thread mover([&] {
        while (!placed)
            clock.sleep(0.011);
    });
    service.startFileServer();
    mover.join();
    for (const double seconds : clock.sleeps())
        EXPECT_EQ(seconds, 0.011);
}

/// A clock whose sleeps last until they are stopped.
class CLastingClock : public utils::IClock {
public:
    CLastingClock() { utils::installClock(this); }
    ~CLastingClock() override { utils::installClock(nullptr); }
    double time() override { return m_dNow += 1000; }
    void sleep(double) override { throw std::logic_error("a sleep that cannot be stopped"); }
    void sleepUnlessStopped(double seconds, const utils::CStopRequest& stop) override {
        if (seconds != lastingSeconds) return;
        asleep.set_value();
        stop.waitFor(60);
        EXPECT_TRUE(stop.isMade());
    }
    QDateTime currentDateTime() override { return {}; }

    double lastingSeconds = 0;
    std::promise<void> asleep;

private:
    double m_dNow = 0;
};

/// Runs the loop until it sleeps for this number of seconds, and stops it there.
void stopAsleep(CFileService& service, double seconds) {
    CLastingClock clock;
    clock.lastingSeconds = seconds;
    std::thread loop([&] { service.startFileServer(); });
    clock.asleep.get_future().wait();
    service.stop();
    loop.join();
}

TEST_F(FileLoop, AStopWakesTheLoopFromItsInterval) {
    host.user.interval = 15000;
    stopAsleep(service, 15);
}

TEST_F(FileLoop, AStopWakesAPausedLoop) {
    const CIntakePause pause;
    host.user.interval = 50;
    stopAsleep(service, 0.8);
}

} // namespace
