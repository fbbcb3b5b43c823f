#include "orderservice/socket/RefusalTally.h"

#include <utility>

namespace TC {

std::optional<int> CRefusalTally::count(double now) {
    const std::lock_guard lock(m_mutex);
    if (now - m_dSecond >= 1) {
        m_dSecond = now;
        m_nReported = 0;
    }
    if (m_nReported >= kReportsPerSecond) {
        ++m_nNotReported;
        return std::nullopt;
    }
    ++m_nReported;
    return std::exchange(m_nNotReported, 0);
}

int CRefusalTally::takeNotReported() {
    const std::lock_guard lock(m_mutex);
    return std::exchange(m_nNotReported, 0);
}

} // namespace TC
