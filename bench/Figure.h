#pragma once

#include <benchmark/benchmark.h>

#include <string>

namespace bench {

/// A figure is a benchmark named `name` beside one named `name/baseline`. What it measured goes into a
/// counter of this name, in the unit that the label tells.
inline constexpr const char* kValue = "value";

/// Stores a figure's value and unit.
inline void report(benchmark::State& state, double value, const std::string& unit) {
    state.counters[kValue] = value;
    state.SetLabel(unit);
}

} // namespace bench
