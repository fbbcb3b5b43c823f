#pragma once

#include "orderservice/base/Export.h"
#include "orderservice/base/KNError.h"

#include <vector>

namespace kit {

struct CMoneySplit {
    utils::KNError m_error;
    std::vector<double> m_amounts; ///< currency units; one for each weight, in order; empty on failure
};

/// Divides an amount of money over accounts by weight, in whole cents. Pure.
///
/// Each account gets its share rounded down to cents. The remaining cents are given out one by one, to the
/// account with the largest fraction first. If fractions are equal, the earlier account comes first. The sum
/// of the parts is the amount, rounded to the cent.
///
/// An account whose weight is not a positive finite number gets nothing. Fails if the amount is not set,
/// negative or above 1e13. Also fails if there is money to divide and no weight is positive. The error's text
/// is for users.
ORDERSERVICE_EXPORT CMoneySplit splitMoneyOverAccounts(double amount, const std::vector<double>& weights);

} // namespace kit
