#include "desk/journal/JournalEvents.h"

#include "desk/journal/JsonValues.h"

namespace desk {
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

} // namespace

CJson commandFields(const TC::COrderComandParam& command, std::optional<int> task) {
    // The task stands first: JournalTail looks for it there.
    return CJson{{"task", task ? CJson(*task) : CJson()},
                 {"trader_type", enumValue(command.m_eTraderType)},
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

} // namespace desk
