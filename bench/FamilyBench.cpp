// check_stock, check_future, check_option: microseconds per order with its own price, from the record to the
// checked code records, on a host that answers at once. The orders use 5,000 instruments. The baseline makes
// only the host calls of the same orders, with the same arguments.
#include "bench/CheckCalls.h"
#include "bench/CheckHost.h"
#include "bench/Figure.h"

#include "orderservice/check/FamilyRules.h"
#include "orderservice/platform/TradingRules.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <map>
#include <random>
#include <string>
#include <vector>

namespace {

using namespace TC;

constexpr int kInstruments = 5000;
constexpr int kRounds = 20;
constexpr int kRepetitions = 31;
constexpr int kVolume = 300;

/// One family: its orders, its check and the host calls that the check makes.
struct CFamilyCase {
    EOrderStrategyTradeType tradeType;
    ESettingSlot slot;
    int number;
    QString (*code)(int index);
    const char* market; ///< prefix of the code in the host's key
    CCheckFn check;
    void (bench::CHostCalls::*calls)();
};

COrderStrategyParam makeStrategy(const CFamilyCase& family) {
    COrderStrategyParam strategy;
    strategy.m_nStatus = COrderStrategyParam::kRunning;
    strategy.m_nChannel = 3;
    strategy.m_eTradeType = family.tradeType;
    strategy.m_strSelectedAccount = QStringLiteral("group");
    strategy.setting(family.slot).m_ePriceType = EPriceType::Specified;
    return strategy;
}

/// Returns the codes of all instruments, in random order.
std::vector<QString> makeCodes(const CFamilyCase& family) {
    std::vector<QString> codes;
    for (int i = 0; i < kInstruments; ++i)
        codes.push_back(family.code(i));
    std::shuffle(codes.begin(), codes.end(), std::mt19937(7));
    return codes;
}

std::vector<COrderParam> makeOrders(const CFamilyCase& family) {
    std::vector<COrderParam> orders;
    for (const QString& code : makeCodes(family)) {
        COrderSingleParam line;
        line.m_strCode = code;
        line.m_nVolume = kVolume;
        line.m_dPrice = minimal::kPrice;
        COrderParam order;
        order.m_nOrderType = family.number;
        order.m_nChannel = 3;
        order.m_eStrategyType = EOrderStrategyType::File;
        order.m_orders.push_back(line);
        orders.push_back(order);
    }
    return orders;
}

constexpr CFamilyCase kStock = {
    EOrderStrategyTradeType::Stock, ESettingSlot::Stock, 23, &bench::CCheckHost::stockCode, "SH", checkStock,
    &bench::CHostCalls::callStock};
constexpr CFamilyCase kFuture = {
    EOrderStrategyTradeType::Future, ESettingSlot::Future, 0, &bench::CCheckHost::futureCode, "", checkFuture,
    &bench::CHostCalls::callFuture};
constexpr CFamilyCase kOption = {EOrderStrategyTradeType::StockOption,
                                 ESettingSlot::StockOption,
                                 48,
                                 &bench::CCheckHost::optionCode,
                                 "",
                                 checkOption,
                                 &bench::CHostCalls::callOption};

/// Checks one order as the service's thread does: by the check that copies neither order nor strategy, with
/// new lists for each order.
bool checkOnce(const CFamilyCase& family, const COrderParam& order, const COrderStrategyParam& strategy) {
    std::vector<CCodeOrderParam> codes;
    std::map<std::string, double> weights;
    return family.check(order, strategy, codes, weights) && codes.size() == 1;
}

/// Measures the step over all items in several rounds and reports the time per item of the best round.
template<typename Items, typename Step>
void reportMicroseconds(benchmark::State& state, Items& items, const Step& step) {
    double best = HUGE_VAL;
    for (int round = 0; round < kRounds; ++round) {
        const auto begin = std::chrono::steady_clock::now();
        for (auto& item : items)
            step(item);
        const std::chrono::duration<double, std::micro> took = std::chrono::steady_clock::now() - begin;
        best = std::min(best, took.count());
    }
    bench::report(state, best / static_cast<double>(items.size()), "us");
}

void checkOrders(benchmark::State& state, const CFamilyCase& family) {
    const bench::CCheckHost host(1, kInstruments);
    const COrderStrategyParam strategy = makeStrategy(family);
    const std::vector<COrderParam> orders = makeOrders(family);
    bool isPassed = true;
    for (auto _ : state)
        reportMicroseconds(state, orders, [&](const COrderParam& order) {
            isPassed = checkOnce(family, order, strategy) && isPassed;
        });
    if (!isPassed) state.SkipWithError("an order was refused");
}

void hostCallsOnly(benchmark::State& state, const CFamilyCase& family) {
    const bench::CCheckHost host(1, kInstruments);
    const COrderStrategyParam strategy = makeStrategy(family);
    std::vector<bench::CHostCalls> calls;
    calls.reserve(kInstruments);
    for (const QString& code : makeCodes(family))
        calls.emplace_back(strategy, family.slot, QLatin1String(family.market), code, kVolume);
    const bench::CCallCounts before = host.calls();
    checkOnce(family, makeOrders(family).front(), strategy);
    const bench::CCallCounts between = host.calls();
    (calls.front().*family.calls)();
    const std::string difference = bench::differenceOf(before, between, host.calls());
    if (!difference.empty()) {
        state.SkipWithError(("the check makes other host calls than its baseline:" + difference).c_str());
        return;
    }
    for (auto _ : state)
        reportMicroseconds(state, calls,
                           [&](bench::CHostCalls& instrument) { (instrument.*family.calls)(); });
}

#define FAMILY_FIGURE(name, family)                                                                          \
    BENCHMARK_CAPTURE(checkOrders, name, family)->Name(#name)->Iterations(1)->Repetitions(kRepetitions);     \
    BENCHMARK_CAPTURE(hostCallsOnly, name, family)                                                           \
        ->Name(#name "/baseline")                                                                            \
        ->Iterations(1)                                                                                      \
        ->Repetitions(kRepetitions)

FAMILY_FIGURE(check_stock, kStock);
FAMILY_FIGURE(check_future, kFuture);
FAMILY_FIGURE(check_option, kOption);

} // namespace
