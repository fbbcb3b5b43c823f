#pragma once

#include "orderservice/base/Export.h"
#include "orderservice/platform/UserConfig.h"

#include <string>

namespace kit {

/// An account that consists only of its record.
class ORDERSERVICE_EXPORT CPlainAccount : public TC::CAccount {
public:
    /// key: UTF-8, unique among the user's accounts.
    CPlainAccount(const std::string& key, TC::EQDBrokerType broker);
    TC::CAccountInfoPtr toInfo() const override { return m_info; }

private:
    TC::CAccountInfoPtr m_info;
};

/// A user with single accounts: no groups, no baskets, no table rows. Orders must specify their price,
/// because no other price type is allowed or set by default. A host that provides other price types overrides
/// isPriceTypeValid and getDefaultOrderSetting.
///
/// The host implements hasOrderService, getUserName, getUserKind, getMaxOrderServerNum and getAccountData.
/// Any thread, like CUserConfig.
class ORDERSERVICE_EXPORT CUserConfigBase : public TC::CUserConfig {
public:
    /// The user has no rights. Rights only affect words in messages as long as hasOrderService() is true.
    bool hasUserAuth(TC::EUserAuth) const override { return false; }
    bool hasShowTradeFrameworkPermission() const override { return false; }
    bool hasOrderEncryptionService() const override { return false; }

    /// 0. Only called if the switch "mdl_order_split_orderNum" is on, and for the two-pass variant.
    int getMaxOrderServerNumSocket() const override { return 0; }
    /// 50 milliseconds.
    int getMinFileServiceInterval() const override;
    /// Both flags are off.
    TC::CMsgFlags getMsgFlags(TC::EMsgTypeDef) const override { return {}; }

    /// True: the two-pass variant asks the user before each batch.
    bool testHintBeforeOrderFlag(int) const override { return true; }
    /// False: there are no settings for all users.
    bool testGlobalOrderHint(int) const override { return false; }

    /// There are no groups: always null.
    const TC::CAccountGroup* getAccountGroupConst(TC::EQDBrokerType, const QString&) const override {
        return nullptr;
    }
    /// Whether getAccountData knows the key.
    bool hasAccount(const QString& name) const override;
    /// There are no accounts of table rows.
    bool hasSimpleAccount(const QString&) const override { return false; }
    /// Appends the account of that key with the ratio 1, if it has this broker type. Appends nothing for a
    /// group.
    void getAccountsWeights(TC::EQDBrokerType broker, TC::ESelectedAccountType kind, const QString& name,
                            std::vector<TC::CAccountInfoPtr>& accounts, std::vector<double>& ratios,
                            bool simple) const override;

    /// True only for specified prices.
    bool isPriceTypeValid(TC::EPriceType priceType, TC::EOperationType operation, TC::EQDBrokerType broker,
                          const std::string& market, const std::string& code,
                          TC::EOrderType orderType) const override;
    /// A plain order at a specified price.
    TC::COrderSetting getDefaultOrderSetting(TC::EDefaultSetting which) const override;
    /// There are no baskets.
    TC::CBasketMap getBaskets() const override { return {}; }
    /// A map that this object owns. The host may fill it before COrderService::loadFromConfig.
    TC::COrderStrategyMap* getStrategyMap() override { return &m_strategies; }

private:
    TC::COrderStrategyMap m_strategies;
};

} // namespace kit
