#pragma once

#include "desk/host/TextSink.h"
#include "desk/journal/Journal.h"
#include "desk/market/QuoteSource.h"
#include "desk/paper/PaperBroker.h"
#include "orderservice/kit/VolumeSplit.h"
#include "orderservice/platform/TradeClient.h"

#include <map>
#include <mutex>
#include <set>
#include <string>
#include <utility>
#include <vector>

namespace desk {

/// The outcome of a `cancel_order` line, with the two words that named the order.
struct CPaperOrderInfo : knservice::COrderInfo {
    std::string m_strAccount;
    std::string m_strOrderId;
    std::string getKey() const override { return m_strAccount + ' ' + m_strOrderId; }
};

/// The waiting orders that a user wants to cancel: those that are in any of the lists.
struct CCancelChoice {
    bool m_bAll = false;
    std::set<int> m_orders;
    std::set<int> m_tasks;
    std::set<std::string> m_accounts;

    bool has(const CPaperOrder& order) const;
};

/// The desk's link to the paper broker. Any thread. Journal, broker, quotes and sink must outlive it.
///
/// A cancel is journalled first. It is carried out even if the journal refuses it: a full disk must not keep
/// a user from leaving a trade, and the broker's events reach the journal later.
class CPaperTradeClient : public TC::CTradeClient {
public:
    CPaperTradeClient(CJournal& journal, CPaperBroker& broker, const IQuoteSource& quotes, CTextSink& sink,
                      const std::vector<CAccountEntry>& accounts);

    /// The status in the configuration; -1 for an unknown account.
    TC::EBROKER_LOGIN_STATUS getLoginStatus(const std::string& accountKey) override;

    /// Divides the volume with splitOverAccounts, by the instrument's trading unit, or 1 if the instrument is
    /// unknown. Volume that closes positions of futures, options and gold is divided by splitClosing.
    std::vector<int> splitEntrusts(int volume, double price, TC::EPriceType priceType,
                                   const std::vector<TC::CAccountInfoPtr>& accounts,
                                   const std::vector<double>& ratios, TC::EPositionType positionType,
                                   const std::string& market, const std::string& code,
                                   TC::EOperationType operation, TC::EHedge_Flag_Type hedge,
                                   const boost::shared_ptr<utils::KNError>& error) override;

    /// Divides the amount with splitMoneyOverAccounts.
    std::vector<double> splitMoney(double amount, const std::vector<TC::CAccountInfoPtr>& accounts,
                                   const std::vector<double>& ratios, TC::EPositionType positionType,
                                   TC::EOperationType operation,
                                   const boost::shared_ptr<utils::KNError>& error) override;

    /// Calls the callback on the calling thread, before it returns.
    void cancelTask(int taskId, int operation, const std::string& text, const std::string& remark,
                    const std::string& tradingDay, const CCancelCallback& callback, int flag) override;

    /// Takes the words of a `cancel_order` line (CPaperBroker::cancelOrders) and emits sigCancelOrder with
    /// the result on the calling thread. The message of a failure contains the line and the reason. The order
    /// service passes it to the audit, which shows it to the user.
    void cancelOrders(const std::vector<std::string>& words);

    /// Cancels one order of an order list (CPaperOrderDetail), as cancelOrders does.
    void cancelOrder(const boost::shared_ptr<knservice::COrderDetail>& order) override;

    /// Emits sigOrderCheckFailed on the thread of this object, from its event loop. So the caller may hold
    /// locks. Any thread.
    void reportCheckFailed(const std::string& tradeKey, const utils::KNError& error);

    /// Cancels what a user has chosen by hand, all in one transaction. `reason` becomes the reason of the
    /// orders. `cancelled` gets their number; 0 if none of the chosen ones waits any more. A failure is also
    /// journalled and shown.
    [[nodiscard]] utils::KNError cancelChosen(const CCancelChoice& choice, const std::string& reason,
                                              int& cancelled);

private:
    /// Journals the words, cancels the order and emits sigCancelOrder.
    void cancelOne(const std::vector<std::string>& words, const std::string& reason);
    kit::CSplitResult split(int volume, const std::vector<TC::CAccountInfoPtr>& accounts,
                            const std::vector<double>& ratios, const std::string& stockKey,
                            TC::EOperationType operation) const;

    /// Makes this object's thread call emitRefused.
    void continueLater();
    void emitRefused();

    CJournal& m_journal;
    CPaperBroker& m_broker;
    const IQuoteSource& m_quotes;
    CTextSink& m_sink;
    std::map<std::string, int> m_loginStatus; ///< by account key

    std::mutex m_refusedMutex; ///< nothing is called with it
    std::vector<std::pair<knservice::COrderCommandPtr, utils::KNError>> m_refused; ///< not emitted yet
};

} // namespace desk
