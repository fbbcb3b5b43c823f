#pragma once

#include "desk/window/IntakeMeter.h"
#include "orderservice/platform/IntakeAudit.h"

#include <memory>
#include <utility>

namespace desk {

/// Passes reports on to the desk, and lets the meter begin a batch when a door reports it. The desk must
/// outlive it. Threads as for CIntakeAudit.
class CMeteredAudit : public TC::CIntakeAudit {
public:
    CMeteredAudit(TC::CIntakeAudit& desk, std::shared_ptr<CIntakeMeter> meter)
        : m_desk(desk), m_meter(std::move(meter)) {}

    void recordIntake(const TC::CIntakeReport& report) override;
    void recordDoor(const TC::CDoorReport& report) override { m_desk.recordDoor(report); }
    void recordDiscard(const TC::CDiscardReport& report) override { m_desk.recordDiscard(report); }
    void recordUnplaced(const QVector<TC::COrderParam>& orders) override { m_desk.recordUnplaced(orders); }
    QString rejectedFolder() override { return m_desk.rejectedFolder(); }
    void recordIncident(const TC::CIncidentReport& report) override { m_desk.recordIncident(report); }

private:
    TC::CIntakeAudit& m_desk;
    const std::shared_ptr<CIntakeMeter> m_meter;
};

} // namespace desk
