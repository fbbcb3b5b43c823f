#pragma once

#include "base/KNError.h"

#include <vector>

namespace desk {

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
/// A weight that is not a positive finite number counts as zero: the account gets nothing. unit: below 1
/// counts as 1. Fails where the volume is not set or negative, and where a volume is to be divided but no
/// weight is positive; the error's text is for users.
///
/// The volumes always sum to the volume: let U = volume / unit and R = volume % unit. Rounding down never
/// hands out more than U units, since each step is held to what is left. What is left is handed out one by
/// one until none is, in rounds over the accounts with weight, of which there is at least one. So the units
/// sum to U, and R is added once: U * unit + R = volume. The argument does not rest on exact arithmetic with
/// weights.
///
/// Funds and positions play no part: the broker rejects what an account lacks.
CSplitResult splitOverAccounts(int volume, const std::vector<double>& weights, int unit);

} // namespace desk
