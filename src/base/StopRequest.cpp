#include "orderservice/base/StopRequest.h"

#include <chrono>

namespace utils {

void CStopRequest::make() {
    const std::lock_guard lock(m_mutex);
    m_bMade = true;
    m_made.notify_all();
}

bool CStopRequest::isMade() const {
    const std::lock_guard lock(m_mutex);
    return m_bMade;
}

void CStopRequest::waitFor(double seconds) const {
    std::unique_lock lock(m_mutex);
    m_made.wait_for(lock, std::chrono::duration<double>(seconds), [this] { return m_bMade; });
}

} // namespace utils
