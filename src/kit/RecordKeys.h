#pragma once

#include "orderservice/kit/JsonValues.h"
#include "orderservice/platform/IntakeAudit.h"
#include "orderservice/records/CommandParam.h"

#include <cstdint>

/// Writes commands and intake reports key by key. The sequence of the keys is part of the format. The
/// functions are templates, so that a host can write such a record as text without building a JSON object
/// first. kit/RecordJson.h makes JSON objects with them.
///
/// A writer has these operations. Keys are ASCII. Only the keys of the weights may have other characters:
/// they are account keys.
///  - add(key, value): a text, bool, number, enumeration or CJson. An enumeration, an int or a double that is
///    not set becomes null, and so does a double that is not finite.
///  - addNull(key)
///  - beginObject(key), endObject(), beginList(key), endList(). The key is null inside a list.
namespace kit {

template<typename Writer>
void writeStockKeys(const TC::CStockInfo& stock, Writer& fields) {
    fields.add("market", stock.m_strMarket);
    fields.add("code", stock.m_strCode);
    fields.add("name", stock.m_strName);
    fields.add("product_id", stock.m_strProductId);
}

/// One record of a command. An account is written as its key.
template<typename Writer>
void writeCodeKeys(const TC::CCodeOrderParam& code, Writer& fields) {
    if (code.m_account)
        fields.add("account", code.m_account->getKey());
    else
        fields.addNull("account");
    fields.add("hedge_flag", code.m_eHedgeFlag);
    fields.add("operation_type", code.m_eOperationType);
    fields.add("order_type", code.m_eOrderType);
    fields.add("position_type", code.m_ePositionType);
    fields.beginObject("stock");
    writeStockKeys(code.m_stock, fields);
    fields.endObject();
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
}

template<typename Writer>
void writeCodesAndWeights(const TC::COrderComandParam& command, Writer& fields) {
    fields.beginList("codes");
    for (const TC::CCodeOrderParam& code : command.m_codes) {
        fields.beginObject(nullptr);
        writeCodeKeys(code, fields);
        fields.endObject();
    }
    fields.endList();
    fields.beginObject("weights");
    for (const auto& [account, weight] : command.m_weights)
        fields.add(account, weight);
    fields.endObject();
}

/// Writes a document as an object. Most documents are empty; no JSON object is built for those.
template<typename Writer>
void writeDocument(const char* key, const bson::BSONObj& document, Writer& fields) {
    if (document.isEmpty()) {
        fields.beginObject(key);
        fields.endObject();
    } else {
        fields.add(key, documentValue(document));
    }
}

template<typename Writer>
void writeCommandKeys(const TC::COrderComandParam& command, Writer& fields) {
    fields.add("trader_type", command.m_eTraderType);
    fields.add("hedge_type", command.m_eHedgeType);
    fields.add("btn_type", command.m_eBtnType);
    writeCodesAndWeights(command, fields);
    fields.add("stop_loss_type", command.m_eStopLossType);
    fields.add("union", command.m_bUnion);
    writeDocument("extra", command.m_extra, fields);
    fields.add("tag", command.m_strTag);
    fields.add("algo_param", command.m_strAlgoParam);
    fields.add("platform", command.m_ePlatform);
    fields.add("command_flag", command.m_bCommandFlag);
    fields.add("force_confirm", command.m_bForceConfirm);
    fields.add("strategy_type", command.m_eStrategyType);
    fields.add("remark", command.m_strRemark);
    fields.add("create_time", command.m_strCreateTime);
}

template<typename Writer>
void writeIntakeKeys(const TC::CIntakeReport& report, Writer& fields) {
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
}

} // namespace kit
