#pragma once

#include "base/KNError.h"

#include <cstdint>
#include <vector>

namespace kit {

struct CSplitResult {
    utils::KNError m_error;
    std::vector<int> m_volumes; ///< one for each weight, in their order; empty on failure
};

/// Divides a volume over accounts by weight, in whole units. Pure.
///
/// The rule: each account gets its share, volume times its weight over the sum of weights, rounded down to
/// whole units. The units left over go out one each, largest fraction first, ties to the earlier account.
/// What is less than a unit goes to the account of the largest weight, the earliest of several.
///
/// An account whose weight is not a positive finite number gets nothing. A unit below 1 is taken as 1. Fails
/// if the volume is not set or negative, or if a volume is to be divided and no weight is positive; the
/// error's text is for users.
///
/// The volumes always sum to the volume. Let U = volume / unit and R = volume % unit. Rounding down never
/// hands out more than U units, because each step gives at most what is left. What is left is handed out one
/// by one until nothing is left, in rounds over the accounts with weight, of which there is at least one. So
/// the units sum to U, and R is added once: U * unit + R = volume. This does not need exact arithmetic with
/// weights.
///
/// Funds and positions are not looked at: the trading layer rejects what an account lacks.
CSplitResult splitOverAccounts(int volume, const std::vector<double>& weights, int unit);

/// Whether the first account of a closing order may get nothing.
enum class EFirstAccount { MayBeLeftOut, MustClose };

/// Divides a volume that closes positions. `closable` is what each account can close. Pure.
///
/// The rule: by weight, as splitOverAccounts divides it, if every account can close its part. Otherwise each
/// account gets at most what it can close, in whole units; the rest goes by weight to those that can close
/// more. If all accounts together can close exactly the volume, each closes all that it can, odd lots
/// included. If they can close less than the volume, or if whole units do not sum to it, the volume is
/// divided by weight alone, because there is no rule for which account is to be refused.
///
/// MustClose: a first account that can close a unit and would get nothing gets one of the account that has
/// the most. The volumes sum to the volume in every case.
CSplitResult splitClosing(int volume, const std::vector<double>& weights, int unit,
                          const std::vector<std::int64_t>& closable, EFirstAccount first);

} // namespace kit
