#include "socket/FailedLogins.h"

#include <algorithm>
#include <cmath>

namespace TC {

double CFailedLogins::delay(const std::string& address, double now) const {
    const auto found = m_failures.find(address);
    if (found == m_failures.end() || now - found->second.last >= kForgetSeconds) return 0;
    const int charged = found->second.count - kFree;
    return charged < 0 ? 0 : std::min(kLastDelay, std::ldexp(kFirstDelay, charged));
}

void CFailedLogins::countFailure(const std::string& address, double now) {
    CFailures& failures = m_failures[address];
    if (now - failures.last >= kForgetSeconds) failures.count = 0;
    failures.count = std::min(failures.count + 1, kFree + 100); // counting further would change nothing
    failures.last = now;
    if (m_failures.size() > kMaxAddresses) forgetSome(now);
}

bool CFailedLogins::mayDelay(const std::string& address) const {
    const auto found = m_delayed.find(address);
    return found == m_delayed.end() || found->second < kMaxDelayed;
}

void CFailedLogins::endDelay(const std::string& address) {
    const auto found = m_delayed.find(address);
    if (found != m_delayed.end() && --found->second == 0) m_delayed.erase(found);
}

void CFailedLogins::forgetSome(double now) {
    for (auto it = m_failures.begin(); it != m_failures.end();)
        it = now - it->second.last >= kForgetSeconds ? m_failures.erase(it) : std::next(it);
    if (m_failures.size() <= kMaxAddresses) return;
    m_failures.erase(
        std::min_element(m_failures.begin(), m_failures.end(), [](const auto& one, const auto& other) {
            return one.second.last < other.second.last;
        }));
}

} // namespace TC
