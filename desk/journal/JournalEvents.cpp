#include "desk/journal/JournalEvents.h"

#include "base/Address.h"
#include "desk/journal/JsonValues.h"
#include "records/Families.h"

namespace desk {
namespace {

CJson settingFields(const TC::COrderSetting& setting) {
    return CJson{{"price_type", enumValue(setting.m_ePriceType)},
                 {"order_type", enumValue(setting.m_eOrderType)},
                 {"first_limit", numberValue(setting.m_dFirstLimit)},
                 {"second_limit", numberValue(setting.m_dSecondLimit)},
                 {"first_limit_on", setting.m_bFirstLimitOn},
                 {"second_limit_on", setting.m_bSecondLimitOn},
                 {"cmd_log", setting.m_strCmdLog}};
}

const TC::COrderSetting& familySetting(const TC::COrderStrategyParam& strategy) {
    const TC::CFamily* family = TC::findFamily(strategy.m_eTradeType);
    return strategy.setting(family != nullptr ? family->m_eSlot : TC::ESettingSlot::Stock);
}

} // namespace

CJson intakeFields(const TC::CIntakeReport& report) {
    return CJson{{"source", textValue(report.m_strSource)},
                 {"channel", numberValue(report.m_nChannel)},
                 {"strategy_type", enumValue(report.m_eStrategyType)},
                 {"lines", report.m_nLines},
                 {"orders", report.m_nOrders},
                 {"unread_params", report.m_nUnreadTradeParams},
                 {"cut_short", report.m_bCutShort},
                 {"left_waiting", report.m_bLeftWaiting},
                 {"cause", textValue(report.m_strCause)},
                 {"rejected", report.m_bRejected},
                 {"left_over", report.m_bLeftOver},
                 {"kept_as", textValue(report.m_strKeptAs)},
                 {"ignored_lines", report.m_nIgnoredLines},
                 {"first_ignored", textValue(report.m_strFirstIgnored)}};
}

CJson doorFields(const TC::CDoorReport& report) {
    static constexpr const char* kEvents[] = {"opened", "closed", "stuck", "refused"};
    return CJson{{"event", kEvents[static_cast<int>(report.m_eEvent)]},
                 {"source", textValue(report.m_strSource)},
                 {"loopback", utils::isLoopbackListener(report.m_strSource.toStdString())},
                 {"peer", textValue(report.m_strPeer)},
                 {"cause", textValue(report.m_strCause)}};
}

CJson discardFields(const TC::CDiscardReport& report, const std::string& cause) {
    return CJson{{"source", textValue(report.m_strSource)},
                 {"channel", numberValue(report.m_nChannel)},
                 {"strategy_type", enumValue(report.m_eStrategyType)},
                 {"lines", report.m_nLines < 0 ? CJson() : CJson(report.m_nLines)},
                 {"bytes", report.m_nBytes < 0 ? CJson() : CJson(report.m_nBytes)},
                 {"cause", cause}};
}

CJson unplacedFields(const TC::COrderParam& order) {
    return CJson{{"channel", numberValue(order.m_nChannel)},
                 {"strategy_type", enumValue(order.m_eStrategyType)},
                 {"order_type", numberValue(order.m_nOrderType)},
                 {"order", textValue(order.toQString())}};
}

CJson incidentFields(const TC::CIncidentReport& report) {
    static constexpr const char* kEvents[] = {"orders_dropped", "cancel_not_done", "host_failed"};
    return CJson{{"event", kEvents[static_cast<int>(report.m_eIncident)]},
                 {"channel", numberValue(report.m_nChannel)},
                 {"orders", report.m_nOrders},
                 {"task", numberValue(report.m_nTaskId)},
                 {"cause", textValue(report.m_strCause)}};
}

CJson messageFields(const QString& text, TC::EMsgTypeDef type, TC::MsgLevel level) {
    return CJson{{"text", textValue(text)}, {"type", enumValue(type)}, {"level", enumValue(level)}};
}

CJson tradeErrorFields(const QString& text, const QString& title, std::int64_t commandSeq) {
    CJson fields{{"text", textValue(text)}, {"title", textValue(title)}};
    if (commandSeq != 0) fields["command"] = commandSeq;
    return fields;
}

CJson strategyFields(const std::string& action, const TC::COrderStrategyParam& strategy) {
    return CJson{{"action", action},
                 {"channel", numberValue(strategy.m_nChannel)},
                 {"name", textValue(strategy.m_strName)},
                 {"status", strategy.m_nStatus},
                 {"selected_account_type", enumValue(strategy.m_eSelectedAccountType)},
                 {"selected_account", textValue(strategy.m_strSelectedAccount)},
                 {"trade_type", enumValue(strategy.m_eTradeType)},
                 {"position_type", enumValue(strategy.m_ePositionType)},
                 {"strategy_type", enumValue(strategy.m_eStrategyType)},
                 {"account_mode", strategy.m_nAccountMode},
                 {"signal_source", textValue(strategy.m_strSignalSource)},
                 {"user", textValue(strategy.m_strUser)},
                 {"code", textValue(strategy.m_strCode)},
                 {"setting", settingFields(familySetting(strategy))},
                 {"volume", numberValue(strategy.m_nVolume)},
                 {"use_amount", strategy.m_bUseAmount},
                 {"amount", numberValue(strategy.m_dAmount)},
                 {"by_percent", strategy.m_bByPercent},
                 {"percent", numberValue(strategy.m_dPercent)},
                 {"start_count", strategy.m_nStartCount},
                 {"hedge_basket", strategy.m_bHedgeBasket},
                 {"hedge_param", documentValue(strategy.m_hedgeParam)},
                 {"command_flag", strategy.m_bCommandFlag},
                 {"order_type", enumValue(strategy.m_eOrderType)}};
}

CJson cancelTaskFields(int taskId, int operation, const std::string& text, const std::string& remark,
                       const std::string& tradingDay) {
    return CJson{{"task", taskId},
                 {"operation", operation},
                 {"text", text},
                 {"remark", remark},
                 {"trading_day", tradingDay}};
}

CJson cancelTaskFields(int taskId, const TC::CTaskOpRecord& record) {
    return CJson{{"task", taskId},
                 {"operation", record.m_nOperation},
                 {"op_time", record.m_nTime},
                 {"user_name", record.m_strUserName},
                 {"remark", record.m_strRemark}};
}

CJson cancelOrdersFields(const std::vector<std::string>& words) {
    return CJson{{"words", words}};
}

} // namespace desk
