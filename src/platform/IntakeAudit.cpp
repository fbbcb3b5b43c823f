#include "orderservice/platform/IntakeAudit.h"

#include "orderservice/platform/HostCall.h"
#include "orderservice/platform/HostReports.h"

namespace TC {
namespace {

template<auto Record, typename Report>
void tellSafely(const Report& report) {
    try {
        hostCall<Record>(report);
    } catch (...) {
        reportFailure(QStringLiteral("审计记录失败"));
    }
}

} // namespace

void tellAudit(const CIntakeReport& report) {
    tellSafely<&CIntakeAudit::recordIntake>(report);
}

void tellAudit(const CDoorReport& report) {
    tellSafely<&CIntakeAudit::recordDoor>(report);
}

void tellAudit(const CDiscardReport& report) {
    tellSafely<&CIntakeAudit::recordDiscard>(report);
}

void tellAudit(const CIncidentReport& report) {
    tellSafely<&CIntakeAudit::recordIncident>(report);
}

void tellAuditOfUnplaced(const QVector<COrderParam>& orders) {
    tellSafely<&CIntakeAudit::recordUnplaced>(orders);
}

QString rejectedFolder() {
    try {
        return hostCall<&CIntakeAudit::rejectedFolder>();
    } catch (...) {
        reportFailure(QStringLiteral("被拒文件目录未知, 文件留在原目录"));
        return {};
    }
}

void tellOrdersDropped(int channel, int orders, const QString& cause) {
    CIncidentReport report;
    report.m_eIncident = EIncident::OrdersDropped;
    report.m_nChannel = channel;
    report.m_nOrders = orders;
    report.m_strCause = cause;
    tellAudit(report);
}

} // namespace TC
