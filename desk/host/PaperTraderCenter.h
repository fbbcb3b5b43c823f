#pragma once

#include "desk/host/PaperPositions.h"
#include "desk/host/TextSink.h"
#include "desk/journal/Journal.h"
#include "desk/paper/PaperBroker.h"
#include "platform/TraderCenter.h"

namespace desk {

/// The paper broker's tasks and positions. Tasks, as a `cancel` line of an order file finds them: each
/// operation is journalled and ends the task's waiting orders. As with CPaperTradeClient, a refusing journal
/// does not hold a cancel back. Any thread. Journal, broker, sink and positions outlive the centre and its
/// tasks.
class CPaperTraderCenter : public knservice::TraderCenter,
                           private knservice::CTaskCenter,
                           private knservice::CDataCenter {
public:
    /// `portfolios`: what belongs to all accounts together; null for none.
    CPaperTraderCenter(CJournal& journal, CPaperBroker& broker, CTextSink& sink,
                       const CPaperPositions& positions,
                       boost::shared_ptr<knservice::CAccountData> portfolios = nullptr);

    knservice::CTaskCenter& getTaskCenter() override { return *this; }
    knservice::CDataCenter& getDataCenter() override { return *this; }

private:
    boost::shared_ptr<knservice::CAccountData> getAccountData(const std::string& key) override {
        return m_positions.of(key);
    }
    boost::shared_ptr<knservice::CAccountData> getGlobalAccountData() override { return m_portfolios; }
    /// One task, or none where the broker does not know the id.
    std::vector<boost::shared_ptr<knservice::CTask>> findTasks(int taskId) override;

    CJournal& m_journal;
    CPaperBroker& m_broker;
    CTextSink& m_sink;
    const CPaperPositions& m_positions;
    const boost::shared_ptr<knservice::CAccountData> m_portfolios;
};

} // namespace desk
