#include "orderservice/check/AccountLookup.h"

#include "orderservice/platform/HostCall.h"
#include "orderservice/platform/TradingRules.h"

namespace TC {

const CAccountGroup* findAccountGroup(const CUserConfig& user, const COrderStrategyParam& strategy) {
    const QString& name = strategy.m_strSelectedAccount;
    if (strategy.m_eTradeType != EOrderStrategyTradeType::Basket) {
        return hostCall<&CUserConfig::getAccountGroupConst>.on(
            user, orderStrategyTradeTypeToBrokerType(strategy.m_eTradeType), name);
    }
    const CAccountGroup* group =
        hostCall<&CUserConfig::getAccountGroupConst>.on(user, EQDBrokerType::Stock, name);
    return group != nullptr
               ? group
               : hostCall<&CUserConfig::getAccountGroupConst>.on(user, EQDBrokerType::Credit, name);
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
    const ESelectedAccountType kind = strategy.m_eSelectedAccountType;
    if (strategy.m_eTradeType == EOrderStrategyTradeType::Basket) {
        hostCall<&CUserConfig::getAccountsWeights>.on(user, EQDBrokerType::Stock, kind, name, accounts,
                                                      ratios, false);
        if (accounts.empty())
            hostCall<&CUserConfig::getAccountsWeights>.on(user, EQDBrokerType::Credit, kind, name, accounts,
                                                          ratios, false);
        return;
    }
    const bool simple = strategy.m_nAccountMode == COrderStrategyParam::kTableMode;
    hostCall<&CUserConfig::getAccountsWeights>.on(user,
                                                  orderStrategyTradeTypeToBrokerType(strategy.m_eTradeType),
                                                  kind, name, accounts, ratios, simple);
}

} // namespace TC
