#pragma once

#include "desk/host/TextSink.h"
#include "desk/journal/Journal.h"
#include "desk/market/QuoteSource.h"
#include "desk/paper/PaperBroker.h"
#include "platform/DataCenter.h"
#include "platform/TraderCenter.h"
#include "records/Account.h"

#include <map>
#include <string>
#include <vector>

namespace desk {

/// The paper broker's tasks, as a `cancel` line of an order file finds them: each operation is journalled and
/// ends the task's waiting orders. As with CPaperTradeClient, a refusing journal does not hold a cancel back.
/// Any thread. Journal, broker, quotes and sink outlive the centre and its tasks.
class CPaperTraderCenter : public knservice::TraderCenter,
                           private knservice::CTaskCenter,
                           private knservice::CDataCenter {
public:
    CPaperTraderCenter(CJournal& journal, CPaperBroker& broker, const IQuoteSource& quotes, CTextSink& sink,
                       const std::vector<CAccountEntry>& accounts);

    knservice::CTaskCenter& getTaskCenter() override { return *this; }
    knservice::CDataCenter& getDataCenter() override { return *this; }

private:
    /// What the broker has of the account at this moment, null for an account that the folder does not know.
    /// It is a copy, so holding its lock keeps nobody waiting. A position in an instrument that has left the
    /// folder is left out: nothing could trade it.
    boost::shared_ptr<knservice::CAccountData> getAccountData(const std::string& key) override;
    /// The desk keeps no portfolios.
    boost::shared_ptr<knservice::CAccountData> getGlobalAccountData() override { return nullptr; }
    /// One task, or none where the broker does not know the id.
    std::vector<boost::shared_ptr<knservice::CTask>> findTasks(int taskId) override;

    CJournal& m_journal;
    CPaperBroker& m_broker;
    const IQuoteSource& m_quotes;
    CTextSink& m_sink;
    std::map<std::string, TC::CAccountInfoPtr> m_accounts; ///< by key
};

} // namespace desk
