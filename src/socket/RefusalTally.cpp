#include "orderservice/socket/RefusalTally.h"

#include <utility>

namespace TC {

std::optional<int> CRefusalTally::count(double now) {
    const std::lock_guard lock(m_mutex);
    if (now - m_dSecond >= 1) {
        m_dSecond = now;
        m_nTold = 0;
    }
    if (m_nTold >= kToldPerSecond) {
        ++m_nUntold;
        return std::nullopt;
    }
    ++m_nTold;
    return std::exchange(m_nUntold, 0);
}

int CRefusalTally::takeUntold() {
    const std::lock_guard lock(m_mutex);
    return std::exchange(m_nUntold, 0);
}

} // namespace TC
