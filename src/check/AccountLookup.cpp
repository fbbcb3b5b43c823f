#include "orderservice/check/AccountLookup.h"

#include "orderservice/base/Text.h"
#include "orderservice/check/Reports.h"
#include "orderservice/platform/HostCall.h"
#include "orderservice/platform/TradingRules.h"
#include "orderservice/records/Families.h"

#include <cstddef>

namespace TC {
namespace {

/// The strategy's family if it trades on two kinds of account, otherwise null. The host says on which kind
/// the other families trade.
const CFamily* familyOfTwoBrokers(const COrderStrategyParam& strategy) {
    const CFamily* family = findFamily(strategy.m_eTradeType);
    return family != nullptr && family->m_eBrokerType != family->m_eSecondBrokerType ? family : nullptr;
}

} // namespace

const CAccountGroup* findAccountGroup(const CUserConfig& user, const COrderStrategyParam& strategy) {
    const auto groupOf = [&](EQDBrokerType broker) {
        return hostCall<&CUserConfig::getAccountGroupConst>.on(user, broker, strategy.m_strSelectedAccount);
    };
    const CFamily* family = familyOfTwoBrokers(strategy);
    if (family == nullptr) return groupOf(orderStrategyTradeTypeToBrokerType(strategy.m_eTradeType));
    const CAccountGroup* group = groupOf(family->m_eBrokerType);
    return group != nullptr ? group : groupOf(family->m_eSecondBrokerType);
}

bool hasSelectedAccounts(const CUserConfig& user, const COrderStrategyParam& strategy,
                         EAccountLookup lookup) {
    const QString& name = strategy.m_strSelectedAccount;
    switch (strategy.m_eSelectedAccountType) {
    case ESelectedAccountType::Group:
        return !name.isEmpty() && findAccountGroup(user, strategy) != nullptr;
    case ESelectedAccountType::Account:
        if (lookup == EAccountLookup::ByTableMode &&
            strategy.m_nAccountMode == COrderStrategyParam::kTableMode) {
            return hostCall<&CUserConfig::hasSimpleAccount>.on(user, name);
        }
        return hostCall<&CUserConfig::hasAccount>.on(user, name);
    }
    return false;
}

void appendAccounts(const CUserConfig& user, const COrderStrategyParam& strategy, const QString& name,
                    std::vector<CAccountInfoPtr>& accounts, std::vector<double>& ratios) {
    const auto appendOf = [&](EQDBrokerType broker, bool simple) {
        hostCall<&CUserConfig::getAccountsWeights>.on(user, broker, strategy.m_eSelectedAccountType, name,
                                                      accounts, ratios, simple);
    };
    if (const CFamily* family = familyOfTwoBrokers(strategy)) {
        appendOf(family->m_eBrokerType, false);
        if (accounts.empty()) appendOf(family->m_eSecondBrokerType, false);
        return;
    }
    appendOf(orderStrategyTradeTypeToBrokerType(strategy.m_eTradeType),
             strategy.m_nAccountMode == COrderStrategyParam::kTableMode);
}

bool findOrderAccounts(const COrderParam& order, const COrderStrategyParam& strategy, QString& accountKey,
                       std::vector<CAccountInfoPtr>& accounts, std::vector<double>& ratios) {
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
    return true;
}

void takeWeights(const std::vector<CAccountInfoPtr>& accounts, const std::vector<double>& ratios,
                 std::map<std::string, double>& weights) {
    if (ratios.size() != accounts.size()) return;
    for (std::size_t i = 0; i < accounts.size(); ++i) {
        if (accounts[i]) weights[hostCall<&CAccountInfo::getKey>.on(*accounts[i])] = ratios[i];
    }
}

} // namespace TC
