#pragma once

#include "platform/HostService.h"
#include "records/Account.h"
#include "records/Basket.h"
#include "records/Enums.h"
#include "records/OrderSetting.h"
#include "records/StrategyParam.h"

#include <QString>

#include <boost/shared_ptr.hpp>

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace TC {

/// Two of the user's settings for a kind of message. The library only passes them on to showMsg.
struct CMsgFlags {
    bool m_bFirst = false;
    bool m_bSecond = false;
};

/// The logged-in user: rights, limits, accounts, settings and strategies. Owned by the host, which keeps it
/// alive from log-in until releaseHost. Every operation may be called from any thread, also with the
/// registry locked; it answers at once, without waiting for a network or another thread, and does not throw.
class CUserConfig {
public:
    virtual ~CUserConfig() = default;

    /// Whether the user's orders use the one-pass variant (COrderServiceUnion). With false no order goes out:
    /// the two-pass variant is not built.
    virtual bool hasOrderService() const = 0;
    /// Whether the user has a right. As long as hasOrderService() is true, rights only choose words in
    /// messages.
    virtual bool hasUserAuth(EUserAuth right) const = 0;
    /// Whether the user may use the trade framework. It is not built: true only brings a message.
    virtual bool hasShowTradeFrameworkPermission() const = 0;
    /// Whether the user's order files are encrypted. With true no file strategy starts: encrypted files
    /// cannot be read.
    virtual bool hasOrderEncryptionService() const = 0;

    /// The user's name for records and remarks. UTF-8; may be empty.
    virtual std::string getUserName() const = 0;
    /// Number of the user's kind. Commands go out for 80, 90, 91, 92, 100 and 101; orders of other kinds are
    /// checked, and nothing goes out, without a message.
    virtual int getUserKind() const = 0;

    /// How many strategies COrderService::loadFromConfig loads; those with the highest channels are left out.
    virtual int getMaxOrderServerNum() const = 0;
    /// The same for socket strategies alone. Asked only with the switch "mdl_order_split_orderNum" on.
    virtual int getMaxOrderServerNumSocket() const = 0;
    /// Polling interval of order files in milliseconds. Below 11 the file thread does not sleep at all.
    virtual int getMinFileServiceInterval() const = 0;

    /// The user's settings for a kind of message; both off if there are none.
    virtual CMsgFlags getMsgFlags(EMsgTypeDef type) const = 0;

    /// The group of that name under the broker type, or null if there is none. It belongs to the host, which
    /// keeps it alive and unchanged as long as the configuration.
    virtual const CAccountGroup* getAccountGroupConst(EQDBrokerType broker, const QString& name) const = 0;
    /// Whether the user has an account of that key.
    virtual bool hasAccount(const QString& name) const = 0;
    /// Whether rows of a DBF table may name the account of that key.
    virtual bool hasSimpleAccount(const QString& name) const = 0;
    /// Appends the accounts of a group, or the single account of that key, if they are of the broker type;
    /// appends nothing if there are none. Appends one ratio for each account: its share of a volume, above 0,
    /// in any unit. The records are shared and do not change. `simple`: the name is from a row of a DBF
    /// table.
    virtual void getAccountsWeights(EQDBrokerType broker, ESelectedAccountType kind, const QString& name,
                                    std::vector<CAccountInfoPtr>& accounts, std::vector<double>& ratios,
                                    bool simple) const = 0;

    /// The account of that key, or null if the user has none.
    virtual CAccountPtr getAccountData(const QString& key) const = 0;

    /// Whether the user may use this price type for this operation on this instrument. market and code are
    /// UTF-8. Not asked for specified prices, for an instrument without a quote, for baskets, futures and
    /// futures options, on the share-transfer market, and for the credit order numbers 29 to 32 and 37 to 39.
    virtual bool isPriceTypeValid(EPriceType priceType, EOperationType operation, EQDBrokerType broker,
                                  const std::string& market, const std::string& code,
                                  EOrderType orderType) const = 0;

    /// The setting that new strategies get for a family. It must name a price type.
    virtual COrderSetting getDefaultOrderSetting(EDefaultSetting which) const = 0;
    /// The user's named baskets, by name; a copy.
    virtual CBasketMap getBaskets() const = 0;

    /// The user's strategies by channel number; never null, and the same map at every call. It belongs to the
    /// host. From COrderService::loadFromConfig on, the library reads and writes it under its own mutex, and
    /// the host touches it only through COrderService.
    virtual COrderStrategyMap* getStrategyMap() = 0;
};

/// Knows who is logged in.
class CUserManager : public CHostService<CUserManager> {
public:
    static constexpr const char* kServiceName = "CUserManager";

    /// The configuration of the logged-in user, or null while nobody is logged in. It belongs to the host,
    /// which keeps it alive until releaseHost. Any thread, also with the registry locked; answers at once.
    virtual CUserConfig* getUserConfig() = 0;
};

/// CUserManager::getUserConfig of the installed host. Any thread.
CUserConfig* getUserConfig();

/// The user's basket of that name, or none. The name comes from outside, in UTF-8 or GBK; case counts. It is
/// read as UTF-8 first, and as GBK if the user has no basket of that name. Any thread.
std::optional<CBasketSetting> findBasket(const CUserConfig& user, std::string_view name);

/// Whether the strategy's group or account gives any account. Any thread.
bool hasAnyAccount(const CUserConfig& user, const COrderStrategyParam& strategy);

} // namespace TC
