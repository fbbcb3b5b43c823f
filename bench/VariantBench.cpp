// split_batch: microseconds per order of a batch of 500 through both passes of the two-pass variant, without
// a confirmation, on a host that answers at once. The baseline is the same batch in the one-pass variant.
// Both run on one thread.
#include "bench/BenchHost.h"
#include "bench/Figure.h"

#include "orderservice/variants/OrderServiceSplit.h"
#include "orderservice/variants/OrderServiceUnion.h"

#include <QObject>
#include <QVector>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <string>

namespace {

using namespace TC;

constexpr int kOrders = 500;
constexpr int kRounds = 20;
constexpr int kRepetitions = 31;
constexpr int kNoInterval = 1000; // no files are read

QVector<COrderParam> makeBatch() {
    QVector<COrderParam> orders;
    for (int i = 0; i < kOrders; ++i) {
        COrderSingleParam line;
        line.m_strCode = minimal::kStockKey;
        line.m_nVolume = bench::kStockVolume;
        line.m_dPrice = minimal::kPrice;
        COrderParam order;
        order.m_nOrderType = bench::kStockNumber;
        order.m_nChannel = 1;
        order.m_eStrategyType = EOrderStrategyType::File;
        order.m_strRemark = "batch " + std::to_string(i);
        order.m_orders.push_back(line);
        orders.push_back(order);
    }
    return orders;
}

/// Places the batch in several rounds and reports the time per order of the best round.
void placeBatches(benchmark::State& state, COrderServiceBase& variant, bench::CBenchServices& services) {
    COrderStrategyMap& strategies = services.strategies();
    strategies.insert(1, bench::stockStrategy(1, "none"));
    strategies[1].m_stockSetting.m_ePriceType = EPriceType::Specified;
    const QVector<COrderParam> batch = makeBatch();
    double best = HUGE_VAL;
    services.orders().reset();
    for (auto _ : state) {
        for (int round = 0; round < kRounds; ++round) {
            const auto begin = std::chrono::steady_clock::now();
            variant.placeOrders(batch, &strategies);
            const std::chrono::duration<double, std::micro> took = std::chrono::steady_clock::now() - begin;
            best = std::min(best, took.count());
        }
    }
    services.orders().waitFor(kOrders * kRounds);
    if (services.orders().refusals() > 0) state.SkipWithError("an order was refused");
    bench::report(state, best / kOrders, "us");
}

void splitBatch(benchmark::State& state) {
    bench::CBenchServices services(kNoInterval);
    COrderServiceSplit variant;
    QObject::connect(
        &variant, &COrderServiceBase::sigPlaceLegalOrders,
        [&variant](const auto& orders, const auto* map) { variant.placeLegalOrders(orders, map); });
    placeBatches(state, variant, services);
}

void unionBatch(benchmark::State& state) {
    bench::CBenchServices services(kNoInterval);
    COrderServiceUnion variant;
    placeBatches(state, variant, services);
}

BENCHMARK(splitBatch)->Name("split_batch")->Iterations(1)->Repetitions(kRepetitions);
BENCHMARK(unionBatch)->Name("split_batch/baseline")->Iterations(1)->Repetitions(kRepetitions);

} // namespace
