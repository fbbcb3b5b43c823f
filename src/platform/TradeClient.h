#pragma once

#include "base/KNError.h"
#include "platform/HostService.h"
#include "records/Account.h"
#include "records/CommandParam.h"
#include "records/Enums.h"

#include <QObject>

#include <boost/function.hpp>
#include <boost/shared_ptr.hpp>

#include <string>
#include <vector>

namespace TC {

/// The client's link to its trading layer. Every operation may be called from any thread.
class CTradeClient : public QObject, public CHostService<CTradeClient> {
    Q_OBJECT
public:
    static constexpr const char* kServiceName = "CTradeClient";
    using CCancelCallback = boost::function<void(const utils::KNError&)>;

    virtual EBROKER_LOGIN_STATUS getLoginStatus(const std::string& accountKey) = 0;

    /// Divides a volume over accounts.
    ///
    /// volume: shares or lots, kUnsetInt where none could be worked out, which must fail: as a number it
    /// would be traded. price: currency units, for the funds that the volume needs; may be unset. ratios: one
    /// for each account, as getAccountsWeights gave them. market and code are UTF-8 and empty where the
    /// family passes none. Gives one volume for each account, in their order, 0 where an account gets
    /// nothing. On failure gives another number of volumes and sets the error.
    virtual std::vector<int> splitEntrusts(int volume, double price, EPriceType priceType,
                                           const std::vector<CAccountInfoPtr>& accounts,
                                           const std::vector<double>& ratios, EPositionType positionType,
                                           const std::string& market, const std::string& code,
                                           EOperationType operation, EHedge_Flag_Type hedge,
                                           const boost::shared_ptr<utils::KNError>& error) = 0;

    /// Divides an amount of money, in currency units, over accounts; otherwise as splitEntrusts.
    virtual std::vector<double> splitMoney(double amount, const std::vector<CAccountInfoPtr>& accounts,
                                           const std::vector<double>& ratios, EPositionType positionType,
                                           EOperationType operation,
                                           const boost::shared_ptr<utils::KNError>& error) = 0;

    /// Asks the trading layer to cancel a task. operation: kTaskOpCancel. remark: UTF-8, for the record.
    /// tradingDay: as CExchangeClient::getMaxTradingDay gives it. An empty call-back asks for no answer; the
    /// library passes one.
    virtual void cancelTask(int taskId, int operation, const std::string& text, const std::string& remark,
                            const std::string& tradingDay, const CCancelCallback& callback, int flag) = 0;

signals:
    /// What became of a cancel by order. The host may emit it on any thread and registers the argument types.
    void sigCancelOrder(knservice::COrderInfoPtr info, bool success, std::string message);
};

} // namespace TC
