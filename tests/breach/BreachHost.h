#pragma once

#include "tests/breach/BreachAccounts.h"
#include "tests/breach/Breaches.h"
#include "tests/support/FakeHost.h"

#include <QMetaMethod>

#include <boost/make_shared.hpp>

#include <array>
#include <atomic>
#include <functional>
#include <string>
#include <vector>

/// A host in memory that breaks its contract in one operation at a time.
namespace breach {

class CUser : public fake::CUser {
public:
    explicit CUser(const CBreaches& breaches) : m_breaches(breaches) {}
#define USER(Result, operation, params, args)                                                                \
    BREACHABLE(fake::CUser, CUserConfig, Result, operation, params, const, args)
    BREACHABLE(fake::CUser, CUserManager, TC::CUserConfig*, getUserConfig, (), , ())
    BREACHABLE(fake::CUser, CUserConfig, TC::COrderStrategyMap*, getStrategyMap, (), , ())
    USER(bool, hasOrderService, (), ())
    USER(bool, hasUserAuth, (TC::EUserAuth right), (right))
    USER(bool, hasShowTradeFrameworkPermission, (), ())
    USER(bool, hasOrderEncryptionService, (), ())
    USER(std::string, getUserName, (), ())
    USER(int, getUserKind, (), ())
    USER(int, getMaxOrderServerNum, (), ())
    USER(int, getMaxOrderServerNumSocket, (), ())
    USER(int, getMinFileServiceInterval, (), ())
    USER(bool, testHintBeforeOrderFlag, (int bit), (bit))
    USER(bool, testGlobalOrderHint, (int bit), (bit))
    USER(TC::CMsgFlags, getMsgFlags, (TC::EMsgTypeDef type), (type))
    USER(const TC::CAccountGroup*, getAccountGroupConst, (TC::EQDBrokerType broker, const QString& group),
         (broker, group))
    USER(bool, hasAccount, (const QString& account), (account))
    USER(bool, hasSimpleAccount, (const QString& account), (account))
    USER(void, getAccountsWeights,
         (TC::EQDBrokerType broker, TC::ESelectedAccountType which, const QString& key,
          std::vector<TC::CAccountInfoPtr>& found, std::vector<double>& ratios, bool isSimple),
         (broker, which, key, found, ratios, isSimple))
    USER(bool, isPriceTypeValid,
         (TC::EPriceType type, TC::EOperationType operation, TC::EQDBrokerType broker,
          const std::string& market, const std::string& code, TC::EOrderType orderType),
         (type, operation, broker, market, code, orderType))
    USER(TC::COrderSetting, getDefaultOrderSetting, (TC::EDefaultSetting which), (which))
    USER(TC::CBasketMap, getBaskets, (), ())
#undef USER
    std::array<TC::COrderSetting, TC::kDefaultSlots> getDefaultOrderSettings() const override {
        m_breaches("CUserConfig::getDefaultOrderSettings");
        return {};
    }
    TC::CAccountPtr getAccountData(const QString&) const override {
        m_breaches("CUserConfig::getAccountData");
        return boost::make_shared<CAccount>(m_breaches, boost::make_shared<TC::CAccountInfo>());
    }
    std::vector<TC::CAccountPtr> getAccounts() const override {
        m_breaches("CUserConfig::getAccounts");
        std::vector<TC::CAccountPtr> list;
        for (const auto& [key, account] : accounts)
            list.push_back(boost::make_shared<CAccount>(m_breaches, account));
        return list;
    }

private:
    const CBreaches& m_breaches;
};

class COrders : public fake::COrders {
public:
    COrders(fake::CRecords& records, const CBreaches& breaches)
        : fake::COrders(records), m_breaches(breaches) {}
    BREACHABLE(fake::COrders, COrderClient, void, orderCommands, (const TC::COrderComandParamPtr& command), ,
               (command))
    BREACHABLE(fake::COrders, COrderClient, void, showTradeError, (const QString& text, const QString& title),
               , (text, title))
private:
    const CBreaches& m_breaches;
};

class CTrade : public fake::CTrade {
public:
    CTrade(fake::CRecords& records, const CBreaches& breaches)
        : fake::CTrade(records), m_breaches(breaches) {}
    BREACHABLE(fake::CTrade, CTradeClient, TC::EBROKER_LOGIN_STATUS, getLoginStatus, (const std::string& key),
               , (key))
    BREACHABLE(fake::CTrade, CTradeClient, std::vector<int>, splitEntrusts,
               (int volume, double price, TC::EPriceType type,
                const std::vector<TC::CAccountInfoPtr>& accounts, const std::vector<double>& ratios,
                TC::EPositionType position, const std::string& market, const std::string& code,
                TC::EOperationType operation, TC::EHedge_Flag_Type hedge,
                const boost::shared_ptr<utils::KNError>& error),
               , (volume, price, type, accounts, ratios, position, market, code, operation, hedge, error))
    BREACHABLE(fake::CTrade, CTradeClient, std::vector<double>, splitMoney,
               (double amount, const std::vector<TC::CAccountInfoPtr>& accounts,
                const std::vector<double>& ratios, TC::EPositionType position, TC::EOperationType operation,
                const boost::shared_ptr<utils::KNError>& error),
               , (amount, accounts, ratios, position, operation, error))
    BREACHABLE(fake::CTrade, CTradeClient, void, cancelTask,
               (int task, int operation, const std::string& text, const std::string& remark,
                const std::string& day, const CCancelCallback& callback, int flag),
               , (task, operation, text, remark, day, callback, flag))
    BREACHABLE(fake::CTrade, CTradeClient, void, cancelOrder,
               (const boost::shared_ptr<knservice::COrderDetail>& order), , (order))
    std::function<void()> onDisconnect; ///< called when a receiver of its signals is disconnected

protected:
    void disconnectNotify(const QMetaMethod&) override {
        if (onDisconnect) onDisconnect();
    }

private:
    const CBreaches& m_breaches;
};

class CExchange : public fake::CExchange {
public:
    explicit CExchange(const CBreaches& breaches) : m_breaches(breaches) {}
#define EXCHANGE(Result, operation)                                                                          \
    BREACHABLE(fake::CExchange, CExchangeClient, Result, operation, (const QString& key), , (key))
    EXCHANGE(bool, hasStock)
    EXCHANGE(bool, hasFuture)
    EXCHANGE(bool, hasOption)
    EXCHANGE(bool, hasFutureOption)
    EXCHANGE(bool, hasSkstock)
    EXCHANGE(bool, hasHkstock)
    EXCHANGE(bool, hasGold)
    EXCHANGE(bool, hasNeeq)
    EXCHANGE(TC::CInstrumentDetailPtr, getCodeInfo)
#undef EXCHANGE
    BREACHABLE(fake::CExchange, CExchangeClient, std::string, getMaxTradingDay, (), , ())
private:
    const CBreaches& m_breaches;
};

class CQuote : public fake::CQuote {
public:
    CQuote(const fake::CQuote& quote, const CBreaches& breaches) : m_breaches(breaches) {
        all(quote.otherOrder);
        m_nDayCount = 1;
    }
    BREACHABLE(fake::CQuote, CPriceData, double, getOriginPrice, (TC::EPriceType t, TC::EOperationType o),
               const, (t, o))
    BREACHABLE(fake::CQuote, CPriceData, double, getPriceForCalc,
               (TC::EPriceType t, TC::EOperationType o, int n,
                const boost::shared_ptr<TC::CAutoPriceParam>& a),
               const, (t, o, n, a))
    BREACHABLE(fake::CQuote, CPriceData, double, getPriceForOrder,
               (TC::EPriceType t, TC::EOperationType o, int n,
                const boost::shared_ptr<TC::CAutoPriceParam>& a),
               const, (t, o, n, a))
private:
    const CBreaches& m_breaches;
};

class CQuotes : public fake::CQuotes {
public:
    CQuotes(fake::CRecords& records, const CBreaches& breaches)
        : fake::CQuotes(records), m_breaches(breaches) {}
    TC::CPriceDataPtr getStockPrice(const QString& key) override {
        m_breaches("CQuoteClient::getStockPrice");
        const auto quote = boost::dynamic_pointer_cast<const fake::CQuote>(fake::CQuotes::getStockPrice(key));
        return quote ? boost::make_shared<CQuote>(*quote, m_breaches) : nullptr;
    }
    BREACHABLE(fake::CQuotes, CQuoteClient, boost::shared_ptr<TC::CQuoteRequest>, subscribe,
               (const QString& key, const TC::CQuoteRequest::CCallback& callback, TC::ESubscribeType type), ,
               (key, callback, type))
private:
    const CBreaches& m_breaches;
};

class CTypes : public fake::CTypes {
public:
    explicit CTypes(const CBreaches& breaches) : m_breaches(breaches) {}
    BREACHABLE(fake::CTypes, CInstrumentTypes, bool, isTypedStock,
               (int type, const std::string& market, const std::string& code), , (type, market, code))
    BREACHABLE(fake::CTypes, CInstrumentTypes, int, getTradeMinUnit,
               (const std::string& market, const std::string& code, TC::EOperationType operation), ,
               (market, code, operation))
    BREACHABLE(fake::CTypes, CInstrumentTypes, int, getUiMinUnit,
               (const std::string& market, const std::string& code, bool trade), , (market, code, trade))
private:
    const CBreaches& m_breaches;
};

class CRules : public fake::CRules {
public:
    explicit CRules(const CBreaches& breaches) : m_breaches(breaches) {}
#define RULE(Result, operation, params, args)                                                                \
    BREACHABLE(fake::CRules, CTradingRules, Result, operation, params, , args)
    RULE(QString, qdStockKey, (const QString& market, const QString& code), (market, code))
    RULE(TC::EQDBrokerType, orderStrategyTradeTypeToBrokerType, (TC::EOrderStrategyTradeType type), (type))
    RULE(QString, getAccountFromOrderParam, (const QString& part1, const QString& part2), (part1, part2))
    RULE(bool, parserOrderTradeParam, (const std::string& text, TC::COrderTradeParam& param), (text, param))
    RULE(void, orderSettingFromString, (TC::COrderSetting & setting, const QString& text), (setting, text))
    RULE(void, orderSettingToParam,
         (const TC::COrderSetting& setting, TC::CCodeOrderParam& record, TC::EOperationType operation,
          int volume, double price, const TC::CPriceDataPtr& quote),
         (setting, record, operation, volume, price, quote))
    RULE(void, fixTimeRange, (TC::CCodeOrderParam & record), (record))
    RULE(bool, isBuy, (TC::EOperationType operation), (operation))
    RULE(bool, isClose, (TC::EOperationType operation), (operation))
    RULE(bool, isDirectRepay, (TC::EOperationType operation), (operation))
    RULE(TC::EEntrustTypes, operationTypeToEntrustType, (TC::EOperationType operation), (operation))
    RULE(bool, isMarketPrice, (TC::EPriceType type), (type))
    RULE(bool, isAlgoOrderType, (TC::EOrderType type), (type))
    RULE(TC::ETradePlatform, getPlatformTypeByOrderType, (TC::EOrderType type), (type))
    RULE(void, filterZeroStock, (std::vector<TC::CCodeOrderParam> & records), (records))
    RULE(void, fillOverFreqOrderMode, (std::vector<TC::CCodeOrderParam> & records), (records))
    RULE(QString, orderStrategyTypeToOrderTitle, (TC::EOrderStrategyType type), (type))
    RULE(QString, orderStrategyTypeToString, (TC::EOrderStrategyType type), (type))
    RULE(QString, orderStrategyOrderTypeToString, (int type), (type))
    RULE(QString, orderStrategyTradeTypeToString, (TC::EOrderStrategyTradeType type), (type))
    RULE(QString, knPriceTypeToString, (TC::EPriceType type, const std::string& code, bool isShort),
         (type, code, isShort))
#undef RULE
    QString accountDisplayIDQs(const TC::CAccountInfo& account) override {
        m_breaches("CTradingRules::accountDisplayIDQs");
        return QString::fromStdString(account.m_strKey);
    }

private:
    const CBreaches& m_breaches;
};

class CAlgorithms : public fake::CAlgorithms {
public:
    explicit CAlgorithms(const CBreaches& breaches) : m_breaches(breaches) {}
    BREACHABLE(fake::CAlgorithms, CAlgorithmTradeHelper, bool, getAlgOrderSettingFromString,
               (const std::string& text, TC::CAlgorithmOrderSettingPtr& setting), , (text, setting))
    BREACHABLE(fake::CAlgorithms, CAlgorithmTradeHelper, std::string, getAlgParamsStr,
               (TC::EOrderType type, const TC::CAlgorithmOrderSettingPtr& setting,
                const std::vector<TC::CCodeOrderParam>& codes),
               , (type, setting, codes))
private:
    const CBreaches& m_breaches;
};

class CMessages : public fake::CMessages {
public:
    CMessages(fake::CRecords& records, const CBreaches& breaches)
        : fake::CMessages(records), m_breaches(breaches) {}
    BREACHABLE(fake::CMessages, CMsgService, void, showMsg,
               (const QString& text, TC::EMsgTypeDef type, TC::MsgLevel level, bool flag1, bool flag2,
                const QString& extra),
               , (text, type, level, flag1, flag2, extra))
private:
    const CBreaches& m_breaches;
};

class CAudit : public fake::CAudit {
public:
    CAudit(fake::CRecords& records, const CBreaches& breaches)
        : fake::CAudit(records), m_breaches(breaches) {}
    BREACHABLE(fake::CAudit, CIntakeAudit, void, recordIntake, (const TC::CIntakeReport& report), , (report))
    BREACHABLE(fake::CAudit, CIntakeAudit, void, recordDoor, (const TC::CDoorReport& report), , (report))
    BREACHABLE(fake::CAudit, CIntakeAudit, void, recordDiscard, (const TC::CDiscardReport& report), ,
               (report))
    BREACHABLE(fake::CAudit, CIntakeAudit, void, recordUnplaced, (const QVector<TC::COrderParam>& orders), ,
               (orders))
    BREACHABLE(fake::CAudit, CIntakeAudit, QString, rejectedFolder, (), , ())
    BREACHABLE(fake::CAudit, CIntakeAudit, void, recordIncident, (const TC::CIncidentReport& report), ,
               (report))
private:
    const CBreaches& m_breaches;
};

class CTime : public fake::CTime {
public:
    explicit CTime(const CBreaches& breaches) : m_breaches(breaches) {}
    BREACHABLE(fake::CTime, CTimeService, std::int64_t, currentTime, (), , ())
    std::int64_t currentMilliseconds() override {
        m_breaches("CTimeService::currentMilliseconds");
        return fake::CTime::currentTime() * 1000;
    }

private:
    const CBreaches& m_breaches;
};

class CTask : public knservice::CTask {
public:
    explicit CTask(const CBreaches& breaches) : m_breaches(breaches) {}
    void operate(const TC::CTaskOpRecord&) override { m_breaches("CTask::operate"); }

private:
    const CBreaches& m_breaches;
};

/// Finds every task and every account. Each list of tasks starts with a null task.
class CTasks : public fake::CTasks {
public:
    CTasks(fake::CRecords& records, const CBreaches& breaches)
        : fake::CTasks(records), m_breaches(breaches) {}
    BREACHABLE(fake::CTasks, TraderCenter, knservice::CTaskCenter&, getTaskCenter, (), , ())
    BREACHABLE(fake::CTasks, TraderCenter, knservice::CDataCenter&, getDataCenter, (), , ())
    BREACHABLE(fake::CTasks, CDataCenter, boost::shared_ptr<knservice::CAccountData>, getGlobalAccountData,
               (), , ())
    using CRecordMap = std::map<std::string, boost::shared_ptr<knservice::IData>>;
    BREACHABLE(fake::CTasks, CAccountData, CRecordMap, getMapData, (int table), , (table))
    boost::shared_ptr<knservice::CAccountData> getAccountData(const std::string&) override {
        m_breaches("CDataCenter::getAccountData");
        return boost::make_shared<breach::CAccountData>(m_breaches, position, account);
    }
    BREACHABLE(fake::CTasks, CDataCenter, std::string, getAccountKey, (const std::string& id, int brokerType),
               , (id, brokerType))
    knservice::ICalculator* getCalculator() override {
        m_breaches("TraderCenter::getCalculator");
        return &m_calculator;
    }
    std::vector<boost::shared_ptr<knservice::CTask>> findTasks(int) override {
        m_breaches("CTaskCenter::findTasks");
        if (hasOnlyNullTasks) return {nullptr};
        return {nullptr, boost::make_shared<breach::CTask>(m_breaches)};
    }

    std::atomic<bool> hasOnlyNullTasks{false};
    /// The position of every account. The default is a null entry. Set it only while no order is processed.
    knservice::CPositionStaticsPtr position;
    CFuncRecords account; ///< of every account

private:
    const CBreaches& m_breaches;
    CCalculator m_calculator{m_breaches};
};

class CFramework : public fake::CFramework {
public:
    CFramework(fake::CRecords& records, const CBreaches& breaches)
        : fake::CFramework(records), m_breaches(breaches) {}
    BREACHABLE(fake::CFramework, CTradeFrameworkSource, void, switchTradingDate, (const std::string& date), ,
               (date))
    BREACHABLE(fake::CFramework, CTradeFrameworkSource, knservice::TradeInterfaceList, getAllInterfaces, (), ,
               ())
private:
    const CBreaches& m_breaches;
};

class CSwitches : public fake::CSwitches {
public:
    explicit CSwitches(const CBreaches& breaches) : m_breaches(breaches) {}
    BREACHABLE(fake::CSwitches, LuaModuleCtrl, bool, checkModule, (const std::vector<std::string>& path), ,
               (path))
private:
    const CBreaches& m_breaches;
};

/// All fakes of this file, installed for as long as the object lives. A1 is the only account, a stock
/// account; it is in the group "G" of every kind. The instruments are SH600000 and, for function trading, a
/// future and an option.
class CBreachHost {
public:
    CBreachHost();
    ~CBreachHost();

    /// Waits until a message, a trade error or an audit record contains the text.
    bool waitForReport(const std::string& text);
    std::vector<std::string> reports() const;

    CBreaches breaches;
    fake::CRecords records;
    CUser user{breaches};
    COrders orders{records, breaches};
    CTrade trade{records, breaches};
    CExchange exchange{breaches};
    CQuotes quotes{records, breaches};
    CTypes types{breaches};
    CRules rules{breaches};
    CAlgorithms algorithms{breaches};
    CMessages messages{records, breaches};
    CAudit audit{records, breaches};
    CTime time{breaches};
    CTasks tasks{records, breaches};
    CFramework framework{records, breaches};
    CSwitches switches{breaches};
    CFormulas formulas{breaches};

private:
    void addFunctionData();
    std::vector<std::string> collectReports() const;
};

} // namespace breach
