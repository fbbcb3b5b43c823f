#include "desk/paper/VolumeSplit.h"

#include "base/Unset.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <numeric>

namespace desk {
namespace {

/// Shares are compared in steps of this size, so that the noise of dividing makes no rank of its own: three
/// equal weights have three equal fractions.
constexpr double kFractionStep = 1e-9;

struct CShare {
    std::size_t m_nAccount = 0;
    std::int64_t m_nFraction = 0; ///< what rounding down left, in steps
};

bool isUsable(double weight) {
    return std::isfinite(weight) && weight > 0;
}

double largestWeight(const std::vector<double>& weights) {
    double largest = 0;
    for (const double weight : weights) {
        if (isUsable(weight)) largest = std::max(largest, weight);
    }
    return largest;
}

/// Weights as parts of the largest one, so that their sum cannot overflow. Unusable weights become 0.
std::vector<double> scaledWeights(const std::vector<double>& weights, double largest) {
    std::vector<double> scaled;
    for (const double weight : weights)
        scaled.push_back(isUsable(weight) ? weight / largest : 0);
    return scaled;
}

/// Gives each account its share rounded down, and what is left of each to `shares`. Returns the units that
/// remain.
int giveWholeUnits(int units, const std::vector<double>& weights, std::vector<int>& volumes,
                   std::vector<CShare>& shares) {
    double sum = 0;
    for (const double weight : weights)
        sum += weight;
    int left = units;
    for (std::size_t i = 0; i < weights.size(); ++i) {
        if (!(weights[i] > 0)) continue;
        const double share = units * weights[i] / sum;
        const double whole = std::floor(share + kFractionStep);
        const int given = std::min(left, static_cast<int>(whole));
        volumes[i] = given;
        left -= given;
        shares.push_back({i, std::llround(std::max(0.0, share - whole) / kFractionStep)});
    }
    return left;
}

/// What each account can still take, counted in units. An account without a usable weight takes nothing.
std::vector<std::int64_t> roomOf(const std::vector<double>& weights,
                                 const std::vector<std::int64_t>& closable, int unit) {
    std::vector<std::int64_t> room;
    for (std::size_t i = 0; i < weights.size(); ++i)
        room.push_back(isUsable(weights[i]) ? std::max<std::int64_t>(0, closable[i]) / unit : 0);
    return room;
}

std::int64_t sumOf(const std::vector<std::int64_t>& numbers) {
    return std::accumulate(numbers.begin(), numbers.end(), std::int64_t{0});
}

/// Gives out units by weight, to each account at most its room; all rooms together hold them. Each round
/// fills an account or is the last.
std::vector<int> fillRooms(int units, std::vector<double> weights, std::vector<std::int64_t> room) {
    std::vector<int> given(weights.size(), 0);
    while (units > 0) {
        for (std::size_t i = 0; i < weights.size(); ++i) {
            if (room[i] == 0) weights[i] = 0;
        }
        const std::vector<int> parts = splitOverAccounts(units, weights, 1).m_volumes;
        for (std::size_t i = 0; i < parts.size(); ++i) {
            const int taken = static_cast<int>(std::min<std::int64_t>(parts[i], room[i]));
            given[i] += taken;
            room[i] -= taken;
            units -= taken;
        }
    }
    return given;
}

bool canClose(const std::vector<int>& volumes, const std::vector<std::int64_t>& closable) {
    return std::equal(volumes.begin(), volumes.end(), closable.begin(),
                      [](int volume, std::int64_t most) { return volume <= most; });
}

void serveFirst(std::vector<int>& volumes, int unit, std::int64_t room) {
    const auto most = std::max_element(volumes.begin(), volumes.end());
    if (volumes.front() > 0 || room == 0 || *most < unit) return;
    *most -= unit;
    volumes.front() = unit;
}

} // namespace

CSplitResult splitOverAccounts(int volume, const std::vector<double>& weights, int unit) {
    if (TC::isUnset(volume)) return {{1, "没有数量"}, {}};
    if (volume < 0) return {{2, "数量为负数"}, {}};
    std::vector<int> volumes(weights.size(), 0);
    if (volume == 0) return {{}, volumes};
    const double largest = largestWeight(weights);
    if (largest <= 0) return {{3, "没有权重大于0的账号"}, {}};

    unit = std::max(unit, 1);
    const std::vector<double> scaled = scaledWeights(weights, largest);
    std::vector<CShare> shares;
    int left = giveWholeUnits(volume / unit, scaled, volumes, shares);
    std::stable_sort(shares.begin(), shares.end(),
                     [](const CShare& a, const CShare& b) { return a.m_nFraction > b.m_nFraction; });
    for (std::size_t next = 0; left > 0; next = (next + 1) % shares.size(), --left) {
        ++volumes[shares[next].m_nAccount];
    }
    for (int& given : volumes)
        given *= unit;
    const auto heaviest = std::max_element(scaled.begin(), scaled.end()) - scaled.begin();
    volumes[static_cast<std::size_t>(heaviest)] += volume % unit;
    return {{}, volumes};
}

CSplitResult splitClosing(int volume, const std::vector<double>& weights, int unit,
                          const std::vector<std::int64_t>& closable, EFirstAccount first) {
    CSplitResult result = splitOverAccounts(volume, weights, unit);
    if (result.m_volumes.empty() || volume == 0 || closable.size() != weights.size()) return result;
    unit = std::max(unit, 1);
    const std::vector<std::int64_t> room = roomOf(weights, closable, unit);
    if (!canClose(result.m_volumes, closable)) {
        const std::vector<std::int64_t> all = roomOf(weights, closable, 1);
        if (sumOf(all) == volume) {
            std::transform(all.begin(), all.end(), result.m_volumes.begin(),
                           [](std::int64_t most) { return static_cast<int>(most); });
        } else if (sumOf(all) > volume && volume % unit == 0 && sumOf(room) >= volume / unit) {
            result.m_volumes = fillRooms(volume / unit, weights, room);
            for (int& given : result.m_volumes)
                given *= unit;
        }
    }
    if (first == EFirstAccount::MustClose) serveFirst(result.m_volumes, unit, room.front());
    return result;
}

} // namespace desk
