// Figures of the desk program, on a folder that the benchmark writes. Each order is split over two accounts.
// desk_file: microseconds per order of a file of 20,000 orders, from the file to the last line about them in
// the journal, which the desk writes after they are stored in the books. The baseline stores the same rows
// of tasks and orders and writes the same journal bytes, in one thread and in transactions of 100 commands.
// desk_socket_50: accepted orders per second of 50 connections with one line in flight each. The baseline is
// the echo server with the same client.
#include "bench/BookedOrders.h"
#include "bench/DeskProcess.h"
#include "bench/Figure.h"
#include "bench/SocketCrowd.h"
#include "bench/SocketPeers.h"

#include <chrono>
#include <stdexcept>
#include <string>

namespace {

constexpr int kFileOrders = 20000;
constexpr int kBatch = 100;
constexpr int kFirstRounds = 20;
constexpr int kRounds = 200;
constexpr int kRepetitions = 7;

/// Measures once. An exception makes the figure fail.
template<typename Measure>
void measureOnce(benchmark::State& state, const std::string& unit, const Measure& measure) {
    for (auto _ : state) {
        try {
            bench::report(state, measure(), unit);
        } catch (const std::runtime_error& error) {
            state.SkipWithError(error.what());
            break;
        }
    }
}

void deskFile(benchmark::State& state) {
    measureOnce(state, "us", [] { return bench::CBookedOrders(kFileOrders).seconds() * 1e6 / kFileOrders; });
}

void deskFileBaseline(benchmark::State& state) {
    measureOnce(state, "us", [] {
        static const bench::CBookedOrders booked(kFileOrders);
        return booked.storeAgain(kBatch) * 1e6 / kFileOrders;
    });
}

/// Lines per second, after some rounds that are not measured.
double ratePerSecond(const bench::CCrowd& crowd) {
    crowd.exchange(kFirstRounds);
    const auto begin = std::chrono::steady_clock::now();
    crowd.exchange(kRounds);
    const std::chrono::duration<double> took = std::chrono::steady_clock::now() - begin;
    return bench::CCrowd::kConnections * kRounds / took.count();
}

void deskSocket(benchmark::State& state) {
    measureOnce(state, "1/s", [] {
        const bench::CDeskFolder folder;
        bench::CDeskProcess desk(folder);
        double rate = 0;
        {
            const bench::CCrowd crowd({folder.port(), bench::kGreetingSize, bench::kReplySize},
                                      bench::CDeskFolder::socketLine());
            crowd.prepare(bench::CDeskFolder::loginLines(),
                          bench::CDeskFolder::kLoginLines * bench::kReplySize);
            rate = ratePerSecond(crowd);
        }
        desk.end();
        bench::checkBooks(folder, bench::CCrowd::kConnections * (kFirstRounds + kRounds) *
                                      bench::CDeskFolder::kAccounts);
        return rate;
    });
}

void deskSocketBaseline(benchmark::State& state) {
    measureOnce(state, "1/s", [] {
        const bench::CEcho echo;
        const std::string line = bench::CDeskFolder::socketLine();
        return ratePerSecond(bench::CCrowd({echo.port(), 0, line.size()}, line));
    });
}

/// This is not a figure. It only tests that the desk still accepts the orders of the figures.
void someDeskOrders(benchmark::State& state) {
    measureOnce(state, "s", [] { return bench::CBookedOrders(kBatch).storeAgain(kBatch); });
}

void once(benchmark::internal::Benchmark* figure) {
    figure->Iterations(1)->Repetitions(kRepetitions);
}

BENCHMARK(someDeskOrders)->Name("some_desk_orders")->Iterations(1);
BENCHMARK(deskFile)->Name("desk_file")->Apply(once);
BENCHMARK(deskFileBaseline)->Name("desk_file/baseline")->Apply(once);
BENCHMARK(deskSocket)->Name("desk_socket_50")->Apply(once);
BENCHMARK(deskSocketBaseline)->Name("desk_socket_50/baseline")->Apply(once);

} // namespace
