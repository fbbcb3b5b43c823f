#include "orderservice/platform/IntakeAudit.h"

#include "tests/platform/EchoHost.h"

#include <gtest/gtest.h>

#include <stdexcept>

namespace {

using namespace TC;

using IntakeAudit = echo::CEchoHost;

TEST_F(IntakeAudit, ExceptionOfTheAuditStaysInTheFunction) {
    host.audit.onRecord = [] { throw std::runtime_error("no room"); };
    EXPECT_NO_THROW(reportToAudit(CIntakeReport()));
    EXPECT_NO_THROW(reportToAudit(CDoorReport()));
    EXPECT_EQ(host.audit.reports.size(), 1u);
    EXPECT_EQ(host.audit.doors.size(), 1u);
    host.audit.rejected = QStringLiteral("/rejected");
    EXPECT_EQ(rejectedFolder(), QStringLiteral("/rejected"));
    host.audit.onRejectedFolder = [] { throw 1; };
    EXPECT_EQ(rejectedFolder(), QString());
}

TEST_F(IntakeAudit, DroppedOrdersAreAnIncident) {
    reportOrdersDropped(3, 7, QStringLiteral("no user"));
    ASSERT_EQ(host.audit.incidents.size(), 1u);
    const CIncidentReport& report = host.audit.incidents[0];
    EXPECT_EQ(report.m_eIncident, EIncident::OrdersDropped);
    EXPECT_EQ(report.m_nChannel, 3);
    EXPECT_EQ(report.m_nOrders, 7);
    EXPECT_EQ(report.m_strCause, QStringLiteral("no user"));
}

} // namespace
