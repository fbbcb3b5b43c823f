#pragma once

#include "base/KNError.h"

#include <vector>

namespace kit {

struct CMoneySplit {
    utils::KNError m_error;
    std::vector<double> m_amounts; ///< currency units, one for each weight, in their order; empty on failure
};

/// Divides an amount of money over accounts by weight, in whole cents. Pure.
///
/// Each account gets its share rounded down to cents; the cents left over go out one each, largest fraction
/// first, ties to the earlier account. The amounts sum to the amount, rounded to the cent.
///
/// An account whose weight is not a positive finite number gets nothing. Fails if the amount is not set,
/// negative or above 1e13, or if money is to be divided and no weight is positive; the error's text is for
/// users.
CMoneySplit splitMoneyOverAccounts(double amount, const std::vector<double>& weights);

} // namespace kit
