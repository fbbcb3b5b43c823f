#pragma once

#include "examples/minimal_host/MinimalHost.h"

#include "orderservice/check/OrderServiceBase.h"
#include "orderservice/records/Portfolio.h"

#include <QHash>
#include <QVector>

#include <array>
#include <atomic>
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
    DefaultSettings,
    Baskets,
    Accounts,
    HasAccount,
    AccountGroup,
    UserKind,
    MsgFlags,
    Message,
    DisplayId,
    TradeTypeText,
    OrderTypeText,
    IsBuy,
    DirectRepay,
    LoginStatus,
    AccountData,
    UsableVolume,
    CheckModule,
    OrderCommand,
    Count, ///< number of operations
};

/// Number of calls of each operation.
using CCallCounts = std::array<long, static_cast<std::size_t>(EHostCall::Count)>;

/// The counters of the calling thread. Each thread has its own, so that many threads may call the host at
/// once.
struct CCalls {
    long& of(EHostCall call) { return all()[static_cast<std::size_t>(call)]; }
    static CCallCounts& all() {
        thread_local CCallCounts counts{};
        return counts;
    }
};

/// Compares the calls in two periods: from `before` to `between`, and from `between` to `after`. Returns the
/// operations whose numbers of calls differ; empty if there are none.
std::string differenceOf(const CCallCounts& before, const CCallCounts& between, const CCallCounts& after);

/// A host that answers the checks and function trading at once from memory. It has accounts, stocks on SH,
/// futures and options; all prices are 10.5. Every account can order any volume that is traded here. Messages
/// are discarded. Counts its calls, by thread. Only one object may exist in a process at a time. Set it up
/// before other threads call it.
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
    /// The calls of this thread.
    const CCallCounts& calls() const { return CCalls::all(); }

    /// The name of the group of all accounts.
    static QString groupName() { return QStringLiteral("group"); }
    /// Adds a basket of the stocks from this index on, with 100 shares in each row.
    void addBasket(const QString& name, int first, int rows);
    /// Keeps the commands from now on. Only for calls on one thread.
    void keepCommands() { m_orders.isKeeping = true; }
    /// Forgets the commands. Returns the number of their records.
    std::size_t dropCommands();
    /// Number of commands since the host was made.
    long commandCount() const { return m_orders.count; }

private:
    struct CUser : minimal::CUser {
        explicit CUser(CCalls& counted) : calls(counted) {}
        TC::CUserConfig* getUserConfig() override;
        std::string getUserName() const override;
        void getAccountsWeights(TC::EQDBrokerType broker, TC::ESelectedAccountType kind, const QString& name,
                                std::vector<TC::CAccountInfoPtr>& accounts, std::vector<double>& ratios,
                                bool simple) const override;
        bool isPriceTypeValid(TC::EPriceType, TC::EOperationType, TC::EQDBrokerType, const std::string&,
                              const std::string&, TC::EOrderType) const override;
        std::array<TC::COrderSetting, TC::kDefaultSlots> getDefaultOrderSettings() const override;
        TC::CBasketMap getBaskets() const override;
        std::vector<TC::CAccountPtr> getAccounts() const override;
        bool hasAccount(const QString& name) const override;
        const TC::CAccountGroup* getAccountGroupConst(TC::EQDBrokerType, const QString& name) const override;
        int getUserKind() const override;
        TC::CMsgFlags getMsgFlags(TC::EMsgTypeDef) const override;
        CCalls& calls;
        std::vector<TC::CAccountInfoPtr> accounts;
        std::vector<double> ratios;
        std::vector<TC::CAccountPtr> userAccounts; ///< the same accounts
        TC::CAccountGroup group;                   ///< of all accounts
        TC::CBasketMap baskets;
        std::array<TC::COrderSetting, TC::kDefaultSlots> settings;
    };

    /// Counts the commands, and keeps them if it is asked to.
    struct COrders : TC::COrderClient {
        explicit COrders(CCalls& counted) : calls(counted) {}
        void orderCommands(const TC::COrderComandParamPtr& command) override;
        void showTradeError(const QString&, const QString&) override {}
        CCalls& calls;
        std::atomic<long> count{0};
        bool isKeeping = false;
        std::vector<TC::COrderComandParamPtr> commands;
    };

    struct CMessages : TC::CMsgService {
        explicit CMessages(CCalls& counted) : calls(counted) {}
        void showMsg(const QString&, TC::EMsgTypeDef, TC::MsgLevel, bool, bool, const QString&) override;
        CCalls& calls;
    };

    struct CSwitches : kit::CLuaModuleCtrlBase {
        explicit CSwitches(CCalls& counted) : calls(counted) {}
        bool checkModule(const std::vector<std::string>& path) override;
        CCalls& calls;
    };

    struct CTrading : minimal::CTrading {
        CTrading(CCalls& counted, minimal::CScreen& screen) : minimal::CTrading(screen), calls(counted) {}
        std::vector<int> splitEntrusts(int volume, double, TC::EPriceType,
                                       const std::vector<TC::CAccountInfoPtr>& accounts,
                                       const std::vector<double>&, TC::EPositionType, const std::string&,
                                       const std::string&, TC::EOperationType, TC::EHedge_Flag_Type,
                                       const boost::shared_ptr<utils::KNError>&) override;
        TC::EBROKER_LOGIN_STATUS getLoginStatus(const std::string&) override;
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
        bool isBuy(TC::EOperationType operation) override;
        bool isDirectRepay(TC::EOperationType operation) override;
        QString orderStrategyTradeTypeToString(TC::EOrderStrategyTradeType type) override;
        QString orderStrategyOrderTypeToString(int orderType) override;
        QString accountDisplayIDQs(const TC::CAccountInfo& account) override;
        CCalls& calls;
    };

    struct CTypes : minimal::CTypes {
        explicit CTypes(CCalls& counted) : calls(counted) {}
        bool isTypedStock(int type, const std::string&, const std::string&) override;
        int getTradeMinUnit(const std::string&, const std::string&, TC::EOperationType) override;
        CCalls& calls;
    };

    struct CTasks : kit::CTraderCenterBase, knservice::CAccountData {
        explicit CTasks(CCalls& counted) : calls(counted) {}
        boost::shared_ptr<knservice::CAccountData> getAccountData(const std::string&) override;
        std::map<std::string, boost::shared_ptr<knservice::IData>> getMapData(int) override { return {}; }
        void getVector(int table, std::vector<boost::shared_ptr<knservice::IData>>& out) override;
        double getUsableVolume(const std::string&, const std::string&, TC::EOperationType,
                               TC::EHedge_Flag_Type, double) override;
        CCalls& calls;
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
    CTasks m_tasks{m_calls};
    COrders m_orders{m_calls};
    CMessages m_messages{m_calls};
    CSwitches m_switches{m_calls};
};

} // namespace bench
