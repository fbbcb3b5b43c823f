#include "orderservice/kit/MoneySplit.h"

#include "orderservice/base/Unset.h"
#include "orderservice/kit/Shares.h"

#include <algorithm>
#include <cmath>
#include <cstdint>

namespace kit {
namespace {

constexpr double kCentsPerUnit = 100;
constexpr double kMostMoney = 1e13;
/// Fractions of a cent are compared in steps of this size. It is larger than the rounding errors when the
/// largest amount is divided, so that equal weights have equal fractions.
constexpr long double kCentStep = 1e-3L;

} // namespace

CMoneySplit splitMoneyOverAccounts(double amount, const std::vector<double>& weights) {
    if (TC::isInvalidPrice(amount)) return {{1, "没有金额"}, {}};
    if (amount < 0) return {{2, "金额为负数"}, {}};
    if (!(amount <= kMostMoney)) return {{3, "金额过大"}, {}};
    const std::int64_t cents = std::llround(amount * kCentsPerUnit);
    if (cents == 0) return {{}, std::vector<double>(weights.size(), 0.0)};
    const std::vector<long double> scaled = scaledWeights<long double>(weights);
    if (std::none_of(scaled.begin(), scaled.end(), [](long double weight) { return weight > 0; }))
        return {{4, "没有权重大于0的账号"}, {}};
    const std::vector<std::int64_t> divided = divideByWeight(cents, scaled, kCentStep);
    std::vector<double> amounts(weights.size(), 0.0);
    std::transform(divided.begin(), divided.end(), amounts.begin(),
                   [](std::int64_t part) { return static_cast<double>(part) / kCentsPerUnit; });
    return {{}, amounts};
}

} // namespace kit
