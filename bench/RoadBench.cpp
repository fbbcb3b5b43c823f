// file_to_commands: microseconds per order of a large file through loop, queue, check and issue, to a host
// that answers at once. The baseline is the same figure for a file of 1,000 lines.
// memory_per_order: resident bytes for each order of the large file while it waits in the queue. The baseline
// is the size of its line in bytes.
#include "bench/BenchHost.h"
#include "bench/Figure.h"

#include <unistd.h>

#include <malloc.h>

#include <chrono>
#include <cstdio>

namespace {

constexpr int kManyOrders = 100000;
constexpr int kFewOrders = 1000;
constexpr int kSpin = 1; // milliseconds: the loop spins, so that the polling interval is not measured

void roadTime(benchmark::State& state, int orders) {
    const std::string folder = bench::makeFolder();
    bench::CBenchHost host(1, kSpin, folder);
    double seconds = 0;
    for (auto _ : state) {
        host.orders().reset();
        const auto begin = std::chrono::steady_clock::now();
        host.dropOrders(orders);
        host.orders().waitFor(orders);
        seconds += std::chrono::duration<double>(std::chrono::steady_clock::now() - begin).count();
        if (host.orders().refusals() != 0) state.SkipWithError("orders were refused");
    }
    bench::report(
        state, seconds * 1e6 / (static_cast<double>(orders) * static_cast<double>(state.iterations())), "us");
    bench::removeFolder(folder);
}

void fileToCommands(benchmark::State& state) {
    roadTime(state, kManyOrders);
}
void fileToCommandsBaseline(benchmark::State& state) {
    roadTime(state, kFewOrders);
}

/// This is not a figure. It only tests that the benchmark host accepts orders, and is quick even in a debug
/// build.
void someOrders(benchmark::State& state) {
    roadTime(state, 100);
}

double residentBytes() {
    long pages = 0;
    long resident = 0;
    if (std::FILE* statm = std::fopen("/proc/self/statm", "r")) {
        if (std::fscanf(statm, "%ld %ld", &pages, &resident) != 2) resident = 0;
        std::fclose(statm);
    }
    return static_cast<double>(resident) * static_cast<double>(sysconf(_SC_PAGESIZE));
}

void memoryPerOrder(benchmark::State& state) {
    const std::string folder = bench::makeFolder();
    {
        bench::CBenchHost host(1, kSpin, folder);
        for (auto _ : state) {
            host.orders().reset();
            malloc_trim(0);
            const double before = residentBytes();
            host.orders().hold();
            host.dropOrders(kManyOrders);
            host.orders().waitUntilHeld();
            bench::report(state, (residentBytes() - before) / kManyOrders, "bytes");
            host.orders().release();
            host.orders().waitFor(kManyOrders);
        }
    }
    bench::removeFolder(folder);
}

void memoryPerOrderBaseline(benchmark::State& state) {
    for (auto _ : state)
        benchmark::ClobberMemory();
    bench::report(state, static_cast<double>(bench::stockLines(1).size()), "bytes");
}

BENCHMARK(someOrders)->Name("some_orders")->Iterations(1);
BENCHMARK(memoryPerOrder)->Name("memory_per_order")->Iterations(1)->Repetitions(3);
BENCHMARK(memoryPerOrderBaseline)->Name("memory_per_order/baseline")->Iterations(1)->Repetitions(3);
BENCHMARK(fileToCommands)->Name("file_to_commands")->Iterations(3)->Repetitions(5);
BENCHMARK(fileToCommandsBaseline)->Name("file_to_commands/baseline")->Iterations(200)->Repetitions(5);

} // namespace
