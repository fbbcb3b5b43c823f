#include "orderservice/intake/LineSource.h"

#include "orderservice/base/Text.h"

namespace TC {

CIntakeReport makeIntakeReport(int channel, const COrderStrategyParam& strategy) {
    CIntakeReport report;
    report.m_eStrategyType = strategy.m_eStrategyType;
    report.m_nChannel = channel;
    report.m_strSource = strategy.m_strSignalSource;
    return report;
}

void cutShort(CIntakeReport& report, const QString& cause) {
    report.m_bCutShort = true;
    report.m_strCause =
        utils::fillText(QStringLiteral("line %1: %2"), {QString::number(report.m_nLines), cause});
}

} // namespace TC
