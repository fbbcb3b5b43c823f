#pragma once

#include "platform/IntakeAudit.h"

namespace kit {

/// Shows the user what was not read or served, as warnings of CMsgService; keeps no record. A host with a
/// journal overrides the operations and may call these as well. Any thread, like CIntakeAudit.
class CIntakeAuditBase : public TC::CIntakeAudit {
public:
    /// A file that was refused or cut short, that waits unread, that has lines without effect, or whose trade
    /// parameters were not understood.
    void recordIntake(const TC::CIntakeReport& report) override;
    /// A listener that serves nobody any more, and connections that were refused.
    void recordDoor(const TC::CDoorReport& report) override;
    void recordDiscard(const TC::CDiscardReport& report) override;
    /// One warning for each channel.
    void recordUnplaced(const QVector<TC::COrderParam>& orders) override;
    /// Shows nothing if the message panel itself failed: the library writes that to its log.
    void recordIncident(const TC::CIncidentReport& report) override;
};

} // namespace kit
