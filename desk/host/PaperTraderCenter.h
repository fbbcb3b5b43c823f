#pragma once

#include "desk/host/PaperPositions.h"
#include "desk/host/TextSink.h"
#include "desk/journal/Journal.h"
#include "desk/paper/PaperBroker.h"
#include "orderservice/platform/TraderCenter.h"

namespace desk {

/// The paper broker's tasks and positions. A `cancel` line of an order file finds its task here. Each
/// operation on a task is journalled. The operations terminate and cancel then cancel the task's waiting
/// orders; other operations fail. As in CPaperTradeClient, a cancel is carried out even if the journal
/// refuses it. Any thread. Journal, broker, sink and positions must outlive the centre and its tasks.
class CPaperTraderCenter : public knservice::TraderCenter,
                           private knservice::CTaskCenter,
                           private knservice::CDataCenter {
public:
    /// `portfolios` holds the data that all accounts share. It may be null.
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
    /// The task with this id, or none if the broker does not know it.
    std::vector<boost::shared_ptr<knservice::CTask>> findTasks(int taskId) override;

    CJournal& m_journal;
    CPaperBroker& m_broker;
    CTextSink& m_sink;
    const CPaperPositions& m_positions;
    const boost::shared_ptr<knservice::CAccountData> m_portfolios;
};

} // namespace desk
