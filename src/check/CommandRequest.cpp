#include "orderservice/check/CommandRequest.h"

#include "orderservice/base/Clock.h"
#include "orderservice/check/CommandGuard.h"
#include "orderservice/check/OrderKind.h"
#include "orderservice/platform/AlgorithmTradeHelper.h"
#include "orderservice/platform/HostCall.h"
#include "orderservice/platform/OrderClient.h"
#include "orderservice/platform/TradingRules.h"
#include "orderservice/records/Basket.h"

#include <boost/make_shared.hpp>

#include <utility>

namespace TC {
namespace {

using knservice::DataHelper;

/// The fields that commands of both forms have, except the records.
void takeCommonFields(CCommandRequest& request, const COrderParam& order, COrderComandParam& command) {
    command.m_eTraderType = request.m_eTraderType;
    command.m_eHedgeType = request.m_eHedgeType;
    command.m_eBtnType = request.m_eBtnType;
    command.m_weights = std::move(request.m_weights);
    command.m_eStopLossType = request.m_eStopLossType;
    command.m_bUnion = request.m_bUnion;
    command.m_extra = std::move(request.m_extra);
    command.m_bCommandFlag = request.m_bCommandFlag;
    command.m_bForceConfirm = request.m_bForceConfirm;
    command.m_strRemark = order.m_strRemark;
}

/// Takes platform and algorithm text of the request, or those of the algorithm that executes the order.
void takeAlgorithm(CCommandRequest& request, const COrderParam& order, const COrderStrategyParam& strategy,
                   COrderComandParam& command) {
    const EOrderType orderType = chosenOrderType(order, strategy);
    if (!DataHelper::isAlgoOrderType(orderType)) {
        command.m_ePlatform = request.m_ePlatform;
        command.m_strAlgoParam = std::move(request.m_strAlgoParam);
        return;
    }
    command.m_ePlatform = DataHelper::getPlatformTypeByOrderType(orderType);
    for (CCodeOrderParam& code : command.m_codes)
        code.m_eOrderType = orderType;
    command.m_strAlgoParam = algoParamOf(order, command.m_codes, strategy);
}

} // namespace

COrderComandParamPtr makeCommand(CCommandRequest request, const COrderParam& order,
                                 const COrderStrategyParam& strategy) {
    auto command = boost::make_shared<COrderComandParam>();
    command->m_codes = std::move(request.m_codes);
    if (request.m_eForm == ECommandForm::Bare) {
        takeCommonFields(request, order, *command);
        command->m_eStrategyType = order.m_eStrategyType;
        return command;
    }
    if (isCommandGuardOn() && !leaveOutUnsellable(command->m_codes, sourceOf(order))) return nullptr;
    takeAlgorithm(request, order, strategy, *command);
    takeCommonFields(request, order, *command);
    command->m_strTag = std::move(request.m_strTag);
    command->m_eStrategyType = strategy.m_eStrategyType;
    command->m_strCreateTime = utils::currentTimestamp();
    return command;
}

void sendCommand(const COrderComandParamPtr& command, const CCommandSource& source) {
    if (isCommandGuardOn() && !passesCommandGuard(*command, source)) return;
    hostCall<&COrderClient::orderCommands>(command);
}

void issueCommand(CCommandRequest request, const COrderParam& order, const COrderStrategyParam& strategy) {
    if (const auto command = makeCommand(std::move(request), order, strategy))
        sendCommand(command, sourceOf(order));
}

std::string algoParamOf(const COrderParam& order, const std::vector<CCodeOrderParam>& codes,
                        const COrderStrategyParam& strategy) {
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

bson::BSONObj hedgeDocument(EOperationType operation, const COrderStrategyParam& strategy) {
    constexpr int kPriceWhenBuying = 3;
    constexpr int kPriceOtherwise = 9;
    CBasketHedgeParam hedge;
    hedge.bsonValueFromObj(strategy.m_hedgeParam);
    hedge.m_nPriceKind = isBuy(operation) ? kPriceWhenBuying : kPriceOtherwise;
    return hedge.toBson();
}

} // namespace TC
