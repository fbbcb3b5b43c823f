#include "orderservice/kit/VolumeSplit.h"

#include "orderservice/base/Unset.h"
#include "orderservice/kit/Shares.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <numeric>

namespace kit {
namespace {

/// Fractions of units are compared in steps of this size, so that rounding errors do not change the order:
/// three equal weights have three equal fractions.
constexpr double kUnitStep = 1e-9;

/// The largest volume that each account can take, in units. An account without a usable weight takes nothing.
std::vector<std::int64_t> limitsOf(const std::vector<double>& weights,
                                   const std::vector<std::int64_t>& closable, int unit) {
    std::vector<std::int64_t> limits;
    for (std::size_t i = 0; i < weights.size(); ++i)
        limits.push_back(isUsableWeight(weights[i]) ? std::max<std::int64_t>(0, closable[i]) / unit : 0);
    return limits;
}

std::int64_t sumOf(const std::vector<std::int64_t>& numbers) {
    return std::accumulate(numbers.begin(), numbers.end(), std::int64_t{0});
}

/// Gives out units by weight, to each account at most its limit. The sum of all limits must be at least
/// `units`. The loop ends: each round fills an account or is the last round.
std::vector<int> divideWithinLimits(int units, std::vector<double> weights,
                                    std::vector<std::int64_t> limits) {
    std::vector<int> given(weights.size(), 0);
    while (units > 0) {
        for (std::size_t i = 0; i < weights.size(); ++i) {
            if (limits[i] == 0) weights[i] = 0;
        }
        const std::vector<int> parts = splitOverAccounts(units, weights, 1).m_volumes;
        for (std::size_t i = 0; i < parts.size(); ++i) {
            const int taken = static_cast<int>(std::min<std::int64_t>(parts[i], limits[i]));
            given[i] += taken;
            limits[i] -= taken;
            units -= taken;
        }
    }
    return given;
}

bool canClose(const std::vector<int>& volumes, const std::vector<std::int64_t>& closable) {
    return std::equal(volumes.begin(), volumes.end(), closable.begin(),
                      [](int volume, std::int64_t most) { return volume <= most; });
}

void giveUnitToFirst(std::vector<int>& volumes, int unit, std::int64_t limit) {
    const auto most = std::max_element(volumes.begin(), volumes.end());
    if (volumes.front() > 0 || limit == 0 || *most < unit) return;
    *most -= unit;
    volumes.front() = unit;
}

} // namespace

CSplitResult splitOverAccounts(int volume, const std::vector<double>& weights, int unit) {
    if (TC::isUnset(volume)) return {{1, "没有数量"}, {}};
    if (volume < 0) return {{2, "数量为负数"}, {}};
    if (volume == 0) return {{}, std::vector<int>(weights.size(), 0)};
    const std::vector<double> scaled = scaledWeights<double>(weights);
    const auto heaviest = std::max_element(scaled.begin(), scaled.end());
    if (heaviest == scaled.end() || *heaviest <= 0) return {{3, "没有权重大于0的账号"}, {}};

    unit = std::max(unit, 1);
    std::vector<int> volumes = divideByWeight(volume / unit, scaled, kUnitStep);
    for (int& given : volumes)
        given *= unit;
    volumes[static_cast<std::size_t>(heaviest - scaled.begin())] += volume % unit;
    return {{}, volumes};
}

CSplitResult splitClosing(int volume, const std::vector<double>& weights, int unit,
                          const std::vector<std::int64_t>& closable, EFirstAccount first) {
    CSplitResult result = splitOverAccounts(volume, weights, unit);
    if (result.m_volumes.empty() || volume == 0 || closable.size() != weights.size()) return result;
    unit = std::max(unit, 1);
    const std::vector<std::int64_t> limits = limitsOf(weights, closable, unit);
    if (!canClose(result.m_volumes, closable)) {
        const std::vector<std::int64_t> all = limitsOf(weights, closable, 1);
        if (sumOf(all) == volume) {
            std::transform(all.begin(), all.end(), result.m_volumes.begin(),
                           [](std::int64_t most) { return static_cast<int>(most); });
        } else if (sumOf(all) > volume && volume % unit == 0 && sumOf(limits) >= volume / unit) {
            result.m_volumes = divideWithinLimits(volume / unit, weights, limits);
            for (int& given : result.m_volumes)
                given *= unit;
        }
    }
    if (first == EFirstAccount::MustClose) giveUnitToFirst(result.m_volumes, unit, limits.front());
    return result;
}

} // namespace kit
