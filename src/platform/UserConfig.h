#pragma once

#include "orderservice/base/Export.h"
#include "orderservice/platform/HostService.h"
#include "orderservice/platform/UserAccounts.h"
#include "orderservice/platform/UserRights.h"
#include "orderservice/platform/UserSettings.h"
#include "orderservice/platform/UserTables.h"
#include "orderservice/records/Basket.h"
#include "orderservice/records/StrategyParam.h"

#include <optional>
#include <string_view>

namespace TC {

/// The logged-in user: rights, limits, accounts, settings and strategies. Owned by the host, which keeps it
/// alive from log-in until releaseHost. Every operation may be called from any thread, also with the registry
/// locked. It returns at once, waits neither for a network nor for another thread, and does not throw.
///
/// The operations are in the base classes, one for each theme.
class ORDERSERVICE_EXPORT CUserConfig : public CUserRights,
                                        public CUserAccounts,
                                        public CUserSettings,
                                        public CUserTables {
public:
    static constexpr const char* kServiceName = "CUserConfig";

    ~CUserConfig() override = default;
};

/// Knows who is logged in.
class ORDERSERVICE_EXPORT CUserManager : public CHostService<CUserManager> {
public:
    static constexpr const char* kServiceName = "CUserManager";

    /// The configuration of the logged-in user, or null while nobody is logged in. The host owns it and keeps
    /// it alive until releaseHost. Any thread, also with the registry locked. Returns at once.
    virtual CUserConfig* getUserConfig() = 0;
};

/// Calls CUserManager::getUserConfig of the installed host. Any thread.
ORDERSERVICE_EXPORT CUserConfig* getUserConfig();

/// The user's basket with this name, or nothing if there is none. The name is external input in UTF-8 or GBK
/// and is case-sensitive. It is decoded like any external text first, see UW::sToQs. If no basket has the
/// decoded name, it is decoded as GBK. Any thread.
ORDERSERVICE_EXPORT std::optional<CBasketSetting> findBasket(const CUserConfig& user, std::string_view name);

/// Whether the strategy's group or account contains at least one account of the family's broker type. Any
/// thread.
ORDERSERVICE_EXPORT bool hasAnyAccount(const CUserConfig& user, const COrderStrategyParam& strategy);

} // namespace TC
