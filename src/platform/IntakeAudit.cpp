#include "orderservice/platform/IntakeAudit.h"

#include "orderservice/platform/HostCall.h"
#include "orderservice/platform/HostReports.h"

namespace TC {
namespace {

template<auto Record, typename Report>
void reportSafelyToAudit(const Report& report) {
    try {
        hostCall<Record>(report);
    } catch (...) {
        reportFailure(QStringLiteral("审计记录失败"));
    }
}

} // namespace

void reportToAudit(const CIntakeReport& report) {
    reportSafelyToAudit<&CIntakeAudit::recordIntake>(report);
}

void reportToAudit(const CDoorReport& report) {
    reportSafelyToAudit<&CIntakeAudit::recordDoor>(report);
}

void reportToAudit(const CDiscardReport& report) {
    reportSafelyToAudit<&CIntakeAudit::recordDiscard>(report);
}

void reportToAudit(const CIncidentReport& report) {
    reportSafelyToAudit<&CIntakeAudit::recordIncident>(report);
}

void reportUnplaced(const QVector<COrderParam>& orders) {
    reportSafelyToAudit<&CIntakeAudit::recordUnplaced>(orders);
}

QString rejectedFolder() {
    try {
        return hostCall<&CIntakeAudit::rejectedFolder>();
    } catch (...) {
        reportFailure(QStringLiteral("被拒文件目录未知, 文件留在原目录"));
        return {};
    }
}

void reportOrdersDropped(int channel, int orders, const QString& cause) {
    CIncidentReport report;
    report.m_eIncident = EIncident::OrdersDropped;
    report.m_nChannel = channel;
    report.m_nOrders = orders;
    report.m_strCause = cause;
    reportToAudit(report);
}

} // namespace TC
