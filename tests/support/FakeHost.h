#pragma once

#include "orderservice/platform/AlgorithmTradeHelper.h"
#include "orderservice/platform/ExchangeClient.h"
#include "orderservice/platform/Host.h"
#include "orderservice/platform/InstrumentTypes.h"
#include "orderservice/platform/IntakeAudit.h"
#include "orderservice/platform/LuaModuleCtrl.h"
#include "orderservice/platform/MsgService.h"
#include "orderservice/platform/Quote.h"
#include "orderservice/platform/Switches.h"
#include "orderservice/platform/TimeService.h"
#include "orderservice/platform/TradingRules.h"
#include "orderservice/platform/UserConfig.h"
#include "tests/support/FakeTrading.h"

#include <atomic>
#include <functional>
#include <map>
#include <mutex>
#include <set>
#include <string>
#include <vector>

/// A host in memory for tests. The test sets up the answers, and every call that reaches the host is
/// recorded. Set it up before other threads use it. Snapshots of the records are thread-safe.
namespace fake {

struct CMessage {
    QString text;
    TC::EMsgTypeDef type;
    TC::MsgLevel level;
    bool flag1, flag2;
    QString extra;
};

struct CAccountsCall {
    TC::EQDBrokerType broker;
    TC::ESelectedAccountType kind;
    QString name;
    bool simple;
};

struct CPriceTypeCall {
    TC::EPriceType type;
    TC::EOperationType operation;
    TC::EQDBrokerType broker;
    std::string market, code;
    TC::EOrderType orderType;
};

/// One request to a quote for a price: "origin", "calc" or "order".
struct CPriceCall {
    std::string kind;
    TC::EPriceType type;
    TC::EOperationType operation;
    int number;
    bool hasAutoPrice;
};

struct CSettingCall {
    TC::COrderSetting setting;
    TC::EOperationType operation;
    int volume;
    double price;
    TC::CPriceDataPtr quote;
    TC::CCodeOrderParam record; ///< as the host received it
};

/// One quote. A price type without its own price has the default price.
class CQuote : public TC::CPriceData {
public:
    double getOriginPrice(TC::EPriceType type, TC::EOperationType operation) const override {
        calls.add({"origin", type, operation, 0, false});
        return find(origin, type);
    }
    double getPriceForCalc(TC::EPriceType type, TC::EOperationType operation, int number,
                           const boost::shared_ptr<TC::CAutoPriceParam>& autoPrice) const override {
        calls.add({"calc", type, operation, number, autoPrice != nullptr});
        return find(calc, type);
    }
    double getPriceForOrder(TC::EPriceType type, TC::EOperationType operation, int number,
                            const boost::shared_ptr<TC::CAutoPriceParam>& autoPrice) const override {
        calls.add({"order", type, operation, number, autoPrice != nullptr});
        return find(order, type);
    }

    /// Sets this price for every kind of price and every price type.
    CQuote& all(double price);

    std::map<TC::EPriceType, double> origin, calc, order;
    double otherOrigin = TC::kUnsetDouble, otherCalc = TC::kUnsetDouble, otherOrder = TC::kUnsetDouble;
    mutable CCalls<CPriceCall> calls;

private:
    double find(const std::map<TC::EPriceType, double>& prices, TC::EPriceType type) const;
};

class CUser : public TC::CUserConfig, public TC::CUserManager {
public:
    TC::CUserConfig* getUserConfig() override { return loggedIn ? this : nullptr; }
    bool hasOrderService() const override { return orderService; }
    bool hasUserAuth(TC::EUserAuth right) const override { return rights.count(right) > 0; }
    bool hasShowTradeFrameworkPermission() const override { return framework; }
    bool hasOrderEncryptionService() const override { return encryption; }
    std::string getUserName() const override { return name; }
    int getUserKind() const override { return kind; }
    int getMaxOrderServerNum() const override { return maxStrategies; }
    int getMaxOrderServerNumSocket() const override { return maxSocketStrategies; }
    int getMinFileServiceInterval() const override { return interval; }
    bool testHintBeforeOrderFlag(int bit) const override { return hints.count(bit) > 0; }
    bool testGlobalOrderHint(int bit) const override {
        globalHintCalls.add(bit);
        return globalHints.count(bit) > 0;
    }
    TC::CMsgFlags getMsgFlags(TC::EMsgTypeDef type) const override;
    const TC::CAccountGroup* getAccountGroupConst(TC::EQDBrokerType broker,
                                                  const QString& name) const override;
    bool hasAccount(const QString& account) const override {
        return accounts.count(account.toStdString()) > 0;
    }
    bool hasSimpleAccount(const QString& account) const override {
        return simple.count(account.toStdString()) > 0;
    }
    void getAccountsWeights(TC::EQDBrokerType broker, TC::ESelectedAccountType kind, const QString& name,
                            std::vector<TC::CAccountInfoPtr>& accounts, std::vector<double>& ratios,
                            bool simple) const override;
    bool isPriceTypeValid(TC::EPriceType type, TC::EOperationType operation, TC::EQDBrokerType broker,
                          const std::string& market, const std::string& code,
                          TC::EOrderType orderType) const override {
        priceTypeCalls.add({type, operation, broker, market, code, orderType});
        return invalidPriceTypes.count(type) == 0;
    }
    std::vector<TC::CAccountPtr> getAccounts() const override;
    TC::CAccountPtr getAccountData(const QString& key) const override;
    TC::COrderSetting getDefaultOrderSetting(TC::EDefaultSetting which) const override;
    TC::CBasketMap getBaskets() const override { return baskets; }
    TC::COrderStrategyMap* getStrategyMap() override { return strategyMap; }
    TC::CAccountProduct getAccountProduct(const QString& key) const override {
        const auto found = products.find(key);
        return found != products.end() ? found->second : TC::CAccountProduct{};
    }
    QString getTableLayout(const QString& id) const override {
        const auto found = layouts.find(id);
        return found != layouts.end() ? found->second : QString();
    }
    void saveTableLayout(const QString& id, const QString& layout) override { layouts[id] = layout; }

    void addAccount(const std::string& key, TC::EQDBrokerType broker = TC::EQDBrokerType::Stock);
    /// members: account key and ratio.
    void addGroup(TC::EQDBrokerType broker, const std::string& name,
                  const std::vector<std::pair<std::string, double>>& members);
    void addStrategy(const TC::COrderStrategyParam& strategy) {
        strategies.insert(strategy.m_nChannel, strategy);
    }

    std::atomic<bool> loggedIn{true};
    bool orderService = true;
    std::set<TC::EUserAuth> rights{TC::EUserAuth::SignalOrders, TC::EUserAuth::FileOrders};
    bool framework = false;
    bool encryption = false;
    std::string name = "tester";
    int kind = 100;
    int maxStrategies = 50;
    int maxSocketStrategies = 50;
    std::atomic<int> interval{11};
    std::map<TC::EMsgTypeDef, TC::CMsgFlags> msgFlags;
    std::set<int> hints, globalHints; ///< bits that are set
    mutable CCalls<int> globalHintCalls;
    std::map<std::string, TC::CAccountInfoPtr> accounts;
    std::set<std::string> simple;
    std::map<std::pair<TC::EQDBrokerType, std::string>, TC::CAccountGroup> groups;
    std::map<std::pair<TC::EQDBrokerType, std::string>, std::vector<double>> groupRatios;
    bool dropRatios = false;  ///< groups have no ratios
    bool nullAccount = false; ///< groups have a null pointer after their accounts
    std::set<TC::EPriceType> invalidPriceTypes;
    std::map<TC::EDefaultSetting, TC::COrderSetting> defaults;
    TC::CBasketMap baskets;
    std::map<QString, TC::CAccountProduct> products; ///< by account key
    std::map<QString, QString> layouts;              ///< by table
    TC::COrderStrategyMap strategies;
    TC::COrderStrategyMap* strategyMap = &strategies; ///< returned to the service
    mutable CCalls<CAccountsCall> accountsCalls;
    mutable CCalls<CPriceTypeCall> priceTypeCalls;
};

class CExchange : public TC::CExchangeClient {
    Q_OBJECT
public:
    bool hasStock(const QString& key) override { return stocks.count(key) > 0; }
    bool hasFuture(const QString& key) override { return has("future", key); }
    bool hasOption(const QString& key) override { return has("option", key); }
    bool hasFutureOption(const QString& key) override { return has("future option", key); }
    bool hasSkstock(const QString& key) override { return has("sgt", key); }
    bool hasHkstock(const QString& key) override { return has("hgt", key); }
    bool hasGold(const QString& key) override { return has("gold", key); }
    bool hasNeeq(const QString& key) override { return has("neeq", key); }
    TC::CInstrumentDetailPtr getCodeInfo(const QString& key) override;
    std::string getMaxTradingDay() override { return tradingDay; }

    /// Adds an instrument of another market under its key.
    void addOther(const std::string& list, const QString& key);

    std::map<QString, TC::CInstrumentDetailPtr> stocks;
    std::map<QString, TC::CInstrumentDetailPtr> others; ///< instruments that are not stocks
    std::set<std::pair<std::string, QString>> lists;    ///< list name and key of each listed instrument
    std::string tradingDay = "20260105";

private:
    bool has(const char* list, const QString& key) const { return lists.count({list, key}) > 0; }
};

class CQuotes : public TC::CQuoteClient {
public:
    explicit CQuotes(CRecords& records) : m_records(records) {}
    TC::CPriceDataPtr getStockPrice(const QString& key) override;
    boost::shared_ptr<TC::CQuoteRequest> subscribe(const QString& key,
                                                   const TC::CQuoteRequest::CCallback& callback,
                                                   TC::ESubscribeType type) override;

    /// Called before each answer. The number counts the requests for the quote, from 1.
    std::function<void(const QString&, int)> onRead;
    std::map<QString, boost::shared_ptr<CQuote>> quotes;
    std::map<QString, int> reads;
    std::vector<QString> subscribed;
    std::map<QString, TC::CQuoteRequest::CCallback> callbacks; ///< of the last request for each instrument
    std::atomic<int> liveSubscriptions{0};

private:
    CRecords& m_records;
};

class CTypes : public knservice::CInstrumentTypes {
public:
    bool isTypedStock(int type, const std::string& market, const std::string& code) override {
        return types.count({type, market + code}) > 0;
    }
    int getTradeMinUnit(const std::string& market, const std::string& code,
                        TC::EOperationType operation) override;
    int getUiMinUnit(const std::string& market, const std::string& code, bool forTrade) override;

    std::set<std::pair<int, std::string>> types;
    std::map<std::string, int> units, uiUnits;
    std::vector<int> unitOperations; ///< operations that getTradeMinUnit was called with

private:
    std::mutex m_mutex;
};

class CRules : public TC::CTradingRules {
public:
    QString qdStockKey(const QString& market, const QString& code) override {
        return market + keySeparator + code;
    }
    TC::EQDBrokerType orderStrategyTradeTypeToBrokerType(TC::EOrderStrategyTradeType type) override;
    QString getAccountFromOrderParam(const QString& part1, const QString& part2) override {
        return part1 + QStringLiteral("/") + part2;
    }
    bool parserOrderTradeParam(const std::string& text, TC::COrderTradeParam& param) override;
    void orderSettingFromString(TC::COrderSetting& setting, const QString& text) override;
    void orderSettingToParam(const TC::COrderSetting& setting, TC::CCodeOrderParam& record,
                             TC::EOperationType operation, int volume, double price,
                             const TC::CPriceDataPtr& quote) override;
    void fixTimeRange(TC::CCodeOrderParam& record) override;
    bool isBuy(TC::EOperationType operation) override { return buys.count(static_cast<int>(operation)) > 0; }
    bool isClose(TC::EOperationType operation) override {
        return closes.count(static_cast<int>(operation)) > 0;
    }
    bool isDirectRepay(TC::EOperationType operation) override {
        return directRepays.count(static_cast<int>(operation)) > 0;
    }
    TC::EEntrustTypes operationTypeToEntrustType(TC::EOperationType operation) override {
        return static_cast<TC::EEntrustTypes>(static_cast<int>(operation) + 500);
    }
    bool isMarketPrice(TC::EPriceType type) override { return marketPrices.count(type) > 0; }
    bool isAlgoOrderType(TC::EOrderType type) override { return algoPlatforms.count(type) > 0; }
    TC::ETradePlatform getPlatformTypeByOrderType(TC::EOrderType type) override {
        return algoPlatforms.at(type);
    }
    void filterZeroStock(std::vector<TC::CCodeOrderParam>& records) override;
    void fillOverFreqOrderMode(std::vector<TC::CCodeOrderParam>& records) override;
    QString orderStrategyTypeToOrderTitle(TC::EOrderStrategyType type) override;
    QString orderStrategyTypeToString(TC::EOrderStrategyType type) override;
    QString orderStrategyOrderTypeToString(int orderType) override;
    QString orderStrategyTradeTypeToString(TC::EOrderStrategyTradeType type) override;
    QString knPriceTypeToString(TC::EPriceType type, const std::string& code, bool shortForm) override;
    QString accountDisplayIDQs(const TC::CAccountInfo& account) override {
        const auto found = displayIds.find(account.m_strKey);
        return found != displayIds.end() ? found->second : TC::CTradingRules::accountDisplayIDQs(account);
    }

    std::map<std::string, QString> displayIds;               ///< by account key
    std::map<std::string, TC::COrderTradeParam> tradeParams; ///< texts that the host understands
    QString keySeparator; ///< separates the market and the code in instrument keys
    std::set<TC::EPriceType> marketPrices;
    std::set<int> buys{18}, closes{1, 2, 4, 5}, directRepays{25}; ///< operations
    std::map<TC::EOrderType, TC::ETradePlatform> algoPlatforms;
    std::vector<QString> settingTexts;
    CCalls<CSettingCall> settingCalls; ///< arguments of orderSettingToParam
    std::function<void(TC::CCodeOrderParam&)> onFixTimeRange;
    std::vector<std::string> recordCalls; ///< "filter N" and "fill N", with the number of records at the call
    /// The records that filterZeroStock removes.
    std::function<bool(const TC::CCodeOrderParam&)> isZeroStock = [](const TC::CCodeOrderParam& record) {
        return record.m_nVolume == 0;
    };
    std::function<void(std::vector<TC::CCodeOrderParam>&)> onFill;
    std::function<void(const TC::COrderSetting&)> onSetting; ///< called with the setting of each record

private:
    std::mutex m_mutex;
};

class CAlgorithms : public TC::CAlgorithmTradeHelper {
public:
    struct CSetting : TC::CAlgorithmOrderSetting {
        std::string text;
    };
    bool getAlgOrderSettingFromString(const std::string& text,
                                      TC::CAlgorithmOrderSettingPtr& setting) override;
    std::string getAlgParamsStr(TC::EOrderType type, const TC::CAlgorithmOrderSettingPtr& setting,
                                const std::vector<TC::CCodeOrderParam>& codes) override;

    /// Called with the setting that the host is asked to fill, before it is changed.
    std::function<void(const TC::CAlgorithmOrderSettingPtr&)> onRead;
    std::set<std::string> unreadable;
    CCalls<std::vector<TC::CCodeOrderParam>> codesCalls; ///< records that getAlgParamsStr was called with
};

class CMessages : public TC::CMsgService {
public:
    explicit CMessages(CRecords& records) : m_records(records) {}
    void showMsg(const QString& text, TC::EMsgTypeDef type, TC::MsgLevel level, bool flag1, bool flag2,
                 const QString& extra) override;

    std::vector<CMessage> messages;

private:
    CRecords& m_records;
};

class CAudit : public TC::CIntakeAudit {
public:
    explicit CAudit(CRecords& records) : m_records(records) {}
    void recordIntake(const TC::CIntakeReport& report) override;
    void recordDoor(const TC::CDoorReport& report) override;
    void recordDiscard(const TC::CDiscardReport& report) override;
    void recordUnplaced(const QVector<TC::COrderParam>& orders) override;
    QString rejectedFolder() override {
        if (onRejectedFolder) onRejectedFolder();
        return rejected;
    }
    void recordIncident(const TC::CIncidentReport& report) override;

    QString rejected;
    std::function<void()> onRejectedFolder;
    std::vector<TC::CIntakeReport> reports;
    std::vector<TC::CDoorReport> doors;
    std::vector<TC::CDiscardReport> discards;
    std::vector<QVector<TC::COrderParam>> unplaced;
    std::vector<TC::CIncidentReport> incidents;
    std::function<void()> onRecord;

private:
    CRecords& m_records;
};

class CTime : public TC::CTimeService {
public:
    std::int64_t currentTime() override { return 1767600000; }
};

class CSwitches : public luawrapper::LuaModuleCtrl {
public:
    bool checkModule(const std::vector<std::string>& path) override {
        const std::string* name = TC::orderSwitchOf(path);
        return name != nullptr && on.count(*name) > 0;
    }

    std::set<std::string> on{"mdl_order_command_remark"};
};

} // namespace fake

/// All fakes, installed for as long as the object lives. The stock group "G" has the accounts A1 (0.6) and A2
/// (0.4). The instruments are SH600000 and SZ000001, with price 10.5 and unit 100.
class CFakeHost {
public:
    CFakeHost();
    ~CFakeHost();

    TC::CHost services();
    /// Adds an instrument that trades. Its quote has this price for every price type.
    void addStock(const std::string& market, const std::string& code, double price, int unit = 100);
    void setPrice(const QString& key, double price);

    std::vector<TC::COrderComandParamPtr> commands() const;
    std::vector<QString> messageTexts() const;
    std::vector<QString> errorTexts() const;
    bool waitForCommands(std::size_t count);
    bool waitForMessages(std::size_t count);
    bool waitForIntakes(std::size_t count);

    fake::CRecords records;
    fake::CUser user;
    fake::COrders orders{records};
    fake::CTrade trade{records};
    fake::CExchange exchange;
    fake::CQuotes quotes{records};
    fake::CTypes types;
    fake::CRules rules;
    fake::CAlgorithms algorithms;
    fake::CMessages messages{records};
    fake::CAudit audit{records};
    fake::CTime time;
    fake::CTasks tasks{records};
    fake::CFramework framework{records};
    fake::CSwitches switches;
};
