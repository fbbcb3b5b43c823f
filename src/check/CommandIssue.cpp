#include "orderservice/check/OrderServiceBase.h"

#include "orderservice/base/Clock.h"
#include "orderservice/check/CommandGuard.h"
#include "orderservice/check/OrderKind.h"
#include "orderservice/platform/AlgorithmTradeHelper.h"
#include "orderservice/platform/HostCall.h"
#include "orderservice/platform/LuaModuleCtrl.h"
#include "orderservice/platform/OrderClient.h"
#include "orderservice/platform/Switches.h"
#include "orderservice/platform/TradingRules.h"

#include <boost/make_shared.hpp>

#include <algorithm>
#include <iterator>

namespace TC {
namespace {

using knservice::DataHelper;

/// The kinds of user that may send commands, the kind whose commands are proposals, and the kinds whose
/// commands are decisions.
constexpr int kCommandUserKinds[] = {90, 91, 101, 100, 80, 92};
constexpr int kProposingUserKind = 100;
constexpr int kDecidingUserKinds[] = {101, 200, 102};

template<std::size_t N>
bool isInList(int value, const int (&list)[N]) {
    return std::find(std::begin(list), std::end(list), value) != std::end(list);
}

/// The setting slot of a family's default remark, and its trader type. The row of the share-transfer market
/// intentionally has the trader type of the Shenzhen connect. So this table differs from the one of
/// getStrategyTradeType on purpose.
struct CCmdLogRow {
    EOrderStrategyTradeType m_eTradeType;
    ESettingSlot m_eSlot;
    EQdTraderType m_eTraderType;
};

constexpr CCmdLogRow kCmdLogRows[] = {
    {EOrderStrategyTradeType::Stock, ESettingSlot::Stock, EQdTraderType::Stock},
    {EOrderStrategyTradeType::Future, ESettingSlot::Future, EQdTraderType::FutureSpeculation},
    {EOrderStrategyTradeType::Basket, ESettingSlot::StockBasket, EQdTraderType::Basket},
    {EOrderStrategyTradeType::Credit, ESettingSlot::Credit, EQdTraderType::Credit},
    {EOrderStrategyTradeType::StockOption, ESettingSlot::StockOption, EQdTraderType::Option},
    {EOrderStrategyTradeType::SGT, ESettingSlot::SGT, EQdTraderType::SGT},
    {EOrderStrategyTradeType::HGT, ESettingSlot::HGT, EQdTraderType::HGT},
    {EOrderStrategyTradeType::Neeq, ESettingSlot::Neeq, EQdTraderType::SGT},
    {EOrderStrategyTradeType::Gold, ESettingSlot::Gold, EQdTraderType::Gold},
};

} // namespace

bool isCmdUser() {
    const CUserConfig* user = getUserConfig();
    return user != nullptr && isInList(hostCall<&CUserConfig::getUserKind>.on(*user), kCommandUserKinds);
}

void COrderServiceBase::doOrderCommand(EQdTraderType traderType, EQdHedgeType hedgeType,
                                       EFtSpecBtnBarType btnType, const std::vector<CCodeOrderParam>& codes,
                                       std::map<std::string, double> weights, EQdStopLossType stopLossType,
                                       bool unionCommand, CCommandCallback, bson::BSONObj extra,
                                       std::string tag, ETradePlatform platform, std::string algoParam,
                                       bool commandFlag, bool forceConfirm, std::string,
                                       const COrderParam& order, const COrderStrategyParam& strategy) const {
    const auto command = boost::make_shared<COrderComandParam>();
    command->m_codes = codes;
    if (isCommandGuardOn() && !leaveOutUnsellable(command->m_codes, order)) return;
    command->m_ePlatform = platform;
    command->m_strAlgoParam = std::move(algoParam);
    const EOrderType orderType = chosenOrderType(order, strategy);
    if (DataHelper::isAlgoOrderType(orderType)) {
        command->m_ePlatform = DataHelper::getPlatformTypeByOrderType(orderType);
        for (CCodeOrderParam& code : command->m_codes)
            code.m_eOrderType = orderType;
        command->m_strAlgoParam = get3rdAlgoParam(order, command->m_codes, strategy);
    }
    command->m_eTraderType = traderType;
    command->m_eHedgeType = hedgeType;
    command->m_eBtnType = btnType;
    command->m_weights = std::move(weights);
    command->m_eStopLossType = stopLossType;
    command->m_bUnion = unionCommand;
    command->m_extra = std::move(extra);
    command->m_strTag = std::move(tag);
    command->m_bCommandFlag = commandFlag;
    command->m_bForceConfirm = forceConfirm;
    command->m_eStrategyType = strategy.m_eStrategyType;
    command->m_strRemark = order.m_strRemark;
    command->m_strCreateTime =
        utils::currentDateTime().toString(QStringLiteral("yyyy-MM-dd hh:mm:ss:zzz")).toStdString();
    sendCommand(command, order);
}

void COrderServiceBase::sendCommand(const COrderComandParamPtr& command, const COrderParam& order) const {
    if (isCommandGuardOn() && !passesCommandGuard(*command, order)) return;
    hostCall<&COrderClient::orderCommands>(command);
}

std::string COrderServiceBase::get3rdAlgoParam(const COrderParam& order,
                                               const std::vector<CCodeOrderParam>& codes,
                                               const COrderStrategyParam& strategy) const {
    const EOrderType orderType = chosenOrderType(order, strategy);
    if (!DataHelper::isAlgoOrderType(orderType)) return {};
    if (!order.m_strOrderSetting.empty()) {
        constexpr int kFinalText = 1;
        if (order.m_nSettingKind == kFinalText) return order.m_strOrderSetting;
        // The record is created here. The host may fill it or replace it with its own record.
        CAlgorithmOrderSettingPtr setting = boost::make_shared<CAlgorithmOrderSetting>();
        if (!hostCall<&CAlgorithmTradeHelper::getAlgOrderSettingFromString>(order.m_strOrderSetting, setting))
            return {};
        return hostCall<&CAlgorithmTradeHelper::getAlgParamsStr>(orderType, setting, codes);
    }
    if (strategy.m_algoSetting)
        return hostCall<&CAlgorithmTradeHelper::getAlgParamsStr>(orderType, strategy.m_algoSetting, codes);
    return {};
}

void COrderServiceBase::saveOrderCommand(COrderComandParamPtr) const {}

QString COrderServiceBase::getTitle() const {
    const CUserConfig* user = getUserConfig();
    if (user != nullptr && luawrapper::isOrderSwitchOn(kPbDisplaySwitch)) {
        const int kind = hostCall<&CUserConfig::getUserKind>.on(*user);
        if (kind == kProposingUserKind) return QStringLiteral("下达投资建议");
        if (isInList(kind, kDecidingUserKinds)) return QStringLiteral("下达投资决策");
    }
    return QStringLiteral("下达指令");
}

std::string COrderServiceBase::getCmdLog(const COrderStrategyParam& strategy,
                                         EQdTraderType& traderType) const {
    for (const CCmdLogRow& row : kCmdLogRows) {
        if (row.m_eTradeType != strategy.m_eTradeType) continue;
        traderType = row.m_eTraderType;
        return strategy.setting(row.m_eSlot).m_strCmdLog;
    }
    return {};
}

} // namespace TC
