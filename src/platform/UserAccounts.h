#pragma once

#include "orderservice/base/Export.h"
#include "orderservice/records/Account.h"
#include "orderservice/records/Enums.h"

#include <QString>

#include <vector>

namespace TC {

class CUserConfig;

/// The logged-in user's accounts and groups of accounts. A part of CUserConfig, whose comment says when the
/// operations are called.
class ORDERSERVICE_EXPORT CUserAccounts {
public:
    using CService = CUserConfig; ///< reports show these operations under its name

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

    /// All accounts of the user, in the order of the configuration, without null pointers. Function trading
    /// looks up the account of a call here. The default is an empty list: then a call must name the key of
    /// its account.
    virtual std::vector<CAccountPtr> getAccounts() const { return {}; }

    /// The account with this key, or null if the user has no such account.
    virtual CAccountPtr getAccountData(const QString& key) const = 0;

protected:
    virtual ~CUserAccounts() = default;
};

} // namespace TC
