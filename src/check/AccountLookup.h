#pragma once

#include "platform/UserConfig.h"
#include "records/StrategyParam.h"

#include <vector>

namespace TC {

/// The account group that a strategy names, or null. Baskets trade on stock accounts or, failing those, on
/// credit accounts.
const CAccountGroup* findAccountGroup(const CUserConfig& user, const COrderStrategyParam& strategy);

/// How the name of a single account is looked up.
enum class EAccountLookup {
    ByAccount,   ///< it must be one of the user's accounts
    ByTableMode, ///< for a strategy in table mode it denotes an account of a table row
};

/// Whether the group or account that the strategy names exists.
bool hasSelectedAccounts(const CUserConfig& user, const COrderStrategyParam& strategy, EAccountLookup lookup);

/// Appends the accounts and ratios behind a group or account name of a strategy, baskets again with two
/// tries.
void appendAccounts(const CUserConfig& user, const COrderStrategyParam& strategy, const QString& name,
                    std::vector<CAccountInfoPtr>& accounts, std::vector<double>& ratios);

} // namespace TC
