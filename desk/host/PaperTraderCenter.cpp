#include "desk/host/PaperTraderCenter.h"

#include "desk/host/DeskIntakeAudit.h"
#include "desk/journal/JournalEvents.h"
#include "orderservice/records/Enums.h"

#include <nlohmann/json.hpp>

#include <boost/make_shared.hpp>

#include <algorithm>

namespace desk {
namespace {

/// A task of the paper broker, open or ended.
class CPaperTaskHandle : public knservice::CTask {
public:
    CPaperTaskHandle(CJournal& journal, CPaperBroker& broker, CTextSink& sink, int taskId)
        : m_journal(journal), m_broker(broker), m_sink(sink), m_nTaskId(taskId) {}

    void operate(const TC::CTaskOpRecord& record) override {
        (void)m_journal.append("cancel_task", cancelTaskFields(m_nTaskId, record));
        const utils::KNError error = perform(record);
        if (!error.isSuccess()) noteFailedCancel(m_journal, m_sink, m_nTaskId, error.errorMsg());
    }

private:
    utils::KNError perform(const TC::CTaskOpRecord& record) {
        const int operation = record.m_nOperation;
        if (operation == TC::kTaskOpTerminate || operation == TC::kTaskOpCancel) {
            return m_broker.cancelTask(m_nTaskId, record.m_strRemark);
        }
        return {kPaperBadRequest, "task operation " + std::to_string(operation) + " is not modelled"};
    }

    CJournal& m_journal;
    CPaperBroker& m_broker;
    CTextSink& m_sink;
    const int m_nTaskId;
};

} // namespace

CPaperTraderCenter::CPaperTraderCenter(CJournal& journal, CPaperBroker& broker, CTextSink& sink,
                                       const CPaperAccounts& accounts,
                                       boost::shared_ptr<knservice::CAccountData> portfolios)
    : m_journal(journal), m_broker(broker), m_sink(sink), m_accounts(accounts),
      m_portfolios(std::move(portfolios)) {}

std::vector<boost::shared_ptr<knservice::CTask>> CPaperTraderCenter::findTasks(int taskId) {
    if (!m_broker.hasTask(taskId)) return {};
    return {boost::make_shared<CPaperTaskHandle>(m_journal, m_broker, m_sink, taskId)};
}

std::int64_t CPaperTraderCenter::getVolumeLimit(const TC::CAccountInfo& account, const std::string& market,
                                                const std::string& code, TC::EOperationType operation,
                                                TC::EHedge_Flag_Type, double price, int&, int&,
                                                std::int64_t count, bool, int) {
    const double usable = m_broker.usableVolume(account.getKey(), market + code, operation, price);
    return std::min(count, static_cast<std::int64_t>(usable));
}

} // namespace desk
