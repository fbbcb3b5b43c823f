#include "orderservice/kit/UserConfigBase.h"

#include <boost/make_shared.hpp>

namespace kit {
namespace {

constexpr int kFileIntervalMs = 50;

} // namespace

CPlainAccount::CPlainAccount(const std::string& key, TC::EQDBrokerType broker)
    : m_info(boost::make_shared<TC::CAccountInfo>()) {
    m_info->m_strKey = key;
    m_info->m_nBrokerType = static_cast<int>(broker);
}

int CUserConfigBase::getMinFileServiceInterval() const {
    return kFileIntervalMs;
}

bool CUserConfigBase::hasAccount(const QString& name) const {
    return getAccountData(name) != nullptr;
}

void CUserConfigBase::getAccountsWeights(TC::EQDBrokerType broker, TC::ESelectedAccountType kind,
                                         const QString& name, std::vector<TC::CAccountInfoPtr>& accounts,
                                         std::vector<double>& ratios, bool) const {
    if (kind != TC::ESelectedAccountType::Account) return;
    const TC::CAccountPtr account = getAccountData(name);
    const TC::CAccountInfoPtr info = account ? account->toInfo() : nullptr;
    if (!info || info->m_nBrokerType != static_cast<int>(broker)) return;
    accounts.push_back(info);
    ratios.push_back(1.0);
}

bool CUserConfigBase::isPriceTypeValid(TC::EPriceType priceType, TC::EOperationType, TC::EQDBrokerType,
                                       const std::string&, const std::string&, TC::EOrderType) const {
    return priceType == TC::EPriceType::Specified;
}

TC::COrderSetting CUserConfigBase::getDefaultOrderSetting(TC::EDefaultSetting) const {
    TC::COrderSetting setting;
    setting.m_ePriceType = TC::EPriceType::Specified;
    return setting;
}

} // namespace kit
