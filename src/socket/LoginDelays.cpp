#include "orderservice/socket/LoginDelays.h"

#include "orderservice/base/Clock.h"

#include <algorithm>

namespace TC {

void CLoginDelays::countFailure(const ConnData& data) {
    m_failedLogins.countFailure(data.m_strAddress, utils::getTime());
}

CLoginDelays::EAnswer CLoginDelays::admit(const net::NetConnectionPtr& conn, ConnData& data) {
    const double now = utils::getTime();
    const double at = data.m_passSince.value_or(now) + m_failedLogins.delay(data.m_strAddress, now);
    if (at <= now) {
        end(conn, data);
        return EAnswer::GoOn;
    }
    if (!data.m_passSince) {
        if (!hasPlace(data)) return EAnswer::Refused;
        m_failedLogins.beginDelay(data.m_strAddress);
        data.m_passSince = now;
    }
    m_waiting.emplace(at, CWaiting{conn, &data});
    data.m_passAt = at;
    conn->hold();
    return EAnswer::Held;
}

void CLoginDelays::end(const net::NetConnectionPtr& conn, ConnData& data) {
    if (!data.m_passSince) return;
    m_failedLogins.endDelay(data.m_strAddress);
    data.m_passSince.reset();
    if (!data.m_passAt) return;
    const auto [first, last] = m_waiting.equal_range(*data.m_passAt);
    const auto found = std::find_if(first, last, [&](const auto& row) { return row.second.conn == conn; });
    if (found != last) m_waiting.erase(found);
    data.m_passAt.reset();
}

void CLoginDelays::release() {
    const double now = utils::getTime();
    while (!m_waiting.empty() && m_waiting.begin()->first <= now) {
        const CWaiting waiting = m_waiting.begin()->second;
        m_waiting.erase(m_waiting.begin());
        waiting.data->m_passAt.reset();
        waiting.conn->release();
    }
}

std::optional<double> CLoginDelays::secondsToNext() const {
    if (m_waiting.empty()) return std::nullopt;
    return std::max(m_waiting.begin()->first - utils::getTime(), 0.0);
}

/// Whether the connection may wait. If all places of its address are taken, the waiting connection with the
/// most failed logins is refused, but only if it has more of them than this connection. So a password guesser
/// with many connections does not lock out other clients of its address.
bool CLoginDelays::hasPlace(const ConnData& data) {
    if (m_failedLogins.mayDelay(data.m_strAddress)) return true;
    dropGone();
    if (m_failedLogins.mayDelay(data.m_strAddress)) return true;
    net::NetConnectionPtr worst;
    int most = data.m_nFailedLogins;
    for (const auto& [when, waiting] : m_waiting) {
        if (waiting.data->m_strAddress != data.m_strAddress || waiting.data->m_nFailedLogins <= most)
            continue;
        worst = waiting.conn;
        most = waiting.data->m_nFailedLogins;
    }
    if (worst) m_refuse(worst);
    return worst != nullptr;
}

/// Refuses waiting connections whose peers have gone, so that others get their places.
void CLoginDelays::dropGone() {
    const double now = utils::getTime();
    if (now - m_dLastSweep < kSweepSeconds) return;
    m_dLastSweep = now;
    std::vector<net::NetConnectionPtr> gone;
    for (const auto& [when, waiting] : m_waiting) {
        if (waiting.conn->isPeerGone()) gone.push_back(waiting.conn);
    }
    for (const net::NetConnectionPtr& conn : gone)
        m_refuse(conn);
}

} // namespace TC
