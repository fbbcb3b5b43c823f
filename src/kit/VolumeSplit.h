#pragma once

#include "orderservice/base/Export.h"
#include "orderservice/base/KNError.h"

#include <cstdint>
#include <vector>

namespace kit {

struct CSplitResult {
    utils::KNError m_error;
    std::vector<int> m_volumes; ///< one for each weight, in order; empty on failure
};

/// Divides a volume over accounts by weight, in whole units. Pure.
///
/// Each account's share is the volume times its weight, divided by the sum of the weights. It gets this share
/// rounded down to whole units. The remaining units are given out one by one, to the account with the largest
/// fraction first. If fractions are equal, the earlier account comes first. A remainder smaller than a unit
/// goes to the account with the largest weight; of several, the earliest.
///
/// An account whose weight is not a positive finite number gets nothing. A unit below 1 is treated as 1.
/// Fails if the volume is not set or negative. Also fails if there is a volume to divide and no weight is
/// positive. The error's text is for users.
///
/// The parts always sum to the volume. Let U = volume / unit and R = volume % unit. Rounding down never gives
/// out more than U units, because each step gives at most the units that are left. The rest is given out one
/// by one, in rounds over the accounts with weight; there is at least one such account. So the units sum to
/// U, and R is added once: U * unit + R = volume. This holds without exact arithmetic with weights.
///
/// Funds and positions are not checked: the trading layer rejects an order that exceeds them.
ORDERSERVICE_EXPORT CSplitResult splitOverAccounts(int volume, const std::vector<double>& weights, int unit);

/// Whether the first account of a closing order may get nothing.
enum class EFirstAccount { MayBeLeftOut, MustClose };

/// Divides a volume that closes positions. `closable` is the volume that each account can close. Pure.
///
/// If every account can close its part, the volume is divided by weight as in splitOverAccounts. Otherwise
/// each account gets at most the volume that it can close, in whole units, and the rest is divided by weight
/// among the accounts that can close more. If all accounts together can close exactly the volume, each closes
/// all that it can, odd lots included. If they can close less than the volume, or if whole units do not sum
/// to it, the volume is divided by weight alone, because there is no rule that tells which account must be
/// refused.
///
/// MustClose: if the first account can close a unit and would get nothing, it gets a unit from the account
/// that has the most. The parts always sum to the volume.
ORDERSERVICE_EXPORT CSplitResult splitClosing(int volume, const std::vector<double>& weights, int unit,
                                              const std::vector<std::int64_t>& closable, EFirstAccount first);

} // namespace kit
