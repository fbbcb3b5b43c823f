#include "orderservice/kit/RecordJson.h"

#include "orderservice/base/Address.h"
#include "orderservice/kit/JsonValues.h"
#include "orderservice/kit/RecordKeys.h"
#include "orderservice/records/Families.h"

#include <nlohmann/json.hpp>

#include <string>
#include <type_traits>
#include <utility>
#include <vector>

namespace kit {
namespace {

/// Builds a JSON object key by key; see kit/RecordKeys.h.
class CJsonFields {
public:
    template<typename T>
    void add(const std::string& key, const T& value) {
        if constexpr (std::is_enum_v<T>)
            put(key.c_str(), enumValue(value));
        else if constexpr (std::is_same_v<T, int> || std::is_same_v<T, double>)
            put(key.c_str(), numberValue(value));
        else
            put(key.c_str(), CJson(value));
    }
    void addNull(const char* key) { put(key, CJson()); }
    void beginObject(const char* key) { m_open.push_back(&put(key, CJson::object())); }
    void beginList(const char* key) { m_open.push_back(&put(key, CJson::array())); }
    void endObject() { m_open.pop_back(); }
    void endList() { m_open.pop_back(); }

    CJson take() { return std::move(m_root); }

private:
    CJson& put(const char* key, CJson value) {
        CJson& parent = m_open.empty() ? m_root : *m_open.back();
        if (parent.is_array()) return parent.emplace_back(std::move(value));
        return parent[key] = std::move(value);
    }

    CJson m_root = CJson::object();
    std::vector<CJson*> m_open; ///< the objects and lists that have not ended; a parent does not change then
};

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
    CJsonFields fields;
    writeCommandKeys(command, fields);
    return fields.take();
}

CJson intakeJson(const TC::CIntakeReport& report) {
    CJsonFields fields;
    writeIntakeKeys(report, fields);
    return fields.take();
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
    static constexpr const char* kEvents[] = {
        "orders_dropped",      "cancel_not_done",      "host_failed",       "rows_left_out",
        "strategy_not_loaded", "strategy_not_started", "orders_interrupted"};
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
