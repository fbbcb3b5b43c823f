#include "desk/window/MeteredAudit.h"

#include "orderservice/base/Clock.h"

namespace desk {

/// The record in the journal is a part of the time that an order needs.
void CMeteredAudit::recordIntake(const TC::CIntakeReport& report) {
    const double now = utils::getTime();
    m_desk.recordIntake(report);
    m_meter->beginOnThread(report.m_nOrders, now);
}

} // namespace desk
