// file_to_commands: microseconds per order of a file of 100,000 lines through loop, queue, check and issue,
// to a host that answers at once. The baseline is the least work that such a file needs: the same file is
// written, its lines are read and split, one event is queued for the batch, and the host calls of the check
// and one call of orderCommands are made for each order, with arguments that were made before.
// memory_per_order: resident bytes for each order of the large file while it waits in the queue. The baseline
// is the size of its line in bytes.
#include "bench/BenchHost.h"
#include "bench/CheckCalls.h"
#include "bench/CheckHost.h"
#include "bench/Figure.h"

#include "orderservice/platform/OrderClient.h"

#include <QObject>
#include <QThread>

#include <boost/make_shared.hpp>

#include <unistd.h>

#include <malloc.h>

#include <chrono>
#include <cstdio>
#include <map>
#include <string>
#include <vector>

namespace {

constexpr int kManyOrders = 100000;
/// Polling interval in milliseconds. It is the shortest one with which the file thread sleeps between its
/// passes. It adds less than 0.1 us to the time of an order.
constexpr int kPollMs = 11;

const QString kMarket = QStringLiteral("SH");
const QString kCode = QStringLiteral("600000");

void reportMicroseconds(benchmark::State& state, double seconds, int orders) {
    bench::report(
        state, seconds * 1e6 / (static_cast<double>(orders) * static_cast<double>(state.iterations())), "us");
}

void measureFile(benchmark::State& state, int orders) {
    const std::string folder = bench::makeFolder();
    bench::CBenchHost host(1, kPollMs, folder);
    double seconds = 0;
    for (auto _ : state) {
        host.orders().reset();
        const auto begin = std::chrono::steady_clock::now();
        host.dropOrders(orders);
        host.orders().waitFor(orders);
        seconds += std::chrono::duration<double>(std::chrono::steady_clock::now() - begin).count();
        if (host.orders().refusals() != 0) state.SkipWithError("orders were refused");
    }
    reportMicroseconds(state, seconds, orders);
    bench::removeFolder(folder);
}

void fileToCommands(benchmark::State& state) {
    measureFile(state, kManyOrders);
}

/// Empty if the two make the same host calls: the check of one order of the file, and callNamedStock.
std::string differentCalls(const TC::COrderStrategyParam& strategy) {
    const bench::CCheckHost host(1, 1);
    const bench::CBareChecks checks;
    TC::COrderSingleParam line;
    line.m_strCode = minimal::kStockKey;
    line.m_dPrice = minimal::kPrice;
    line.m_nVolume = bench::kStockVolume;
    TC::COrderParam order;
    order.m_nOrderType = bench::kStockNumber;
    order.m_orders.push_back(line);
    bench::CHostCalls calls(strategy, TC::ESettingSlot::Stock, kMarket, kCode, bench::kStockVolume);
    std::vector<TC::CCodeOrderParam> codes;
    std::map<std::string, double> weights;
    const bench::CCallCounts before = host.calls();
    if (!checks.checkAndFillOrderStock(order, strategy, codes, weights))
        return " the check refuses the order";
    const bench::CCallCounts between = host.calls();
    calls.callNamedStock();
    return bench::differenceOf(before, between, host.calls());
}

/// One round of the baseline: the lines are scanned on this thread. Then one event makes the host calls of
/// all orders on the thread of the receiver.
void scanAndCall(QObject& receiver, bench::CCountingOrders& orders, bench::CHostCalls& calls,
                 const std::string& path) {
    std::FILE* stream = std::fopen(path.c_str(), "r");
    const std::size_t count = bench::splitLines(stream);
    std::fclose(stream);
    const auto command = boost::make_shared<TC::COrderComandParam>();
    QMetaObject::invokeMethod(
        &receiver,
        [&calls, command, count] {
            for (std::size_t i = 0; i < count; ++i) {
                calls.callNamedStock();
                TC::COrderClient::instance().orderCommands(command);
            }
        },
        Qt::QueuedConnection);
    orders.waitFor(static_cast<int>(count));
}

void fileToCommandsBaseline(benchmark::State& state) {
    const std::string folder = bench::makeFolder();
    const std::string path = folder + "/1.txt";
    const TC::COrderStrategyParam strategy = bench::stockStrategy(1, path);
    const std::string difference = differentCalls(strategy);
    if (!difference.empty())
        state.SkipWithError(("the check makes other host calls than its baseline:" + difference).c_str());
    bench::CBenchServices services(kPollMs);
    bench::CHostCalls calls(strategy, TC::ESettingSlot::Stock, kMarket, kCode, bench::kStockVolume);
    QThread thread;
    QObject receiver;
    receiver.moveToThread(&thread);
    thread.start();
    double seconds = 0;
    for (auto _ : state) {
        services.orders().reset();
        const auto begin = std::chrono::steady_clock::now();
        bench::dropStockLines(path, kManyOrders);
        scanAndCall(receiver, services.orders(), calls, path);
        seconds += std::chrono::duration<double>(std::chrono::steady_clock::now() - begin).count();
    }
    thread.quit();
    thread.wait();
    reportMicroseconds(state, seconds, kManyOrders);
    bench::removeFolder(folder);
}

/// This is not a figure. It only tests that the benchmark host accepts orders, and is quick even in a debug
/// build.
void someOrders(benchmark::State& state) {
    measureFile(state, 100);
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
        bench::CBenchHost host(1, kPollMs, folder);
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
BENCHMARK(fileToCommandsBaseline)->Name("file_to_commands/baseline")->Iterations(3)->Repetitions(5);

} // namespace
