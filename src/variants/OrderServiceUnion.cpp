#include "orderservice/variants/OrderServiceUnion.h"

#include "orderservice/base/FindRow.h"
#include "orderservice/base/Log.h"
#include "orderservice/check/CommandRequest.h"
#include "orderservice/check/Reports.h"
#include "orderservice/platform/HostCall.h"
#include "orderservice/platform/IntakeAudit.h"
#include "orderservice/platform/LuaModuleCtrl.h"
#include "orderservice/platform/Switches.h"
#include "orderservice/records/Families.h"
#include "orderservice/variants/CommandLines.h"
#include "orderservice/variants/FamilyTable.h"
#include "orderservice/variants/MapSource.h"
#include "orderservice/variants/VariantSteps.h"

#include <map>
#include <string>
#include <utility>
#include <vector>

namespace TC {
namespace {

using luawrapper::isOrderSwitchOn;

/// Only an order of the source BatchPending can have a family that differs from its strategy's.
EOrderStrategyTradeType tradeTypeOf(const COrderParam& order, const COrderStrategyParam& strategy) {
    const bool isOverridden =
        order.m_nTradeTypeOverride != -1 && order.m_eStrategyType == EOrderStrategyType::BatchPending;
    return isOverridden ? static_cast<EOrderStrategyTradeType>(order.m_nTradeTypeOverride)
                        : strategy.m_eTradeType;
}

constexpr const char* kBatchEnded =
    "an order before them has no strategy, or one that may not trade, and ends its batch";
constexpr char kComposeFunction[] = "TC::COrderServiceUnion::orderCompose";

/// How this variant logs and makes the command of a family.
struct CUnionFamily {
    EOrderStrategyTradeType m_eTradeType;
    const char* m_pszFunction; ///< name in the log
    const char* m_pszLog;
    ECommandForm m_eForm;
};

// The log lines of most families say "stock speculation". They stay so because users search the log for them.
constexpr CUnionFamily kUnionFamilies[] = {
    {EOrderStrategyTradeType::Stock, "TC::COrderServiceUnion::orderStock", kStockLine, ECommandForm::Full},
    {EOrderStrategyTradeType::Future, "TC::COrderServiceUnion::orderSpec", kFutureLine, ECommandForm::Full},
    {EOrderStrategyTradeType::Basket, kComposeFunction, kBasketLine, ECommandForm::Full},
    {EOrderStrategyTradeType::FutureBasket, kComposeFunction, kBasketLine, ECommandForm::Full},
    {EOrderStrategyTradeType::Credit, "TC::COrderServiceUnion::orderCredit", kCreditLine, ECommandForm::Full},
    {EOrderStrategyTradeType::StockOption, "TC::COrderServiceUnion::orderOption", kStockLine,
     ECommandForm::Full},
    {EOrderStrategyTradeType::FutureOption, "TC::COrderServiceUnion::orderFutureOption", kStockLine,
     ECommandForm::Bare},
    {EOrderStrategyTradeType::SGT, "TC::COrderServiceUnion::orderSGT", kStockLine, ECommandForm::Bare},
    {EOrderStrategyTradeType::HGT, "TC::COrderServiceUnion::orderHGT", kStockLine, ECommandForm::Bare},
    {EOrderStrategyTradeType::Neeq, "TC::COrderServiceUnion::orderNeeq", kStockLine, ECommandForm::Bare},
    {EOrderStrategyTradeType::Gold, "TC::COrderServiceUnion::orderGold", kStockLine, ECommandForm::Bare},
};

const CUnionFamily* findUnionFamily(EOrderStrategyTradeType tradeType) {
    return utils::findRow(kUnionFamilies,
                          [&](const CUnionFamily& row) { return row.m_eTradeType == tradeType; });
}

/// An order that passed its check.
struct CChecked {
    const COrderParam& order;
    const COrderStrategyParam& strategy;
    std::vector<CCodeOrderParam> codes{};
    std::map<std::string, double> weights{};
};

/// Makes and sends the command of a basket. `service` is the object in the log line.
void issueBasket(const COrderServiceUnion* service, const CUnionFamily& row, CChecked& checked) {
    const COrderParam& order = checked.order;
    const COrderStrategyParam& strategy = checked.strategy;
    CCommandRequest request =
        makeBasketRequest(order, strategy, std::move(checked.codes), std::move(checked.weights));
    const bool isHedged = request.m_eHedgeType == EQdHedgeType::Hedge;
    logCommand(service, row.m_pszFunction, isHedged ? kHedgeLine : row.m_pszLog);
    request.m_bUnion = true;
    request.m_bForceConfirm = isOrderSwitchOn(kForceConfirmSwitch);
    if (isHedged)
        request.m_extra = hedgeLeg(order.m_nOrderType, strategy);
    else
        request.m_strTag = std::to_string(strategy.m_nChannel);
    issueCommand(std::move(request), order, strategy);
}

/// Makes and sends the command of every other family. A command is sent even if the check gave no records.
void issueFamily(const COrderServiceUnion* service, const CVariantFamily& family, const CUnionFamily& row,
                 CChecked& checked) {
    logCommand(service, row.m_pszFunction, row.m_pszLog);
    CCommandRequest request =
        makeFamilyRequest(family, checked.order, std::move(checked.codes), std::move(checked.weights));
    request.m_bUnion = true;
    request.m_strTag = std::to_string(checked.strategy.m_nChannel);
    request.m_bForceConfirm = isOrderSwitchOn(kForceConfirmSwitch);
    request.m_eForm = row.m_eForm;
    issueCommand(std::move(request), checked.order, checked.strategy);
}

} // namespace

COrderServiceUnion::COrderServiceUnion(QObject* parent) : COrderServiceBase(parent) {}

void COrderServiceUnion::filterStrategies(COrderStrategyMap* strategies) {
    const CUserConfig* user = getUserConfig();
    if (strategies == nullptr || user == nullptr) return;
    if (!isOrderSwitchOn(kSplitOrderNumSwitch)) {
        keepFirst(*strategies, hostCall<&CUserConfig::getMaxOrderServerNum>.on(*user),
                  [](const COrderStrategyParam&) { return true; });
        return;
    }
    keepFirstOfType(*strategies, hostCall<&CUserConfig::getMaxOrderServerNum>.on(*user),
                    EOrderStrategyType::File);
    keepFirstOfType(*strategies, hostCall<&CUserConfig::getMaxOrderServerNumSocket>.on(*user),
                    EOrderStrategyType::Signal);
}

void COrderServiceUnion::placeOrders(QVector<COrderParam> orders, const COrderStrategyMap* strategies) {
    if (strategies == nullptr) return;
    CMapSource source(*strategies);
    CWholeBatchOwner owner;
    processBatch(orders, source, owner);
}

CBatchResult COrderServiceUnion::processBatch(const QVector<COrderParam>& orders, IStrategySource& strategies,
                                              IBatchOwner& owner) {
    for (int i = 0; i < orders.size(); ++i) {
        const CEnd end = placeGuarded(orders.at(i), strategies, owner);
        if (!end) continue;
        if (*end == EBatchEnd::StoppedByOwner) return {*end, i};
        const int rest = orders.size() - i - 1;
        if (rest > 0) reportOrdersDropped(orders.at(i + 1).m_nChannel, rest, QString::fromUtf8(kBatchEnded));
        return {*end, i + 1};
    }
    return {EBatchEnd::Processed, orders.size()};
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
        utils::CLogCenter::log(utils::ELogLevel::Info, utils::kStdFileLogger, this,
                               "TC::COrderServiceUnion::placeOrders",
                               "param = " + order.toQString().toStdString());
    }
    if (!owner.mayBegin()) return EBatchEnd::StoppedByOwner;
    const COrderStrategyPtr strategy = strategies.strategyOf(order.m_nChannel);
    // The check reports a missing strategy too.
    if (!checkOrderParamValid(order, strategy.get())) return EBatchEnd::EndedByRule;
    announceOrder(order, *strategy);
    dispatch(order, *strategy);
    return std::nullopt;
}

/// Nothing is sent for a user who may not send commands.
void COrderServiceUnion::dispatch(const COrderParam& order, const COrderStrategyParam& strategy) const {
    const EOrderStrategyTradeType tradeType = tradeTypeOf(order, strategy);
    const CVariantFamily* family = findVariantFamily(tradeType);
    const CUnionFamily* row = findUnionFamily(tradeType);
    if (family == nullptr || row == nullptr) return showUnknownFamily(order);
    CChecked checked{order, strategy};
    if (!family->m_pfnCheck(order, strategy, checked.codes, checked.weights)) return;
    if (!mayIssue(order.m_nChannel, 1)) return;
    if (getStrategyTradeType(tradeType) == EQdTraderType::Basket)
        issueBasket(this, *row, checked);
    else
        issueFamily(this, *family, *row, checked);
}

} // namespace TC
