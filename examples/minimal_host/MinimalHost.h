#pragma once

// The least that a host must bring: one user, one account, one instrument with a fixed price, and an order
// client that prints what it is given. A real client answers the same questions from its own services.

#include <platform/AlgorithmTradeHelper.h>
#include <platform/ExchangeClient.h>
#include <platform/Host.h>
#include <platform/InstrumentTypes.h>
#include <platform/IntakeAudit.h>
#include <platform/LuaModuleCtrl.h>
#include <platform/MsgService.h>
#include <platform/OrderClient.h>
#include <platform/Quote.h>
#include <platform/TimeService.h>
#include <platform/TradeClient.h>
#include <platform/TradeFrameworkSource.h>
#include <platform/TraderCenter.h>
#include <platform/TradingRules.h>
#include <platform/UserConfig.h>

#include <future>

namespace minimal {

extern const char* const kAccount;
extern const char* const kMarket;
extern const char* const kCode;
extern const double kPrice;

class CUser : public TC::CUserConfig, public TC::CUserManager {
public:
    TC::CUserConfig* getUserConfig() override { return this; }
    bool hasOrderService() const override { return true; }
    bool hasUserAuth(TC::EUserAuth) const override { return true; }
    bool hasShowTradeFrameworkPermission() const override { return false; }
    bool hasOrderEncryptionService() const override { return false; }
    std::string getUserName() const override { return "demo"; }
    int getUserKind() const override { return 100; }
    int getMaxOrderServerNum() const override { return 10; }
    int getMaxOrderServerNumSocket() const override { return 10; }
    int getMinFileServiceInterval() const override { return 50; }
    TC::CMsgFlags getMsgFlags(TC::EMsgTypeDef) const override { return {}; }
    const TC::CAccountGroup* getAccountGroupConst(TC::EQDBrokerType, const QString&) const override {
        return nullptr;
    }
    bool hasAccount(const QString& name) const override { return name == QLatin1String(kAccount); }
    bool hasSimpleAccount(const QString&) const override { return false; }
    void getAccountsWeights(TC::EQDBrokerType broker, TC::ESelectedAccountType kind, const QString& name,
                            std::vector<TC::CAccountInfoPtr>& accounts, std::vector<double>& ratios,
                            bool simple) const override;
    TC::CAccountPtr getAccountData(const QString& key) const override;
    bool isPriceTypeValid(TC::EPriceType, TC::EOperationType, TC::EQDBrokerType, const std::string&,
                          const std::string&, TC::EOrderType) const override {
        return true;
    }
    TC::COrderSetting getDefaultOrderSetting(TC::EDefaultSetting) const override { return {}; }
    TC::CBasketMap getBaskets() const override { return {}; }
    TC::COrderStrategyMap* getStrategyMap() override { return &m_strategies; }

private:
    TC::COrderStrategyMap m_strategies;
};

/// Prints each command; `arrived` becomes ready with the first.
class COrders : public TC::COrderClient {
public:
    void orderCommands(const TC::COrderComandParamPtr& command) override;
    void showTradeError(const QString& text, const QString& title) override;

    std::promise<bool> arrived;

private:
    void answer(bool ordered);
    bool m_bAnswered = false;
};

class CTrading : public TC::CTradeClient {
    Q_OBJECT
public:
    TC::EBROKER_LOGIN_STATUS getLoginStatus(const std::string&) override {
        return TC::EBROKER_LOGIN_STATUS::LoggedIn;
    }
    std::vector<int> splitEntrusts(int volume, double, TC::EPriceType,
                                   const std::vector<TC::CAccountInfoPtr>& accounts,
                                   const std::vector<double>&, TC::EPositionType, const std::string&,
                                   const std::string&, TC::EOperationType, TC::EHedge_Flag_Type,
                                   const boost::shared_ptr<utils::KNError>&) override;
    std::vector<double> splitMoney(double amount, const std::vector<TC::CAccountInfoPtr>& accounts,
                                   const std::vector<double>&, TC::EPositionType, TC::EOperationType,
                                   const boost::shared_ptr<utils::KNError>&) override;
    void cancelTask(int, int, const std::string&, const std::string&, const std::string&,
                    const CCancelCallback&, int) override {}
};

class CExchange : public TC::CExchangeClient {
    Q_OBJECT
public:
    bool hasStock(const QString& stockKey) override;
    TC::CInstrumentDetailPtr getCodeInfo(const QString& stockKey) override;
    std::string getMaxTradingDay() override { return "20260102"; }
};

class CQuotes : public TC::CQuoteClient {
public:
    TC::CPriceDataPtr getStockPrice(const QString& stockKey) override;
    boost::shared_ptr<TC::CQuoteRequest> subscribe(const QString&, const TC::CQuoteRequest::CCallback&,
                                                   TC::ESubscribeType) override;
};

class CMessages : public TC::CMsgService {
public:
    void showMsg(const QString& text, TC::EMsgTypeDef, TC::MsgLevel, bool, bool, const QString&) override;
};

class CRules : public TC::CTradingRules {
public:
    QString qdStockKey(const QString& market, const QString& code) override { return market + code; }
    TC::EQDBrokerType orderStrategyTradeTypeToBrokerType(TC::EOrderStrategyTradeType) override {
        return TC::EQDBrokerType::Stock;
    }
    QString getAccountFromOrderParam(const QString& part1, const QString&) override { return part1; }
    bool parserOrderTradeParam(const std::string&, TC::COrderTradeParam&) override { return false; }
    void orderSettingFromString(TC::COrderSetting&, const QString&) override {}
    void orderSettingToParam(const TC::COrderSetting& setting, TC::CCodeOrderParam& record,
                             TC::EOperationType, int, double price, const TC::CPriceDataPtr&) override;
    void fixTimeRange(TC::CCodeOrderParam&) override {}
    // Shares only: what is bought is held, what is sold is closed, and nobody borrows.
    bool isBuy(TC::EOperationType operation) override { return operation == TC::EOperationType::Buy; }
    bool isClose(TC::EOperationType operation) override { return operation == TC::EOperationType::Sell; }
    bool isDirectRepay(TC::EOperationType) override { return false; }
    TC::EEntrustTypes operationTypeToEntrustType(TC::EOperationType) override {
        return TC::unsetEnum<TC::EEntrustTypes>();
    }
    bool isMarketPrice(TC::EPriceType) override { return false; }
    bool isAlgoOrderType(TC::EOrderType) override { return false; }
    TC::ETradePlatform getPlatformTypeByOrderType(TC::EOrderType) override {
        return TC::ETradePlatform::Plain;
    }
    QString orderStrategyTypeToOrderTitle(TC::EOrderStrategyType) override {
        return QStringLiteral("[order]");
    }
    QString orderStrategyTypeToString(TC::EOrderStrategyType type) override { return number(type); }
    QString orderStrategyOrderTypeToString(int orderType) override { return QString::number(orderType); }
    QString orderStrategyTradeTypeToString(TC::EOrderStrategyTradeType type) override { return number(type); }
    QString knPriceTypeToString(TC::EPriceType type, const std::string&, bool) override {
        return number(type);
    }

private:
    template<typename E>
    static QString number(E value) {
        return QString::number(static_cast<int>(value));
    }
};

class CTypes : public knservice::CInstrumentTypes {
public:
    bool isTypedStock(int type, const std::string&, const std::string&) override {
        return type == knservice::kTypeTradableStock;
    }
    int getTradeMinUnit(const std::string&, const std::string&, TC::EOperationType) override { return 100; }
    int getUiMinUnit(const std::string&, const std::string&, bool) override { return 100; }
};

class CTime : public TC::CTimeService {
public:
    std::int64_t currentTime() override;
};

class CAlgorithms : public TC::CAlgorithmTradeHelper {
public:
    bool getAlgOrderSettingFromString(const std::string&, TC::CAlgorithmOrderSettingPtr&) override {
        return false;
    }
    std::string getAlgParamsStr(TC::EOrderType, const TC::CAlgorithmOrderSettingPtr&,
                                const std::vector<TC::CCodeOrderParam>&) override {
        return {};
    }
};

class CAudit : public TC::CIntakeAudit {
public:
    void recordIntake(const TC::CIntakeReport&) override {}
    void recordDoor(const TC::CDoorReport&) override {}
};

class CTasks : public knservice::TraderCenter, public knservice::CTaskCenter, public knservice::CDataCenter {
public:
    knservice::CTaskCenter& getTaskCenter() override { return *this; }
    knservice::CDataCenter& getDataCenter() override { return *this; }
    // This host watches no positions and no portfolios.
    boost::shared_ptr<knservice::CAccountData> getAccountData(const std::string&) override { return nullptr; }
    boost::shared_ptr<knservice::CAccountData> getGlobalAccountData() override { return nullptr; }
    std::vector<boost::shared_ptr<knservice::CTask>> findTasks(int) override { return {}; }
};

class CFramework : public knservice::CTradeFrameworkSource {
public:
    void switchTradingDate(const std::string&) override {}
    knservice::TradeInterfaceList getAllInterfaces() override { return {}; }
};

class CSwitches : public luawrapper::LuaModuleCtrl {
public:
    bool checkModule(const std::vector<std::string>&) override { return false; }
};

/// All services of the minimal host, ready for TC::installHost.
struct CMinimalHost {
    CUser user;
    COrders orders;
    CTrading trading;
    CExchange exchange;
    CQuotes quotes;
    CMessages messages;
    CRules rules;
    CTypes types;
    CTime time;
    CAlgorithms algorithms;
    CAudit audit;
    CTasks tasks;
    CFramework framework;
    CSwitches switches;

    TC::CHost services();
};

} // namespace minimal
