#include "orderservice/variants/OrderServiceUnion.h"

#include "orderservice/base/Log.h"
#include "orderservice/base/Text.h"
#include "orderservice/check/Reports.h"
#include "orderservice/platform/HostCall.h"
#include "orderservice/platform/IntakeAudit.h"
#include "orderservice/platform/LuaModuleCtrl.h"
#include "orderservice/platform/MsgService.h"
#include "orderservice/platform/Switches.h"
#include "orderservice/platform/TradingRules.h"
#include "orderservice/variants/MapSource.h"

#include <boost/make_shared.hpp>

#include <algorithm>
#include <iterator>
#include <utility>

namespace TC {
namespace {

using luawrapper::isOrderSwitchOn;

/// Keeps the first `limit` strategies of one kind, in key order, and erases the others of this kind. `counts`
/// tells whether a strategy is of the kind.
template<typename Predicate>
void keepFirst(COrderStrategyMap& strategies, int limit, const Predicate& counts) {
    int count = 0;
    for (auto it = strategies.begin(); it != strategies.end();) {
        const bool over = counts(it.value()) && count++ >= limit;
        it = over ? strategies.erase(it) : std::next(it);
    }
}

/// Only an order of the source BatchPending can have a family that differs from its strategy's.
EOrderStrategyTradeType tradeTypeOf(const COrderParam& order, const COrderStrategyParam& strategy) {
    const bool isOverridden =
        order.m_nTradeTypeOverride != -1 && order.m_eStrategyType == EOrderStrategyType::BatchPending;
    return isOverridden ? static_cast<EOrderStrategyTradeType>(order.m_nTradeTypeOverride)
                        : strategy.m_eTradeType;
}

constexpr const char* kBatchEnded =
    "an order before them has no strategy, or one that may not trade, and ends its batch";
constexpr const char* kNoCommandUser = "this kind of user may not issue commands";

/// The button of the trading panel that corresponds to a futures order.
EFtSpecBtnBarType buttonOf(int orderType) {
    if (isCloseFirstButton(orderType)) return EFtSpecBtnBarType::CloseFirst;
    if (isOpenOrCloseButton(orderType)) return EFtSpecBtnBarType::OpenOrClose;
    return EFtSpecBtnBarType::OpenClose;
}

/// Whether the command may have the strategy's command flag. Basket sales, target positions and single
/// positions never have it.
bool mayCarryFlag(int orderType) {
    return orderType != kOrderBasketSell && !isTargetOrder(orderType) && orderType != kOrderPosition;
}

/// The parameters of the hedge leg, with its price kind: one for buying, another for all other operations.
bson::BSONObj hedgeLeg(int orderType, const COrderStrategyParam& strategy) {
    constexpr int kPriceWhenBuying = 3;
    constexpr int kPriceOtherwise = 9;
    EOperationType operation = unsetEnum<EOperationType>();
    if (orderType == kOrderBasketBuy) operation = EOperationType::Buy;
    if (orderType == kOrderBasketSell || orderType == kOrderPosition) operation = EOperationType::Sell;
    CBasketHedgeParam hedge;
    hedge.bsonValueFromObj(strategy.m_hedgeParam);
    hedge.m_nPriceKind = isBuy(operation) ? kPriceWhenBuying : kPriceOtherwise;
    return hedge.toBson();
}

/// Whether the user may send commands. If not, only the audit is told; the user sees no message.
bool mayIssue(const COrderParam& order) {
    if (isCmdUser()) return true;
    tellOrdersDropped(order.m_nChannel, 1, QString::fromUtf8(kNoCommandUser));
    return false;
}

/// The owner of a batch that is always processed to its end.
class CPatientOwner final : public IBatchOwner {
public:
    bool mayBegin() override { return true; }
};

void logInfo(const void* object, const char* function, const std::string& text) {
    utils::CLogCenter::log(utils::ELogLevel::Info, utils::kStdFileLogger, object, function, text);
}

} // namespace

/// The functions of one family: the check of an order, and how its command is made.
struct COrderServiceUnion::CFamilyOperation {
    EOrderStrategyTradeType m_eTradeType;
    const char* m_pszFunction; ///< name in the log
    bool (COrderServiceBase::*m_pfnCheck)(COrderParam, COrderStrategyParam, std::vector<CCodeOrderParam>&,
                                          std::map<std::string, double>&) const;
    EFtSpecBtnBarType (*m_pfnButtonOf)(int orderType); ///< null: no button
    const char* m_pszLog;
    void (COrderServiceUnion::*m_pfnIssue)(const CFamilyOperation& family, const CChecked& checked) const;
};

/// An order that passed its check.
struct COrderServiceUnion::CChecked {
    const COrderParam& order;
    const COrderStrategyParam& strategy;
    std::vector<CCodeOrderParam> codes{};
    std::map<std::string, double> weights{};
};

// The log lines of most families say "stock speculation". They stay so because users search the log for them.
const COrderServiceUnion::CFamilyOperation COrderServiceUnion::s_operations[] = {
    {EOrderStrategyTradeType::Stock, "TC::COrderServiceUnion::orderStock",
     &COrderServiceBase::checkAndFillOrderStock, nullptr, "placeCommands: [orderservice] stock speculation.",
     &COrderServiceUnion::issueCommand},
    {EOrderStrategyTradeType::Future, "TC::COrderServiceUnion::orderSpec",
     &COrderServiceBase::checkAndFillOrderSpec, buttonOf, "placeCommands: [orderservice] future speculation.",
     &COrderServiceUnion::issueCommand},
    {EOrderStrategyTradeType::Credit, "TC::COrderServiceUnion::orderCredit",
     &COrderServiceBase::checkAndFillOrderCredit, nullptr, "placeCommands: [orderservice] credit operation.",
     &COrderServiceUnion::issueCommand},
    {EOrderStrategyTradeType::StockOption, "TC::COrderServiceUnion::orderOption",
     &COrderServiceBase::checkAndFillOrderOption, nullptr, "placeCommands: [orderservice] stock speculation.",
     &COrderServiceUnion::issueCommand},
    {EOrderStrategyTradeType::FutureOption, "TC::COrderServiceUnion::orderFutureOption",
     &COrderServiceBase::checkAndFillOrderFutureOption, nullptr,
     "placeCommands: [orderservice] stock speculation.", &COrderServiceUnion::issueBareCommand},
    {EOrderStrategyTradeType::SGT, "TC::COrderServiceUnion::orderSGT",
     &COrderServiceBase::checkAndFillOrderSGT, nullptr, "placeCommands: [orderservice] stock speculation.",
     &COrderServiceUnion::issueBareCommand},
    {EOrderStrategyTradeType::HGT, "TC::COrderServiceUnion::orderHGT",
     &COrderServiceBase::checkAndFillOrderHGT, nullptr, "placeCommands: [orderservice] stock speculation.",
     &COrderServiceUnion::issueBareCommand},
    {EOrderStrategyTradeType::Neeq, "TC::COrderServiceUnion::orderNeeq",
     &COrderServiceBase::checkAndFillOrderNeeq, nullptr, "placeCommands: [orderservice] stock speculation.",
     &COrderServiceUnion::issueBareCommand},
    {EOrderStrategyTradeType::Gold, "TC::COrderServiceUnion::orderGold",
     &COrderServiceBase::checkAndFillOrderGold, nullptr, "placeCommands: [orderservice] stock speculation.",
     &COrderServiceUnion::issueBareCommand},
};

COrderServiceUnion::COrderServiceUnion(QObject* parent) : COrderServiceBase(parent) {}

void COrderServiceUnion::filterStrategies(COrderStrategyMap* strategies) {
    const CUserConfig* user = getUserConfig();
    if (strategies == nullptr || user == nullptr) return;
    if (!isOrderSwitchOn(kSplitOrderNumSwitch)) {
        keepFirst(*strategies, hostCall<&CUserConfig::getMaxOrderServerNum>.on(*user),
                  [](const COrderStrategyParam&) { return true; });
        return;
    }
    const auto isOfType = [](EOrderStrategyType type) {
        return [type](const COrderStrategyParam& strategy) { return strategy.m_eStrategyType == type; };
    };
    keepFirst(*strategies, hostCall<&CUserConfig::getMaxOrderServerNum>.on(*user),
              isOfType(EOrderStrategyType::File));
    keepFirst(*strategies, hostCall<&CUserConfig::getMaxOrderServerNumSocket>.on(*user),
              isOfType(EOrderStrategyType::Signal));
}

void COrderServiceUnion::placeOrders(QVector<COrderParam> orders, const COrderStrategyMap* strategies) {
    if (strategies == nullptr) return;
    CMapSource source(*strategies);
    CPatientOwner owner;
    workOff(orders, source, owner);
}

CBatchResult COrderServiceUnion::workOff(const QVector<COrderParam>& orders, IStrategySource& strategies,
                                         IBatchOwner& owner) {
    for (int i = 0; i < orders.size(); ++i) {
        const CEnd end = placeGuarded(orders.at(i), strategies, owner);
        if (!end) continue;
        if (*end == EBatchEnd::CutByOwner) return {*end, i};
        const int rest = orders.size() - i - 1;
        if (rest > 0) tellOrdersDropped(orders.at(i + 1).m_nChannel, rest, QString::fromUtf8(kBatchEnded));
        return {*end, i + 1};
    }
    return {EBatchEnd::WorkedOff, orders.size()};
}

/// If an order throws an exception, this order is dropped with a report, and the batch continues.
COrderServiceUnion::CEnd COrderServiceUnion::placeGuarded(const COrderParam& order,
                                                          IStrategySource& strategies, IBatchOwner& owner) {
    try {
        return placeOrder(order, strategies, owner);
    } catch (...) {
        reportOrderFailure(order.m_eStrategyType, order.m_nChannel);
    }
    return std::nullopt;
}

COrderServiceUnion::CEnd COrderServiceUnion::placeOrder(const COrderParam& order, IStrategySource& strategies,
                                                        IBatchOwner& owner) {
    if (utils::CLogCenter::logEnabled()) {
        logInfo(this, "TC::COrderServiceUnion::placeOrders", "param = " + order.toQString().toStdString());
    }
    if (!owner.mayBegin()) return EBatchEnd::CutByOwner;
    const COrderStrategyPtr strategy = strategies.strategyOf(order.m_nChannel);
    // The check reports a missing strategy too.
    if (!checkOrderParamValid(order, strategy.get())) return EBatchEnd::EndedByRule;
    announce(order, *strategy);
    dispatch(order, *strategy);
    return std::nullopt;
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
    if (tradeType == EOrderStrategyTradeType::Basket || tradeType == EOrderStrategyTradeType::FutureBasket)
        return orderCompose(order, strategy);
    const auto operation =
        std::find_if(std::begin(s_operations), std::end(s_operations),
                     [&](const CFamilyOperation& row) { return row.m_eTradeType == tradeType; });
    if (operation != std::end(s_operations)) return orderFamily(*operation, order, strategy);
    showServiceMsg(
        utils::fillText(QStringLiteral("[%1]　通道号: %2, 交易类型错误!"),
                        {orderStrategyText(order.m_eStrategyType), QString::number(order.m_nChannel)}));
}

/// Nothing is sent for a user who may not send commands. A command is sent even if the check gave no codes.
void COrderServiceUnion::orderFamily(const CFamilyOperation& family, const COrderParam& order,
                                     const COrderStrategyParam& strategy) const {
    CChecked checked{order, strategy};
    if (!(this->*family.m_pfnCheck)(order, strategy, checked.codes, checked.weights)) return;
    if (!mayIssue(order)) return;
    if (utils::CLogCenter::logEnabled()) logInfo(this, family.m_pszFunction, family.m_pszLog);
    (this->*family.m_pfnIssue)(family, checked);
}

void COrderServiceUnion::issueCommand(const CFamilyOperation& family, const CChecked& checked) const {
    const EFtSpecBtnBarType button = family.m_pfnButtonOf != nullptr
                                         ? family.m_pfnButtonOf(checked.order.m_nOrderType)
                                         : EFtSpecBtnBarType::None;
    doOrderCommand(getStrategyTradeType(family.m_eTradeType), EQdHedgeType::None, button, checked.codes,
                   checked.weights, EQdStopLossType::None, true, {}, {},
                   std::to_string(checked.strategy.m_nChannel), ETradePlatform::Plain, {}, false,
                   isOrderSwitchOn(kForceConfirmSwitch), checked.order.m_strRemark, checked.order,
                   checked.strategy);
}

/// These commands have no time, tag, algorithm text or platform.
void COrderServiceUnion::issueBareCommand(const CFamilyOperation& family, const CChecked& checked) const {
    const auto command = boost::make_shared<COrderComandParam>();
    command->m_eTraderType = getStrategyTradeType(family.m_eTradeType);
    command->m_eHedgeType = EQdHedgeType::None;
    command->m_eBtnType = EFtSpecBtnBarType::None;
    command->m_codes = checked.codes;
    command->m_weights = checked.weights;
    command->m_eStopLossType = EQdStopLossType::None;
    command->m_bUnion = true;
    command->m_bForceConfirm = isOrderSwitchOn(kForceConfirmSwitch);
    command->m_eStrategyType = checked.order.m_eStrategyType;
    command->m_strRemark = checked.order.m_strRemark;
    sendCommand(command, checked.order);
}

void COrderServiceUnion::orderCompose(COrderParam order, const COrderStrategyParam& strategy) const {
    std::vector<CCodeOrderParam> codes;
    std::map<std::string, double> weights;
    if (!checkAndFillOrderCompose(order, strategy, codes, weights) || !mayIssue(order)) return;
    const bool isHedged = isOrderSwitchOn(kComposeHedgeSwitch) && strategy.m_bHedgeBasket;
    std::string algoParam = get3rdAlgoParam(order, codes, strategy);
    if (algoParam.empty()) algoParam = order.m_strBasketText;
    if (utils::CLogCenter::logEnabled()) {
        logInfo(this, "TC::COrderServiceUnion::orderCompose",
                isHedged ? "placeCommands: [orderservice] basket hedge."
                         : "placeCommands: [orderservice] basket compose.");
    }
    doOrderCommand(EQdTraderType::Basket, isHedged ? EQdHedgeType::Hedge : EQdHedgeType::Compose,
                   EFtSpecBtnBarType::None, codes, std::move(weights), EQdStopLossType::None, true, {},
                   isHedged ? hedgeLeg(order.m_nOrderType, strategy) : bson::BSONObj(),
                   isHedged ? std::string() : std::to_string(strategy.m_nChannel), ETradePlatform::Plain,
                   std::move(algoParam), strategy.m_bCommandFlag && mayCarryFlag(order.m_nOrderType),
                   isOrderSwitchOn(kForceConfirmSwitch), order.m_strRemark, order, strategy);
}

} // namespace TC
