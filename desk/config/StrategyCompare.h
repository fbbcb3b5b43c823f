#pragma once

#include "records/StrategyParam.h"

#include <array>
#include <cstddef>

namespace desk {

/// The key of the first thing that differs between two strategies, null where all is the same. Whether a
/// strategy runs and how often it was started do not count: both belong to the run, not to what its owner
/// set. Pure, and cheap enough for every round of the main loop.
const char* firstDifference(const TC::COrderStrategyParam& a, const TC::COrderStrategyParam& b);

/// Whether both settings say the same; what is no number equals itself.
bool isSame(const TC::COrderSetting& a, const TC::COrderSetting& b);
bool isSame(double a, double b);

template<typename T>
bool isSame(const T& a, const T& b) {
    return a == b;
}

template<std::size_t N>
bool isSame(const std::array<TC::COrderSetting, N>& a, const std::array<TC::COrderSetting, N>& b) {
    for (std::size_t slot = 0; slot < N; ++slot) {
        if (!isSame(a[slot], b[slot])) return false;
    }
    return true;
}

} // namespace desk
