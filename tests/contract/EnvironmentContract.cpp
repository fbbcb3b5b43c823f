// Messages, audit, time, framework and switches.
#include "orderservice/platform/IntakeAudit.h"
#include "orderservice/platform/LuaModuleCtrl.h"
#include "orderservice/platform/MsgService.h"
#include "orderservice/platform/TimeService.h"
#include "orderservice/platform/TradeFrameworkSource.h"
#include "orderservice/records/OrderTypes.h"

#include "orderservice/contract/ContractFixture.h"
#include "orderservice/contract/Suites.h"

#include <QDir>

#include <atomic>

void contract::linkEnvironmentSuites() {}

namespace {

using namespace TC;
using contract::EHostTrait;

class MsgServiceContract : public contract::CContractTest {};
CONTRACT_SUITE(MsgServiceContract);

TEST_P(MsgServiceContract, MessageFromAnotherThreadReturnsWhileTheMainThreadWaits) {
    bool returned = false;
    onAnotherThread([&] {
        CMsgService::instance().showMsg(QStringLiteral("通道号: 3"), EMsgTypeDef::OrderFailure,
                                        MsgLevel::Warning, true, true, QStringLiteral("extra"));
        showServiceMsg(QStringLiteral("通道号: 3"));
        returned = true;
    });
    EXPECT_TRUE(returned);
}

TEST_P(MsgServiceContract, ManyThreadsMayShowAtOnce) {
    std::atomic<int> returned{0};
    onManyThreads([&] {
        showServiceMsg(QStringLiteral("text"));
        ++returned;
    });
    EXPECT_EQ(returned.load(), 800);
}

TEST_P(MsgServiceContract, AnyTextMayBeShown) {
    const QString texts[] = {QString(), QStringLiteral("%1 %2"), QString(QChar(0xD800)),
                             QString(100000, u'长'), QStringLiteral("a\nb\"c\\")};
    for (const QString& text : texts)
        EXPECT_NO_THROW(showServiceMsg(text));
}

class IntakeAuditContract : public contract::CContractTest {};
CONTRACT_SUITE(IntakeAuditContract);

TEST_P(IntakeAuditContract, ReportsNeverThrow) {
    CIntakeReport report;
    report.m_nChannel = 3;
    report.m_strSource = QStringLiteral("/订单/a.txt");
    report.m_nLines = 2;
    report.m_bCutShort = true;
    report.m_strCause = QStringLiteral("line 2");
    EXPECT_NO_THROW(CIntakeAudit::instance().recordIntake(CIntakeReport()));
    onAnotherThread([&] { EXPECT_NO_THROW(CIntakeAudit::instance().recordIntake(report)); });
}

TEST_P(IntakeAuditContract, RejectedFolderIsAnAbsolutePathOrNone) {
    onAnotherThread([] {
        const QString folder = CIntakeAudit::instance().rejectedFolder();
        EXPECT_TRUE(folder.isEmpty() || QDir::isAbsolutePath(folder)) << folder.toStdString();
    });
}

TEST_P(IntakeAuditContract, ReportsOfDoorsNeverThrow) {
    for (const EDoorEvent event :
         {EDoorEvent::Opened, EDoorEvent::Closed, EDoorEvent::Stuck, EDoorEvent::Refused}) {
        CDoorReport report;
        report.m_eEvent = event;
        EXPECT_NO_THROW(CIntakeAudit::instance().recordDoor(report));
        report.m_strSource = QStringLiteral("127.0.0.1:9000");
        report.m_strPeer = QStringLiteral("10.0.0.7:1234");
        report.m_strCause = QStringLiteral("原因");
        onAnotherThread([&] { EXPECT_NO_THROW(CIntakeAudit::instance().recordDoor(report)); });
    }
}

TEST_P(IntakeAuditContract, ReportsOfDiscardedFilesNeverThrow) {
    CDiscardReport full;
    full.m_nChannel = 3;
    full.m_strSource = QStringLiteral("/订单/a.txt");
    full.m_nLines = 2;
    full.m_nBytes = 40;
    CDiscardReport unset = full;
    unset.m_nLines = unset.m_nBytes = -1;
    for (const CDiscardReport& report : {CDiscardReport(), full, unset}) {
        EXPECT_NO_THROW(CIntakeAudit::instance().recordDiscard(report));
        onAnotherThread([&] { EXPECT_NO_THROW(CIntakeAudit::instance().recordDiscard(report)); });
    }
}

TEST_P(IntakeAuditContract, ReportsOfUnplacedOrdersNeverThrow) {
    COrderParam full;
    full.m_nChannel = 3;
    full.m_nOrderType = kOrderBuy;
    full.m_strRemark = "备注";
    full.m_orders.resize(2);
    full.m_orders[0].m_strCode = QStringLiteral("600000");
    COrderParam unset;
    unset.m_nChannel = kUnsetInt;
    unset.m_nOrderType = kUnsetInt;
    unset.m_eStrategyType = unsetEnum<EOrderStrategyType>();
    for (const QVector<COrderParam>& orders :
         {QVector<COrderParam>(), QVector<COrderParam>(1), QVector<COrderParam>{full, full, unset}}) {
        EXPECT_NO_THROW(CIntakeAudit::instance().recordUnplaced(orders));
        onAnotherThread([&] { EXPECT_NO_THROW(CIntakeAudit::instance().recordUnplaced(orders)); });
    }
}

TEST_P(IntakeAuditContract, ReportsOfIncidentsNeverThrow) {
    CIncidentReport full;
    full.m_nChannel = 3;
    full.m_nOrders = 2;
    full.m_nTaskId = 7;
    full.m_nRows = 4;
    full.m_strCode = QStringLiteral("600000");
    full.m_strCause = QStringLiteral("原因");
    for (const EIncident event : {EIncident::OrdersDropped, EIncident::OrdersInterrupted,
                                  EIncident::CancelNotDone, EIncident::HostFailed, EIncident::RowsLeftOut,
                                  EIncident::StrategyNotLoaded, EIncident::StrategyNotStarted}) {
        for (CIncidentReport report : {CIncidentReport(), full}) {
            report.m_eIncident = event;
            EXPECT_NO_THROW(CIntakeAudit::instance().recordIncident(report));
            onAnotherThread([&] { EXPECT_NO_THROW(CIntakeAudit::instance().recordIncident(report)); });
        }
    }
}

class TimeServiceContract : public contract::CContractTest {};
CONTRACT_SUITE(TimeServiceContract);

TEST_P(TimeServiceContract, TimeIsInSeconds) {
    constexpr std::int64_t kYear2020 = 1577836800;
    constexpr std::int64_t kYear2100 = 4102444800;
    std::int64_t seen = 0;
    onAnotherThread([&] { seen = CTimeService::instance().currentTime(); });
    EXPECT_GT(seen, kYear2020);
    EXPECT_LT(seen, kYear2100);
    EXPECT_GE(CTimeService::instance().currentTime(), seen);
}

class TradeFrameworkContract : public contract::CContractTest {};
CONTRACT_SUITE(TradeFrameworkContract);

TEST_P(TradeFrameworkContract, TradingDayMayBeReportedTwice) {
    EXPECT_NO_THROW(knservice::CTradeFrameworkSource::instance().switchTradingDate("20260105"));
    onAnotherThread(
        [] { EXPECT_NO_THROW(knservice::CTradeFrameworkSource::instance().switchTradingDate("20260105")); });
}

TEST_P(TradeFrameworkContract, ListOfInterfacesIsACopy) {
    auto& framework = knservice::CTradeFrameworkSource::instance();
    knservice::TradeInterfaceList mine = framework.getAllInterfaces();
    const knservice::TradeInterfaceList before = mine;
    mine.push_back(nullptr);
    EXPECT_EQ(framework.getAllInterfaces(), before);
}

TEST_P(TradeFrameworkContract, InterfaceIsNullOrItsTextCanBeRead) {
    knservice::CTradeFrameworkSource::instance().switchTradingDate("20260105");
    for (const auto& interface : knservice::CTradeFrameworkSource::instance().getAllInterfaces()) {
        if (interface == nullptr) continue;
        EXPECT_NO_THROW(knservice::TradeInterfaceData().fillFromJson(interface->toJson()));
    }
}

class SwitchesContract : public contract::CContractTest {};
CONTRACT_SUITE(SwitchesContract);

TEST_P(SwitchesContract, UnknownSwitchIsOff) {
    EXPECT_FALSE(luawrapper::isOrderSwitchOn("no_such_switch"));
    EXPECT_FALSE(luawrapper::LuaModuleCtrl::instance().checkModule({}));
    EXPECT_FALSE(luawrapper::LuaModuleCtrl::instance().checkModule({"no_such_module", "no_such_switch"}));
}

TEST_P(SwitchesContract, AnotherThreadSeesTheSame) {
    bool seen = false;
    onAnotherThread([&] { seen = luawrapper::isOrderSwitchOn("mdl_order_command_remark"); });
    EXPECT_EQ(seen, luawrapper::isOrderSwitchOn("mdl_order_command_remark"));
}

} // namespace
