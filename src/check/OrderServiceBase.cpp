#include "orderservice/check/OrderServiceBase.h"

#include "orderservice/base/Text.h"
#include "orderservice/check/AccountLookup.h"
#include "orderservice/check/OrderKind.h"
#include "orderservice/check/PositionExchange.h"
#include "orderservice/check/Reports.h"
#include "orderservice/check/Volumes.h"
#include "orderservice/platform/HostCall.h"
#include "orderservice/platform/HostReports.h"
#include "orderservice/platform/TradingRules.h"

#include <cmath>

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

/// Whether the price is given and not zero. Only exactly DBL_MAX means "not set" here, without the tolerance
/// of isInvalidPrice. Files may contain "nan" or "inf" as a number. Neither is a price, and an order with it
/// is refused: no order can be filled at an infinite price, and the host could treat it as a market price.
bool isPriceGiven(double price) {
    return price != kUnsetDouble && std::isfinite(price) && std::fabs(price) > kPriceTolerance;
}

} // namespace

COrderServiceBase::COrderServiceBase(QObject* parent) : QObject(parent) {}

COrderServiceBase::~COrderServiceBase() = default;

void COrderServiceBase::placeLegalOrders(QVector<orderParamForOrderService>, const COrderStrategyMap*) {}

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
    if (!order.m_strAccountKeyPart1.isEmpty() && !order.m_strAccountKeyPart2.isEmpty()) {
        accountKey = getAccountFromOrderParam(order.m_strAccountKeyPart1, order.m_strAccountKeyPart2);
    }
    if (const CUserConfig* user = getUserConfig())
        appendAccounts(*user, strategy, accountKey, accounts, ratios);
    if (accounts.empty()) {
        showCheckFailure(utils::fillText(
            QStringLiteral("[%1]　通道号: %2, 指定账号不可用!"),
            {orderStrategyText(order.m_eStrategyType), QString::number(strategy.m_nChannel)}));
        return false;
    }
    if (fillWeights && ratios.size() == accounts.size()) {
        for (std::size_t i = 0; i < accounts.size(); ++i) {
            if (accounts[i]) weights[hostCall<&CAccountInfo::getKey>.on(*accounts[i])] = ratios[i];
        }
    }
    return true;
}

bool COrderServiceBase::isPriceTypeVailed(const COrderSetting& setting, const COrderParam& order,
                                          const CPriceDataPtr& priceData, EOperationType op,
                                          EQDBrokerType broker, const CStockInfo& stock) const {
    if (setting.m_ePriceType == EPriceType::Specified) {
        return !order.m_orders.isEmpty() && isPriceGiven(order.m_orders.first().m_dPrice);
    }
    const CUserConfig* user = getUserConfig();
    if (!priceData || user == nullptr) return false;
    if (!hostCall<&CUserConfig::isPriceTypeValid>.on(*user, setting.m_ePriceType, op, broker,
                                                     stock.m_strMarket, stock.m_strCode,
                                                     setting.m_eOrderType)) {
        return false;
    }
    const double price =
        hostCall<&CPriceData::getPriceForOrder>.on(*priceData, setting.m_ePriceType, op, 0, {});
    return knservice::isMarketPrice(setting.m_ePriceType) || isPriceGiven(price);
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

void COrderServiceBase::exchangePositionStock(boost::shared_ptr<CAccountInfo> account,
                                              QVector<COrderSingleParam>& rows, int multiplier) const {
    exchangePosition(account, rows, multiplier);
}

void COrderServiceBase::calcVolumnByWeight(QVector<COrderSingleParam>& rows, double amount) const {
    TC::calcVolumnByWeight(rows, amount);
}

boost::shared_ptr<CQuoteRequest> COrderServiceBase::prepareCode(const QString& code,
                                                                std::vector<CAccountInfoPtr>&) const {
    return CQuoteRequest::makeRequest(code, {}, ESubscribeType::Plain);
}

} // namespace TC
