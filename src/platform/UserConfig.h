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

/// Two of the user's choices for a kind of message; showMsg takes both as they are.
struct CMsgFlags {
    bool m_bFirst = false;
    bool m_bSecond = false;
};

/// The logged-in user: rights, limits, accounts, settings and strategies. Owned by the host, alive from
/// log-in to the end of the session. Every operation may be called from any thread and answers at once,
/// without waiting for a network.
class CUserConfig {
public:
    virtual ~CUserConfig() = default;

    /// Whether orders take the one-pass variant (COrderServiceUnion).
    virtual bool hasOrderService() const = 0;
    virtual bool hasUserAuth(EUserAuth right) const = 0;
    virtual bool hasShowTradeFrameworkPermission() const = 0;
    /// Whether the user's order files are enciphered.
    virtual bool hasOrderEncryptionService() const = 0;

    /// UTF-8.
    virtual std::string getUserName() const = 0;
    /// Number of the user's kind; only some kinds may issue commands.
    virtual int getUserKind() const = 0;

    /// Most strategies allowed, and most socket strategies allowed.
    virtual int getMaxOrderServerNum() const = 0;
    virtual int getMaxOrderServerNumSocket() const = 0;
    /// Polling interval of order files in milliseconds. Below 11 the file thread does not sleep at all.
    virtual int getMinFileServiceInterval() const = 0;

    virtual CMsgFlags getMsgFlags(EMsgTypeDef type) const = 0;

    /// The group of that name under the broker type, or null. Stays the host's, alive as long as the
    /// configuration.
    virtual const CAccountGroup* getAccountGroupConst(EQDBrokerType broker, const QString& name) const = 0;
    virtual bool hasAccount(const QString& name) const = 0;
    /// Whether the name denotes an account of a table row.
    virtual bool hasSimpleAccount(const QString& name) const = 0;
    /// Appends the accounts of a group or of a single account, and one ratio for each; appends nothing where
    /// there are none. `simple` says that the name denotes an account of a table row.
    virtual void getAccountsWeights(EQDBrokerType broker, ESelectedAccountType kind, const QString& name,
                                    std::vector<CAccountInfoPtr>& accounts, std::vector<double>& ratios,
                                    bool simple) const = 0;

    /// The account of that key, or null where the user has none.
    virtual CAccountPtr getAccountData(const QString& key) const = 0;

    /// Whether the user may use this price type for this operation on this instrument.
    virtual bool isPriceTypeValid(EPriceType priceType, EOperationType operation, EQDBrokerType broker,
                                  const std::string& market, const std::string& code,
                                  EOrderType orderType) const = 0;

    /// The user's default setting of that kind.
    virtual COrderSetting getDefaultOrderSetting(EDefaultSetting which) const = 0;
    /// The user's named baskets, a copy.
    virtual CBasketMap getBaskets() const = 0;

    /// The user's strategies by channel number. The map stays the host's; the library reads and writes it
    /// under its own mutex from the moment of COrderService::loadFromConfig on, and nobody else may touch it
    /// meanwhile but through the library. Never null.
    virtual COrderStrategyMap* getStrategyMap() = 0;
};

/// Knows who is logged in.
class CUserManager : public CHostService<CUserManager> {
public:
    static constexpr const char* kServiceName = "CUserManager";

    /// The configuration of the logged-in user, or null while there is none. Any thread.
    virtual CUserConfig* getUserConfig() = 0;
};

/// CUserManager::getUserConfig of the installed host.
CUserConfig* getUserConfig();

/// The user's basket of that name, which comes from outside in GBK or UTF-8; the comparison keeps case. Some
/// names in GBK are well-formed UTF-8 as well and read as another name; those count as GBK when the user has
/// no basket of the first reading.
std::optional<CBasketSetting> findBasket(const CUserConfig& user, std::string_view name);

/// Whether the strategy's group or account gives any account.
bool hasAnyAccount(const CUserConfig& user, const COrderStrategyParam& strategy);

} // namespace TC
