#pragma once

#include <QMap>
#include <QPointF>
#include <QString>
#include <QVector>

#include <map>

namespace desk {

/// The points of the plots. x is the local time in milliseconds since 1970, so that it only grows. Main
/// thread only.
class CPlotData {
public:
    static constexpr int kMaxPoints = 1000;     ///< of one line; a full line loses every second point
    static constexpr int kMinutes = 120;        ///< of the orders a minute
    static constexpr double kMinuteMs = 60'000; ///< one minute
    static constexpr double kEquityMs = 1000;   ///< least time between two points of one account

    /// The equity of an account in currency units. `key`: of its row in the table of accounts.
    void addEquity(const QString& key, double timeMs, double equity);
    /// So many orders have appeared.
    void addOrders(double timeMs, int count);
    /// A command came this many milliseconds after its order had come from a file or a socket.
    void addCommandTime(double timeMs, double ms);

    /// Empty for an unknown account.
    QVector<QPointF> equity(const QString& key) const { return m_equity.value(key).m_points; }
    /// One point for each minute from the first order to `nowMs`, at most kMinutes: its begin, and its
    /// orders.
    QVector<QPointF> ordersAMinute(double nowMs) const;
    const QVector<QPointF>& commandTimes() const { return m_commands; }

private:
    struct CLine {
        QVector<QPointF> m_points;
        double m_dGapMs = kEquityMs; ///< least time between two points
    };

    QMap<QString, CLine> m_equity;
    std::map<qint64, int> m_orders; ///< by minute since 1970
    QVector<QPointF> m_commands;
};

} // namespace desk
