#pragma once

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <vector>

/// Common code for splitting volumes and money: division by weight, in which the largest fractions get the
/// remaining parts. Pure.
namespace kit {

inline bool isUsableWeight(double weight) {
    return std::isfinite(weight) && weight > 0;
}

/// Divides all weights by the largest one, so that their sum cannot overflow. Unusable weights become 0. If
/// no weight is usable, all are 0.
template<typename Real>
std::vector<Real> scaledWeights(const std::vector<double>& weights) {
    double largest = 0;
    for (const double weight : weights) {
        if (isUsableWeight(weight)) largest = std::max(largest, weight);
    }
    std::vector<Real> scaled;
    for (const double weight : weights)
        scaled.push_back(isUsableWeight(weight) ? static_cast<Real>(weight) / static_cast<Real>(largest) : 0);
    return scaled;
}

/// Divides a number of parts by scaled weights, of which at least one must be above 0. Each account gets its
/// share rounded down. The remaining parts are given out one by one, to the account with the largest fraction
/// first. If fractions are equal, the earlier account comes first.
///
/// Fractions are compared in steps of fractionStep, which must be larger than the rounding errors of the
/// division. So equal weights have equal fractions, and a whole share is not rounded down because of a
/// rounding error.
///
/// The sum of the result is always `parts`. Rounding down never gives out too much, since each step gives at
/// most the parts that are left. The rest is then given out one by one.
template<typename Count, typename Real>
std::vector<Count> divideByWeight(Count parts, const std::vector<Real>& weights, Real fractionStep) {
    struct CShare {
        std::size_t account;
        long long fraction; ///< remainder after rounding down, in steps
    };
    Real sum = 0;
    for (const Real weight : weights)
        sum += weight;
    std::vector<Count> given(weights.size(), 0);
    std::vector<CShare> shares;
    Count left = parts;
    for (std::size_t i = 0; i < weights.size(); ++i) {
        if (!(weights[i] > 0)) continue;
        const Real share = static_cast<Real>(parts) * weights[i] / sum;
        const Real whole = std::floor(share + fractionStep);
        given[i] = std::min(left, static_cast<Count>(whole));
        left -= given[i];
        shares.push_back({i, std::llround(std::max(Real(0), share - whole) / fractionStep)});
    }
    std::stable_sort(shares.begin(), shares.end(),
                     [](const CShare& one, const CShare& other) { return one.fraction > other.fraction; });
    for (std::size_t next = 0; left > 0; next = (next + 1) % shares.size(), --left)
        ++given[shares[next].account];
    return given;
}

} // namespace kit
