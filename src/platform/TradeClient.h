#pragma once

#include "orderservice/base/Export.h"
#include "orderservice/base/KNError.h"
#include "orderservice/platform/HostService.h"
#include "orderservice/records/Account.h"
#include "orderservice/records/AccountRecords.h"
#include "orderservice/records/CommandParam.h"
#include "orderservice/records/Enums.h"

#include <QObject>

#include <boost/function.hpp>
#include <boost/shared_ptr.hpp>

#include <string>
#include <vector>

namespace TC {

/// The client's link to its trading layer. Every operation may be called from any thread and does not throw.
class ORDERSERVICE_EXPORT CTradeClient : public QObject, public CHostService<CTradeClient> {
    Q_OBJECT
public:
    static constexpr const char* kServiceName = "CTradeClient";
    using CCancelCallback = boost::function<void(const utils::KNError&)>;

    /// Whether an account is logged in at its broker. The key is UTF-8. If the result is not 0, the account's
    /// strategies do not start. For an unknown key it must not be 0 either. Called with the registry locked,
    /// so it must return at once.
    virtual EBROKER_LOGIN_STATUS getLoginStatus(const std::string& accountKey) = 0;

    /// Divides a volume among accounts. Service thread, and the threads of function calls.
    ///
    /// volume: shares or lots. kUnsetInt means that the volume could not be calculated; the call must fail
    /// then, or the value of kUnsetInt would be traded. price: currency units, used to calculate the funds
    /// that the volume needs; may be unset. ratios: one for each account, as getAccountsWeights returned
    /// them. market and code: UTF-8, empty if the family does not pass them. error: never null.
    ///
    /// Returns one volume for each account, in the order of the accounts; 0 for an account that gets nothing.
    /// Their sum must be equal to `volume`. On failure it returns a different number of volumes and sets the
    /// error. The error text is shown to the user. For a row of a basket the error text goes to
    /// CIntakeAudit::recordIncident instead, and the basket continues without the row.
    virtual std::vector<int> splitEntrusts(int volume, double price, EPriceType priceType,
                                           const std::vector<CAccountInfoPtr>& accounts,
                                           const std::vector<double>& ratios, EPositionType positionType,
                                           const std::string& market, const std::string& code,
                                           EOperationType operation, EHedge_Flag_Type hedge,
                                           const boost::shared_ptr<utils::KNError>& error) = 0;

    /// Divides an amount of money, in currency units, among accounts, in the same way as splitEntrusts. The
    /// call must fail if the amount is unset.
    virtual std::vector<double> splitMoney(double amount, const std::vector<CAccountInfoPtr>& accounts,
                                           const std::vector<double>& ratios, EPositionType positionType,
                                           EOperationType operation,
                                           const boost::shared_ptr<utils::KNError>& error) = 0;

    /// Asks the trading layer to cancel a task. Service thread; does not wait for the outcome. operation:
    /// kTaskOpCancel. text: empty. remark: UTF-8, for the record. tradingDay: as
    /// CExchangeClient::getMaxTradingDay returns it. callback: receives the outcome; the library passes an
    /// empty callback because it needs no answer. flag: 0. An unknown task is not an error; the host tells
    /// the user about it.
    virtual void cancelTask(int taskId, int operation, const std::string& text, const std::string& remark,
                            const std::string& tradingDay, const CCancelCallback& callback, int flag) = 0;

    /// Asks the trading layer to cancel one order of a broker; does not wait for the outcome, which the user
    /// sees. Function trading calls it on its caller's thread. By default it throws: the host cannot do it.
    virtual void cancelOrder(const boost::shared_ptr<knservice::COrderDetail>& order);

signals:
    /// The outcome of the cancel of one order. The host may emit it on any thread. The library reports a
    /// failed cancel to the audit. It does nothing else with the signal, because tables are not implemented.
    void sigCancelOrder(knservice::COrderInfoPtr info, bool success, std::string message);
    /// The trading layer has refused a command. The host may emit it on any thread. COrderFuncService passes
    /// it to the caller of the function call whose trade key the command has. A null command is ignored.
    void sigOrderCheckFailed(const knservice::COrderCommandPtr& command, const utils::KNError& error);
};

} // namespace TC
