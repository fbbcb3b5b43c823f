#include "orderservice/base/Clock.h"

#include "orderservice/base/LocalTimestamp.h"
#include "orderservice/base/StopRequest.h"

#include <QString>

#include <atomic>
#include <chrono>
#include <thread>

namespace utils {
namespace {

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

std::string currentTimestamp() {
    if (IClock* installed = s_installedClock.load())
        return installed->currentDateTime().toString(QStringLiteral("yyyy-MM-dd hh:mm:ss:zzz")).toStdString();
    using CMilliseconds = std::chrono::milliseconds;
    const auto sinceEpoch = std::chrono::system_clock::now().time_since_epoch();
    thread_local CLocalTimestamp timestamp;
    return timestamp.textOf(std::chrono::duration_cast<CMilliseconds>(sinceEpoch).count());
}

std::string currentTimeText() {
    constexpr std::size_t kBeforeTime = 10;         // "yyyy-MM-dd"
    constexpr std::size_t kBeforeMilliseconds = 19; // "yyyy-MM-dd hh:mm:ss"
    std::string text = currentTimestamp();
    if (text.size() <= kBeforeMilliseconds) return text; // an installed clock has no valid time
    text[kBeforeTime] = 'T';
    text[kBeforeMilliseconds] = '.';
    return text;
}

} // namespace utils
