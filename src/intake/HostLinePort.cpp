#include "orderservice/intake/HostLinePort.h"

#include "orderservice/platform/HostCall.h"
#include "orderservice/platform/IntakeAudit.h"
#include "orderservice/platform/LuaModuleCtrl.h"
#include "orderservice/platform/MsgService.h"
#include "orderservice/platform/Switches.h"
#include "orderservice/platform/TimeService.h"
#include "orderservice/platform/TraderCenter.h"
#include "orderservice/platform/TradingRules.h"
#include "orderservice/platform/UserConfig.h"

#include <algorithm>
#include <exception>
#include <vector>

namespace TC {
namespace {

/// Operates on every task, even if an earlier one throws. Rethrows the first exception at the end.
void operateAll(const std::vector<boost::shared_ptr<knservice::CTask>>& tasks, const CTaskOpRecord& record) {
    std::exception_ptr first;
    for (const auto& task : tasks) {
        if (!task) continue;
        try {
            hostCall<&knservice::CTask::operate>.on(*task, record);
        } catch (...) {
            if (!first) first = std::current_exception();
        }
    }
    if (first) std::rethrow_exception(first);
}

} // namespace

void CHostLinePort::terminateTask(int taskId) {
    const CUserConfig* user = getUserConfig();
    CTaskOpRecord record;
    record.m_nOperation = kTaskOpTerminate;
    record.m_nTime = hostCall<&CTimeService::currentTime>();
    record.m_strUserName = user != nullptr ? hostCall<&CUserConfig::getUserName>.on(*user) : std::string();
    record.m_strRemark = record.m_strUserName + "终止任务";
    const auto tasks = hostCall<&knservice::CTaskCenter::findTasks>.on(
        hostCall<&knservice::TraderCenter::getTaskCenter>(), taskId);
    operateAll(tasks, record);
    if (std::any_of(tasks.begin(), tasks.end(), [](const auto& task) { return task != nullptr; })) return;
    CIncidentReport report;
    report.m_eIncident = EIncident::CancelNotDone;
    report.m_nTaskId = taskId;
    report.m_strCause = QStringLiteral("there is no such task");
    reportToAudit(report);
}

void CHostLinePort::cancelOrders(std::vector<std::string>& fields) {
    m_gate.cancelOrders(fields);
}

bool CHostLinePort::readTradeParam(const std::string& text, COrderTradeParam& param) {
    return parserOrderTradeParam(text, param);
}

std::string CHostLinePort::defaultRemark(const COrderStrategyParam& strategy) {
    return m_gate.defaultRemark(strategy);
}

bool CHostLinePort::areRemarksAllowed() {
    return luawrapper::isOrderSwitchOn(kCommandRemarkSwitch);
}

std::optional<CBasketSetting> CHostLinePort::findBasket(std::string_view name) {
    const CUserConfig* user = getUserConfig();
    return user != nullptr ? TC::findBasket(*user, name) : std::nullopt;
}

bool CHostLinePort::hasAccounts(const COrderStrategyParam& strategy) {
    const CUserConfig* user = getUserConfig();
    return user != nullptr && hasAnyAccount(*user, strategy);
}

QString CHostLinePort::sourceLabel(EOrderStrategyType type) {
    return m_gate.getOrderStrategyText(type);
}

QString CHostLinePort::sourceTitle(EOrderStrategyType type) {
    return orderStrategyTypeToOrderTitle(type);
}

void CHostLinePort::showNote(const QString& text) {
    showServiceMsg(text);
}

} // namespace TC
