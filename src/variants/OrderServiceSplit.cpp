#include "orderservice/variants/OrderServiceSplit.h"

#include "orderservice/base/FindRow.h"
#include "orderservice/check/CommandRequest.h"
#include "orderservice/check/Reports.h"
#include "orderservice/gates/OrderConfirmer.h"
#include "orderservice/platform/HostCall.h"
#include "orderservice/platform/HostReports.h"
#include "orderservice/platform/IntakeAudit.h"
#include "orderservice/platform/MsgService.h"
#include "orderservice/platform/TradingRules.h"
#include "orderservice/platform/UserConfig.h"
#include "orderservice/records/Families.h"
#include "orderservice/records/OrderTypes.h"
#include "orderservice/variants/CommandLines.h"
#include "orderservice/variants/FamilyTable.h"
#include "orderservice/variants/MapSource.h"
#include "orderservice/variants/VariantSteps.h"

#include <QString>

#include <map>
#include <string>
#include <utility>

namespace TC {
namespace {

using CCheckedOrders = QVector<orderParamForOrderService>;

bool mayFlagStock(int orderType) {
    return orderType != kOrderSell;
}
bool mayFlagFuture(int orderType) {
    constexpr int kOpenLong = 0;
    constexpr int kOpenShort = 3;
    return orderType == kOpenLong || orderType == kOpenShort;
}

/// How this variant logs the command of a family, and which orders have the strategy's command flag in their
/// command. For baskets this is the same in all variants (makeBasketRequest).
struct CSplitFamily {
    EOrderStrategyTradeType m_eTradeType;
    const char* m_pszFunction; ///< name in the log
    const char* m_pszLog;
    bool (*m_pfnMayFlag)(int orderType) = nullptr; ///< null: none
};

constexpr char kSplitCompose[] = "TC::COrderServiceSplit::orderCompose";

// The words of the lines differ from those of the one-pass variant. They stay so because users search the log
// for them.
constexpr CSplitFamily kSplitFamilies[] = {
    {EOrderStrategyTradeType::Stock, "TC::COrderServiceSplit::orderStock", kStockLine, mayFlagStock},
    {EOrderStrategyTradeType::Future, "TC::COrderServiceSplit::orderSpec", kFutureLine, mayFlagFuture},
    {EOrderStrategyTradeType::Basket, kSplitCompose, kBasketLine},
    {EOrderStrategyTradeType::FutureBasket, kSplitCompose, kBasketLine},
    {EOrderStrategyTradeType::Credit, "TC::COrderServiceSplit::orderCredit", kCreditLine},
    {EOrderStrategyTradeType::StockOption, "TC::COrderServiceSplit::orderOption", kStockLine},
    {EOrderStrategyTradeType::FutureOption, "TC::COrderServiceSplit::orderFutureOption", kFutureLine},
    {EOrderStrategyTradeType::SGT, "TC::COrderServiceSplit::orderSGT", kCreditLine},
    {EOrderStrategyTradeType::HGT, "TC::COrderServiceSplit::orderHGT", kCreditLine},
    {EOrderStrategyTradeType::Neeq, "TC::COrderServiceSplit::orderNeeq", kCreditLine},
    {EOrderStrategyTradeType::Gold, "TC::COrderServiceSplit::orderGold", kCreditLine},
};

const CSplitFamily* findSplitFamily(EOrderStrategyTradeType tradeType) {
    return utils::findRow(kSplitFamilies,
                          [&](const CSplitFamily& row) { return row.m_eTradeType == tradeType; });
}

/// The request for the command of a checked order, except the parameters of a hedge leg.
CCommandRequest makeRequest(const CSplitFamily& row, const orderParamForOrderService& order,
                            const COrderStrategyParam& strategy) {
    if (getStrategyTradeType(row.m_eTradeType) == EQdTraderType::Basket)
        return makeBasketRequest(order, strategy, order.m_codes, order.m_weights);
    const CVariantFamily& family = *findVariantFamily(row.m_eTradeType);
    CCommandRequest request = makeFamilyRequest(family, order, order.m_codes, order.m_weights);
    request.m_bCommandFlag =
        strategy.m_bCommandFlag && row.m_pfnMayFlag != nullptr && row.m_pfnMayFlag(order.m_nOrderType);
    return request;
}

/// Which of the user's settings ask for a confirmation of orders of a source.
struct CHint {
    EOrderStrategyType m_eStrategyType;
    const char* m_pszTitle; ///< start of the question's title
    int m_nBit;
};

constexpr CHint kHints[] = {
    {EOrderStrategyType::File, "文件单", kHintOrderFiles},
    {EOrderStrategyType::Signal, "信号单", kHintSocketOrders},
    {EOrderStrategyType::BatchPending, "预埋单", kHintTableBatches},
};

/// Null for a source that always needs a confirmation.
const CHint* findHint(EOrderStrategyType type) {
    return utils::findRow(kHints, [&](const CHint& row) { return row.m_eStrategyType == type; });
}

bool needsConfirmation(const CUserConfig& user, const CHint* hint) {
    return hint == nullptr || hostCall<&CUserConfig::testHintBeforeOrderFlag>.on(user, hint->m_nBit) ||
           hostCall<&CUserConfig::testGlobalOrderHint>.on(user, hint->m_nBit);
}

std::string nameOf(const CUserConfig* user) {
    return user != nullptr ? hostCall<&CUserConfig::getUserName>.on(*user) : std::string();
}

CConfirmQuestion makeQuestion(const CCheckedOrders& orders, EOrderStrategyTradeType tradeType,
                              QString title) {
    CConfirmQuestion question;
    question.m_strTitle = std::move(title);
    question.m_eTraderType = getStrategyTradeType(tradeType);
    for (int i = 0; i < orders.size(); ++i) {
        const orderParamForOrderService& order = orders.at(i);
        if (!order.m_codes.empty()) question.m_rows.emplace(i, order.m_codes.back());
        question.m_remarks.emplace(i, order.m_strRemark);
    }
    return question;
}

void reportToAuditOnly(const CCheckedOrders& orders, const char* cause) {
    reportOrdersDropped(orders.first().m_nChannel, orders.size(), QString::fromUtf8(cause));
}

void reportUnconfirmed(const CCheckedOrders& orders, const QString& reason) {
    reportNotExecuted(orders.first(), orders.size(), reason,
                      QStringLiteral("the batch was not confirmed: ") + reason);
}

/// Whether the answer lets the commands go out. If not, reports the batch.
bool isAccepted(const CConfirmAnswer& answer, const CCheckedOrders& orders) {
    switch (answer.m_eResult) {
    case EConfirmResult::Accepted:
        return true;
    case EConfirmResult::NotAsked:
        reportUnconfirmed(orders, answer.m_strReason);
        return false;
    case EConfirmResult::Declined:
        break;
    }
    reportToAuditOnly(orders, "the batch was declined");
    return false;
}

} // namespace

/// The orders that passed their checks, and the latest strategies that checked them, by channel.
struct COrderServiceSplit::CLegal {
    CCheckedOrders orders;
    std::map<int, COrderStrategyPtr> strategies;
};

COrderServiceSplit::COrderServiceSplit(QObject* parent) : COrderServiceBase(parent) {}

void COrderServiceSplit::filterStrategies(COrderStrategyMap* strategies) {
    const CUserConfig* const user = getUserConfig();
    if (strategies == nullptr || user == nullptr) return;
    const auto mayUse = [user](EUserAuth right) {
        return hostCall<&CUserConfig::hasUserAuth>.on(*user, right);
    };
    const int fileLimit =
        mayUse(EUserAuth::FileOrders) ? hostCall<&CUserConfig::getMaxOrderServerNum>.on(*user) : 0;
    const int signalLimit =
        mayUse(EUserAuth::SignalOrders) ? hostCall<&CUserConfig::getMaxOrderServerNumSocket>.on(*user) : 0;
    keepFirstOfType(*strategies, fileLimit, EOrderStrategyType::File);
    keepFirstOfType(*strategies, signalLimit, EOrderStrategyType::Signal);
}

void COrderServiceSplit::placeOrders(QVector<COrderParam> orders, const COrderStrategyMap* strategies) {
    if (orders.isEmpty() || strategies == nullptr) return;
    CMapSource source(*strategies);
    CWholeBatchOwner owner;
    CLegal legal;
    checkBatch(orders, source, owner, legal);
    if (!legal.orders.isEmpty()) emit sigPlaceLegalOrders(legal.orders, strategies);
}

CBatchResult COrderServiceSplit::processBatch(const QVector<COrderParam>& orders, IStrategySource& strategies,
                                              IBatchOwner& owner) {
    CLegal legal;
    const CBatchResult result = checkBatch(orders, strategies, owner, legal);
    if (!legal.orders.isEmpty()) emitGuarded(legal);
    return result;
}

/// An exception must not end the batch: its owner still has orders to report.
void COrderServiceSplit::emitGuarded(const CLegal& legal) {
    try {
        COrderStrategyMap used;
        for (const auto& [channel, strategy] : legal.strategies)
            used.insert(channel, *strategy);
        emit sigPlaceLegalOrders(legal.orders, &used);
    } catch (...) {
        reportUnconfirmed(legal.orders, QStringLiteral("待确认指令未发出: ") + exceptionText());
    }
}

CBatchResult COrderServiceSplit::checkBatch(const QVector<COrderParam>& orders, IStrategySource& strategies,
                                            IBatchOwner& owner, CLegal& legal) {
    legal.orders.reserve(orders.size());
    for (int i = 0; i < orders.size(); ++i) {
        const COrderParam& order = orders.at(i);
        try {
            if (!checkNext(order, strategies, owner, legal)) return {EBatchEnd::StoppedByOwner, i};
        } catch (...) {
            reportOrderFailure(order.m_eStrategyType, order.m_nChannel);
        }
    }
    return {EBatchEnd::Processed, orders.size()};
}

/// Returns false if the owner ends the batch before this order.
bool COrderServiceSplit::checkNext(const COrderParam& order, IStrategySource& strategies, IBatchOwner& owner,
                                   CLegal& legal) {
    if (!owner.mayBegin()) return false;
    const COrderStrategyPtr strategy = strategies.strategyOf(order.m_nChannel);
    orderParamForOrderService checked(order);
    if (!checkOrder(checked, strategy.get())) return true;
    legal.strategies[order.m_nChannel] = strategy;
    legal.orders.push_back(std::move(checked));
    return true;
}

/// The family is always that of the strategy, also for an order that names another one.
bool COrderServiceSplit::checkOrder(orderParamForOrderService& order,
                                    const COrderStrategyParam* strategy) const {
    // The check reports a missing strategy too.
    if (!checkOrderParamValid(order, strategy)) return false;
    announceOrder(order, *strategy);
    const CVariantFamily* const family = findVariantFamily(strategy->m_eTradeType);
    if (family == nullptr) {
        showUnknownFamily(order);
        return false;
    }
    if (!family->m_pfnCheck(order, *strategy, order.m_codes, order.m_weights)) return false;
    if (order.m_codes.empty()) {
        showOrderFailureMsg(QStringLiteral("指令生成失败,未选择账号或所选账号下单量为0"),
                            EMsgTypeDef::OrderFailure);
        return false;
    }
    CCommonDataHelper::filterZeroStock(order.m_codes);
    CCommonDataHelper::fillOverFreqOrderMode(order.m_codes);
    if (!order.m_codes.empty()) return true;
    // Users know both messages. This one uses the flags of general messages.
    showOrderFailureMsg(QStringLiteral("下单失败，未选择账号或所选账号下单量为0"), EMsgTypeDef::General);
    return false;
}

void COrderServiceSplit::placeLegalOrders(QVector<orderParamForOrderService> orders,
                                          const COrderStrategyMap* strategies) {
    if (orders.isEmpty() || strategies == nullptr) return;
    const orderParamForOrderService& first = orders.at(0);
    const COrderStrategyParam* const strategy =
        getStrategy(first.m_nChannel, strategies, first.m_eStrategyType);
    if (strategy == nullptr) return reportToAuditOnly(orders, "the first order of the batch has no strategy");
    if (!isConfirmed(orders, *strategy) || !mayIssue(first.m_nChannel, orders.size())) return;
    const EOrderStrategyTradeType tradeType = strategy->m_eTradeType;
    if (findSplitFamily(tradeType) == nullptr)
        return reportToAuditOnly(orders, "the trade type of the first order's strategy has no family");
    for (const orderParamForOrderService& order : qAsConst(orders))
        issueGuarded(tradeType, order, strategies);
}

bool COrderServiceSplit::mayAsk(const QVector<orderParamForOrderService>& orders,
                                const COrderStrategyMap& strategies) const noexcept {
    try {
        const CUserConfig* const user = getUserConfig();
        if (orders.isEmpty() || user == nullptr) return false;
        const auto strategy = strategies.constFind(orders.first().m_nChannel);
        return strategy != strategies.cend() && needsConfirmation(*user, findHint(strategy->m_eStrategyType));
    } catch (...) {
        return true;
    }
}

/// Asks the user if needed. Reports a batch that is not confirmed. The records belong to the accounts of the
/// user who was logged in before the question, so another user cannot confirm them. Without a user nobody is
/// asked: mayIssue drops the batch then.
bool COrderServiceSplit::isConfirmed(const QVector<orderParamForOrderService>& orders,
                                     const COrderStrategyParam& strategy) const {
    try {
        const CUserConfig* const user = getUserConfig();
        const std::string userName = nameOf(user);
        const CHint* const hint = findHint(strategy.m_eStrategyType);
        if (user == nullptr || !needsConfirmation(*user, hint)) return true;
        const QString prefix = hint != nullptr ? QString::fromUtf8(hint->m_pszTitle) : QString();
        const CConfirmAnswer answer =
            askForConfirmation(makeQuestion(orders, strategy.m_eTradeType, prefix + getTitle()));
        if (!isAccepted(answer, orders)) return false;
        if (getUserConfig() == user && nameOf(user) == userName) return true;
        reportUnconfirmed(orders, QStringLiteral("用户已切换"));
    } catch (...) {
        reportUnconfirmed(orders, QStringLiteral("确认失败: ") + exceptionText());
    }
    return false;
}

/// If an order throws an exception, this order is dropped with a report.
void COrderServiceSplit::issueGuarded(EOrderStrategyTradeType tradeType,
                                      const orderParamForOrderService& order,
                                      const COrderStrategyMap* strategies) const {
    try {
        issue(tradeType, order, strategies);
    } catch (...) {
        reportOrderFailure(order.m_eStrategyType, order.m_nChannel);
    }
}

/// The remark of the command is the order's own, so a remark of the confirmation reaches no command.
void COrderServiceSplit::issue(EOrderStrategyTradeType tradeType, const orderParamForOrderService& order,
                               const COrderStrategyMap* strategies) const {
    const COrderStrategyParam* const strategy =
        getStrategy(order.m_nChannel, strategies, order.m_eStrategyType);
    if (strategy == nullptr) return;
    const CSplitFamily& row = *findSplitFamily(tradeType);
    CCommandRequest request = makeRequest(row, order, *strategy);
    const bool isHedged = request.m_eHedgeType == EQdHedgeType::Hedge;
    if (isHedged) request.m_extra = hedgeLeg(order.m_nOrderType, *strategy);
    logCommand(this, row.m_pszFunction, isHedged ? kHedgeLine : row.m_pszLog);
    issueCommand(std::move(request), order, *strategy);
}

} // namespace TC
