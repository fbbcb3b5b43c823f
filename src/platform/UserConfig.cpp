#include "orderservice/platform/UserConfig.h"

#include "orderservice/base/Text.h"
#include "orderservice/platform/HostCall.h"
#include "orderservice/platform/TradingRules.h"

#include <cstddef>
#include <string>
#include <vector>

namespace TC {

CUserConfig* getUserConfig() {
    return hostCall<&CUserManager::getUserConfig>();
}

std::array<COrderSetting, kDefaultSlots> CUserSettings::getDefaultOrderSettings() const {
    std::array<COrderSetting, kDefaultSlots> settings;
    for (int slot = 0; slot < kDefaultSlots; ++slot) {
        const EDefaultSetting which = defaultForSlot(static_cast<ESettingSlot>(slot));
        if (which != EDefaultSetting::None)
            settings[static_cast<std::size_t>(slot)] = getDefaultOrderSetting(which);
    }
    return settings;
}

std::optional<CBasketSetting> findBasket(const CUserConfig& user, std::string_view name) {
    const CBasketMap baskets = hostCall<&CUserConfig::getBaskets>.on(user);
    auto found = baskets.constFind(UW::sToQs(name.data(), name.size()));
    if (found == baskets.constEnd()) found = baskets.constFind(UW::sToQsGBK(std::string(name)));
    return found != baskets.constEnd() ? std::optional<CBasketSetting>(found.value()) : std::nullopt;
}

bool hasAnyAccount(const CUserConfig& user, const COrderStrategyParam& strategy) {
    std::vector<CAccountInfoPtr> accounts;
    std::vector<double> ratios;
    hostCall<&CUserConfig::getAccountsWeights>.on(
        user, orderStrategyTradeTypeToBrokerType(strategy.m_eTradeType), strategy.m_eSelectedAccountType,
        strategy.m_strSelectedAccount, accounts, ratios, false);
    return !accounts.empty();
}

} // namespace TC
