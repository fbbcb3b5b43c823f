// check_basket: microseconds per row of a basket of 5,000 rows over three accounts, on a host that answers at
// once. The baseline is the same rows in baskets of 50. All records are kept until the end of a round, like a
// host keeps its commands, so both use the same amount of memory.
// position_exchange: nanoseconds per target, for 5,000 targets and 5,000 positions; half of them are the same
// instruments. The baseline is the time for 500 targets and 500 positions times log(5000) / log(500).
// weighted_volume: nanoseconds per row, for 5,000 rows that share money by weight. The baseline makes only
// the host calls.
#include "bench/CheckHost.h"
#include "bench/Figure.h"

#include "orderservice/platform/InstrumentTypes.h"
#include "orderservice/platform/TradingRules.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <random>
#include <string>

namespace {

using namespace TC;

constexpr int kManyRows = 5000;
constexpr int kFewRows = 50;
constexpr int kFewTargets = 500;
constexpr int kAccounts = 3;
constexpr int kRounds = 20;
constexpr int kRepetitions = 15;
constexpr double kAmount = 1e9;

/// Makes one row for each of `count` stocks, in random order.
QVector<COrderSingleParam> makeRows(int count, int firstStock = 0) {
    QVector<COrderSingleParam> rows(count);
    for (int i = 0; i < count; ++i) {
        rows[i].m_strCode = bench::CCheckHost::stockCode(firstStock + i);
        rows[i].m_nVolume = 900;
        rows[i].m_dWeight = 1 + i % 7;
    }
    std::shuffle(rows.begin(), rows.end(), std::mt19937(7));
    return rows;
}

template<typename Step>
double nanoseconds(const Step& step) {
    const auto begin = std::chrono::steady_clock::now();
    step();
    return std::chrono::duration<double, std::nano>(std::chrono::steady_clock::now() - begin).count();
}

/// Makes basket orders with `rowsEach` rows each.
std::vector<COrderParam> makeBaskets(int rowsEach) {
    constexpr int kBasketBuy = 25;
    const QVector<COrderSingleParam> rows = makeRows(kManyRows);
    std::vector<COrderParam> baskets;
    for (int first = 0; first < rows.size(); first += rowsEach) {
        COrderParam order;
        order.m_nOrderType = kBasketBuy;
        order.m_nChannel = 3;
        order.m_eStrategyType = EOrderStrategyType::File;
        order.m_orders = rows.mid(first, rowsEach);
        baskets.push_back(order);
    }
    return baskets;
}

void checkBasket(benchmark::State& state, int rowsEach) {
    const bench::CCheckHost host(kAccounts, kManyRows);
    const bench::CBareChecks checks;
    const std::vector<COrderParam> baskets = makeBaskets(rowsEach);
    COrderStrategyParam strategy;
    strategy.m_nChannel = 3;
    strategy.m_eTradeType = EOrderStrategyTradeType::Basket;
    strategy.m_strSelectedAccount = QStringLiteral("group");
    std::vector<std::vector<CCodeOrderParam>> records(baskets.size());
    const auto checkAll = [&] {
        for (std::size_t i = 0; i < baskets.size(); ++i) {
            COrderParam order = baskets[i];
            std::map<std::string, double> weights;
            checks.checkAndFillOrderCompose(order, strategy, records[i], weights);
        }
    };
    const auto expected = static_cast<std::size_t>(kAccounts * rowsEach);
    const auto isWhole = [&](const auto& ofBasket) { return ofBasket.size() == expected; };
    double best = HUGE_VAL;
    for (auto _ : state) {
        for (int round = 0; round < kRounds; ++round) {
            best = std::min(best, nanoseconds(checkAll));
            if (!std::all_of(records.begin(), records.end(), isWhole)) state.SkipWithError("rows got lost");
            records.assign(baskets.size(), {});
        }
        bench::report(state, best / 1e3 / kManyRows, "us");
    }
}

void exchangePosition(benchmark::State& state, int count, double scale) {
    bench::CCheckHost host(1, 2 * kManyRows);
    const bench::CBareChecks checks;
    for (const COrderSingleParam& row : makeRows(count, count / 2))
        host.hold(row.m_strCode.toInt() - bench::CCheckHost::stockCode(0).toInt(), 500);
    const QVector<COrderSingleParam> targets = makeRows(count);
    const int times = kManyRows / count;
    int orders = 0;
    const auto exchange = [&] {
        for (int i = 0; i < times; ++i) {
            QVector<COrderSingleParam> rows = targets;
            checks.exchangePositionStock(host.firstAccount(), rows, 1);
            orders = rows.size();
        }
    };
    double best = HUGE_VAL;
    for (auto _ : state) {
        for (int round = 0; round < kRounds; ++round)
            best = std::min(best, nanoseconds(exchange));
        bench::report(state, scale * best / kManyRows, "ns");
    }
    if (orders != count + count / 2) state.SkipWithError("the exchange gave other orders");
}

void weightedVolume(benchmark::State& state) {
    const bench::CCheckHost host(1, kManyRows);
    const bench::CBareChecks checks;
    QVector<COrderSingleParam> rows = makeRows(kManyRows);
    double best = HUGE_VAL;
    for (auto _ : state) {
        for (int round = 0; round < kRounds; ++round)
            best = std::min(best, nanoseconds([&] { checks.calcVolumnByWeight(rows, kAmount); }));
        bench::report(state, best / kManyRows, "ns");
    }
    if (rows.front().m_nVolume == 900) state.SkipWithError("a row was not priced");
}

/// The host calls that one row needs for a volume by weight.
struct CWeightedRow {
    explicit CWeightedRow(const QString& shortCode)
        : fullCode(QStringLiteral("SH") + shortCode), code(shortCode.toStdString()) {}
    void call() const {
        auto& exchange = CExchangeClient::instance();
        benchmark::DoNotOptimize(exchange.hasStock(fullCode));
        benchmark::DoNotOptimize(
            knservice::StockTypeCenter::isTypedStock(knservice::kTypeTradableStock, market, code));
        benchmark::DoNotOptimize(CQuoteClient::instance().getStockPrice(fullCode));
        benchmark::DoNotOptimize(exchange.getCodeInfo(fullCode));
        benchmark::DoNotOptimize(knservice::isTypedStock(knservice::kTypeStarMarket, market, code, product));
        benchmark::DoNotOptimize(knservice::getTradeMinUnit(market, code, unsetEnum<EOperationType>()));
    }

    QString fullCode;
    std::string market = "SH";
    std::string code;
    std::string product;
};

void weightedVolumeBaseline(benchmark::State& state) {
    const bench::CCheckHost host(1, kManyRows);
    const bench::CBareChecks checks;
    QVector<COrderSingleParam> rows = makeRows(kManyRows);
    std::vector<CWeightedRow> calls;
    for (const COrderSingleParam& row : qAsConst(rows))
        calls.emplace_back(row.m_strCode);
    const auto callAll = [&] {
        for (const CWeightedRow& row : calls)
            row.call();
    };
    const bench::CCallCounts before = host.calls();
    checks.calcVolumnByWeight(rows, kAmount);
    const bench::CCallCounts between = host.calls();
    callAll();
    const std::string difference = bench::differenceOf(before, between, host.calls());
    if (!difference.empty()) {
        state.SkipWithError(("the rows take other host calls than their baseline:" + difference).c_str());
        return;
    }
    double best = HUGE_VAL;
    for (auto _ : state) {
        for (int round = 0; round < kRounds; ++round)
            best = std::min(best, nanoseconds(callAll));
        bench::report(state, best / kManyRows, "ns");
    }
}

const double kLogRatio =
    std::log(static_cast<double>(kManyRows)) / std::log(static_cast<double>(kFewTargets));

#define FIGURE(function, name, ...)                                                                          \
    BENCHMARK_CAPTURE(function, name, __VA_ARGS__)->Name(name)->Iterations(1)->Repetitions(kRepetitions)

FIGURE(checkBasket, "check_basket", kManyRows);
FIGURE(checkBasket, "check_basket/baseline", kFewRows);
FIGURE(exchangePosition, "position_exchange", kManyRows, 1.0);
FIGURE(exchangePosition, "position_exchange/baseline", kFewTargets, kLogRatio);
BENCHMARK(weightedVolume)->Name("weighted_volume")->Iterations(1)->Repetitions(kRepetitions);
BENCHMARK(weightedVolumeBaseline)->Name("weighted_volume/baseline")->Iterations(1)->Repetitions(kRepetitions);

} // namespace
