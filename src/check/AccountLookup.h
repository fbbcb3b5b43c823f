#pragma once

#include "orderservice/platform/UserConfig.h"
#include "orderservice/records/Account.h"
#include "orderservice/records/OrderParam.h"
#include "orderservice/records/StrategyParam.h"

#include <QString>

#include <map>
#include <string>
#include <vector>

namespace TC {

/// Returns the account group that the strategy names, or null. A family that trades on two kinds of account
/// (records/Families.h) is looked up among the groups of both, in their order.
const CAccountGroup* findAccountGroup(const CUserConfig& user, const COrderStrategyParam& strategy);

/// How the name of a single account is looked up.
enum class EAccountLookup {
    ByAccount,   ///< the name must be one of the user's accounts
    ByTableMode, ///< in table mode the name must be an account of a table row; otherwise as ByAccount
};

/// Whether the group or account that the strategy names exists.
bool hasSelectedAccounts(const CUserConfig& user, const COrderStrategyParam& strategy, EAccountLookup lookup);

/// Appends the accounts of a group or account name of a strategy, and their ratios. A family that trades on
/// two kinds of account gets those of the second kind only if there are none of the first.
void appendAccounts(const CUserConfig& user, const COrderStrategyParam& strategy, const QString& name,
                    std::vector<CAccountInfoPtr>& accounts, std::vector<double>& ratios);

/// Finds the accounts of an order; if there are none, reports it and returns false. `accountKey` is the
/// caller's choice; it is replaced if the order names an account itself. Appends to `accounts` and `ratios`.
bool findOrderAccounts(const COrderParam& order, const COrderStrategyParam& strategy, QString& accountKey,
                       std::vector<CAccountInfoPtr>& accounts, std::vector<double>& ratios);

/// Writes the ratio of each account to `weights`, by account key. Null accounts are skipped. Writes nothing
/// if there is not one ratio for each account.
void takeWeights(const std::vector<CAccountInfoPtr>& accounts, const std::vector<double>& ratios,
                 std::map<std::string, double>& weights);

} // namespace TC
