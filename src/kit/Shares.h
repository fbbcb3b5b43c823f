#pragma once

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <vector>

/// What the splits of a volume and of money share: largest remainders by weight. Pure.
namespace kit {

inline bool isUsableWeight(double weight) {
    return std::isfinite(weight) && weight > 0;
}

/// Weights as parts of the largest one, so that their sum cannot overflow. Unusable weights become 0; all are
/// 0 if none can be used.
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

/// Divides a number of parts by scaled weights, of which at least one is above 0. Each account gets its share
/// rounded down; the parts left over go out one each, largest fraction first, ties to the earlier account.
///
/// Fractions are compared in steps of fractionStep, which must be above the noise of dividing: equal weights
/// have equal fractions, and a share that is whole but for that noise is not rounded down.
///
/// The result always sums to the parts: rounding down never hands out more, since each step gives at most
/// what is left, and what is left is handed out one by one.
template<typename Count, typename Real>
std::vector<Count> divideByWeight(Count parts, const std::vector<Real>& weights, Real fractionStep) {
    struct CShare {
        std::size_t account;
        long long fraction; ///< what rounding down left, in steps
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
