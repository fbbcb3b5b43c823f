#pragma once

#include "orderservice/base/Clock.h"

#include <chrono>
#include <condition_variable>
#include <functional>
#include <mutex>

/// The clock of CServiceRun. The date and time of day never change, but seconds pass as usual. The pauses
/// between two checks for files last their real time, or until wake(). Longer sleeps are waits for quotes:
/// they are reported to onLongSleep and end at once.
class CServiceRunClock : public utils::IClock {
public:
    CServiceRunClock() { utils::installClock(this); }
    ~CServiceRunClock() override { utils::installClock(nullptr); }

    double time() override {
        return std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch()).count();
    }
    QDateTime currentDateTime() override { return QDateTime(QDate(2026, 1, 5), QTime(9, 30)); }
    void sleep(double seconds) override {
        constexpr double kLongestNap = 0.9;
        if (seconds > kLongestNap) {
            onLongSleep(seconds);
            return;
        }
        std::unique_lock lock(m_mutex);
        m_bAwake = false;
        m_woken.wait_for(lock, std::chrono::duration<double>(seconds), [this] { return m_bAwake; });
    }
    /// Ends the current pause, if any, because there is a file.
    void wake() {
        const std::lock_guard lock(m_mutex);
        m_bAwake = true;
        m_woken.notify_all();
    }

    /// Called on the thread that sleeps. Set it before other threads are started.
    std::function<void(double seconds)> onLongSleep;

private:
    std::mutex m_mutex;
    std::condition_variable m_woken;
    bool m_bAwake = false;
};
