#include "desk/window/PlotData.h"

#include <algorithm>

namespace desk {

void CPlotData::addEquity(const QString& key, double timeMs, double equity) {
    CLine& line = m_equity[key];
    if (!line.m_points.isEmpty() && timeMs - line.m_points.last().x() < line.m_dGapMs) return;
    line.m_points.append({timeMs, equity});
    if (line.m_points.size() < kMaxPoints) return;
    QVector<QPointF> half;
    for (int i = 0; i < line.m_points.size(); i += 2)
        half.append(line.m_points[i]);
    line.m_points = half;
    line.m_dGapMs *= 2;
}

void CPlotData::addOrders(double timeMs, int count) {
    if (count <= 0) return;
    m_orders[static_cast<qint64>(timeMs / kMinuteMs)] += count;
    while (m_orders.size() > kMinutes)
        m_orders.erase(m_orders.begin());
}

QVector<QPointF> CPlotData::ordersAMinute(double nowMs) const {
    if (m_orders.empty()) return {};
    const auto last = static_cast<qint64>(nowMs / kMinuteMs);
    QVector<QPointF> points;
    for (qint64 minute = std::max(m_orders.begin()->first, last - kMinutes + 1); minute <= last; ++minute) {
        const auto found = m_orders.find(minute);
        points.append({static_cast<double>(minute) * kMinuteMs,
                       found == m_orders.end() ? 0.0 : static_cast<double>(found->second)});
    }
    return points;
}

void CPlotData::addCommandTime(double timeMs, double ms) {
    if (m_commands.size() >= kMaxPoints) m_commands.remove(0, kMaxPoints / 2);
    m_commands.append({timeMs, ms});
}

} // namespace desk
