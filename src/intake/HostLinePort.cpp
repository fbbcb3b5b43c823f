#include "intake/HostLinePort.h"

#include "platform/LuaModuleCtrl.h"
#include "platform/MsgService.h"
#include "platform/TimeService.h"
#include "platform/TraderCenter.h"
#include "platform/TradingRules.h"
#include "platform/UserConfig.h"

namespace TC {

void CHostLinePort::terminateTask(int taskId) {
    const CUserConfig* user = getUserConfig();
    CTaskOpRecord record;
    record.m_nOperation = kTaskOpTerminate;
    record.m_nTime = CTimeService::instance().currentTime();
    record.m_strUserName = user != nullptr ? user->getUserName() : std::string();
    record.m_strRemark = record.m_strUserName + "终止任务";
    for (const auto& task : knservice::TraderCenter::instance().getTaskCenter().findTasks(taskId)) {
        task->operate(record);
    }
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
    return luawrapper::isOrderSwitchOn("mdl_order_command_remark");
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
