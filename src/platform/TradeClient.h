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

/// The client's link to its trading layer. Every operation may be called from any thread and does not throw.
class CTradeClient : public QObject, public CHostService<CTradeClient> {
    Q_OBJECT
public:
    static constexpr const char* kServiceName = "CTradeClient";
    using CCancelCallback = boost::function<void(const utils::KNError&)>;

    /// Whether an account is logged in at its broker; UTF-8 key. Any number but 0 refuses the start of its
    /// strategies, also for an unknown key. Called with the registry locked: answers at once.
    virtual EBROKER_LOGIN_STATUS getLoginStatus(const std::string& accountKey) = 0;

    /// Divides a volume over accounts. Service thread.
    ///
    /// volume: shares or lots. kUnsetInt means that none could be worked out: that must fail, or the number
    /// itself would be traded. price: currency units, for the funds that the volume needs; may be unset.
    /// ratios: one for each account, as getAccountsWeights gave them. market and code: UTF-8, empty if the
    /// family passes none. error: never null.
    ///
    /// Gives one volume for each account, in their order, and 0 for an account that gets nothing. The sum is
    /// the volume. On failure gives another number of volumes and sets the error. Its text is shown to the
    /// user. For a row of a basket it goes to CIntakeAudit::recordIncident instead, and the basket goes on
    /// without the row.
    virtual std::vector<int> splitEntrusts(int volume, double price, EPriceType priceType,
                                           const std::vector<CAccountInfoPtr>& accounts,
                                           const std::vector<double>& ratios, EPositionType positionType,
                                           const std::string& market, const std::string& code,
                                           EOperationType operation, EHedge_Flag_Type hedge,
                                           const boost::shared_ptr<utils::KNError>& error) = 0;

    /// Divides an amount of money, in currency units, over accounts, in the same way as splitEntrusts. An
    /// amount that is unset must fail.
    virtual std::vector<double> splitMoney(double amount, const std::vector<CAccountInfoPtr>& accounts,
                                           const std::vector<double>& ratios, EPositionType positionType,
                                           EOperationType operation,
                                           const boost::shared_ptr<utils::KNError>& error) = 0;

    /// Asks the trading layer to cancel a task. Service thread; does not wait for the outcome. operation:
    /// kTaskOpCancel. text: empty. remark: UTF-8, for the record. tradingDay: as
    /// CExchangeClient::getMaxTradingDay gives it. callback: takes the outcome; the library passes an empty
    /// one, which asks for no answer. flag: 0. An unknown task is no error: the host tells the user.
    virtual void cancelTask(int taskId, int operation, const std::string& text, const std::string& remark,
                            const std::string& tradingDay, const CCancelCallback& callback, int flag) = 0;

signals:
    /// What became of a cancel of one order. The host may emit it on any thread. The library tells the audit
    /// of one that failed, and as tables are not built does no more with it.
    void sigCancelOrder(knservice::COrderInfoPtr info, bool success, std::string message);
};

} // namespace TC
