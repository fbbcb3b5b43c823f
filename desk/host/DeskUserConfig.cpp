#include "desk/host/DeskUserConfig.h"

#include <boost/make_shared.hpp>

namespace desk {
namespace {

class CConfiguredAccount : public TC::CAccount {
public:
    explicit CConfiguredAccount(TC::CAccountInfoPtr info) : m_info(std::move(info)) {}
    TC::CAccountInfoPtr toInfo() const override { return m_info; }

private:
    const TC::CAccountInfoPtr m_info;
};

} // namespace

std::string displayIdOf(const TC::CAccountInfo& account) {
    const auto* known = dynamic_cast<const CDeskAccountInfo*>(&account);
    return known != nullptr && !known->m_strDisplayId.empty() ? known->m_strDisplayId : account.getKey();
}

CDeskUserConfig::CDeskUserConfig(const CDeskConfig& config)
    : m_user(config.user), m_baskets(config.baskets), m_defaults(config.defaultSettings),
      m_strategies(config.strategies) {
    for (const CAccountEntry& entry : config.accounts) {
        const auto info = boost::make_shared<CDeskAccountInfo>();
        info->m_strKey = entry.key;
        info->m_strDisplayId = entry.displayId;
        info->m_nBrokerType = static_cast<int>(entry.broker);
        m_accounts[entry.key] = {info, entry.simple};
        m_accountList.push_back(boost::make_shared<CConfiguredAccount>(info));
    }
    for (const CGroupEntry& entry : config.groups) {
        CGroup& group = m_groups[{entry.broker, entry.name}];
        group.group.m_eBrokerType = entry.broker;
        group.group.m_strName = entry.name;
        for (const CGroupMember& member : entry.members) {
            group.group.m_accounts.push_back(member.accountKey);
            group.weights.push_back(member.weight);
        }
    }
}

TC::CMsgFlags CDeskUserConfig::getMsgFlags(TC::EMsgTypeDef type) const {
    const auto found = m_user.msgFlags.find(static_cast<int>(type));
    return found != m_user.msgFlags.end() ? TC::CMsgFlags{found->second.first, found->second.second}
                                          : TC::CMsgFlags{};
}

const TC::CAccountGroup* CDeskUserConfig::getAccountGroupConst(TC::EQDBrokerType broker,
                                                               const QString& name) const {
    const auto found = m_groups.find({broker, name.toStdString()});
    return found != m_groups.end() ? &found->second.group : nullptr;
}

const CDeskUserConfig::CAccount* CDeskUserConfig::findAccount(const QString& name) const {
    const auto found = m_accounts.find(name.toStdString());
    return found != m_accounts.end() ? &found->second : nullptr;
}

bool CDeskUserConfig::hasAccount(const QString& name) const {
    return findAccount(name) != nullptr;
}

bool CDeskUserConfig::hasSimpleAccount(const QString& name) const {
    const CAccount* account = findAccount(name);
    return account != nullptr && account->simple;
}

void CDeskUserConfig::getAccountsWeights(TC::EQDBrokerType broker, TC::ESelectedAccountType kind,
                                         const QString& name, std::vector<TC::CAccountInfoPtr>& accounts,
                                         std::vector<double>& ratios, bool simple) const {
    if (kind == TC::ESelectedAccountType::Group && !simple) {
        const auto found = m_groups.find({broker, name.toStdString()});
        if (found != m_groups.end()) {
            for (const std::string& key : found->second.group.m_accounts)
                accounts.push_back(m_accounts.at(key).info);
            ratios.insert(ratios.end(), found->second.weights.begin(), found->second.weights.end());
            return;
        }
        // The strategy of a group may have an order that names a single account.
    }
    const CAccount* account = findAccount(name);
    const bool fits = account != nullptr && account->info->m_nBrokerType == static_cast<int>(broker);
    if (!fits || (simple && !account->simple)) return;
    accounts.push_back(account->info);
    ratios.push_back(1.0);
}

std::vector<TC::CAccountPtr> CDeskUserConfig::getAccounts() const {
    return m_accountList;
}

TC::CAccountPtr CDeskUserConfig::getAccountData(const QString& key) const {
    const CAccount* account = findAccount(key);
    return account != nullptr ? boost::make_shared<CConfiguredAccount>(account->info) : nullptr;
}

bool CDeskUserConfig::isPriceTypeValid(TC::EPriceType type, TC::EOperationType, TC::EQDBrokerType,
                                       const std::string&, const std::string&, TC::EOrderType) const {
    if (type == TC::EPriceType::Specified) return true;
    const int number = static_cast<int>(type);
    constexpr int kLastOfFiveLevels = 10;
    constexpr int kFirstOfTenLevels = 30;
    constexpr int kLastOfTenLevels = 39;
    return (number >= 0 && number <= kLastOfFiveLevels) ||
           (number >= kFirstOfTenLevels && number <= kLastOfTenLevels);
}

TC::COrderSetting CDeskUserConfig::getDefaultOrderSetting(TC::EDefaultSetting which) const {
    const auto found = m_defaults.find(which);
    return found != m_defaults.end() ? found->second : TC::COrderSetting{};
}

std::array<TC::COrderSetting, TC::kDefaultSlots> CDeskUserConfig::getDefaultOrderSettings() const {
    auto settings = CUserConfig::getDefaultOrderSettings();
    settings[static_cast<std::size_t>(TC::ESettingSlot::FutureBasket)] =
        getDefaultOrderSetting(TC::EDefaultSetting::Future);
    return settings;
}

} // namespace desk
