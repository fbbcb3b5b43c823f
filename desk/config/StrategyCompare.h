#pragma once

#include "orderservice/records/StrategyParam.h"

#include <array>
#include <cstddef>

namespace desk {

/// Returns the key of the first field that differs between two strategies; null if all fields are the same.
/// The running status and the number of starts are not compared: they belong to the run and are not set by
/// the owner. Pure, and cheap enough to be called in every round of the main loop.
const char* firstDifference(const TC::COrderStrategyParam& a, const TC::COrderStrategyParam& b);

/// Whether both settings have the same values. NaN is treated as equal to NaN.
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
