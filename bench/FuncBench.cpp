// func_parse: microseconds from a parameter text to record and strategy. The baseline reads the same text as
// strict JSON only.
// func_stock, func_future: microseconds per call at its own price, from the parameter text to the command, on
// a host that answers at once. The calls use 5,000 instruments. The baseline makes only the host calls of the
// same calls, with the same arguments, which are made once.
// func_basket: microseconds per row of a basket of 5,000 rows over three accounts. The baseline makes only
// its host calls.
// func_basket_rows: the same rows; the baseline is ten baskets of 500 rows, so the ratio is 1 if the time is
// linear. The commands are kept until the end of a round, like a host keeps them.
// func_ten: calls per second of ten threads that call at once. The baseline is one thread.
// In all of them the command guard is on, as in a host of the kit.
#include "bench/CheckHost.h"
#include "bench/Figure.h"
#include "bench/FuncCalls.h"

#include "orderservice/base/Bson.h"
#include "orderservice/base/KNError.h"
#include "orderservice/func/FuncParser.h"
#include "orderservice/func/FuncStrategy.h"
#include "orderservice/func/OrderFuncService.h"

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cmath>
#include <cstddef>
#include <future>
#include <random>
#include <string>
#include <thread>
#include <vector>

namespace {

using namespace TC;

constexpr int kInstruments = 5000;
constexpr int kBasketRows = 5000;
constexpr int kFewRows = 500;
constexpr int kBasketAccounts = 3;
constexpr int kRounds = 10;
constexpr int kRepetitions = 15;
constexpr int kManyThreads = 10;
constexpr int kThreadCalls = 10000; ///< in one round, by all threads together

constexpr char kFunction[] = "passorder";

/// The calls of one family.
struct CSingleCase {
    bench::CFuncKind kind;
    QString (*code)(int index);
    const char* market; ///< prefix of the code in the host's key
    void (bench::CFuncCalls::*calls)(bench::CFuncInstrument&) const;
};

constexpr auto kAccount = ESelectedAccountType::Account;
constexpr CSingleCase kStock = {{EOrderStrategyTradeType::Stock, kAccount, 23, EOperationType::Buy},
                                &bench::CCheckHost::stockCode,
                                "SH",
                                &bench::CFuncCalls::callStock};
constexpr CSingleCase kFuture = {{EOrderStrategyTradeType::Future, kAccount, 0, EOperationType::OpenLong},
                                 &bench::CCheckHost::futureCode,
                                 "",
                                 &bench::CFuncCalls::callFuture};
constexpr bench::CFuncKind kBasket = {EOrderStrategyTradeType::Basket, ESelectedAccountType::Group, 25,
                                      EOperationType::Buy};

/// The part of a parameter text that is the same for all calls.
constexpr char kNames[] =
    R"(,"strategyName":"trend_first","tradeKey":"free|first leg|7","modelName":"bench"})";

std::string singleText(const bench::CCheckHost& host, const CSingleCase& family, const QString& code) {
    return R"({"opType":)" + std::to_string(family.kind.m_nOpType) +
           R"(,"orderType":1101,"prType":11,"modelPrice":"10.5","modelVolume":"300","accountID":")" +
           host.firstAccount()->m_strKey + R"(","orderCode":")" + code.toStdString() + '"' + kNames;
}

std::string basketText(const QString& name) {
    return R"({"opType":25,"orderType":2201,"prType":5,"modelVolume":"3","accountID":")" +
           bench::CCheckHost::groupName().toStdString() + R"(","orderCode":")" + name.toStdString() + '"' +
           kNames;
}

/// The codes of the instruments, in random order.
std::vector<QString> makeCodes(const CSingleCase& family, int count) {
    std::vector<QString> codes;
    for (int i = 0; i < count; ++i)
        codes.push_back(family.code(i));
    std::shuffle(codes.begin(), codes.end(), std::mt19937(7));
    return codes;
}

std::vector<std::string> makeTexts(const bench::CCheckHost& host, const CSingleCase& family, int count) {
    std::vector<std::string> texts;
    for (const QString& code : makeCodes(family, count))
        texts.push_back(singleText(host, family, code));
    return texts;
}

/// The service of a host. Counts the failures that it reports.
class CCaller {
public:
    CCaller() {
        m_service.registOrderFailedCallback(
            [this](const int&, const std::string&, const utils::KNError&) { ++m_nFailures; });
    }
    void call(const std::string& text) { m_service.doParserOrder(m_strFunction, text, m_strNone); }
    bool hasFailed() const { return m_nFailures > 0; }

private:
    const std::string m_strFunction = kFunction;
    const std::string m_strNone;
    std::atomic<long> m_nFailures{0};
    COrderFuncService m_service;
};

template<typename Step>
double seconds(const Step& step) {
    const auto begin = std::chrono::steady_clock::now();
    step();
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - begin).count();
}

/// Measures the step in several rounds, with a clean-up after each, and reports the microseconds per item of
/// the best round.
template<typename Step, typename CleanUp>
void reportBest(benchmark::State& state, std::size_t items, const Step& step, const CleanUp& cleanUp) {
    constexpr double kMicroseconds = 1e6;
    double best = HUGE_VAL;
    for (int round = 0; round < kRounds; ++round) {
        best = std::min(best, seconds(step));
        cleanUp();
    }
    bench::report(state, kMicroseconds * best / static_cast<double>(items), "us");
}

template<typename Step>
void reportBest(benchmark::State& state, std::size_t items, const Step& step) {
    reportBest(state, items, step, [] {});
}

/// Skips the figure and returns false if the two steps make different host calls.
template<typename First, typename Second>
bool makeSameCalls(benchmark::State& state, const bench::CCheckHost& host, const First& first,
                   const Second& second) {
    const bench::CCallCounts before = host.calls();
    first();
    const bench::CCallCounts between = host.calls();
    second();
    const std::string difference = bench::differenceOf(before, between, host.calls());
    if (!difference.empty())
        state.SkipWithError(("the call makes other host calls than its baseline:" + difference).c_str());
    return difference.empty();
}

void parseText(benchmark::State& state) {
    const bench::CCheckHost host(1, kInstruments);
    const std::vector<std::string> texts = makeTexts(host, kStock, kInstruments);
    bool isRead = true;
    const auto parseAll = [&] {
        for (const std::string& text : texts) {
            COrderFuncParam param;
            std::string error;
            parserParam(param, text, error);
            isRead = isRead && error.empty();
            benchmark::DoNotOptimize(getStrategy(param, error));
            isRead = isRead && error.empty();
        }
    };
    for (auto _ : state)
        reportBest(state, texts.size(), parseAll);
    if (!isRead) state.SkipWithError("a text was refused");
}

void parseTextBaseline(benchmark::State& state) {
    const bench::CCheckHost host(1, kInstruments);
    const std::vector<std::string> texts = makeTexts(host, kStock, kInstruments);
    const auto parseAll = [&] {
        for (const std::string& text : texts)
            benchmark::DoNotOptimize(bson::fromjson(text));
    };
    for (auto _ : state)
        reportBest(state, texts.size(), parseAll);
}

void callSingles(benchmark::State& state, const CSingleCase& family) {
    const bench::CCheckHost host(1, kInstruments);
    const std::vector<std::string> texts = makeTexts(host, family, kInstruments);
    CCaller caller;
    const auto callAll = [&] {
        for (const std::string& text : texts)
            caller.call(text);
    };
    for (auto _ : state)
        reportBest(state, texts.size(), callAll);
    if (caller.hasFailed() || host.commandCount() != static_cast<long>(kInstruments) * kRounds)
        state.SkipWithError("a call was refused");
}

/// The instruments of the calls, in the order of the calls.
std::vector<bench::CFuncInstrument> makeInstruments(const CSingleCase& family, int count) {
    std::vector<bench::CFuncInstrument> instruments;
    for (const QString& code : makeCodes(family, count))
        instruments.emplace_back(QLatin1String(family.market) + code);
    return instruments;
}

/// Compares the host calls of one call with those of its baseline.
bool isSameSingle(benchmark::State& state, const bench::CCheckHost& host, const CSingleCase& family,
                  const bench::CFuncCalls& calls, bench::CFuncInstrument& instrument) {
    CCaller caller;
    const std::string text = singleText(host, family, instrument.m_code);
    return makeSameCalls(
        state, host, [&] { caller.call(text); }, [&] { (calls.*family.calls)(instrument); });
}

void singleCallsOnly(benchmark::State& state, const CSingleCase& family) {
    const bench::CCheckHost host(1, kInstruments);
    std::vector<bench::CFuncInstrument> instruments = makeInstruments(family, kInstruments);
    const bench::CFuncCalls calls(family.kind, QString::fromStdString(host.firstAccount()->m_strKey));
    if (!isSameSingle(state, host, family, calls, instruments.front())) return;
    const auto callAll = [&] {
        for (bench::CFuncInstrument& instrument : instruments)
            (calls.*family.calls)(instrument);
    };
    for (auto _ : state)
        reportBest(state, instruments.size(), callAll);
}

/// Adds baskets of `rowsEach` rows, `rows` together, and returns their parameter texts.
std::vector<std::string> addBaskets(bench::CCheckHost& host, int rows, int rowsEach) {
    std::vector<std::string> texts;
    for (int first = 0; first < rows; first += rowsEach) {
        const QString name = QStringLiteral("basket %1").arg(first);
        host.addBasket(name, first, rowsEach);
        texts.push_back(basketText(name));
    }
    return texts;
}

void callBaskets(benchmark::State& state, int rowsEach) {
    bench::CCheckHost host(kBasketAccounts, kBasketRows);
    const std::vector<std::string> texts = addBaskets(host, kBasketRows, rowsEach);
    CCaller caller;
    host.keepCommands();
    bool isWhole = true;
    const auto callAll = [&] {
        for (const std::string& text : texts)
            caller.call(text);
    };
    const auto drop = [&] { isWhole = host.dropCommands() == kBasketAccounts * kBasketRows && isWhole; };
    for (auto _ : state)
        reportBest(state, kBasketRows, callAll, drop);
    if (caller.hasFailed() || !isWhole) state.SkipWithError("rows got lost");
}

std::vector<bench::CFuncInstrument> makeRows(int rows) {
    std::vector<bench::CFuncInstrument> instruments;
    for (int i = 0; i < rows; ++i)
        instruments.emplace_back(QStringLiteral("SH") + bench::CCheckHost::stockCode(i));
    return instruments;
}

bool isSameBasket(benchmark::State& state, bench::CCheckHost& host, const bench::CFuncCalls& calls,
                  std::vector<bench::CFuncInstrument>& rows) {
    CCaller caller;
    const int count = static_cast<int>(rows.size());
    const std::vector<std::string> texts = addBaskets(host, count, count);
    return makeSameCalls(
        state, host, [&] { caller.call(texts.front()); }, [&] { calls.callBasket(rows); });
}

void basketCallsOnly(benchmark::State& state) {
    bench::CCheckHost host(kBasketAccounts, kBasketRows);
    std::vector<bench::CFuncInstrument> rows = makeRows(kBasketRows);
    const bench::CFuncCalls calls(kBasket, bench::CCheckHost::groupName());
    if (!isSameBasket(state, host, calls, rows)) return;
    for (auto _ : state)
        reportBest(state, rows.size(), [&] { calls.callBasket(rows); });
}

/// Makes the calls on several threads that begin together, and returns the seconds until the last one ends.
/// Thread number i makes every `threads`-th call from call i on.
double callOnThreads(CCaller& caller, const std::vector<std::string>& texts, int threads, int calls) {
    std::promise<void> start;
    const std::shared_future<void> started = start.get_future().share();
    std::vector<std::thread> callers;
    for (int thread = 0; thread < threads; ++thread) {
        callers.emplace_back([&caller, &texts, started, thread, threads, calls] {
            started.wait();
            for (int call = thread; call < calls; call += threads)
                caller.call(texts[static_cast<std::size_t>(call) % texts.size()]);
        });
    }
    return seconds([&] {
        start.set_value();
        for (std::thread& each : callers)
            each.join();
    });
}

void callsPerSecond(benchmark::State& state, int threads) {
    const bench::CCheckHost host(1, kInstruments);
    const std::vector<std::string> texts = makeTexts(host, kStock, kInstruments);
    CCaller caller;
    double best = HUGE_VAL;
    for (auto _ : state) {
        for (int round = 0; round < kRounds; ++round)
            best = std::min(best, callOnThreads(caller, texts, threads, kThreadCalls));
        bench::report(state, kThreadCalls / best, "calls/s");
    }
    if (caller.hasFailed() || host.commandCount() != static_cast<long>(kThreadCalls) * kRounds)
        state.SkipWithError("a call was refused");
}

/// These are not figures. They only test that the host accepts the calls and that the baselines make the same
/// host calls, and are quick even in a debug build.
void someSingles(benchmark::State& state, const CSingleCase& family) {
    constexpr int kFewInstruments = 20;
    const bench::CCheckHost host(1, kFewInstruments);
    std::vector<bench::CFuncInstrument> instruments = makeInstruments(family, kFewInstruments);
    const bench::CFuncCalls calls(family.kind, QString::fromStdString(host.firstAccount()->m_strKey));
    CCaller caller;
    for (auto _ : state) {
        isSameSingle(state, host, family, calls, instruments.front());
        const long before = host.commandCount();
        callOnThreads(caller, makeTexts(host, family, kFewInstruments), kManyThreads, kFewInstruments);
        if (caller.hasFailed() || host.commandCount() != before + kFewInstruments)
            state.SkipWithError("a call was refused");
    }
}

void someBasket(benchmark::State& state) {
    constexpr int kSomeRows = 20;
    bench::CCheckHost host(kBasketAccounts, kSomeRows);
    std::vector<bench::CFuncInstrument> rows = makeRows(kSomeRows);
    const bench::CFuncCalls calls(kBasket, bench::CCheckHost::groupName());
    CCaller caller;
    for (auto _ : state) {
        isSameBasket(state, host, calls, rows);
        host.keepCommands();
        caller.call(addBaskets(host, kSomeRows, kSomeRows).front());
        if (caller.hasFailed() || host.dropCommands() != kBasketAccounts * kSomeRows)
            state.SkipWithError("rows got lost");
    }
}

#define FUNC_FIGURE(function, name, ...)                                                                     \
    BENCHMARK_CAPTURE(function, name, __VA_ARGS__)->Name(name)->Iterations(1)->Repetitions(kRepetitions)

BENCHMARK(parseText)->Name("func_parse")->Iterations(1)->Repetitions(kRepetitions);
BENCHMARK(parseTextBaseline)->Name("func_parse/baseline")->Iterations(1)->Repetitions(kRepetitions);
FUNC_FIGURE(callSingles, "func_stock", kStock);
FUNC_FIGURE(singleCallsOnly, "func_stock/baseline", kStock);
FUNC_FIGURE(callSingles, "func_future", kFuture);
FUNC_FIGURE(singleCallsOnly, "func_future/baseline", kFuture);
FUNC_FIGURE(callBaskets, "func_basket", kBasketRows);
BENCHMARK(basketCallsOnly)->Name("func_basket/baseline")->Iterations(1)->Repetitions(kRepetitions);
FUNC_FIGURE(callBaskets, "func_basket_rows", kBasketRows);
FUNC_FIGURE(callBaskets, "func_basket_rows/baseline", kFewRows);
FUNC_FIGURE(callsPerSecond, "func_ten", kManyThreads);
FUNC_FIGURE(callsPerSecond, "func_ten/baseline", 1);
BENCHMARK_CAPTURE(someSingles, stock, kStock)->Name("some_func_stock")->Iterations(1);
BENCHMARK_CAPTURE(someSingles, future, kFuture)->Name("some_func_future")->Iterations(1);
BENCHMARK(someBasket)->Name("some_func_basket")->Iterations(1);

} // namespace
