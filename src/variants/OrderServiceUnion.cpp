#include "variants/OrderServiceUnion.h"

#include "base/Log.h"
#include "base/Text.h"
#include "check/Reports.h"
#include "platform/LuaModuleCtrl.h"
#include "platform/MsgService.h"
#include "platform/TradingRules.h"

#include <algorithm>
#include <exception>
#include <iterator>
#include <utility>

namespace TC {
namespace {

using luawrapper::isOrderSwitchOn;

/// Erases the strategies of one kind that come after the first `limit`, in key order. `counts` says which are
/// of it.
template<typename Predicate>
void keepFirst(COrderStrategyMap& strategies, int limit, const Predicate& counts) {
    int count = 0;
    for (auto it = strategies.begin(); it != strategies.end();) {
        const bool over = counts(it.value()) && count++ >= limit;
        it = over ? strategies.erase(it) : std::next(it);
    }
}

/// Only a batch pending order can leave its strategy's family.
EOrderStrategyTradeType tradeTypeOf(const COrderParam& order, const COrderStrategyParam& strategy) {
    const bool isOverridden =
        order.m_nTradeTypeOverride != -1 && order.m_eStrategyType == EOrderStrategyType::BatchPending;
    return isOverridden ? static_cast<EOrderStrategyTradeType>(order.m_nTradeTypeOverride)
                        : strategy.m_eTradeType;
}

void logInfo(const void* object, const char* function, const std::string& text) {
    utils::CLogCenter::log(utils::ELogLevel::Info, utils::kStdFileLogger, object, function, text);
}

} // namespace

struct COrderServiceUnion::CFamilyOperation {
    EOrderStrategyTradeType m_eTradeType;
    void (COrderServiceUnion::*m_pfnOrder)(COrderParam, const COrderStrategyParam&);
};

const COrderServiceUnion::CFamilyOperation COrderServiceUnion::s_operations[] = {
    {EOrderStrategyTradeType::Stock, &COrderServiceUnion::orderStock},
    {EOrderStrategyTradeType::Future, &COrderServiceUnion::refuseFamily},
    {EOrderStrategyTradeType::Basket, &COrderServiceUnion::refuseFamily},
    {EOrderStrategyTradeType::FutureBasket, &COrderServiceUnion::refuseFamily},
    {EOrderStrategyTradeType::Credit, &COrderServiceUnion::refuseFamily},
    {EOrderStrategyTradeType::StockOption, &COrderServiceUnion::refuseFamily},
    {EOrderStrategyTradeType::FutureOption, &COrderServiceUnion::refuseFamily},
    {EOrderStrategyTradeType::SGT, &COrderServiceUnion::refuseFamily},
    {EOrderStrategyTradeType::HGT, &COrderServiceUnion::refuseFamily},
    {EOrderStrategyTradeType::Neeq, &COrderServiceUnion::refuseFamily},
    {EOrderStrategyTradeType::Gold, &COrderServiceUnion::refuseFamily},
};

COrderServiceUnion::COrderServiceUnion(CBeforeOrder beforeOrder, QObject* parent)
    : COrderServiceBase(parent), m_beforeOrder(std::move(beforeOrder)) {}

void COrderServiceUnion::filterStrategies(COrderStrategyMap* strategies) {
    const CUserConfig* user = getUserConfig();
    if (strategies == nullptr || user == nullptr) return;
    if (!isOrderSwitchOn("mdl_order_split_orderNum")) {
        keepFirst(*strategies, user->getMaxOrderServerNum(), [](const COrderStrategyParam&) { return true; });
        return;
    }
    const auto isOfType = [](EOrderStrategyType type) {
        return [type](const COrderStrategyParam& strategy) { return strategy.m_eStrategyType == type; };
    };
    keepFirst(*strategies, user->getMaxOrderServerNum(), isOfType(EOrderStrategyType::File));
    keepFirst(*strategies, user->getMaxOrderServerNumSocket(), isOfType(EOrderStrategyType::Signal));
}

void COrderServiceUnion::placeOrders(QVector<COrderParam> orders, const COrderStrategyMap* strategies) {
    if (strategies == nullptr) return;
    for (const COrderParam& order : qAsConst(orders)) {
        if (!placeGuarded(order, strategies)) return;
    }
}

/// An exception of the host's costs the order that it came over, with a word, and no other.
bool COrderServiceUnion::placeGuarded(const COrderParam& order, const COrderStrategyMap* strategies) {
    try {
        return placeOrder(order, strategies);
    } catch (const std::exception& error) {
        showCheckFailure(
            utils::fillText(QStringLiteral("[%1]　通道号: %2, 下单异常: %3"),
                            {orderStrategyText(order.m_eStrategyType), QString::number(order.m_nChannel),
                             QString::fromUtf8(error.what())}));
    }
    return true;
}

bool COrderServiceUnion::placeOrder(const COrderParam& order, const COrderStrategyMap* strategies) {
    if (utils::CLogCenter::logEnabled()) {
        logInfo(this, "TC::COrderServiceUnion::placeOrders", "param = " + order.toQString().toStdString());
    }
    if (m_beforeOrder) m_beforeOrder(order.m_nChannel);
    const COrderStrategyParam* strategy = getStrategy(order.m_nChannel, strategies, order.m_eStrategyType);
    if (strategy == nullptr || !checkOrderParamValid(order, strategy)) return false;
    announce(order, *strategy);
    dispatch(order, *strategy);
    return true;
}

void COrderServiceUnion::announce(const COrderParam& order, const COrderStrategyParam& strategy) const {
    showServiceMsg(
        utils::fillText(QStringLiteral("[%1]　通道号: %2, 通道类型: %3, 下单类型: %4, 策略类型: %5"),
                        {orderStrategyText(order.m_eStrategyType), QString::number(order.m_nChannel),
                         orderStrategyTradeTypeToString(strategy.m_eTradeType),
                         orderStrategyOrderTypeToString(order.m_nOrderType),
                         orderStrategyTypeToString(order.m_eStrategyType)}));
}

void COrderServiceUnion::dispatch(const COrderParam& order, const COrderStrategyParam& strategy) {
    const EOrderStrategyTradeType tradeType = tradeTypeOf(order, strategy);
    const auto operation =
        std::find_if(std::begin(s_operations), std::end(s_operations),
                     [&](const CFamilyOperation& row) { return row.m_eTradeType == tradeType; });
    if (operation != std::end(s_operations)) {
        (this->*operation->m_pfnOrder)(order, strategy);
        return;
    }
    showServiceMsg(
        utils::fillText(QStringLiteral("[%1]　通道号: %2, 交易类型错误!"),
                        {orderStrategyText(order.m_eStrategyType), QString::number(order.m_nChannel)}));
}

void COrderServiceUnion::orderStock(COrderParam order, const COrderStrategyParam& strategy) {
    std::vector<CCodeOrderParam> codes;
    std::map<std::string, double> weights;
    if (!checkAndFillOrderStock(order, strategy, codes, weights) || !isCmdUser()) return;
    if (utils::CLogCenter::logEnabled()) {
        logInfo(this, "TC::COrderServiceUnion::orderStock",
                "placeCommands: [orderservice] stock speculation.");
    }
    doOrderCommand(EQdTraderType::Stock, EQdHedgeType::None, EFtSpecBtnBarType::None, codes,
                   std::move(weights), EQdStopLossType::None, true, {}, {},
                   std::to_string(strategy.m_nChannel), ETradePlatform::Plain, {}, false,
                   isOrderSwitchOn("mdl_order_service_force_confirm"), order.m_strRemark, order, strategy);
}

void COrderServiceUnion::refuseFamily(COrderParam order, const COrderStrategyParam& strategy) {
    showCheckFailure(
        utils::fillText(QStringLiteral("[%1]　通道号: %2, 此版本尚不支持%3交易, 无法下单!"),
                        {orderStrategyText(order.m_eStrategyType), QString::number(strategy.m_nChannel),
                         orderStrategyTradeTypeToString(tradeTypeOf(order, strategy))}));
}

} // namespace TC
