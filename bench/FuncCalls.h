#pragma once

#include "orderservice/platform/DataCenter.h"
#include "orderservice/platform/ExchangeClient.h"
#include "orderservice/platform/InstrumentTypes.h"
#include "orderservice/platform/LuaModuleCtrl.h"
#include "orderservice/platform/MsgService.h"
#include "orderservice/platform/OrderClient.h"
#include "orderservice/platform/Quote.h"
#include "orderservice/platform/Switches.h"
#include "orderservice/platform/TradeClient.h"
#include "orderservice/platform/TraderCenter.h"
#include "orderservice/platform/TradingRules.h"
#include "orderservice/platform/UserConfig.h"
#include "orderservice/records/CommandParam.h"

#include <benchmark/benchmark.h>

#include <boost/make_shared.hpp>

#include <cstddef>
#include <string>
#include <utility>
#include <vector>

namespace bench {

/// One instrument of a function call, with the arguments of its host calls.
struct CFuncInstrument {
    /// key: the full code. A host must be installed.
    explicit CFuncInstrument(const QString& key)
        : m_key(key), m_detail(TC::CExchangeClient::instance().getCodeInfo(key)),
          m_quote(TC::CQuoteClient::instance().getStockPrice(key)),
          m_market(QString::fromStdString(m_detail->m_strMarket)),
          m_code(QString::fromStdString(m_detail->m_strCode)) {
        m_record.m_stock = {m_detail->m_strMarket, m_detail->m_strCode, m_detail->m_strName, {}};
    }

    QString m_key;
    TC::CInstrumentDetailPtr m_detail;
    TC::CPriceDataPtr m_quote;
    QString m_market;
    QString m_code;
    TC::CCodeOrderParam m_record;
};

/// What the host calls of a function call depend on, besides the instrument.
struct CFuncKind {
    TC::EOrderStrategyTradeType m_eTradeType;
    TC::ESelectedAccountType m_eAccounts;
    int m_nOpType;
    TC::EOperationType m_eOperation;
};

/// The host calls of one function call. The arguments are made once, except for the lists to which the host
/// appends. A host must be installed, with its command guard on.
class CFuncCalls {
public:
    /// account: the key of the host's first account, or the name of its group.
    CFuncCalls(const CFuncKind& kind, QString account) : m_kind(kind), m_account(std::move(account)) {
        std::vector<double> ratios;
        appendAccounts(m_accounts, ratios);
    }

    /// The buy of a stock whose code has no market, at its own price.
    void callStock(CFuncInstrument& instrument) const {
        callStart();
        callAccounts();
        benchmark::DoNotOptimize(TC::CExchangeClient::instance().hasStock(instrument.m_key));
        callIsTyped(knservice::kTypeTradableStock, instrument);
        callInstrument(instrument);
        callUnit(instrument);
        callOrders(instrument);
        callEnd();
        callCommand(m_accounts.size());
    }
    void callFuture(CFuncInstrument& instrument) const {
        callStart();
        callAccounts();
        benchmark::DoNotOptimize(TC::CExchangeClient::instance().hasFuture(instrument.m_key));
        callInstrument(instrument);
        callOrders(instrument);
        callEnd();
        callCommand(m_accounts.size());
    }
    /// The buy of a basket of stocks at the latest price.
    void callBasket(std::vector<CFuncInstrument>& instruments) const {
        benchmark::DoNotOptimize(TC::getUserConfig()->getBaskets());
        callStart();
        callAccounts();
        for (const CFuncInstrument& instrument : instruments)
            callNamedInstrument(instrument);
        for (CFuncInstrument& instrument : instruments)
            callRow(instrument);
        callEnd();
        benchmark::DoNotOptimize(TC::isBuy(m_kind.m_eOperation));
        callSwitch(m_hedgePath);
        callCommand(m_accounts.size() * instruments.size());
    }

private:
    TC::EQDBrokerType callBroker() const {
        return TC::orderStrategyTradeTypeToBrokerType(m_kind.m_eTradeType);
    }
    void appendAccounts(std::vector<TC::CAccountInfoPtr>& accounts, std::vector<double>& ratios) const {
        // A basket of stocks is tried on the accounts of stocks first, whatever the host says.
        const bool isBasket = m_kind.m_eTradeType == TC::EOrderStrategyTradeType::Basket;
        const TC::EQDBrokerType broker = isBasket ? TC::EQDBrokerType::Stock : callBroker();
        TC::getUserConfig()->getAccountsWeights(broker, m_kind.m_eAccounts, m_account, accounts, ratios,
                                                false);
    }
    bool isGroup() const { return m_kind.m_eAccounts == TC::ESelectedAccountType::Group; }

    /// From the strategy to the announcement.
    void callStart() const {
        benchmark::DoNotOptimize(TC::getUserConfig()->getDefaultOrderSettings());
        callNames();
        if (isGroup())
            callGroupChecks();
        else
            callAccountChecks();
        benchmark::DoNotOptimize(TC::orderStrategyTradeTypeToString(m_kind.m_eTradeType));
        benchmark::DoNotOptimize(TC::orderStrategyOrderTypeToString(m_kind.m_nOpType));
        const TC::CMsgFlags flags = TC::getUserConfig()->getMsgFlags(TC::EMsgTypeDef::Function);
        TC::CMsgService::instance().showMsg(m_message, TC::EMsgTypeDef::Function, TC::MsgLevel::Note,
                                            flags.m_bFirst, flags.m_bSecond, m_noText);
    }
    /// The name is that of the first account, or of none.
    void callNames() const {
        const TC::CUserConfig* const user = TC::getUserConfig();
        benchmark::DoNotOptimize(callBroker());
        for (const TC::CAccountPtr& account : user->getAccounts()) {
            benchmark::DoNotOptimize(TC::accountDisplayIDQs(*account->toInfo()));
            if (isGroup()) continue;
            benchmark::DoNotOptimize(account->key());
            break;
        }
    }
    void callAccountChecks() const {
        benchmark::DoNotOptimize(TC::getUserConfig()->hasAccount(m_account));
        benchmark::DoNotOptimize(TC::CTradeClient::instance().getLoginStatus(m_accounts.front()->m_strKey));
    }
    void callGroupChecks() const {
        benchmark::DoNotOptimize(TC::getUserConfig());
        for (int check = 0; check < 2; ++check)
            benchmark::DoNotOptimize(TC::getUserConfig()->getAccountGroupConst(callBroker(), m_account));
        for (const TC::CAccountInfoPtr& account : m_accounts)
            benchmark::DoNotOptimize(TC::CTradeClient::instance().getLoginStatus(account->m_strKey));
    }
    void callAccounts() const {
        std::vector<TC::CAccountInfoPtr> accounts;
        std::vector<double> ratios;
        appendAccounts(accounts, ratios);
        benchmark::DoNotOptimize(accounts.data());
        for (const TC::CAccountInfoPtr& account : accounts)
            benchmark::DoNotOptimize(account->getKey());
    }
    static void callIsTyped(int type, const CFuncInstrument& instrument) {
        benchmark::DoNotOptimize(knservice::StockTypeCenter::isTypedStock(
            type, instrument.m_detail->m_strMarket, instrument.m_detail->m_strCode));
    }
    void callRequest(const CFuncInstrument& instrument) const {
        benchmark::DoNotOptimize(
            TC::CQuoteRequest::makeRequest(instrument.m_key, m_noCallback, TC::ESubscribeType::Plain));
        benchmark::DoNotOptimize(TC::CExchangeClient::instance().getCodeInfo(instrument.m_key));
    }
    void callInstrument(const CFuncInstrument& instrument) const {
        callRequest(instrument);
        callQuote(instrument);
    }
    static void callQuote(const CFuncInstrument& instrument) {
        benchmark::DoNotOptimize(TC::getUserConfig()->getUserName());
        benchmark::DoNotOptimize(TC::CQuoteClient::instance().getStockPrice(instrument.m_key));
    }
    static void callUnit(const CFuncInstrument& instrument) {
        benchmark::DoNotOptimize(knservice::getTradeMinUnit(instrument.m_detail->m_strMarket,
                                                            instrument.m_detail->m_strCode,
                                                            TC::unsetEnum<TC::EOperationType>()));
    }
    /// A code with its market is first looked up with another market in front.
    void callNamedInstrument(const CFuncInstrument& instrument) const {
        for (const QString& key : {m_shanghai, m_shenzhen, instrument.m_key})
            benchmark::DoNotOptimize(TC::CExchangeClient::instance().hasStock(key));
        callIsTyped(knservice::kTypeTradableStock, instrument);
        callRequest(instrument);
    }
    void callRow(CFuncInstrument& instrument) const {
        constexpr auto latest = TC::EPriceType::Latest;
        benchmark::DoNotOptimize(TC::qdStockKey(instrument.m_market, instrument.m_code));
        callQuote(instrument);
        callIsTyped(knservice::kBasketTypes[0], instrument);
        callUnit(instrument);
        for (int time = 0; time < 2; ++time) {
            benchmark::DoNotOptimize(instrument.m_quote->getOriginPrice(latest, m_kind.m_eOperation));
            benchmark::DoNotOptimize(instrument.m_quote->getPriceForCalc(latest, m_kind.m_eOperation, 0, {}));
        }
        callOrders(instrument);
    }
    /// What each account can order, and its record.
    void callOrders(CFuncInstrument& instrument) const {
        const TC::CInstrumentDetail& detail = *instrument.m_detail;
        for (const TC::CAccountInfoPtr& account : m_accounts) {
            const std::string key = account->getKey();
            benchmark::DoNotOptimize(TC::CTradeClient::instance().getLoginStatus(key));
            const auto data = knservice::TraderCenter::instance().getDataCenter().getAccountData(key);
            benchmark::DoNotOptimize(TC::CExchangeClient::instance().getCodeInfo(instrument.m_key));
            benchmark::DoNotOptimize(
                data->getUsableVolume(detail.m_strMarket, detail.m_strCode, m_kind.m_eOperation,
                                      TC::EHedge_Flag_Type::Speculation, instrument.m_quote->m_dLastPrice));
            TC::orderSettingToParam(m_setting, instrument.m_record, m_kind.m_eOperation, kVolume,
                                    instrument.m_quote->m_dLastPrice, instrument.m_quote);
            TC::fixTimeRange(instrument.m_record);
        }
    }
    static void callSwitch(const std::vector<std::string>& path) {
        benchmark::DoNotOptimize(luawrapper::LuaModuleCtrl::instance().checkModule(path));
    }
    void callEnd() const {
        benchmark::DoNotOptimize(TC::getUserConfig()->getUserKind());
        callSwitch(m_confirmPath);
    }
    void callCommand(std::size_t records) const {
        callSwitch(m_guardPath);
        for (std::size_t i = 0; i < records; ++i)
            benchmark::DoNotOptimize(TC::isDirectRepay(m_kind.m_eOperation));
        TC::COrderClient::instance().orderCommands(m_command);
    }

    static constexpr int kVolume = 300;

    const CFuncKind m_kind;
    const QString m_account;
    const QString m_noText;
    const QString m_message = QStringLiteral("a message as long as that of a call, with its two numbers");
    const QString m_shanghai = QStringLiteral("SHSH600000");
    const QString m_shenzhen = QStringLiteral("SZSH600000");
    const TC::CQuoteRequest::CCallback m_noCallback;
    const TC::COrderSetting m_setting;
    const std::vector<std::string> m_guardPath = {TC::kOrderModule, TC::kCommandGuardSwitch};
    const std::vector<std::string> m_confirmPath = {TC::kOrderModule, TC::kForceConfirmSwitch};
    const std::vector<std::string> m_hedgePath = {TC::kOrderModule, TC::kComposeHedgeSwitch};
    const TC::COrderComandParamPtr m_command = boost::make_shared<TC::COrderComandParam>();
    std::vector<TC::CAccountInfoPtr> m_accounts;
};

} // namespace bench
