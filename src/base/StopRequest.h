#pragma once

#include <condition_variable>
#include <mutex>

namespace utils {

/// One thread's request that another one stops. It also ends that thread's sleep, see sleepUnlessStopped.
/// Once made, a request stays. Every operation may be called from any thread.
class CStopRequest {
public:
    void make();
    bool isMade() const;

    /// Blocks until the request is made, at most that many seconds of real time. Only clocks call it; all
    /// other code sleeps through base/Clock.h.
    void waitFor(double seconds) const;

private:
    mutable std::mutex m_mutex;
    mutable std::condition_variable m_made;
    bool m_bMade = false;
};

} // namespace utils
