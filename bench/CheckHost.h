#pragma once

#include "examples/minimal_host/MinimalHost.h"

#include "orderservice/check/OrderServiceBase.h"
#include "orderservice/records/Portfolio.h"

#include <QHash>
#include <QVector>

#include <array>
#include <cstddef>
#include <ostream>
#include <string>
#include <vector>

namespace bench {

/// Only the checks; batches are discarded.
class CBareChecks : public TC::COrderServiceBase {
public:
    void filterStrategies(TC::COrderStrategyMap*) override {}
    void placeOrders(QVector<TC::COrderParam>, const TC::COrderStrategyMap*) override {}
};

/// The host operations that are counted separately.
enum class EHostCall : int {
    UserConfig,
    UserName,
    AccountsWeights,
    SplitEntrusts,
    HasStock,
    HasFuture,
    HasOption,
    CodeInfo,
    StockPrice,
    Subscribe,
    QuotePrice,
    StockKey,
    BrokerType,
    SettingToParam,
    FixTimeRange,
    MarketPrice,
    PriceTypeValid,
    TypedStock,
    TradeMinUnit,
    Count, ///< number of operations
};

/// Number of calls of each operation.
using CCallCounts = std::array<long, static_cast<std::size_t>(EHostCall::Count)>;

/// Compares the calls in two periods: from `before` to `between`, and from `between` to `after`. Returns the
/// operations whose numbers of calls differ; empty if there are none.
std::string differenceOf(const CCallCounts& before, const CCallCounts& between, const CCallCounts& after);

/// A host that answers the checks at once from memory. It has accounts, stocks on SH, futures and options;
/// all prices are 10.5. Counts its calls. Only one object may exist in a process at a time. Not thread-safe.
class CCheckHost {
public:
    /// accounts: number of accounts behind every account name. instruments: number of instruments of each
    /// kind.
    CCheckHost(int accounts, int instruments);
    ~CCheckHost();

    static QString stockCode(int index) { return QString::number(600000 + index); }
    static QString futureCode(int index) { return QStringLiteral("F") + QString::number(10000 + index); }
    static QString optionCode(int index) { return QString::number(10000001 + index); }

    /// Gives the first account a position in the stock with this index.
    void hold(int index, int volume);
    const TC::CAccountInfoPtr& firstAccount() const { return m_user.accounts.front(); }
    const CCallCounts& calls() const { return m_calls.counts; }

private:
    struct CCalls {
        long& of(EHostCall call) { return counts[static_cast<std::size_t>(call)]; }
        CCallCounts counts{};
    };

    struct CUser : minimal::CUser {
        explicit CUser(CCalls& counted) : calls(counted) {}
        TC::CUserConfig* getUserConfig() override;
        std::string getUserName() const override;
        void getAccountsWeights(TC::EQDBrokerType broker, TC::ESelectedAccountType kind, const QString& name,
                                std::vector<TC::CAccountInfoPtr>& accounts, std::vector<double>& ratios,
                                bool simple) const override;
        bool isPriceTypeValid(TC::EPriceType, TC::EOperationType, TC::EQDBrokerType, const std::string&,
                              const std::string&, TC::EOrderType) const override;
        CCalls& calls;
        std::vector<TC::CAccountInfoPtr> accounts;
        std::vector<double> ratios;
    };

    struct CTrading : minimal::CTrading {
        CTrading(CCalls& counted, minimal::CScreen& screen) : minimal::CTrading(screen), calls(counted) {}
        std::vector<int> splitEntrusts(int volume, double, TC::EPriceType,
                                       const std::vector<TC::CAccountInfoPtr>& accounts,
                                       const std::vector<double>&, TC::EPositionType, const std::string&,
                                       const std::string&, TC::EOperationType, TC::EHedge_Flag_Type,
                                       const boost::shared_ptr<utils::KNError>&) override;
        CCalls& calls;
    };

    struct CExchange : minimal::CExchange {
        explicit CExchange(CCalls& counted) : calls(counted) {}
        bool hasStock(const QString& key) override;
        bool hasFuture(const QString& key) override;
        bool hasOption(const QString& key) override;
        TC::CInstrumentDetailPtr getCodeInfo(const QString& key) override;
        CCalls& calls;
        QHash<QString, TC::CInstrumentDetailPtr> stocks;
        QHash<QString, TC::CInstrumentDetailPtr> others;
    };

    struct CQuotes : minimal::CQuotes {
        explicit CQuotes(CCalls& counted) : calls(counted) {}
        TC::CPriceDataPtr getStockPrice(const QString& key) override;
        boost::shared_ptr<TC::CQuoteRequest> subscribe(const QString&, const TC::CQuoteRequest::CCallback&,
                                                       TC::ESubscribeType) override;
        CCalls& calls;
        QHash<QString, TC::CPriceDataPtr> quotes;
    };

    struct CRules : kit::CTradingRulesBase {
        explicit CRules(CCalls& counted) : calls(counted) {}
        QString qdStockKey(const QString& market, const QString& code) override;
        TC::EQDBrokerType orderStrategyTradeTypeToBrokerType(TC::EOrderStrategyTradeType type) override;
        void orderSettingToParam(const TC::COrderSetting& setting, TC::CCodeOrderParam& record,
                                 TC::EOperationType operation, int volume, double price,
                                 const TC::CPriceDataPtr& quote) override;
        void fixTimeRange(TC::CCodeOrderParam&) override;
        bool isMarketPrice(TC::EPriceType) override;
        CCalls& calls;
    };

    struct CTypes : minimal::CTypes {
        explicit CTypes(CCalls& counted) : calls(counted) {}
        bool isTypedStock(int type, const std::string&, const std::string&) override;
        int getTradeMinUnit(const std::string&, const std::string&, TC::EOperationType) override;
        CCalls& calls;
    };

    struct CTasks : kit::CTraderCenterBase, knservice::CAccountData {
        boost::shared_ptr<knservice::CAccountData> getAccountData(const std::string&) override;
        std::map<std::string, boost::shared_ptr<knservice::IData>> getMapData(int) override { return {}; }
        void getVector(int table, std::vector<boost::shared_ptr<knservice::IData>>& out) override;
        std::vector<boost::shared_ptr<knservice::IData>> positions;
    };

    void addInstrument(QHash<QString, TC::CInstrumentDetailPtr>& list, const QString& key, const char* market,
                       const QString& code);

    CCalls m_calls;
    std::ostream m_nowhere{nullptr};
    minimal::CMinimalHost m_host{m_nowhere};
    CUser m_user{m_calls};
    CTrading m_trading{m_calls, m_host.screen};
    CExchange m_exchange{m_calls};
    CQuotes m_quotes{m_calls};
    CRules m_rules{m_calls};
    CTypes m_types{m_calls};
    CTasks m_tasks;
};

} // namespace bench
