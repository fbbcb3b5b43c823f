#include "orderservice/kit/RecordJson.h"

#include "orderservice/base/Address.h"
#include "orderservice/kit/JsonValues.h"
#include "orderservice/records/Families.h"

#include <nlohmann/json.hpp>

#include <map>
#include <string>
#include <vector>

namespace kit {
namespace {

CJson stockFields(const TC::CStockInfo& stock) {
    return CJson{{"market", stock.m_strMarket},
                 {"code", stock.m_strCode},
                 {"name", stock.m_strName},
                 {"product_id", stock.m_strProductId}};
}

CJson codeFields(const TC::CCodeOrderParam& code) {
    return CJson{{"account", code.m_account ? CJson(code.m_account->getKey()) : CJson()},
                 {"hedge_flag", enumValue(code.m_eHedgeFlag)},
                 {"operation_type", enumValue(code.m_eOperationType)},
                 {"order_type", enumValue(code.m_eOrderType)},
                 {"position_type", enumValue(code.m_ePositionType)},
                 {"stock", stockFields(code.m_stock)},
                 {"price_type", enumValue(code.m_ePriceType)},
                 {"price", numberValue(code.m_dPrice)},
                 {"volume", numberValue(code.m_nVolume)},
                 {"user_id", code.m_strUserId},
                 {"entrust_type", enumValue(code.m_eEntrustType)},
                 {"contract_text", code.m_strContractText},
                 {"repay_text", code.m_strRepayText},
                 {"quantity_kind", numberValue(code.m_nQuantityKind)},
                 {"quantity", numberValue(code.m_dQuantity)},
                 {"sub_account_kind", numberValue(code.m_nSubAccountKind)},
                 {"sub_account_id", code.m_strSubAccountId},
                 {"over_freq_mode", numberValue(code.m_nOverFreqMode)}};
}

CJson codesValue(const std::vector<TC::CCodeOrderParam>& codes) {
    CJson list = CJson::array();
    for (const TC::CCodeOrderParam& code : codes)
        list.push_back(codeFields(code));
    return list;
}

CJson weightsValue(const std::map<std::string, double>& weights) {
    CJson object = CJson::object();
    for (const auto& [account, weight] : weights)
        object[account] = numberValue(weight);
    return object;
}

CJson settingFields(const TC::COrderSetting& setting) {
    return CJson{{"price_type", enumValue(setting.m_ePriceType)},
                 {"order_type", enumValue(setting.m_eOrderType)},
                 {"first_limit", numberValue(setting.m_dFirstLimit)},
                 {"second_limit", numberValue(setting.m_dSecondLimit)},
                 {"first_limit_on", setting.m_bFirstLimitOn},
                 {"second_limit_on", setting.m_bSecondLimitOn},
                 {"cmd_log", setting.m_strCmdLog}};
}

} // namespace

CJson commandJson(const TC::COrderComandParam& command) {
    return CJson{{"trader_type", enumValue(command.m_eTraderType)},
                 {"hedge_type", enumValue(command.m_eHedgeType)},
                 {"btn_type", enumValue(command.m_eBtnType)},
                 {"codes", codesValue(command.m_codes)},
                 {"weights", weightsValue(command.m_weights)},
                 {"stop_loss_type", enumValue(command.m_eStopLossType)},
                 {"union", command.m_bUnion},
                 {"extra", documentValue(command.m_extra)},
                 {"tag", command.m_strTag},
                 {"algo_param", command.m_strAlgoParam},
                 {"platform", enumValue(command.m_ePlatform)},
                 {"command_flag", command.m_bCommandFlag},
                 {"force_confirm", command.m_bForceConfirm},
                 {"strategy_type", enumValue(command.m_eStrategyType)},
                 {"remark", command.m_strRemark},
                 {"create_time", command.m_strCreateTime}};
}

CJson intakeJson(const TC::CIntakeReport& report) {
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

CJson doorJson(const TC::CDoorReport& report) {
    static constexpr const char* kEvents[] = {"opened", "closed", "stuck", "refused"};
    return CJson{{"event", kEvents[static_cast<int>(report.m_eEvent)]},
                 {"source", textValue(report.m_strSource)},
                 {"loopback", utils::isLoopbackListener(report.m_strSource.toStdString())},
                 {"peer", textValue(report.m_strPeer)},
                 {"cause", textValue(report.m_strCause)}};
}

CJson discardJson(const TC::CDiscardReport& report) {
    return CJson{{"source", textValue(report.m_strSource)},
                 {"channel", numberValue(report.m_nChannel)},
                 {"strategy_type", enumValue(report.m_eStrategyType)},
                 {"lines", report.m_nLines < 0 ? CJson() : CJson(report.m_nLines)},
                 {"bytes", report.m_nBytes < 0 ? CJson() : CJson(report.m_nBytes)}};
}

CJson incidentJson(const TC::CIncidentReport& report) {
    static constexpr const char* kEvents[] = {"orders_dropped",      "cancel_not_done",
                                              "host_failed",         "rows_left_out",
                                              "strategy_not_loaded", "strategy_not_started"};
    CJson fields{{"event", kEvents[static_cast<int>(report.m_eIncident)]},
                 {"channel", numberValue(report.m_nChannel)},
                 {"orders", report.m_nOrders},
                 {"task", numberValue(report.m_nTaskId)}};
    if (report.m_eIncident == TC::EIncident::RowsLeftOut) {
        fields["rows"] = report.m_nRows;
        fields["code"] = textValue(report.m_strCode);
    }
    fields["cause"] = textValue(report.m_strCause);
    return fields;
}

CJson orderJson(const TC::COrderParam& order) {
    return CJson{{"channel", numberValue(order.m_nChannel)},
                 {"strategy_type", enumValue(order.m_eStrategyType)},
                 {"order_type", numberValue(order.m_nOrderType)},
                 {"order", textValue(order.toQString())}};
}

CJson strategyJson(const TC::COrderStrategyParam& strategy) {
    return CJson{{"channel", numberValue(strategy.m_nChannel)},
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
                 {"setting", settingFields(TC::settingOfFamily(strategy))},
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

CJson taskOperationJson(const TC::CTaskOpRecord& record) {
    return CJson{{"operation", record.m_nOperation},
                 {"op_time", record.m_nTime},
                 {"user_name", record.m_strUserName},
                 {"remark", record.m_strRemark}};
}

} // namespace kit
