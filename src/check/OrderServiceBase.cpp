#include "orderservice/check/OrderServiceBase.h"

#include "orderservice/base/Text.h"
#include "orderservice/check/AccountLookup.h"
#include "orderservice/check/CheckFrame.h"
#include "orderservice/check/FamilyRules.h"
#include "orderservice/check/InstrumentSteps.h"
#include "orderservice/check/OrderKind.h"
#include "orderservice/check/PositionExchange.h"
#include "orderservice/check/Reports.h"
#include "orderservice/check/Volumes.h"
#include "orderservice/platform/HostReports.h"
#include "orderservice/platform/TradingRules.h"

namespace TC {
namespace {

/// Reports a refusal that ends its batch. It must not throw: if the message panel failed with an exception,
/// the rest of the batch would still be traded.
void reportRefusal(EOrderStrategyType type, int channel, const QString& pattern) {
    reportSafely(utils::fillText(pattern, {safeOrderStrategyText(type), QString::number(channel)}));
}

void reportMissingStrategy(EOrderStrategyType type, int channel) {
    reportRefusal(type, channel, QStringLiteral("[%1]　通道号: %2, 找不到对应的策略!"));
}

} // namespace

COrderServiceBase::COrderServiceBase(QObject* parent) : QObject(parent) {}

COrderServiceBase::~COrderServiceBase() = default;

void COrderServiceBase::placeLegalOrders(QVector<orderParamForOrderService>, const COrderStrategyMap*) {}

bool COrderServiceBase::mayAsk(const QVector<orderParamForOrderService>&,
                               const COrderStrategyMap&) const noexcept {
    return true;
}

const COrderStrategyParam* COrderServiceBase::getStrategy(int channel, const COrderStrategyMap* strategies,
                                                          EOrderStrategyType type) const {
    if (strategies != nullptr) {
        const auto found = strategies->constFind(channel);
        if (found != strategies->constEnd()) return &found.value();
    }
    reportMissingStrategy(type, channel);
    return nullptr;
}

bool COrderServiceBase::checkAccount(const COrderStrategyParam* strategy) const {
    const CUserConfig* user = getUserConfig();
    return strategy != nullptr && user != nullptr &&
           hasSelectedAccounts(*user, *strategy, EAccountLookup::ByTableMode);
}

bool COrderServiceBase::checkOrderParamValid(const COrderParam& order,
                                             const COrderStrategyParam* strategy) const {
    const auto refuse = [&](const QString& pattern) {
        reportRefusal(order.m_eStrategyType, order.m_nChannel, pattern);
        return false;
    };
    if (strategy == nullptr) {
        reportMissingStrategy(order.m_eStrategyType, order.m_nChannel);
        return false;
    }
    if (!checkAccount(strategy))
        return refuse(QStringLiteral("[%1]　通道号: %2, 账号组或账号为空, 请重新设置策略!"));
    if (!strategy->isRunning()) return refuse(QStringLiteral("[%1]　通道号: %2, 对应的策略未启动!"));
    if (strategy->m_eStrategyType != order.m_eStrategyType) {
        // The text shows the source in both places and never the channel. It stays so because users know this
        // message.
        return refuse(QStringLiteral("[%1]　通道号: %1, 对应的策略类型不匹配!"));
    }
    return true;
}

bool COrderServiceBase::checkAccountKey(const COrderParam& order, const COrderStrategyParam& strategy,
                                        QString& accountKey, std::vector<CAccountInfoPtr>& accounts,
                                        std::vector<double>& ratios, std::map<std::string, double>& weights,
                                        bool fillWeights) const {
    if (!findOrderAccounts(order, strategy, accountKey, accounts, ratios)) return false;
    if (fillWeights) takeWeights(accounts, ratios, weights);
    return true;
}

bool COrderServiceBase::isPriceTypeVailed(const COrderSetting& setting, const COrderParam& order,
                                          const CPriceDataPtr& priceData, EOperationType op,
                                          EQDBrokerType broker, const CStockInfo& stock) const {
    return isPriceTypeUsable(setting, order, priceData, op, broker, stock);
}

EOrderType COrderServiceBase::getOrderType(const COrderParam& order,
                                           const COrderStrategyParam& strategy) const {
    const EOrderType chosen = chosenOrderType(order, strategy);
    return isUnset(chosen) ? EOrderType::Plain : chosen;
}

ETradePlatform COrderServiceBase::getTradePlatform(const COrderParam& order,
                                                   const COrderStrategyParam& strategy) const {
    const EOrderType chosen = chosenOrderType(order, strategy);
    if (!knservice::DataHelper::isAlgoOrderType(chosen)) return ETradePlatform::Plain;
    return knservice::DataHelper::getPlatformTypeByOrderType(chosen);
}

EQdTraderType COrderServiceBase::getStrategyTradeType(EOrderStrategyTradeType tradeType) const {
    return TC::getStrategyTradeType(tradeType);
}

QString COrderServiceBase::getOrderStrategyText(EOrderStrategyType type) const {
    return orderStrategyText(type);
}

bool COrderServiceBase::checkAndFillOrderStock(COrderParam order, COrderStrategyParam strategy,
                                               std::vector<CCodeOrderParam>& codes,
                                               std::map<std::string, double>& weights) const {
    return checkStock(order, strategy, codes, weights);
}

bool COrderServiceBase::checkAndFillOrderSpec(COrderParam order, COrderStrategyParam strategy,
                                              std::vector<CCodeOrderParam>& codes,
                                              std::map<std::string, double>& weights) const {
    return checkFuture(order, strategy, codes, weights);
}

bool COrderServiceBase::checkAndFillOrderFutureOption(COrderParam order, COrderStrategyParam strategy,
                                                      std::vector<CCodeOrderParam>& codes,
                                                      std::map<std::string, double>& weights) const {
    return checkFutureOption(order, strategy, codes, weights);
}

bool COrderServiceBase::checkAndFillOrderOption(COrderParam order, COrderStrategyParam strategy,
                                                std::vector<CCodeOrderParam>& codes,
                                                std::map<std::string, double>& weights) const {
    return checkOption(order, strategy, codes, weights);
}

bool COrderServiceBase::checkAndFillOrderSGT(COrderParam order, COrderStrategyParam strategy,
                                             std::vector<CCodeOrderParam>& codes,
                                             std::map<std::string, double>& weights) const {
    return checkSgt(order, strategy, codes, weights);
}

bool COrderServiceBase::checkAndFillOrderHGT(COrderParam order, COrderStrategyParam strategy,
                                             std::vector<CCodeOrderParam>& codes,
                                             std::map<std::string, double>& weights) const {
    return checkHgt(order, strategy, codes, weights);
}

bool COrderServiceBase::checkAndFillOrderGold(COrderParam order, COrderStrategyParam strategy,
                                              std::vector<CCodeOrderParam>& codes,
                                              std::map<std::string, double>& weights) const {
    return checkGold(order, strategy, codes, weights);
}

bool COrderServiceBase::checkAndFillOrderCredit(COrderParam order, COrderStrategyParam strategy,
                                                std::vector<CCodeOrderParam>& codes,
                                                std::map<std::string, double>& weights) const {
    return checkCredit(order, strategy, codes, weights);
}

bool COrderServiceBase::checkAndFillOrderNeeq(COrderParam order, COrderStrategyParam strategy,
                                              std::vector<CCodeOrderParam>& codes,
                                              std::map<std::string, double>& weights) const {
    return checkNeeq(order, strategy, codes, weights);
}

bool COrderServiceBase::checkAndFillOrderCompose(COrderParam& order, COrderStrategyParam strategy,
                                                 std::vector<CCodeOrderParam>& codes,
                                                 std::map<std::string, double>& weights) const {
    return checkBasketRows(order, order.m_orders, strategy, codes, weights);
}

void COrderServiceBase::exchangePositionStock(boost::shared_ptr<CAccountInfo> account,
                                              QVector<COrderSingleParam>& rows, int multiplier) const {
    exchangePosition(account, rows, multiplier);
}

void COrderServiceBase::calcVolumnByWeight(QVector<COrderSingleParam>& rows, double amount) const {
    TC::calcVolumnByWeight(rows, amount);
}

boost::shared_ptr<CQuoteRequest> COrderServiceBase::prepareCode(const QString& code,
                                                                std::vector<CAccountInfoPtr>&) const {
    return requestQuotes(code);
}

} // namespace TC
