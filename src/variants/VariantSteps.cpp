#include "orderservice/variants/VariantSteps.h"

#include "orderservice/base/Log.h"
#include "orderservice/base/Text.h"
#include "orderservice/base/Unset.h"
#include "orderservice/check/OrderServiceBase.h"
#include "orderservice/check/Reports.h"
#include "orderservice/platform/IntakeAudit.h"
#include "orderservice/platform/LuaModuleCtrl.h"
#include "orderservice/platform/MsgService.h"
#include "orderservice/platform/Switches.h"
#include "orderservice/platform/TradingRules.h"
#include "orderservice/records/Basket.h"
#include "orderservice/records/Families.h"
#include "orderservice/records/OrderTypes.h"

#include <QString>

#include <utility>

namespace TC {

void keepFirstOfType(COrderStrategyMap& strategies, int limit, EOrderStrategyType type) {
    keepFirst(strategies, limit,
              [type](const COrderStrategyParam& strategy) { return strategy.m_eStrategyType == type; });
}

void logCommand(const void* object, const char* function, const char* text) {
    if (!utils::CLogCenter::logEnabled()) return;
    utils::CLogCenter::log(utils::ELogLevel::Info, utils::kStdFileLogger, object, function, text);
}

void announceOrder(const COrderParam& order, const COrderStrategyParam& strategy) {
    showServiceMsg(
        utils::fillText(QStringLiteral("[%1]　通道号: %2, 通道类型: %3, 下单类型: %4, 策略类型: %5"),
                        {orderStrategyText(order.m_eStrategyType), QString::number(order.m_nChannel),
                         orderStrategyTradeTypeToString(strategy.m_eTradeType),
                         orderStrategyOrderTypeToString(order.m_nOrderType),
                         orderStrategyTypeToString(order.m_eStrategyType)}));
}

void showUnknownFamily(const COrderParam& order) {
    showServiceMsg(
        utils::fillText(QStringLiteral("[%1]　通道号: %2, 交易类型错误!"),
                        {orderStrategyText(order.m_eStrategyType), QString::number(order.m_nChannel)}));
}

bool mayIssue(int channel, int orders) {
    if (isCmdUser()) return true;
    reportOrdersDropped(channel, orders, QStringLiteral("this kind of user may not issue commands"));
    return false;
}

bool mayHaveCommandFlag(int orderType) {
    return orderType != kOrderBasketSell && !isTargetOrder(orderType) && orderType != kOrderPosition;
}

CCommandRequest makeBasketRequest(const COrderParam& order, const COrderStrategyParam& strategy,
                                  std::vector<CCodeOrderParam> codes, std::map<std::string, double> weights) {
    const bool isHedged = luawrapper::isOrderSwitchOn(kComposeHedgeSwitch) && strategy.m_bHedgeBasket;
    CCommandRequest request;
    request.m_eTraderType = EQdTraderType::Basket;
    request.m_eHedgeType = isHedged ? EQdHedgeType::Hedge : EQdHedgeType::Compose;
    request.m_strAlgoParam = algoParamOf(order, codes, strategy);
    if (request.m_strAlgoParam.empty()) request.m_strAlgoParam = order.m_strBasketText;
    request.m_codes = std::move(codes);
    request.m_weights = std::move(weights);
    request.m_bCommandFlag = strategy.m_bCommandFlag && mayHaveCommandFlag(order.m_nOrderType);
    return request;
}

CCommandRequest makeFamilyRequest(const CVariantFamily& family, const COrderParam& order,
                                  std::vector<CCodeOrderParam> codes, std::map<std::string, double> weights) {
    CCommandRequest request;
    request.m_eTraderType = getStrategyTradeType(family.m_eTradeType);
    request.m_eBtnType = family.buttonOf(order.m_nOrderType);
    request.m_codes = std::move(codes);
    request.m_weights = std::move(weights);
    return request;
}

bson::BSONObj hedgeLeg(int orderType, const COrderStrategyParam& strategy) {
    EOperationType operation = unsetEnum<EOperationType>();
    if (orderType == kOrderBasketBuy) operation = EOperationType::Buy;
    if (orderType == kOrderBasketSell || orderType == kOrderPosition) operation = EOperationType::Sell;
    return hedgeDocument(operation, strategy);
}

} // namespace TC
