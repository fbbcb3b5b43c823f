#include "desk/window/MeteredAudit.h"

#include "orderservice/base/Clock.h"

namespace desk {

/// The record in the journal is a part of the time that an order needs. A source that gives no orders places
/// no batch that could end.
void CMeteredAudit::recordIntake(const TC::CIntakeReport& report) {
    const double now = utils::getTime();
    m_desk.recordIntake(report);
    const bool isPlaced = !report.m_bRejected && !report.m_bLeftOver && !report.m_bLeftWaiting;
    if (isPlaced && report.m_nOrders > 0) m_meter->beginOnThread(report.m_nOrders, now);
}

} // namespace desk
