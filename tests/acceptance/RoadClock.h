#pragma once

#include "base/Clock.h"

#include <chrono>
#include <condition_variable>
#include <functional>
#include <mutex>

/// The road's time: every day is the same morning, and seconds go by as they do. The naps between two looks
/// for files last as long as they say, or until wake(); longer sleeps, which are waits for quotes, are told
/// and end at once.
class CRoadClock : public utils::IClock {
public:
    CRoadClock() { utils::installClock(this); }
    ~CRoadClock() override { utils::installClock(nullptr); }

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
    /// Ends a nap, if there is one: there is a file.
    void wake() {
        const std::lock_guard lock(m_mutex);
        m_bAwake = true;
        m_woken.notify_all();
    }

    /// Called on the thread that sleeps. Set before other threads are there.
    std::function<void(double seconds)> onLongSleep;

private:
    std::mutex m_mutex;
    std::condition_variable m_woken;
    bool m_bAwake = false;
};
