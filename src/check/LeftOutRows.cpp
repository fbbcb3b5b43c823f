#include "orderservice/check/LeftOutRows.h"

#include "orderservice/platform/IntakeAudit.h"

namespace TC {

void CLeftOut::report(int channel) const {
    if (rows == 0) return;
    CIncidentReport incident;
    incident.m_eIncident = EIncident::RowsLeftOut;
    incident.m_nChannel = channel;
    incident.m_nRows = rows;
    incident.m_strCode = code;
    incident.m_strCause = cause;
    reportToAudit(incident);
}

} // namespace TC
