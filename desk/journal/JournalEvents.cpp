#include "desk/journal/JournalEvents.h"

#include "desk/journal/FieldText.h"
#include "orderservice/kit/JsonValues.h"
#include "orderservice/kit/RecordJson.h"

#include <nlohmann/json.hpp>

#include <utility>

namespace desk {
namespace {

using kit::enumValue;
using kit::textValue;

/// Appends the keys of the second object to the first.
CJson followedBy(CJson first, CJson second) {
    for (auto& [key, value] : second.get_ref<CJson::object_t&>())
        first[key] = std::move(value);
    return first;
}

void addStock(const TC::CStockInfo& stock, CFieldText& fields) {
    fields.beginObject("stock");
    fields.add("market", stock.m_strMarket);
    fields.add("code", stock.m_strCode);
    fields.add("name", stock.m_strName);
    fields.add("product_id", stock.m_strProductId);
    fields.endObject();
}

void addCode(const TC::CCodeOrderParam& code, CFieldText& fields) {
    fields.beginObject(nullptr);
    if (code.m_account)
        fields.add("account", code.m_account->getKey());
    else
        fields.addNull("account");
    fields.add("hedge_flag", code.m_eHedgeFlag);
    fields.add("operation_type", code.m_eOperationType);
    fields.add("order_type", code.m_eOrderType);
    fields.add("position_type", code.m_ePositionType);
    addStock(code.m_stock, fields);
    fields.add("price_type", code.m_ePriceType);
    fields.add("price", code.m_dPrice);
    fields.add("volume", code.m_nVolume);
    fields.add("user_id", code.m_strUserId);
    fields.add("entrust_type", code.m_eEntrustType);
    fields.add("contract_text", code.m_strContractText);
    fields.add("repay_text", code.m_strRepayText);
    fields.add("quantity_kind", code.m_nQuantityKind);
    fields.add("quantity", code.m_dQuantity);
    fields.add("sub_account_kind", code.m_nSubAccountKind);
    fields.add("sub_account_id", code.m_strSubAccountId);
    fields.add("over_freq_mode", code.m_nOverFreqMode);
    fields.endObject();
}

void addCodesAndWeights(const TC::COrderComandParam& command, CFieldText& fields) {
    fields.beginList("codes");
    for (const TC::CCodeOrderParam& code : command.m_codes)
        addCode(code, fields);
    fields.endList();
    fields.beginObject("weights");
    for (const auto& [account, weight] : command.m_weights)
        fields.add(account, weight);
    fields.endObject();
}

void addDocument(const char* key, const bson::BSONObj& document, CFieldText& fields) {
    if (document.isEmpty()) {
        fields.beginObject(key);
        fields.endObject();
    } else {
        fields.add(key, kit::documentValue(document));
    }
}

} // namespace

CJournalRecord commandRecord(const TC::COrderComandParam& command, std::optional<int> task) {
    CFieldText fields;
    // The task must be the first key, because JournalTail searches for it there.
    if (task)
        fields.add("task", *task);
    else
        fields.addNull("task");
    fields.add("trader_type", command.m_eTraderType);
    fields.add("hedge_type", command.m_eHedgeType);
    fields.add("btn_type", command.m_eBtnType);
    addCodesAndWeights(command, fields);
    fields.add("stop_loss_type", command.m_eStopLossType);
    fields.add("union", command.m_bUnion);
    addDocument("extra", command.m_extra, fields);
    fields.add("tag", command.m_strTag);
    fields.add("algo_param", command.m_strAlgoParam);
    fields.add("platform", command.m_ePlatform);
    fields.add("command_flag", command.m_bCommandFlag);
    fields.add("force_confirm", command.m_bForceConfirm);
    fields.add("strategy_type", command.m_eStrategyType);
    fields.add("remark", command.m_strRemark);
    fields.add("create_time", command.m_strCreateTime);
    return {"command", fields.takeText(), {{}, task, {}, {}}};
}

CJournalRecord intakeRecord(const TC::CIntakeReport& report) {
    CFieldText fields;
    fields.add("source", report.m_strSource.toStdString());
    fields.add("channel", report.m_nChannel);
    fields.add("strategy_type", report.m_eStrategyType);
    fields.add("lines", std::int64_t{report.m_nLines});
    fields.add("orders", std::int64_t{report.m_nOrders});
    fields.add("unread_params", std::int64_t{report.m_nUnreadTradeParams});
    fields.add("cut_short", report.m_bCutShort);
    fields.add("left_waiting", report.m_bLeftWaiting);
    fields.add("cause", report.m_strCause.toStdString());
    fields.add("rejected", report.m_bRejected);
    fields.add("left_over", report.m_bLeftOver);
    fields.add("kept_as", report.m_strKeptAs.toStdString());
    fields.add("ignored_lines", std::int64_t{report.m_nIgnoredLines});
    fields.add("first_ignored", report.m_strFirstIgnored.toStdString());
    return {"intake", fields.takeText(), {}};
}

CJson doorFields(const TC::CDoorReport& report) {
    return kit::doorJson(report);
}

CJson discardFields(const TC::CDiscardReport& report, const std::string& cause) {
    CJson fields = kit::discardJson(report);
    fields["cause"] = cause;
    return fields;
}

CJson unplacedFields(const TC::COrderParam& order) {
    return kit::orderJson(order);
}

CJson incidentFields(const TC::CIncidentReport& report) {
    return kit::incidentJson(report);
}

CJournalRecord messageRecord(const QString& text, TC::EMsgTypeDef type, TC::MsgLevel level) {
    CFieldText fields;
    fields.add("text", text.toStdString());
    fields.add("type", type);
    fields.add("level", level);
    return {"message", fields.takeText(), {}};
}

CJson tradeErrorFields(const QString& text, const QString& title, std::int64_t commandSeq) {
    CJson fields{{"text", textValue(text)}, {"title", textValue(title)}};
    if (commandSeq != 0) fields["command"] = commandSeq;
    return fields;
}

CJson strategyFields(const std::string& action, const TC::COrderStrategyParam& strategy) {
    return followedBy(CJson{{"action", action}}, kit::strategyJson(strategy));
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
    return followedBy(CJson{{"task", taskId}}, kit::taskOperationJson(record));
}

CJson cancelOrdersFields(const std::vector<std::string>& words) {
    return CJson{{"words", words}};
}

} // namespace desk
