#pragma once

#include "orderservice/base/Export.h"

#include <condition_variable>
#include <mutex>

namespace utils {

/// A request from one thread that another thread stops. It also ends the other thread's sleep, see
/// sleepUnlessStopped. A request cannot be withdrawn. All operations are thread-safe.
class ORDERSERVICE_EXPORT CStopRequest {
public:
    void make();
    bool isMade() const;

    /// Blocks until the request is made, but not longer than the given seconds of real time. Only clocks call
    /// it. All other code sleeps through base/Clock.h.
    void waitFor(double seconds) const;

private:
    mutable std::mutex m_mutex;
    mutable std::condition_variable m_made;
    bool m_bMade = false;
};

} // namespace utils
