#pragma once

#include "platform/HostService.h"
#include "records/Enums.h"

#include <QString>

namespace TC {

/// What one reading of a source gave.
struct CIntakeReport {
    EOrderStrategyType m_eStrategyType = EOrderStrategyType::File;
    int m_nChannel = 0;
    QString m_strSource; ///< path or ip:port
    int m_nLines = 0;    ///< lines read, whatever became of them
    int m_nOrders = 0;   ///< orders handed on to the checks
    /// Lines of trade parameters that the host did not understand: their orders went on without them.
    int m_nUnreadTradeParams = 0;
    /// A line that could not be read ended the source; what stood behind it is lost.
    bool m_bCutShort = false;
    /// The source could not be taken away from its writer and waits unread. Told once, not at every look.
    bool m_bLeftWaiting = false;
    QString m_strCause; ///< for people: which line ended the source or what holds it, and why
};

/// Wants to know what came in, so that a journal can tell how many orders a file held. Called on the thread
/// of the door, before the orders are handed on; must not throw. A host without a journal does nothing here.
class CIntakeAudit : public CHostService<CIntakeAudit> {
public:
    static constexpr const char* kServiceName = "CIntakeAudit";

    virtual void recordIntake(const CIntakeReport& report) = 0;
};

} // namespace TC
