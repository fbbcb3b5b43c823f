#include "desk/config/OrderPaths.h"
#include "desk/config/SettingWarnings.h"
#include "desk/config/StrategyChecks.h"
#include "desk/config/Words.h"
#include "orderservice/platform/InstrumentTypes.h"
#include "orderservice/platform/Switches.h"
#include "orderservice/records/Families.h"

#include <algorithm>
#include <string>
#include <utility>

namespace desk {
namespace {

const CInstrumentEntry* findInstrument(const CDeskConfig& config, const std::string& name) {
    for (const CInstrumentEntry& instrument : config.instruments) {
        const std::vector<std::string> names = instrument.names();
        if (std::find(names.begin(), names.end(), name) != names.end()) return &instrument;
    }
    return nullptr;
}

void warnOfVolume(const CTomlSection& section, const CDeskConfig& config,
                  const TC::COrderStrategyParam& strategy) {
    if (strategy.m_nVolume == 0 && !strategy.m_bUseAmount)
        section.warnAt("volume", "volume is 0: orders without a volume trade nothing");
    const bool isMultiplier = strategy.m_eTradeType == TC::EOrderStrategyTradeType::Basket ||
                              strategy.m_eTradeType == TC::EOrderStrategyTradeType::FutureBasket;
    if (isMultiplier) return; // here the volume says how many times the basket is traded
    const CInstrumentEntry* instrument = findInstrument(config, strategy.m_strCode.toStdString());
    if (instrument != nullptr) warnOfUnit(section, strategy.m_nVolume, *instrument);
}

/// Warns if two strategies name the same listener with different logins. A listener has one login, so only
/// one of them starts. Addresses are compared as texts, like the order service does.
void warnOfListener(const CTomlSection& section, const CDeskConfig& config,
                    const TC::COrderStrategyParam& strategy) {
    if (strategy.m_eStrategyType != TC::EOrderStrategyType::Signal) return;
    for (const TC::COrderStrategyParam& other : config.strategies) {
        const bool hasLogins = !other.m_strUser.isEmpty() && !other.m_strPass.isEmpty() &&
                               !strategy.m_strUser.isEmpty() && !strategy.m_strPass.isEmpty();
        const bool isListener = other.m_eStrategyType == TC::EOrderStrategyType::Signal &&
                                other.m_strSignalSource == strategy.m_strSignalSource;
        const bool isSameLogin =
            other.m_strUser == strategy.m_strUser && other.m_strPass == strategy.m_strPass;
        if (isListener && hasLogins && !isSameLogin)
            section.warnAt("path", "path \"" + strategy.m_strSignalSource.toStdString() +
                                       "\" is that of channel " + std::to_string(other.m_nChannel) +
                                       ", which has another login; only one of them starts");
    }
}

const CAccountEntry* findAccount(const CDeskConfig& config, const std::string& key) {
    const auto found = std::find_if(config.accounts.begin(), config.accounts.end(),
                                    [&](const CAccountEntry& entry) { return entry.key == key; });
    return found != config.accounts.end() ? &*found : nullptr;
}

bool isLoggedOut(const CDeskConfig& config, const std::string& key) {
    const CAccountEntry* account = findAccount(config, key);
    return account != nullptr && account->loginStatus != 0;
}

void warnOfLogin(const CTomlSection& section, const CDeskConfig& config,
                 const TC::COrderStrategyParam& strategy) {
    const std::string name = strategy.m_strSelectedAccount.toStdString();
    const bool isAccount = strategy.m_eSelectedAccountType == TC::ESelectedAccountType::Account;
    if (isAccount && isLoggedOut(config, name))
        section.warnAt("account", "account \"" + name + "\" is not logged in; the strategy does not start");
    if (isAccount) return;
    for (const CGroupEntry& group : config.groups) {
        for (const CGroupMember& member : group.members) {
            if (group.name == name && isLoggedOut(config, member.accountKey))
                section.warnAt("group", "account \"" + member.accountKey +
                                            "\" of the group is not logged in; the strategy does not start");
        }
    }
}

void warnOfSource(const CTomlSection& section, const TC::COrderStrategyParam& strategy,
                  const std::string& path) {
    if (!strategy.comesFromFile()) return;
    if (isForeignPath(path))
        section.warnAt(
            "path", "path \"" + path +
                        "\" looks like a path of another operating system; here it is the name of one file");
    if (strategy.m_nAccountMode != 0)
        section.warnAt("account_mode", "account_mode is for tables, which the desk cannot read; the strategy "
                                       "does not start");
    else if (strategy.m_eStrategyType == TC::EOrderStrategyType::BatchPending)
        section.warnAt("source", "the desk has no tables; it reads the path as an order file");
}

void warnOfHedge(const CTomlSection& section, const CDeskConfig& config,
                 const TC::COrderStrategyParam& strategy) {
    if (strategy.m_bHedgeBasket && config.switches.count(TC::kComposeHedgeSwitch) != 0)
        section.warnAt("hedge_basket",
                       "the paper broker rejects hedged baskets, and mdl_order_compose_hedge is on");
}

/// Warns about keys that the order service keeps for other hosts.
void warnOfUnusedKeys(const CTomlSection& section, const TC::COrderStrategyParam& strategy) {
    const TC::COrderStrategyParam fresh;
    const std::pair<const char*, bool> keys[] = {
        {"position_type", strategy.m_ePositionType != fresh.m_ePositionType},
        {"further1", strategy.m_nFurther1 != fresh.m_nFurther1},
        {"further2", strategy.m_nFurther2 != fresh.m_nFurther2}};
    for (const auto& [key, isSet] : keys) {
        if (isSet) section.warnAt(key, std::string(key) + " has no effect on the desk");
    }
}

const TC::COrderSetting& ownSetting(const TC::COrderStrategyParam& strategy) {
    const TC::CFamily* family = TC::findFamily(strategy.m_eTradeType);
    return strategy.setting(family != nullptr ? family->m_eSlot : TC::ESettingSlot::Stock);
}

} // namespace

void warnOfSetting(const CTomlSection& section, const TC::COrderSetting& setting,
                   const std::string& orderTypeKey) {
    const bool isPlain = TC::isUnset(setting.m_eOrderType) || setting.m_eOrderType == TC::EOrderType::Plain;
    if (!isPlain && section.has(orderTypeKey))
        section.warnAt(orderTypeKey, orderTypeKey + " is " +
                                         std::to_string(static_cast<int>(setting.m_eOrderType)) +
                                         "; the desk rejects orders of kinds other than 0");
    const std::pair<const char*, double> limits[] = {{"first_limit", setting.m_dFirstLimit},
                                                     {"second_limit", setting.m_dSecondLimit}};
    for (const auto& [key, limit] : limits) {
        if (section.has(key) && !TC::isInvalidPrice(limit))
            section.warnAt(key, std::string(key) + " has no effect on the desk; it is not a stop order");
    }
}

void warnOfUnit(const CTomlSection& section, int volume, const CInstrumentEntry& instrument) {
    const bool isStar = instrument.types.count(knservice::kTypeStarMarket) != 0;
    const int unit = std::max(1, isStar ? instrument.uiUnit : instrument.unit);
    if (TC::isUnset(volume) || volume % unit == 0 || !section.isNumber("volume", volume)) return;
    section.warnAt("volume", "volume is " + std::to_string(volume) + ", not a multiple of " +
                                 std::to_string(unit) + ", the unit of \"" + instrument.key() + "\"");
}

void warnOfStrategy(const CTomlSection& section, const CDeskConfig& config,
                    const TC::COrderStrategyParam& strategy, const std::string& path) {
    warnOfVolume(section, config, strategy);
    warnOfListener(section, config, strategy);
    warnOfLogin(section, config, strategy);
    warnOfSource(section, strategy, path);
    warnOfHedge(section, config, strategy);
    warnOfUnusedKeys(section, strategy);
    warnOfSetting(section, ownSetting(strategy), "order_kind");
}

} // namespace desk
