// check_stock, check_future, check_option: microseconds per order that brings its price, from the record to
// the checked code records, on a host that answers at once. The baseline makes the host calls of that road,
// with the same arguments, and nothing else.
#include "bench/CheckHost.h"
#include "bench/Figure.h"

#include "base/KNError.h"
#include "platform/TradingRules.h"

#include <boost/make_shared.hpp>

#include <chrono>
#include <map>
#include <string>
#include <vector>

namespace {

using namespace TC;

constexpr int kOrders = 100000;
constexpr int kRepetitions = 15;
constexpr int kStocks = 5000;
constexpr int kVolume = 300;

/// The orders and strategies of one family.
struct COrders {
    COrders(EOrderStrategyTradeType family, ESettingSlot slot, int number, const QString& code) {
        strategy.m_nStatus = COrderStrategyParam::kRunning;
        strategy.m_nChannel = 3;
        strategy.m_eTradeType = family;
        strategy.m_strSelectedAccount = QStringLiteral("group");
        strategy.setting(slot).m_ePriceType = EPriceType::Specified;
        setting = strategy.setting(slot);
        COrderSingleParam line;
        line.m_strCode = code;
        line.m_nVolume = kVolume;
        line.m_dPrice = minimal::kPrice;
        order.m_nOrderType = number;
        order.m_nChannel = 3;
        order.m_eStrategyType = EOrderStrategyType::File;
        order.m_orders.push_back(line);
    }

    COrderParam order;
    COrderStrategyParam strategy;
    COrderSetting setting;
};

/// The host calls of a road. Arguments are made once, but for the lists that the host appends to.
class CHostCalls {
public:
    CHostCalls(COrders orders, const QString& fullCode)
        : m_orders(std::move(orders)), m_fullCode(fullCode),
          m_detail(CExchangeClient::instance().getCodeInfo(fullCode)),
          m_quote(CQuoteClient::instance().getStockPrice(fullCode)) {
        resolveAccounts(m_accounts, m_ratios);
        m_record.m_stock = {m_detail->m_strMarket, m_detail->m_strCode, m_detail->m_strName, {}};
    }

    void callStock() {
        callAccounts();
        benchmark::DoNotOptimize(qdStockKey(m_market, code()));
        benchmark::DoNotOptimize(CExchangeClient::instance().hasStock(m_fullCode));
        benchmark::DoNotOptimize(knservice::StockTypeCenter::isTypedStock(
            knservice::kTypeTradableStock, m_detail->m_strMarket, m_detail->m_strCode));
        callInstrument();
        callBroker();
        callRecord();
    }
    void callFuture() {
        callAccounts();
        benchmark::DoNotOptimize(CExchangeClient::instance().hasFuture(m_fullCode));
        callInstrument();
        callRecord();
    }
    void callOption() {
        callAccounts();
        for (const QString& key : m_stockKeys)
            benchmark::DoNotOptimize(CExchangeClient::instance().hasStock(key));
        benchmark::DoNotOptimize(CExchangeClient::instance().hasOption(m_fullCode));
        callInstrument();
        callBroker();
        callRecord();
    }

private:
    const QString& code() const { return m_orders.order.m_orders.first().m_strCode; }

    void resolveAccounts(std::vector<CAccountInfoPtr>& accounts, std::vector<double>& ratios) {
        getUserConfig()->getAccountsWeights(callBroker(), m_orders.strategy.m_eSelectedAccountType,
                                            m_orders.strategy.m_strSelectedAccount, accounts, ratios, false);
    }
    EQDBrokerType callBroker() { return orderStrategyTradeTypeToBrokerType(m_orders.strategy.m_eTradeType); }
    void callAccounts() {
        std::vector<CAccountInfoPtr> accounts;
        std::vector<double> ratios;
        resolveAccounts(accounts, ratios);
        benchmark::DoNotOptimize(accounts.data());
    }
    void callInstrument() {
        benchmark::DoNotOptimize(CQuoteRequest::makeRequest(m_fullCode, m_noCallback, ESubscribeType::Plain));
        benchmark::DoNotOptimize(CExchangeClient::instance().getCodeInfo(m_fullCode));
        benchmark::DoNotOptimize(getUserConfig()->getUserName());
        benchmark::DoNotOptimize(CQuoteClient::instance().getStockPrice(m_fullCode));
    }
    void callRecord() {
        const auto volumes = CTradeClient::instance().splitEntrusts(
            kVolume, minimal::kPrice, EPriceType::Specified, m_accounts, m_ratios,
            m_orders.strategy.m_ePositionType, m_detail->m_strMarket, m_detail->m_strCode,
            EOperationType::Buy, EHedge_Flag_Type::Speculation, m_error);
        for (const int volume : volumes) {
            orderSettingToParam(m_orders.setting, m_record, EOperationType::Buy, volume, minimal::kPrice,
                                m_quote);
            fixTimeRange(m_record);
        }
    }

    const COrders m_orders;
    const QString m_fullCode;
    const QString m_market = QStringLiteral("SH");
    const CInstrumentDetailPtr m_detail;
    const CPriceDataPtr m_quote;
    const CQuoteRequest::CCallback m_noCallback;
    const boost::shared_ptr<utils::KNError> m_error = boost::make_shared<utils::KNError>();
    const QString m_stockKeys[3] = {QStringLiteral("SH") + code(), QStringLiteral("SZ") + code(), code()};
    std::vector<CAccountInfoPtr> m_accounts;
    std::vector<double> m_ratios;
    CCodeOrderParam m_record;
};

/// One family: its order, its check and the host calls that the check makes.
struct CRoad {
    EOrderStrategyTradeType family;
    ESettingSlot slot;
    int number;
    QString code;
    QString fullCode;
    bool (COrderServiceBase::*check)(COrderParam, COrderStrategyParam, std::vector<CCodeOrderParam>&,
                                     std::map<std::string, double>&) const;
    void (CHostCalls::*calls)();

    COrders orders() const { return {family, slot, number, code}; }
};

CRoad stockRoad() {
    const QString code = bench::CCheckHost::stockCode(kStocks / 2);
    return {EOrderStrategyTradeType::Stock,
            ESettingSlot::Stock,
            23,
            code,
            QStringLiteral("SH") + code,
            &COrderServiceBase::checkAndFillOrderStock,
            &CHostCalls::callStock};
}

CRoad futureRoad() {
    return {EOrderStrategyTradeType::Future,
            ESettingSlot::Future,
            0,
            bench::CCheckHost::future(),
            bench::CCheckHost::future(),
            &COrderServiceBase::checkAndFillOrderSpec,
            &CHostCalls::callFuture};
}

CRoad optionRoad() {
    return {EOrderStrategyTradeType::StockOption,
            ESettingSlot::StockOption,
            48,
            bench::CCheckHost::option(),
            bench::CCheckHost::option(),
            &COrderServiceBase::checkAndFillOrderOption,
            &CHostCalls::callOption};
}

/// One order through its check, into lists of its own as on the service's thread.
bool checkOnce(const bench::CBareChecks& checks, const CRoad& road, const COrders& orders) {
    std::vector<CCodeOrderParam> codes;
    std::map<std::string, double> weights;
    return (checks.*road.check)(orders.order, orders.strategy, codes, weights) && codes.size() == 1;
}

template<typename Step>
void reportMicroseconds(benchmark::State& state, const Step& step) {
    const auto begin = std::chrono::steady_clock::now();
    for (int i = 0; i < kOrders; ++i)
        step();
    const std::chrono::duration<double, std::micro> took = std::chrono::steady_clock::now() - begin;
    bench::report(state, took.count() / kOrders, "us");
}

void checkOrders(benchmark::State& state, CRoad (*makeRoad)()) {
    const bench::CCheckHost host(1, kStocks);
    const bench::CBareChecks checks;
    const CRoad road = makeRoad();
    const COrders orders = road.orders();
    bool isPassed = true;
    for (auto _ : state)
        reportMicroseconds(state, [&] { isPassed = checkOnce(checks, road, orders) && isPassed; });
    if (!isPassed) state.SkipWithError("an order was refused");
}

void hostCallsOnly(benchmark::State& state, CRoad (*makeRoad)()) {
    const bench::CCheckHost host(1, kStocks);
    const bench::CBareChecks checks;
    const CRoad road = makeRoad();
    CHostCalls calls(road.orders(), road.fullCode);
    const long before = host.calls();
    checkOnce(checks, road, road.orders());
    const long ofCheck = host.calls() - before;
    (calls.*road.calls)();
    if (host.calls() - before != 2 * ofCheck) {
        state.SkipWithError("the check makes other host calls than its baseline");
        return;
    }
    for (auto _ : state)
        reportMicroseconds(state, [&] { (calls.*road.calls)(); });
}

#define FAMILY_FIGURE(name, road)                                                                            \
    BENCHMARK_CAPTURE(checkOrders, name, road)->Name(#name)->Iterations(1)->Repetitions(kRepetitions);       \
    BENCHMARK_CAPTURE(hostCallsOnly, name, road)                                                             \
        ->Name(#name "/baseline")                                                                            \
        ->Iterations(1)                                                                                      \
        ->Repetitions(kRepetitions)

FAMILY_FIGURE(check_stock, stockRoad);
FAMILY_FIGURE(check_future, futureRoad);
FAMILY_FIGURE(check_option, optionRoad);

} // namespace
