#pragma once

#include "orderservice/base/Export.h"
#include "orderservice/platform/HostService.h"
#include "orderservice/records/Account.h"
#include "orderservice/records/Basket.h"
#include "orderservice/records/Enums.h"
#include "orderservice/records/OrderSetting.h"
#include "orderservice/records/StrategyParam.h"

#include <QString>

#include <boost/shared_ptr.hpp>

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace TC {

/// Two of the user's settings for a message type. The library only passes them on to showMsg.
struct CMsgFlags {
    bool m_bFirst = false;
    bool m_bSecond = false;
};

/// The logged-in user: rights, limits, accounts, settings and strategies. Owned by the host, which keeps it
/// alive from log-in until releaseHost. Every operation may be called from any thread, also with the registry
/// locked. It returns at once, waits neither for a network nor for another thread, and does not throw.
class ORDERSERVICE_EXPORT CUserConfig {
public:
    virtual ~CUserConfig() = default;

    /// Whether the user's orders use the one-pass variant (COrderServiceUnion). If false, no order is sent,
    /// because the two-pass variant is not implemented.
    virtual bool hasOrderService() const = 0;
    /// Whether the user has a right. While hasOrderService() is true, rights only affect the wording of
    /// messages.
    virtual bool hasUserAuth(EUserAuth right) const = 0;
    /// Whether the user may use the trade framework. It is not implemented, so true only causes a message.
    virtual bool hasShowTradeFrameworkPermission() const = 0;
    /// Whether the user's order files are encrypted. If true, no file strategy starts, because encrypted
    /// files cannot be read.
    virtual bool hasOrderEncryptionService() const = 0;

    /// The user's name for records and remarks. UTF-8; may be empty.
    virtual std::string getUserName() const = 0;
    /// Number of the user kind. Commands are sent for the kinds 80, 90, 91, 92, 100 and 101. For other kinds
    /// the orders are checked, but no command is sent and no message is shown.
    virtual int getUserKind() const = 0;

    /// Maximum number of strategies that COrderService::loadFromConfig loads. If there are more, the
    /// strategies with the highest channel numbers are not loaded. With the switch "mdl_order_split_orderNum"
    /// on, it limits the file strategies only.
    virtual int getMaxOrderServerNum() const = 0;
    /// The same limit for socket strategies. Called only if the switch "mdl_order_split_orderNum" is on.
    virtual int getMaxOrderServerNumSocket() const = 0;
    /// Polling interval of order files in milliseconds. If it is below 11, the file thread does not sleep at
    /// all.
    virtual int getMinFileServiceInterval() const = 0;

    /// The user's settings for a message type; both are off if there are no settings.
    virtual CMsgFlags getMsgFlags(EMsgTypeDef type) const = 0;

    /// The group with this name and broker type, or null if there is no such group. The host owns the group
    /// and keeps it alive and unchanged as long as the configuration.
    virtual const CAccountGroup* getAccountGroupConst(EQDBrokerType broker, const QString& name) const = 0;
    /// Whether the user has an account with this key.
    virtual bool hasAccount(const QString& name) const = 0;
    /// Whether rows of a DBF table may name the account with this key.
    virtual bool hasSimpleAccount(const QString& name) const = 0;
    /// Appends the accounts of the group, or the single account with this key, that have the broker type.
    /// Appends nothing if there are none. For each account one ratio is appended: the account's share of a
    /// volume. It is above 0 and may have any unit. The records are shared and do not change. `simple` is
    /// true if the name is from a row of a DBF table.
    virtual void getAccountsWeights(EQDBrokerType broker, ESelectedAccountType kind, const QString& name,
                                    std::vector<CAccountInfoPtr>& accounts, std::vector<double>& ratios,
                                    bool simple) const = 0;

    /// The account with this key, or null if the user has no such account.
    virtual CAccountPtr getAccountData(const QString& key) const = 0;

    /// Whether the user may use this price type for this operation on this instrument. market and code are
    /// UTF-8. Not called for specified prices, for an instrument without a quote, for baskets, futures and
    /// futures options, on the share-transfer market, and for the credit order numbers 29 to 32 and 37 to 39.
    virtual bool isPriceTypeValid(EPriceType priceType, EOperationType operation, EQDBrokerType broker,
                                  const std::string& market, const std::string& code,
                                  EOrderType orderType) const = 0;

    /// The default setting of new strategies for a family. Its price type must be set.
    virtual COrderSetting getDefaultOrderSetting(EDefaultSetting which) const = 0;
    /// A copy of the user's named baskets, by name.
    virtual CBasketMap getBaskets() const = 0;

    /// The user's strategies by channel number. Never null; every call returns the same map. The host owns
    /// the map. After COrderService::loadFromConfig the library reads and writes it under the library's own
    /// mutex, and the host must access it only through COrderService.
    virtual COrderStrategyMap* getStrategyMap() = 0;
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
