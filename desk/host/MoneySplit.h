#pragma once

#include "base/KNError.h"

#include <vector>

namespace desk {

struct CMoneySplit {
    utils::KNError m_error;
    std::vector<double> m_amounts; ///< currency units, one for each weight, in their order; empty on failure
};

/// Divides an amount of money over accounts by weight, in whole cents. Pure.
///
/// Each account gets its share rounded down to cents; the cents left over go out one each, largest fraction
/// first, ties to the earlier account. The amounts add up to the amount, which counts rounded to the cent.
///
/// A weight that is not a positive finite number counts as zero: the account gets nothing. Fails where the
/// amount is not set, negative or above 1e13, and where money is to be divided but no weight is positive; the
/// error's text is for users.
CMoneySplit splitMoneyOverAccounts(double amount, const std::vector<double>& weights);

} // namespace desk
