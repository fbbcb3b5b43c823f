#pragma once

#include "orderservice/base/Export.h"
#include "orderservice/platform/IntakeAudit.h"

namespace kit {

/// Shows warnings of CMsgService about orders that were not read and about clients that were not served.
/// Keeps no record. A host with a journal overrides the functions and may also call these. Any thread, like
/// CIntakeAudit.
class ORDERSERVICE_EXPORT CIntakeAuditBase : public TC::CIntakeAudit {
public:
    /// Warns about a file that was refused or cut short, that waits unread, that has lines without effect, or
    /// whose trade parameters were not understood.
    void recordIntake(const TC::CIntakeReport& report) override;
    /// Warns about a listener that no longer serves clients, and about refused connections.
    void recordDoor(const TC::CDoorReport& report) override;
    void recordDiscard(const TC::CDiscardReport& report) override;
    /// Shows one warning for each channel.
    void recordUnplaced(const QVector<TC::COrderParam>& orders) override;
    /// Shows nothing if the message panel itself failed; the library writes that failure to its log.
    void recordIncident(const TC::CIncidentReport& report) override;
};

} // namespace kit
