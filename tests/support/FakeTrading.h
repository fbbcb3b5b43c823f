#pragma once

#include "orderservice/platform/DataCenter.h"
#include "orderservice/platform/OrderClient.h"
#include "orderservice/platform/TradeClient.h"
#include "orderservice/platform/TradeFrameworkSource.h"
#include "orderservice/platform/TraderCenter.h"
#include "orderservice/records/Portfolio.h"
#include "tests/support/FakeRecords.h"

#include <atomic>
#include <functional>
#include <map>
#include <string>
#include <utility>
#include <vector>

/// The trading side of the host in memory: it takes commands, splits volumes and money, and keeps accounts.
namespace fake {

struct CTradeError {
    QString text, title;
};

struct CCancelledTask {
    int taskId, operation;
    std::string text, remark, tradingDay;
    bool hasCallback;
    int flag;
};

struct CSplitCall {
    int volume;
    double price;
    TC::EPriceType priceType;
    std::vector<std::string> accounts;
    std::vector<double> ratios;
    TC::EPositionType positionType;
    std::string market, code;
    TC::EOperationType operation;
    TC::EHedge_Flag_Type hedge;
};

struct CMoneySplitCall {
    double amount;
    std::vector<std::string> accounts;
    std::vector<double> ratios;
    TC::EPositionType positionType;
    TC::EOperationType operation;
};

class COrders : public TC::COrderClient {
public:
    explicit COrders(CRecords& records) : m_records(records) {}
    void orderCommands(const TC::COrderComandParamPtr& command) override;
    void showTradeError(const QString& text, const QString& title) override;

    std::function<void(const TC::COrderComandParamPtr&)> onCommand; ///< called on the issuing thread
    std::vector<TC::COrderComandParamPtr> commands;
    std::vector<CTradeError> errors;

private:
    CRecords& m_records;
};

class CTrade : public TC::CTradeClient {
    Q_OBJECT
public:
    explicit CTrade(CRecords& records) : m_records(records) {}
    TC::EBROKER_LOGIN_STATUS getLoginStatus(const std::string& key) override;
    std::vector<int> splitEntrusts(int volume, double price, TC::EPriceType priceType,
                                   const std::vector<TC::CAccountInfoPtr>& accounts,
                                   const std::vector<double>& ratios, TC::EPositionType positionType,
                                   const std::string& market, const std::string& code,
                                   TC::EOperationType operation, TC::EHedge_Flag_Type hedge,
                                   const boost::shared_ptr<utils::KNError>& error) override;
    std::vector<double> splitMoney(double amount, const std::vector<TC::CAccountInfoPtr>& accounts,
                                   const std::vector<double>& ratios, TC::EPositionType positionType,
                                   TC::EOperationType operation,
                                   const boost::shared_ptr<utils::KNError>& error) override;
    void cancelTask(int taskId, int operation, const std::string& text, const std::string& remark,
                    const std::string& tradingDay, const CCancelCallback& callback, int flag) override;
    void cancelOrder(const boost::shared_ptr<knservice::COrderDetail>& order) override {
        if (onCancelOrder) onCancelOrder(*order);
        m_records.record([&] { cancelledOrders.push_back(order); });
    }

    std::function<void(const knservice::COrderDetail&)> onCancelOrder; ///< called first

    std::vector<knservice::COrderDetailPtr> cancelledOrders;

    std::vector<CMoneySplitCall> moneySplits; ///< calls of splitMoney, which divides by ratio
    std::vector<double> moneyOverride;        ///< if not empty, the result of splitMoney
    bool moneyOverrideFails = true;           ///< whether splitMoney also sets the error in this case
    std::map<std::string, int> loginStatus;   ///< accounts that are not logged in
    /// Replaces the split. By default the volume is divided by ratio, and the first account gets the
    /// remainder.
    std::function<std::vector<int>(const CSplitCall&, utils::KNError&)> split;
    std::vector<CSplitCall> splitCalls;
    std::vector<CCancelledTask> cancelled;

private:
    CRecords& m_records;
};

class CTasks : public knservice::TraderCenter,
               public knservice::CTaskCenter,
               public knservice::CDataCenter,
               public knservice::CAccountData {
public:
    explicit CTasks(CRecords& records) : m_records(records) {}
    knservice::CTaskCenter& getTaskCenter() override { return *this; }
    knservice::CDataCenter& getDataCenter() override { return *this; }
    boost::shared_ptr<knservice::CAccountData> getGlobalAccountData() override;
    boost::shared_ptr<knservice::CAccountData> getAccountData(const std::string& key) override;
    std::map<std::string, boost::shared_ptr<knservice::IData>> getMapData(int table) override;
    void getVector(int table, std::vector<boost::shared_ptr<knservice::IData>>& out) override;
    knservice::CPositionStaticsPtr addPosition(const TC::CAccountInfoPtr& account, const std::string& market,
                                               const std::string& code, int volume);
    std::vector<boost::shared_ptr<knservice::CTask>> findTasks(int taskId) override;
    void addOperation(int taskId, const TC::CTaskOpRecord& record);

    knservice::ICalculator* getCalculator() override { return calculator; }
    std::string getAccountKey(const std::string& id, int brokerType) override {
        const auto found = accountKeys.find({id, brokerType});
        return found != accountKeys.end() ? found->second : std::string();
    }

    std::map<std::pair<std::string, int>, std::string> accountKeys; ///< by id and kind of broker

    std::map<std::string, boost::shared_ptr<knservice::CAccountData>>
        accountData; ///< used before `positions`
    knservice::ICalculator* calculator = nullptr;
    std::map<int, int> tasks; ///< number of tasks for each id
    std::vector<std::pair<int, TC::CTaskOpRecord>> operations;
    bool hasGlobalData = true;
    std::map<std::string, std::vector<boost::shared_ptr<knservice::IData>>> positions; ///< by account
    std::map<std::string, int> canOrder; ///< by account: what getCanOrderVolume of its data answers
    std::atomic<int> liveLocks{0};       ///< locks of account data that are held now
    bool readUnlocked = false;           ///< positions were read without the lock
    std::map<int, std::map<std::string, boost::shared_ptr<knservice::IData>>> tables;

private:
    CRecords& m_records;
};

class CFramework : public knservice::CTradeFrameworkSource {
public:
    explicit CFramework(CRecords& records) : m_records(records) {}
    void switchTradingDate(const std::string& date) override;
    knservice::TradeInterfaceList getAllInterfaces() override { return interfaces; }

    std::vector<std::string> dates;
    knservice::TradeInterfaceList interfaces;

private:
    CRecords& m_records;
};

} // namespace fake
