// idle_cost: share of one processor, in percent, that the service uses with 50 running strategies, no files
// and a polling interval of 50 ms. The baseline only tries to open the same missing files at the same
// interval.
#include "bench/BenchHost.h"
#include "bench/Figure.h"

#include <fcntl.h>
#include <sys/resource.h>
#include <unistd.h>

#include <chrono>
#include <thread>

namespace {

constexpr int kStrategies = 50;
constexpr int kIntervalMs = 50;
constexpr auto kWatched = std::chrono::seconds(3);

double processorSeconds() {
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    const auto seconds = [](const timeval& time) {
        return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) / 1e6;
    };
    return seconds(usage.ru_utime) + seconds(usage.ru_stime);
}

template<typename Watch>
void measureShare(benchmark::State& state, const Watch& watch) {
    for (auto _ : state) {
        const double before = processorSeconds();
        watch();
        const double share = (processorSeconds() - before) / std::chrono::duration<double>(kWatched).count();
        bench::report(state, share * 100, "%");
    }
}

void idleCost(benchmark::State& state) {
    const std::string folder = bench::makeFolder();
    {
        const bench::CBenchHost host(kStrategies, kIntervalMs, folder);
        measureShare(state, [] { std::this_thread::sleep_for(kWatched); });
    }
    bench::removeFolder(folder);
}

void idleCostBaseline(benchmark::State& state) {
    const std::string folder = bench::makeFolder();
    measureShare(state, [&] {
        const auto end = std::chrono::steady_clock::now() + kWatched;
        while (std::chrono::steady_clock::now() < end) {
            for (int i = 1; i <= kStrategies; ++i) {
                const int descriptor = ::open((folder + "/" + std::to_string(i) + ".txt").c_str(), O_RDONLY);
                if (descriptor >= 0) ::close(descriptor);
            }
            std::this_thread::sleep_for(std::chrono::milliseconds(kIntervalMs));
        }
    });
    bench::removeFolder(folder);
}

BENCHMARK(idleCost)->Name("idle_cost")->Iterations(1)->Repetitions(3);
BENCHMARK(idleCostBaseline)->Name("idle_cost/baseline")->Iterations(1)->Repetitions(3);

} // namespace
