// check_stock, check_future, check_option: microseconds per order with its own price, from the record to the
// checked code records, on a host that answers at once. The orders use 5,000 instruments. The baseline makes
// only the host calls of the same orders, with the same arguments.
#include "bench/CheckHost.h"
#include "bench/Figure.h"

#include "orderservice/base/KNError.h"
#include "orderservice/check/FamilyRules.h"
#include "orderservice/platform/TradingRules.h"

#include <boost/make_shared.hpp>

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

class CHostCalls;

/// One family: its orders, its check and the host calls that the check makes.
struct CRoad {
    EOrderStrategyTradeType family;
    ESettingSlot slot;
    int number;
    QString (*code)(int index);
    const char* market; ///< prefix of the code in the host's key
    CCheckFn check;
    void (CHostCalls::*calls)();
};

COrderStrategyParam makeStrategy(const CRoad& road) {
    COrderStrategyParam strategy;
    strategy.m_nStatus = COrderStrategyParam::kRunning;
    strategy.m_nChannel = 3;
    strategy.m_eTradeType = road.family;
    strategy.m_strSelectedAccount = QStringLiteral("group");
    strategy.setting(road.slot).m_ePriceType = EPriceType::Specified;
    return strategy;
}

/// Returns the codes of all instruments, in random order.
std::vector<QString> makeCodes(const CRoad& road) {
    std::vector<QString> codes;
    for (int i = 0; i < kInstruments; ++i)
        codes.push_back(road.code(i));
    std::shuffle(codes.begin(), codes.end(), std::mt19937(7));
    return codes;
}

std::vector<COrderParam> makeOrders(const CRoad& road) {
    std::vector<COrderParam> orders;
    for (const QString& code : makeCodes(road)) {
        COrderSingleParam line;
        line.m_strCode = code;
        line.m_nVolume = kVolume;
        line.m_dPrice = minimal::kPrice;
        COrderParam order;
        order.m_nOrderType = road.number;
        order.m_nChannel = 3;
        order.m_eStrategyType = EOrderStrategyType::File;
        order.m_orders.push_back(line);
        orders.push_back(order);
    }
    return orders;
}

/// The host calls of one family's check for one instrument. The arguments are made once, except for the lists
/// to which the host appends.
class CHostCalls {
public:
    CHostCalls(const CRoad& road, const COrderStrategyParam& strategy, const QString& code)
        : m_strategy(strategy), m_setting(strategy.setting(road.slot)), m_code(code),
          m_fullCode(QLatin1String(road.market) + code), m_stockKeys{QStringLiteral("SH") + code,
                                                                     QStringLiteral("SZ") + code, code},
          m_detail(CExchangeClient::instance().getCodeInfo(m_fullCode)),
          m_quote(CQuoteClient::instance().getStockPrice(m_fullCode)) {
        appendAccounts(m_accounts, m_ratios);
        m_record.m_stock = {m_detail->m_strMarket, m_detail->m_strCode, m_detail->m_strName, {}};
    }

    void callStock() {
        callAccounts();
        benchmark::DoNotOptimize(qdStockKey(m_market, m_code));
        benchmark::DoNotOptimize(CExchangeClient::instance().hasStock(m_fullCode));
        benchmark::DoNotOptimize(knservice::StockTypeCenter::isTypedStock(
            knservice::kTypeTradableStock, m_detail->m_strMarket, m_detail->m_strCode));
        callInstrument();
        benchmark::DoNotOptimize(callBroker());
        callRecords();
    }
    void callFuture() {
        callAccounts();
        benchmark::DoNotOptimize(CExchangeClient::instance().hasFuture(m_fullCode));
        callInstrument();
        callRecords();
    }
    void callOption() {
        callAccounts();
        for (const QString& key : m_stockKeys)
            benchmark::DoNotOptimize(CExchangeClient::instance().hasStock(key));
        benchmark::DoNotOptimize(CExchangeClient::instance().hasOption(m_fullCode));
        callInstrument();
        benchmark::DoNotOptimize(callBroker());
        callRecords();
    }

private:
    EQDBrokerType callBroker() const { return orderStrategyTradeTypeToBrokerType(m_strategy.m_eTradeType); }
    void appendAccounts(std::vector<CAccountInfoPtr>& accounts, std::vector<double>& ratios) const {
        getUserConfig()->getAccountsWeights(callBroker(), m_strategy.m_eSelectedAccountType,
                                            m_strategy.m_strSelectedAccount, accounts, ratios, false);
    }
    void callAccounts() const {
        std::vector<CAccountInfoPtr> accounts;
        std::vector<double> ratios;
        appendAccounts(accounts, ratios);
        benchmark::DoNotOptimize(accounts.data());
    }
    void callInstrument() const {
        benchmark::DoNotOptimize(CQuoteRequest::makeRequest(m_fullCode, m_noCallback, ESubscribeType::Plain));
        benchmark::DoNotOptimize(CExchangeClient::instance().getCodeInfo(m_fullCode));
        benchmark::DoNotOptimize(getUserConfig()->getUserName());
        benchmark::DoNotOptimize(CQuoteClient::instance().getStockPrice(m_fullCode));
    }
    void callRecords() {
        const auto volumes = CTradeClient::instance().splitEntrusts(
            kVolume, minimal::kPrice, EPriceType::Specified, m_accounts, m_ratios, m_strategy.m_ePositionType,
            m_detail->m_strMarket, m_detail->m_strCode, EOperationType::Buy, EHedge_Flag_Type::Speculation,
            m_error);
        for (const int volume : volumes) {
            orderSettingToParam(m_setting, m_record, EOperationType::Buy, volume, minimal::kPrice, m_quote);
            fixTimeRange(m_record);
        }
    }

    const COrderStrategyParam& m_strategy;
    const COrderSetting& m_setting;
    const QString m_market = QStringLiteral("SH");
    const QString m_code;
    const QString m_fullCode;
    const QString m_stockKeys[3];
    const CInstrumentDetailPtr m_detail;
    const CPriceDataPtr m_quote;
    const CQuoteRequest::CCallback m_noCallback;
    const boost::shared_ptr<utils::KNError> m_error = boost::make_shared<utils::KNError>();
    std::vector<CAccountInfoPtr> m_accounts;
    std::vector<double> m_ratios;
    CCodeOrderParam m_record;
};

constexpr CRoad kStockRoad = {
    EOrderStrategyTradeType::Stock, ESettingSlot::Stock, 23, &bench::CCheckHost::stockCode, "SH", checkStock,
    &CHostCalls::callStock};
constexpr CRoad kFutureRoad = {
    EOrderStrategyTradeType::Future, ESettingSlot::Future, 0, &bench::CCheckHost::futureCode, "", checkFuture,
    &CHostCalls::callFuture};
constexpr CRoad kOptionRoad = {EOrderStrategyTradeType::StockOption,
                               ESettingSlot::StockOption,
                               48,
                               &bench::CCheckHost::optionCode,
                               "",
                               checkOption,
                               &CHostCalls::callOption};

/// Checks one order as the service's thread does: by the check that copies neither order nor strategy, with
/// new lists for each order.
bool checkOnce(const CRoad& road, const COrderParam& order, const COrderStrategyParam& strategy) {
    std::vector<CCodeOrderParam> codes;
    std::map<std::string, double> weights;
    return road.check(order, strategy, codes, weights) && codes.size() == 1;
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

void checkOrders(benchmark::State& state, const CRoad& road) {
    const bench::CCheckHost host(1, kInstruments);
    const COrderStrategyParam strategy = makeStrategy(road);
    const std::vector<COrderParam> orders = makeOrders(road);
    bool isPassed = true;
    for (auto _ : state)
        reportMicroseconds(state, orders, [&](const COrderParam& order) {
            isPassed = checkOnce(road, order, strategy) && isPassed;
        });
    if (!isPassed) state.SkipWithError("an order was refused");
}

void hostCallsOnly(benchmark::State& state, const CRoad& road) {
    const bench::CCheckHost host(1, kInstruments);
    const COrderStrategyParam strategy = makeStrategy(road);
    std::vector<CHostCalls> calls;
    calls.reserve(kInstruments);
    for (const QString& code : makeCodes(road))
        calls.emplace_back(road, strategy, code);
    const bench::CCallCounts before = host.calls();
    checkOnce(road, makeOrders(road).front(), strategy);
    const bench::CCallCounts between = host.calls();
    (calls.front().*road.calls)();
    const std::string difference = bench::differenceOf(before, between, host.calls());
    if (!difference.empty()) {
        state.SkipWithError(("the check makes other host calls than its baseline:" + difference).c_str());
        return;
    }
    for (auto _ : state)
        reportMicroseconds(state, calls, [&](CHostCalls& instrument) { (instrument.*road.calls)(); });
}

#define FAMILY_FIGURE(name, road)                                                                            \
    BENCHMARK_CAPTURE(checkOrders, name, road)->Name(#name)->Iterations(1)->Repetitions(kRepetitions);       \
    BENCHMARK_CAPTURE(hostCallsOnly, name, road)                                                             \
        ->Name(#name "/baseline")                                                                            \
        ->Iterations(1)                                                                                      \
        ->Repetitions(kRepetitions)

FAMILY_FIGURE(check_stock, kStockRoad);
FAMILY_FIGURE(check_future, kFutureRoad);
FAMILY_FIGURE(check_option, kOptionRoad);

} // namespace
