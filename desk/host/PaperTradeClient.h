#pragma once

#include "desk/host/TextSink.h"
#include "desk/journal/Journal.h"
#include "desk/market/QuoteSource.h"
#include "desk/paper/PaperBroker.h"
#include "kit/VolumeSplit.h"
#include "platform/TradeClient.h"

#include <map>
#include <string>
#include <vector>

namespace desk {

/// What became of an order that was to be cancelled by order: the two words that named it.
struct CPaperOrderInfo : knservice::COrderInfo {
    std::string m_strAccount;
    std::string m_strOrderId;
    std::string getKey() const override { return m_strAccount + ' ' + m_strOrderId; }
};

/// The desk's link to the paper broker. Any thread. Journal, broker, quotes and sink outlive it.
///
/// Cancels are journalled first and carried out also where the journal refuses: a user who wants out of a
/// trade is not held back by a full disk, and the broker's events reach the journal later.
class CPaperTradeClient : public TC::CTradeClient {
public:
    CPaperTradeClient(CJournal& journal, CPaperBroker& broker, const IQuoteSource& quotes, CTextSink& sink,
                      const std::vector<CAccountEntry>& accounts);

    /// As the configuration says; -1 for an account that it does not know.
    TC::EBROKER_LOGIN_STATUS getLoginStatus(const std::string& accountKey) override;

    /// splitOverAccounts with the instrument's trading unit; 1 where the instrument is not known. What closes
    /// positions of futures, options and gold is divided by splitClosing.
    std::vector<int> splitEntrusts(int volume, double price, TC::EPriceType priceType,
                                   const std::vector<TC::CAccountInfoPtr>& accounts,
                                   const std::vector<double>& ratios, TC::EPositionType positionType,
                                   const std::string& market, const std::string& code,
                                   TC::EOperationType operation, TC::EHedge_Flag_Type hedge,
                                   const boost::shared_ptr<utils::KNError>& error) override;

    /// splitMoneyOverAccounts.
    std::vector<double> splitMoney(double amount, const std::vector<TC::CAccountInfoPtr>& accounts,
                                   const std::vector<double>& ratios, TC::EPositionType positionType,
                                   TC::EOperationType operation,
                                   const boost::shared_ptr<utils::KNError>& error) override;

    /// Answers on the calling thread, before it returns.
    void cancelTask(int taskId, int operation, const std::string& text, const std::string& remark,
                    const std::string& tradingDay, const CCancelCallback& callback, int flag) override;

    /// Takes the words of a `cancel_order` line (CPaperBroker::cancelOrders) and emits sigCancelOrder with
    /// the outcome on the calling thread. The message of a failure has the line and the reason; the order
    /// service hands it to the audit, which shows it to the user.
    void cancelOrders(const std::vector<std::string>& words);

private:
    kit::CSplitResult split(int volume, const std::vector<TC::CAccountInfoPtr>& accounts,
                            const std::vector<double>& ratios, const std::string& stockKey,
                            TC::EOperationType operation) const;

    CJournal& m_journal;
    CPaperBroker& m_broker;
    const IQuoteSource& m_quotes;
    CTextSink& m_sink;
    std::map<std::string, int> m_loginStatus; ///< by account key
};

} // namespace desk
