#include "desk/host/MoneySplit.h"

#include "base/Unset.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <numeric>

namespace desk {
namespace {

using CWeights = std::vector<long double>;

constexpr double kCentsPerUnit = 100;
constexpr double kMostMoney = 1e13;
/// Fractions of a cent are compared in steps of this size, which is above the noise of dividing the largest
/// amount: equal weights have equal fractions.
constexpr long double kFractionStep = 1e-3L;

struct CShare {
    std::size_t m_nAccount = 0;
    long long m_nFraction = 0; ///< what rounding down left, in steps
};

/// Weights as parts of the largest one, so that their sum cannot overflow. Unusable weights become 0; all are
/// 0 where none can be used.
CWeights scaledWeights(const std::vector<double>& weights) {
    CWeights scaled;
    for (const double weight : weights)
        scaled.push_back(std::isfinite(weight) && weight > 0 ? weight : 0);
    const long double largest = scaled.empty() ? 0 : *std::max_element(scaled.begin(), scaled.end());
    for (long double& weight : scaled)
        weight = largest > 0 ? weight / largest : 0;
    return scaled;
}

/// Whole cents for each weight; they add up to the cents. The weights' sum is above 0.
std::vector<std::int64_t> divide(std::int64_t cents, const CWeights& weights, long double sum) {
    std::vector<std::int64_t> result(weights.size(), 0);
    std::vector<CShare> shares;
    std::int64_t left = cents;
    for (std::size_t i = 0; i < weights.size(); ++i) {
        if (!(weights[i] > 0)) continue;
        const long double share = static_cast<long double>(cents) * weights[i] / sum;
        const long double whole = std::floor(share + kFractionStep);
        result[i] = std::min(left, static_cast<std::int64_t>(whole));
        left -= result[i];
        shares.push_back({i, std::llround(std::max(0.0L, share - whole) / kFractionStep)});
    }
    std::stable_sort(shares.begin(), shares.end(),
                     [](const CShare& a, const CShare& b) { return a.m_nFraction > b.m_nFraction; });
    for (std::size_t next = 0; left > 0; next = (next + 1) % shares.size(), --left)
        ++result[shares[next].m_nAccount];
    return result;
}

} // namespace

CMoneySplit splitMoneyOverAccounts(double amount, const std::vector<double>& weights) {
    if (TC::isInvalidPrice(amount)) return {{1, "没有金额"}, {}};
    if (amount < 0) return {{2, "金额为负数"}, {}};
    if (!(amount <= kMostMoney)) return {{3, "金额过大"}, {}};
    const std::int64_t cents = std::llround(amount * kCentsPerUnit);
    const CWeights scaled = scaledWeights(weights);
    const long double sum = std::accumulate(scaled.begin(), scaled.end(), 0.0L);
    std::vector<double> amounts(weights.size(), 0.0);
    if (cents == 0) return {{}, amounts};
    if (!(sum > 0)) return {{4, "没有权重大于0的账号"}, {}};
    const std::vector<std::int64_t> divided = divide(cents, scaled, sum);
    std::transform(divided.begin(), divided.end(), amounts.begin(),
                   [](std::int64_t part) { return static_cast<double>(part) / kCentsPerUnit; });
    return {{}, amounts};
}

} // namespace desk
