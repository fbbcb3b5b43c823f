#include "orderservice/base/Clock.h"

#include "orderservice/base/StopRequest.h"
#include "orderservice/base/TimeText.h"

#include <atomic>
#include <chrono>
#include <cstdio>
#include <ctime>
#include <thread>

namespace utils {
namespace {

/// The text of one second. Each thread keeps its own, so no lock is needed.
struct CSecondText {
    std::time_t second = -1;
    char text[64] = "";
};

const char* secondText(std::time_t second) {
    thread_local CSecondText kept;
    if (kept.second == second) return kept.text;
    ::tzset(); // the user may have changed the time zone
    std::tm local{};
    ::localtime_r(&second, &local);
    std::strftime(kept.text, sizeof kept.text, "%Y-%m-%dT%H:%M:%S", &local);
    kept.second = second;
    return kept.text;
}

std::string textOf(std::chrono::system_clock::time_point time) {
    using namespace std::chrono;
    const auto second = floor<seconds>(time);
    const auto milliseconds =
        static_cast<int>(duration_cast<std::chrono::milliseconds>(time - second).count());
    char fraction[16];
    std::snprintf(fraction, sizeof fraction, ".%03d", milliseconds);
    return secondText(system_clock::to_time_t(time_point_cast<system_clock::duration>(second))) +
           std::string(fraction);
}

class CMachineClock : public IClock {
public:
    double time() override {
        return std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch()).count();
    }
    void sleep(double seconds) override {
        std::this_thread::sleep_for(std::chrono::duration<double>(seconds));
    }
    void sleepUnlessStopped(double seconds, const CStopRequest& stop) override { stop.waitFor(seconds); }
    QDateTime currentDateTime() override { return QDateTime::currentDateTime(); }
};

CMachineClock& machineClock() {
    static CMachineClock clock;
    return clock;
}

std::atomic<IClock*> s_installedClock{nullptr};

IClock& clock() {
    IClock* installed = s_installedClock.load();
    return installed != nullptr ? *installed : machineClock();
}

} // namespace

void IClock::sleepUnlessStopped(double seconds, const CStopRequest& stop) {
    if (!stop.isMade()) sleep(seconds);
}

void installClock(IClock* clock) {
    s_installedClock.store(clock);
}

double getTime() {
    return clock().time();
}

void sleep(double seconds) {
    clock().sleep(seconds);
}

void sleepUnlessStopped(double seconds, const CStopRequest& stop) {
    clock().sleepUnlessStopped(seconds, stop);
}

QDateTime currentDateTime() {
    return clock().currentDateTime();
}

std::string currentTimeText() {
    if (IClock* installed = s_installedClock.load())
        return installed->currentDateTime().toString(Qt::ISODateWithMs).toStdString();
    return textOf(std::chrono::system_clock::now());
}

} // namespace utils
