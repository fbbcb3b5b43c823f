#pragma once

#include "desk/host/PaperAccounts.h"
#include "desk/host/TextSink.h"
#include "desk/journal/Journal.h"
#include "desk/paper/PaperBroker.h"
#include "orderservice/platform/TraderCenter.h"

namespace desk {

/// The paper broker's tasks, accounts and calculations. A `cancel` line of an order file finds its task here.
/// Each operation on a task is journalled. The operations terminate and cancel then cancel the task's waiting
/// orders; other operations fail. As in CPaperTradeClient, a cancel is carried out even if the journal
/// refuses it. Any thread. Journal, broker, sink and accounts must outlive the centre and its tasks.
class CPaperTraderCenter : public knservice::TraderCenter,
                           private knservice::CTaskCenter,
                           private knservice::CDataCenter,
                           private knservice::ICalculator {
public:
    /// `portfolios` holds the data that all accounts share. It may be null.
    CPaperTraderCenter(CJournal& journal, CPaperBroker& broker, CTextSink& sink,
                       const CPaperAccounts& accounts,
                       boost::shared_ptr<knservice::CAccountData> portfolios = nullptr);

    knservice::CTaskCenter& getTaskCenter() override { return *this; }
    knservice::CDataCenter& getDataCenter() override { return *this; }
    knservice::ICalculator* getCalculator() override { return this; }

private:
    boost::shared_ptr<knservice::CAccountData> getAccountData(const std::string& key) override {
        return m_accounts.of(key);
    }
    /// The account with this display id or this key (CPaperAccounts::keyOf).
    std::string getAccountKey(const std::string& id, int brokerType) override {
        return m_accounts.keyOf(id, brokerType);
    }
    boost::shared_ptr<knservice::CAccountData> getGlobalAccountData() override { return m_portfolios; }
    /// The task with this id, or none if the broker does not know it.
    std::vector<boost::shared_ptr<knservice::CTask>> findTasks(int taskId) override;
    /// The usable volume, but at most `count`. The desk does not use the kinds.
    std::int64_t getVolumeLimit(const TC::CAccountInfo& account, const std::string& market,
                                const std::string& code, TC::EOperationType operation,
                                TC::EHedge_Flag_Type hedge, double price, int& firstKind, int& secondKind,
                                std::int64_t count, bool isPart, int subKind) override;

    CJournal& m_journal;
    CPaperBroker& m_broker;
    CTextSink& m_sink;
    const CPaperAccounts& m_accounts;
    const boost::shared_ptr<knservice::CAccountData> m_portfolios;
};

} // namespace desk
