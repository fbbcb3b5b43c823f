#include "orderservice/socket/RefusalTally.h"

namespace TC {

std::optional<int> CRefusalTally::count(double now) {
    const std::lock_guard lock(m_mutex);
    if (m_limit.isOver(now)) m_limit.begin(now);
    if (!m_limit.pass()) return std::nullopt;
    return m_limit.takeLeftOut();
}

int CRefusalTally::takeNotReported() {
    const std::lock_guard lock(m_mutex);
    return m_limit.takeLeftOut();
}

} // namespace TC
