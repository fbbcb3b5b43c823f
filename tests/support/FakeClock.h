#pragma once

#include "orderservice/base/Clock.h"

#include <functional>
#include <mutex>
#include <vector>

/// A clock that a test moves, installed for as long as it lives. A sleep returns at once: it advances the
/// clock and is recorded.
class CFakeClock : public utils::IClock {
public:
    CFakeClock() { utils::installClock(this); }
    ~CFakeClock() override { utils::installClock(nullptr); }

    double time() override {
        const std::lock_guard lock(m_mutex);
        return m_dNow;
    }
    void sleep(double seconds) override {
        {
            const std::lock_guard lock(m_mutex);
            m_dNow += seconds;
            m_sleeps.push_back(seconds);
        }
        if (onSleep) onSleep();
    }
    QDateTime currentDateTime() override {
        const std::lock_guard lock(m_mutex);
        return QDateTime(QDate(2026, 1, 5), QTime(9, 30)).addMSecs(static_cast<qint64>(m_dNow * 1000));
    }

    std::vector<double> sleeps() {
        const std::lock_guard lock(m_mutex);
        return m_sleeps;
    }

    /// Called after every sleep, on the thread that sleeps. Set it before the clock is used.
    std::function<void()> onSleep;

private:
    std::mutex m_mutex;
    double m_dNow = 0;
    std::vector<double> m_sleeps;
};
