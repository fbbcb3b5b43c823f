#pragma once

#include "desk/config/DeskConfig.h"
#include "orderservice/platform/UserConfig.h"

#include <array>
#include <functional>
#include <map>
#include <string>
#include <utility>
#include <vector>

namespace desk {

/// Where a desk with a window keeps the layouts of the tables of a confirmation, by the id of the table. Main
/// thread. They must not throw.
struct CTableLayouts {
    std::function<QString(const QString& id)> m_read;
    std::function<void(const QString& id, const QString& layout)> m_keep;
};

/// An account of a desk folder.
struct CDeskAccountInfo : TC::CAccountInfo {
    std::string m_strDisplayId; ///< may be empty
};

/// The text by which the user knows the account: its display id or, if it has none, its key. Any thread.
std::string displayIdOf(const TC::CAccountInfo& account);

/// The user of a desk folder. Any thread. The answers do not change after construction, except for the
/// strategies, which the order service manages from loadFromConfig on.
class CDeskUserConfig : public TC::CUserConfig {
public:
    explicit CDeskUserConfig(const CDeskConfig& config);

    bool hasOrderService() const override { return m_user.orderService; }
    bool hasUserAuth(TC::EUserAuth right) const override {
        return m_user.rights.count(static_cast<int>(right)) > 0;
    }
    bool hasShowTradeFrameworkPermission() const override { return m_user.tradeFramework; }
    bool hasOrderEncryptionService() const override { return m_user.orderEncryption; }
    std::string getUserName() const override { return m_user.name; }
    int getUserKind() const override { return m_user.kind; }
    int getMaxOrderServerNum() const override { return m_user.maxStrategies; }
    int getMaxOrderServerNumSocket() const override { return m_user.maxSocketStrategies; }
    int getMinFileServiceInterval() const override { return m_user.fileIntervalMs; }
    /// The folder's hint_bits.
    bool testHintBeforeOrderFlag(int bit) const override { return (m_user.hintBits & bit) != 0; }
    /// False: a folder has one user only.
    bool testGlobalOrderHint(int) const override { return false; }
    TC::CMsgFlags getMsgFlags(TC::EMsgTypeDef type) const override;
    const TC::CAccountGroup* getAccountGroupConst(TC::EQDBrokerType broker,
                                                  const QString& name) const override;
    bool hasAccount(const QString& name) const override;
    bool hasSimpleAccount(const QString& name) const override;
    void getAccountsWeights(TC::EQDBrokerType broker, TC::ESelectedAccountType kind, const QString& name,
                            std::vector<TC::CAccountInfoPtr>& accounts, std::vector<double>& ratios,
                            bool simple) const override;
    std::vector<TC::CAccountPtr> getAccounts() const override;
    TC::CAccountPtr getAccountData(const QString& key) const override;
    /// The user may use specified prices and every price type that the desk's quotes have.
    bool isPriceTypeValid(TC::EPriceType type, TC::EOperationType, TC::EQDBrokerType, const std::string&,
                          const std::string&, TC::EOrderType) const override;
    TC::COrderSetting getDefaultOrderSetting(TC::EDefaultSetting which) const override;
    /// Baskets of futures have the setting of futures.
    std::array<TC::COrderSetting, TC::kDefaultSlots> getDefaultOrderSettings() const override;
    TC::CBasketMap getBaskets() const override { return m_baskets; }
    TC::COrderStrategyMap* getStrategyMap() override { return &m_strategies; }

    /// Without layouts, none is kept. Call it before the first confirmation.
    void setTableLayouts(CTableLayouts layouts) { m_layouts = std::move(layouts); }
    QString getTableLayout(const QString& id) const override {
        return m_layouts.m_read ? m_layouts.m_read(id) : QString();
    }
    void saveTableLayout(const QString& id, const QString& layout) override {
        if (m_layouts.m_keep) m_layouts.m_keep(id, layout);
    }

private:
    struct CGroup {
        TC::CAccountGroup group;
        std::vector<double> weights; ///< one for each account, from the folder
    };
    struct CAccount {
        TC::CAccountInfoPtr info;
        bool simple = false;
    };
    const CAccount* findAccount(const QString& name) const;

    const CUserEntry m_user;
    std::map<std::string, CAccount> m_accounts;
    std::vector<TC::CAccountPtr> m_accountList; ///< in the order of the folder
    std::map<std::pair<TC::EQDBrokerType, std::string>, CGroup> m_groups;
    const TC::CBasketMap m_baskets;
    const std::map<TC::EDefaultSetting, TC::COrderSetting> m_defaults;
    TC::COrderStrategyMap m_strategies;
    CTableLayouts m_layouts;
};

/// The desk's user is always logged in.
class CDeskUserManager : public TC::CUserManager {
public:
    explicit CDeskUserManager(CDeskUserConfig& user) : m_user(user) {}
    TC::CUserConfig* getUserConfig() override { return &m_user; }

private:
    CDeskUserConfig& m_user;
};

} // namespace desk
