#pragma once

#include <benchmark/benchmark.h>

#include <string>

namespace bench {

/// A figure is a pair of benchmarks named `name` and `name/baseline`. The measured value is in a counter with
/// this name. The label holds its unit.
inline constexpr const char* kValue = "value";

/// Stores a figure's value and unit.
inline void report(benchmark::State& state, double value, const std::string& unit) {
    state.counters[kValue] = value;
    state.SetLabel(unit);
}

} // namespace bench
