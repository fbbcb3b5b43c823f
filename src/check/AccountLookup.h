#pragma once

#include "orderservice/platform/UserConfig.h"
#include "orderservice/records/StrategyParam.h"

#include <vector>

namespace TC {

/// Returns the account group that the strategy names, or null. For a basket it looks among the stock account
/// groups first, then among the credit account groups.
const CAccountGroup* findAccountGroup(const CUserConfig& user, const COrderStrategyParam& strategy);

/// How the name of a single account is looked up.
enum class EAccountLookup {
    ByAccount,   ///< the name must be one of the user's accounts
    ByTableMode, ///< in table mode the name must be an account of a table row; otherwise as ByAccount
};

/// Whether the group or account that the strategy names exists.
bool hasSelectedAccounts(const CUserConfig& user, const COrderStrategyParam& strategy, EAccountLookup lookup);

/// Appends the accounts of a group or account name of a strategy, and their ratios. For a basket it looks for
/// stock accounts first, then for credit accounts.
void appendAccounts(const CUserConfig& user, const COrderStrategyParam& strategy, const QString& name,
                    std::vector<CAccountInfoPtr>& accounts, std::vector<double>& ratios);

} // namespace TC
