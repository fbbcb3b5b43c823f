#pragma once

#include "orderservice/base/KNError.h"
#include "orderservice/platform/ExchangeClient.h"
#include "orderservice/platform/InstrumentTypes.h"
#include "orderservice/platform/Quote.h"
#include "orderservice/platform/TradeClient.h"
#include "orderservice/platform/TradingRules.h"
#include "orderservice/platform/UserConfig.h"
#include "orderservice/records/CommandParam.h"
#include "orderservice/records/StrategyParam.h"

#include <benchmark/benchmark.h>

#include <boost/make_shared.hpp>

#include <vector>

namespace bench {

/// The host calls that the check of one family makes for one instrument. The arguments are made once, except
/// for the lists to which the host appends. A host must be installed. The strategy must outlive the object.
class CHostCalls {
public:
    /// `market` is the prefix of the code in the host's key.
    CHostCalls(const TC::COrderStrategyParam& strategy, TC::ESettingSlot slot, const QString& market,
               const QString& code, int volume)
        : m_strategy(strategy), m_setting(strategy.setting(slot)), m_code(code), m_fullCode(market + code),
          m_nVolume(volume), m_stockKeys{QStringLiteral("SH") + code, QStringLiteral("SZ") + code, code},
          m_detail(TC::CExchangeClient::instance().getCodeInfo(m_fullCode)),
          m_quote(TC::CQuoteClient::instance().getStockPrice(m_fullCode)) {
        appendAccounts(m_accounts, m_ratios);
        m_record.m_stock = {m_detail->m_strMarket, m_detail->m_strCode, m_detail->m_strName, {}};
    }

    void callStock() {
        callAccounts();
        benchmark::DoNotOptimize(TC::qdStockKey(m_market, m_code));
        benchmark::DoNotOptimize(TC::CExchangeClient::instance().hasStock(m_fullCode));
        callIsTradable();
        callInstrument();
        benchmark::DoNotOptimize(callBroker());
        callRecords();
    }
    void callFuture() {
        callAccounts();
        benchmark::DoNotOptimize(TC::CExchangeClient::instance().hasFuture(m_fullCode));
        callInstrument();
        callRecords();
    }
    void callOption() {
        callAccounts();
        for (const QString& key : m_stockKeys)
            benchmark::DoNotOptimize(TC::CExchangeClient::instance().hasStock(key));
        benchmark::DoNotOptimize(TC::CExchangeClient::instance().hasOption(m_fullCode));
        callInstrument();
        benchmark::DoNotOptimize(callBroker());
        callRecords();
    }
    /// A stock order that names its market, at the latest price.
    void callNamedStock() {
        callAccounts();
        for (const QString& market : {m_market, m_otherMarket})
            benchmark::DoNotOptimize(
                TC::CExchangeClient::instance().hasStock(TC::qdStockKey(market, m_fullCode)));
        benchmark::DoNotOptimize(TC::CExchangeClient::instance().hasStock(m_fullCode));
        callIsTradable();
        callInstrument();
        callLatestPrice();
        callRecords();
    }

private:
    TC::EQDBrokerType callBroker() const {
        return TC::orderStrategyTradeTypeToBrokerType(m_strategy.m_eTradeType);
    }
    void appendAccounts(std::vector<TC::CAccountInfoPtr>& accounts, std::vector<double>& ratios) const {
        TC::getUserConfig()->getAccountsWeights(callBroker(), m_strategy.m_eSelectedAccountType,
                                                m_strategy.m_strSelectedAccount, accounts, ratios, false);
    }
    void callAccounts() const {
        std::vector<TC::CAccountInfoPtr> accounts;
        std::vector<double> ratios;
        appendAccounts(accounts, ratios);
        benchmark::DoNotOptimize(accounts.data());
    }
    void callIsTradable() const {
        benchmark::DoNotOptimize(knservice::StockTypeCenter::isTypedStock(
            knservice::kTypeTradableStock, m_detail->m_strMarket, m_detail->m_strCode));
    }
    void callInstrument() const {
        benchmark::DoNotOptimize(
            TC::CQuoteRequest::makeRequest(m_fullCode, m_noCallback, TC::ESubscribeType::Plain));
        benchmark::DoNotOptimize(TC::CExchangeClient::instance().getCodeInfo(m_fullCode));
        benchmark::DoNotOptimize(TC::getUserConfig()->getUserName());
        benchmark::DoNotOptimize(TC::CQuoteClient::instance().getStockPrice(m_fullCode));
    }
    void callLatestPrice() const {
        constexpr auto latest = TC::EPriceType::Latest;
        constexpr auto buy = TC::EOperationType::Buy;
        benchmark::DoNotOptimize(m_quote->getOriginPrice(latest, buy));
        benchmark::DoNotOptimize(TC::getUserConfig()->isPriceTypeValid(
            latest, buy, callBroker(), m_detail->m_strMarket, m_detail->m_strCode, m_setting.m_eOrderType));
        benchmark::DoNotOptimize(m_quote->getPriceForOrder(latest, buy, 0, {}));
        benchmark::DoNotOptimize(knservice::isMarketPrice(latest));
        benchmark::DoNotOptimize(m_quote->getPriceForCalc(latest, buy, 0, {}));
        benchmark::DoNotOptimize(m_quote->getPriceForOrder(latest, buy, 0, {}));
    }
    void callRecords() {
        const auto volumes = TC::CTradeClient::instance().splitEntrusts(
            m_nVolume, m_quote->m_dLastPrice, TC::EPriceType::Specified, m_accounts, m_ratios,
            m_strategy.m_ePositionType, m_detail->m_strMarket, m_detail->m_strCode, TC::EOperationType::Buy,
            TC::EHedge_Flag_Type::Speculation, m_error);
        for (const int volume : volumes) {
            TC::orderSettingToParam(m_setting, m_record, TC::EOperationType::Buy, volume,
                                    m_quote->m_dLastPrice, m_quote);
            TC::fixTimeRange(m_record);
        }
    }

    const TC::COrderStrategyParam& m_strategy;
    const TC::COrderSetting& m_setting;
    const QString m_market = QStringLiteral("SH");
    const QString m_otherMarket = QStringLiteral("SZ");
    const QString m_code;
    const QString m_fullCode;
    const int m_nVolume;
    const QString m_stockKeys[3];
    const TC::CInstrumentDetailPtr m_detail;
    const TC::CPriceDataPtr m_quote;
    const TC::CQuoteRequest::CCallback m_noCallback;
    const boost::shared_ptr<utils::KNError> m_error = boost::make_shared<utils::KNError>();
    std::vector<TC::CAccountInfoPtr> m_accounts;
    std::vector<double> m_ratios;
    TC::CCodeOrderParam m_record;
};

} // namespace bench
